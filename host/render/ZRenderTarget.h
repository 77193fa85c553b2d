// SPDX-License-Identifier: MIT
#pragma once

// The image that a viewport renderer draws into.

#include "host/base/HostApi.h"

class ZImage;
class ZStatus;

/// The image that a viewport renderer draws into. It belongs to the host and exists during the
/// drawing only.
class OPENQUIL_API ZRenderTarget {
  public:
    ZRenderTarget(const ZRenderTarget &) = delete;
    /// The width in pixels.
    unsigned int width() const;
    /// The height in pixels.
    unsigned int height() const;
    /// Makes OpenGL draw into the target. Fails with kFailure when the drawing is not done with
    /// OpenGL.
    ZStatus makeTargetCurrent() const;
    /// Puts an image into the target, its lower left pixel at x and y; what lies outside is cut
    /// off. Images of fewer than four channels are opaque, those of fewer than three grey; two are
    /// grey and opacity. With writeDepth the image's depth map (distances along the view
    /// direction) goes along, else the depths stay. Fails with kInvalidParameter when the image is
    /// empty, or is to write depths and has none of its own size.
    ZStatus writeColorBuffer(ZImage const &image, short x = 0, short y = 0,
                             bool writeDepth = false) const;

    struct Request; // the host's own
    /// The target of a drawing of the host's.
    explicit ZRenderTarget(Request &request);

  private:
    Request &request_;
};
