// SPDX-License-Identifier: MIT
#pragma once

// A colour and a depth buffer to draw in.

#include "devhost/gl/TargetTextures.h"
#include "host/core/ZImage.h"
#include "host/core/ZStatus.h"

namespace devhost {

/// Buffers on the host's OpenGL context, which must be current. They have no size at first.
class DrawBuffers {
  public:
    DrawBuffers() = default;
    DrawBuffers(const DrawBuffers &) = delete;

    /// Makes clear buffers of the size. Where the old ones are bound, the new ones are. Fails,
    /// without buffers, when the driver has none of the size.
    ZStatus make(unsigned width, unsigned height);
    void drop();

    unsigned width() const { return static_cast<unsigned>(textures_.width); }
    unsigned height() const { return static_cast<unsigned>(textures_.height); }
    bool exist() const { return framebuffer_; }
    const TargetTextures &textures() const { return textures_; }

    /// Directs drawing to the whole of the buffers.
    void bind() const;
    /// Clears colours and depths.
    void clear() const;
    /// Replaces the image by the colours, 4 channels of bytes; row 0 is at the bottom.
    ZStatus read(ZImage &image) const;

  private:
    unsigned framebuffer_ = 0;
    TargetTextures textures_;
};

} // namespace devhost
