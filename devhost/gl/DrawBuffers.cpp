// SPDX-License-Identifier: MIT
#include "devhost/gl/DrawBuffers.h"

#include "devhost/gl/GlPrivateFramebuffer.h"

#include <GL/gl.h>
#include <GL/glext.h>

namespace devhost {
namespace {

/// Puts the framebuffer and the renderbuffer in use back.
class BindingScope {
  public:
    explicit BindingScope(ZGLFunctionTable &gl) : gl_(gl) {
        gl_.glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &framebuffer_);
        gl_.glGetIntegerv(GL_RENDERBUFFER_BINDING_EXT, &renderbuffer_);
    }
    ~BindingScope() {
        gl_.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<ZGLuint>(framebuffer_));
        gl_.glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, static_cast<ZGLuint>(renderbuffer_));
    }
    BindingScope(const BindingScope &) = delete;

  private:
    ZGLFunctionTable &gl_;
    ZGLint framebuffer_ = 0, renderbuffer_ = 0;
};

/// Makes a buffer and attaches it to the bound framebuffer.
unsigned attach(ZGLFunctionTable &gl, GLenum attachment) {
    unsigned buffer = 0;
    gl.glGenRenderbuffersEXT(1, &buffer);
    gl.glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, buffer);
    attachImage(gl, attachment, {GL_RENDERBUFFER_EXT, buffer});
    return buffer;
}

void allocate(ZGLFunctionTable &gl, unsigned buffer, GLenum format, unsigned width,
              unsigned height) {
    gl.glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, buffer);
    gl.glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, format, static_cast<int>(width),
                                static_cast<int>(height));
}

} // namespace

ZStatus DrawBuffers::make(unsigned width, unsigned height) {
    ZGLFunctionTable &gl = *glFunctionTable();
    width_ = height_ = 0;
    {
        const BindingScope scope(gl);
        if (framebuffer_) {
            gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
        } else {
            gl.glGenFramebuffersEXT(1, &framebuffer_);
            gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
            color_ = attach(gl, GL_COLOR_ATTACHMENT0_EXT);
            depth_ = attach(gl, GL_DEPTH_ATTACHMENT_EXT);
        }
        allocate(gl, color_, GL_RGBA8, width, height);
        allocate(gl, depth_, GL_DEPTH_COMPONENT32F, width, height);
        if (gl.glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT) {
            clear();
            width_ = width;
            height_ = height;
            return {};
        }
    }
    drop();
    return {ZStatus::kFailure, "the OpenGL driver has no buffers of this size"};
}

void DrawBuffers::drop() {
    if (!framebuffer_)
        return;
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glDeleteFramebuffersEXT(1, &framebuffer_);
    gl.glDeleteRenderbuffersEXT(1, &color_);
    gl.glDeleteRenderbuffersEXT(1, &depth_);
    width_ = height_ = 0;
    framebuffer_ = color_ = depth_ = 0;
}

void DrawBuffers::bind() const {
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    gl.glDrawBuffer(GL_COLOR_ATTACHMENT0_EXT); // scripts may have chosen none
    gl.glReadBuffer(GL_COLOR_ATTACHMENT0_EXT);
    gl.glViewport(0, 0, static_cast<int>(width_), static_cast<int>(height_));
}

void DrawBuffers::clear() const {
    const GlPrivateFramebuffer scope({GL_RENDERBUFFER_EXT, color_}, {GL_RENDERBUFFER_EXT, depth_});
    glFunctionTable()->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

ZStatus DrawBuffers::read(ZImage &image) const {
    if (const ZStatus status = image.create(width_, height_); status.error())
        return status;
    const GlPrivateFramebuffer scope({GL_RENDERBUFFER_EXT, color_}, {});
    glFunctionTable()->glReadPixels(0, 0, static_cast<int>(width_), static_cast<int>(height_),
                                    GL_RGBA, GL_UNSIGNED_BYTE, image.pixels());
    return scope.check();
}

} // namespace devhost
