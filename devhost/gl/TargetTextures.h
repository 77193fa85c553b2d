// SPDX-License-Identifier: MIT
#pragma once

// The colours and depths that OpenGL draws into off screen, and their way from and to memory.

#include "devhost/session/Viewport.h"
#include "host/core/ZMatrix.h"

namespace devhost {

/// Two textures of a size, which are not deleted on their own.
struct TargetTextures {
    int width = 0, height = 0;
    unsigned color = 0, depth = 0;

    /// Makes them without contents; fails silently where the driver has none of the size, which the
    /// framebuffer tells that they are attached to.
    void make(unsigned theWidth, unsigned theHeight, int depthFormat);
    void drop();
    /// Attaches them to the bound framebuffer.
    void attach() const;

    /// Copies them to an image of their size. The projection turns OpenGL's depths to distances.
    void read(ViewportImage &image, const ZMatrix &projection) const;
    void write(const ViewportImage &image, const ZMatrix &projection) const;
};

} // namespace devhost
