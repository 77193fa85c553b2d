// SPDX-License-Identifier: MIT
#include "devhost/gl/DrawBuffers.h"

#include "devhost/gl/GlPrivateFramebuffer.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>

namespace devhost {
namespace {

/// Puts the framebuffer in use back.
class BindingScope {
  public:
    explicit BindingScope(ZGLFunctionTable &gl) : gl_(gl) {
        gl_.glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &framebuffer_);
    }
    ~BindingScope() {
        gl_.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<ZGLuint>(framebuffer_));
    }
    BindingScope(const BindingScope &) = delete;

  private:
    ZGLFunctionTable &gl_;
    ZGLint framebuffer_ = 0;
};

} // namespace

ZStatus DrawBuffers::make(unsigned width, unsigned height) {
    ZGLFunctionTable &gl = *glFunctionTable();
    if (std::max(width, height) <= static_cast<unsigned>(gl.maxTextureSize())) {
        const BindingScope scope(gl);
        if (framebuffer_)
            textures_.drop();
        else
            gl.glGenFramebuffersEXT(1, &framebuffer_);
        gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
        textures_.make(width, height, GL_DEPTH_COMPONENT32F);
        textures_.attach();
        if (gl.glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT) {
            clear();
            return {};
        }
    }
    drop();
    return {ZStatus::kFailure, "the OpenGL driver has no buffers of this size"};
}

void DrawBuffers::drop() {
    if (!framebuffer_)
        return;
    glFunctionTable()->glDeleteFramebuffersEXT(1, &framebuffer_);
    textures_.drop();
    framebuffer_ = 0;
}

void DrawBuffers::bind() const {
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    gl.glDrawBuffer(GL_COLOR_ATTACHMENT0_EXT); // scripts may have chosen none
    gl.glReadBuffer(GL_COLOR_ATTACHMENT0_EXT);
    gl.glViewport(0, 0, textures_.width, textures_.height);
}

void DrawBuffers::clear() const {
    const GlPrivateFramebuffer scope({GL_TEXTURE_2D, textures_.color},
                                     {GL_TEXTURE_2D, textures_.depth});
    glFunctionTable()->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

ZStatus DrawBuffers::read(ZImage &image) const {
    if (const ZStatus status = image.create(width(), height()); status.error())
        return status;
    const GlPrivateFramebuffer scope({GL_TEXTURE_2D, textures_.color}, {});
    glFunctionTable()->glReadPixels(0, 0, textures_.width, textures_.height, GL_RGBA,
                                    GL_UNSIGNED_BYTE, image.pixels());
    return GlPrivateFramebuffer::check();
}

} // namespace devhost
