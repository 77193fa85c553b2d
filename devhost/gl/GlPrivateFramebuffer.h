// SPDX-License-Identifier: MIT
#pragma once

// Buffers of the scripts' context as the host reads, clears and fills them: in its own context.

#include "devhost/gl/GlContext.h"
#include "host/render/ZGLFunctionTable.h"

namespace devhost {

/// A renderbuffer, or an image of a texture; without a kind, none.
struct GlImage {
    ZGLenum kind = 0;
    ZGLuint name = 0;
    ZGLint level = 0;
    ZGLint slice = 0; // of a texture with three dimensions
};

/// Attaches an image to the bound framebuffer.
void attachImage(ZGLFunctionTable &gl, ZGLenum attachment, const GlImage &image);

/// What the current context draws colours into; without a name where there is none. A texture's
/// kind is a face of a cube or 0, as OpenGL does not tell it: it is to be found by trial.
GlImage currentColorImage(ZGLFunctionTable &gl);

/// Within it, what is drawn goes to the images, and nothing that scripts have set shows in it.
class GlPrivateFramebuffer {
  public:
    /// A colour image without a kind is a texture whose kind is found here.
    GlPrivateFramebuffer(const GlImage &color, const GlImage &depth);
    ~GlPrivateFramebuffer();
    GlPrivateFramebuffer(const GlPrivateFramebuffer &) = delete;

    /// Whether something can be drawn.
    static bool isComplete();
    static ZStatus check() { return GlPrivateScope::check(); }

  private:
    GlPrivateScope scope_;
    ZGLuint framebuffer_ = 0;
};

} // namespace devhost
