// SPDX-License-Identifier: MIT
#pragma once

// An image that OpenGL draws a viewport into off screen.

#include "devhost/gl/TargetTextures.h"

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
    /// What is drawn into.
    const TargetTextures &textures() const { return textures_; }

  private:
    GlTarget(unsigned width, unsigned height);

    int previous_ = 0; // framebuffer before
    unsigned framebuffer_ = 0;
    TargetTextures textures_;
};

} // namespace devhost
