// SPDX-License-Identifier: MIT
#pragma once

// What a viewport draws with: the matrices and the size of the picture.

#include "host/base/HostApi.h"
#include "host/core/ZMatrix.h"

namespace ZHWRender {

/// What a viewport draws with: the matrices of the object that is being drawn, and the size of the
/// picture in pixels.
class OPENQUIL_API ZDrawContext {
  public:
    /// A context with these matrices and this size.
    ZDrawContext(ZMatrix const &world, ZMatrix const &view, ZMatrix const &projection,
                 unsigned int width, unsigned int height);

    /// From the object's space to world space.
    ZMatrix const &worldMatrix() const;
    /// From world space to that of the camera.
    ZMatrix const &viewMatrix() const;
    /// From the camera's space to the picture's.
    ZMatrix const &projectionMatrix() const;
    /// The picture's width in pixels.
    unsigned int width() const;
    /// The picture's height in pixels.
    unsigned int height() const;

  private:
    ZMatrix world_, view_, projection_;
    unsigned int width_, height_;
};

} // namespace ZHWRender
