// SPDX-License-Identifier: MIT
#pragma once

// An image that OpenGL draws into off screen, and its way from and to memory.

#include "devhost/session/Viewport.h"
#include "host/core/ZMatrix.h"

#include <memory>

namespace devhost {

/// The version of OpenGL that viewports are drawn with, made current in the calling thread; 0 where
/// there is none, or none that draws off screen.
float glTargetVersion();

class GlTarget {
  public:
    /// Null where OpenGL cannot make a target of this size.
    static std::unique_ptr<GlTarget> make(unsigned width, unsigned height);
    ~GlTarget();
    GlTarget(const GlTarget &) = delete;

    /// Makes OpenGL draw into all of the target.
    void bind();
    /// Copies the target to an image of its size. The projection turns OpenGL's depths to
    /// distances.
    void read(ViewportImage &image, const ZMatrix &projection);
    void write(const ViewportImage &image, const ZMatrix &projection);

  private:
    GlTarget(unsigned width, unsigned height);

    int width_, height_;
    int previous_ = 0; // framebuffer before
    unsigned framebuffer_ = 0, color_ = 0, depth_ = 0;
};

} // namespace devhost
