#pragma once

// OpenGL state that is put back at the end of a scope: the host must not disturb what scripts and
// plug-ins have set.

#include "host/render/ZGLFunctionTable.h"

#include <GL/gl.h>
#include <GL/glext.h>

namespace devhost {

/// Pixels travel to and from memory without gaps.
class GlPixelScope {
  public:
    explicit GlPixelScope(ZGLFunctionTable &gl) : gl_(gl) {
        gl_.glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
        for (const ZGLenum name : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS,
                                   GL_PACK_SWAP_BYTES, GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS,
                                   GL_UNPACK_SKIP_PIXELS, GL_UNPACK_SWAP_BYTES})
            gl_.glPixelStorei(name, 0);
        gl_.glPixelStorei(GL_PACK_ALIGNMENT, 4);
        gl_.glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    }
    ~GlPixelScope() { gl_.glPopClientAttrib(); }
    GlPixelScope(const GlPixelScope &) = delete;

  private:
    ZGLFunctionTable &gl_;
};

/// The two-dimensional texture of the current unit.
class GlTextureScope {
  public:
    explicit GlTextureScope(ZGLFunctionTable &gl) : gl_(gl) {
        gl_.glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture_);
    }
    ~GlTextureScope() { gl_.glBindTexture(GL_TEXTURE_2D, static_cast<ZGLuint>(texture_)); }
    GlTextureScope(const GlTextureScope &) = delete;

  private:
    ZGLFunctionTable &gl_;
    ZGLint texture_ = 0;
};

/// The framebuffer and the renderbuffer.
class GlBufferScope {
  public:
    explicit GlBufferScope(ZGLFunctionTable &gl) : gl_(gl) {
        gl_.glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &framebuffer_);
        gl_.glGetIntegerv(GL_RENDERBUFFER_BINDING_EXT, &renderbuffer_);
    }
    ~GlBufferScope() {
        gl_.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<ZGLuint>(framebuffer_));
        gl_.glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, static_cast<ZGLuint>(renderbuffer_));
    }
    GlBufferScope(const GlBufferScope &) = delete;

  private:
    ZGLFunctionTable &gl_;
    ZGLint framebuffer_ = 0, renderbuffer_ = 0;
};

} // namespace devhost
