#include "devhost/gl/DrawBuffers.h"

#include "devhost/gl/GlContext.h"
#include "devhost/gl/GlScope.h"

#include <GL/gl.h>
#include <GL/glext.h>

namespace devhost {
namespace {

/// Makes a buffer and attaches it to the bound framebuffer.
unsigned attach(ZGLFunctionTable &gl, GLenum attachment) {
    unsigned buffer = 0;
    gl.glGenRenderbuffersEXT(1, &buffer);
    gl.glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, buffer);
    gl.glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, attachment, GL_RENDERBUFFER_EXT, buffer);
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
        const GlBufferScope scope(gl);
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
    gl.glViewport(0, 0, static_cast<int>(width_), static_cast<int>(height_));
}

void DrawBuffers::clear() const {
    ZGLFunctionTable &gl = *glFunctionTable();
    const GlBufferScope scope(gl);
    gl.glPushAttrib(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_SCISSOR_BIT);
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    gl.glDisable(GL_SCISSOR_TEST);
    gl.glColorMask(true, true, true, true);
    gl.glDepthMask(true);
    gl.glClearColor(0, 0, 0, 0);
    gl.glClearDepth(1);
    gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    gl.glPopAttrib();
}

ZStatus DrawBuffers::read(ZImage &image) const {
    if (const ZStatus status = image.create(width_, height_); status.error())
        return status;
    ZGLFunctionTable &gl = *glFunctionTable();
    const GlBufferScope scope(gl);
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    const GlPixelScope pixels(gl);
    gl.glReadPixels(0, 0, static_cast<int>(width_), static_cast<int>(height_), GL_RGBA,
                    GL_UNSIGNED_BYTE, image.pixels());
    return {};
}

} // namespace devhost
