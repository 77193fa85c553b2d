// SPDX-License-Identifier: MIT
#pragma once

// Buffers of the scripts' context as the host reads, clears and fills them: in its own context.

#include "devhost/gl/GlContext.h"
#include "host/render/ZGLFunctionTable.h"

namespace devhost {

/// A renderbuffer or a two-dimensional texture; without a kind, none.
struct GlImage {
    ZGLenum kind = 0;
    ZGLuint name = 0;
    ZGLint level = 0;
};

/// Attaches an image to the bound framebuffer.
void attachImage(ZGLFunctionTable &gl, ZGLenum attachment, const GlImage &image);

/// What the current context draws colours into; none where that is no such image.
GlImage currentColorImage(ZGLFunctionTable &gl);

/// Within it, what is drawn goes to the images, and nothing that scripts have set shows in it.
class GlPrivateFramebuffer {
  public:
    GlPrivateFramebuffer(const GlImage &color, const GlImage &depth);
    ~GlPrivateFramebuffer();
    GlPrivateFramebuffer(const GlPrivateFramebuffer &) = delete;

    static ZStatus check() { return GlPrivateScope::check(); }

  private:
    GlPrivateScope scope_;
    ZGLuint framebuffer_ = 0;
};

} // namespace devhost
