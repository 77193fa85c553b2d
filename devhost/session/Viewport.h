// SPDX-License-Identifier: MIT
#pragma once

// Viewports: images of the scene as a registered viewport renderer draws them.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"

#include <string>
#include <vector>

class ZViewportRenderer;

namespace devhost {

/// Rows from the bottom up: 4 bytes for each pixel, and the distance along the view direction.
struct ViewportImage {
    unsigned width = 0, height = 0;
    /// sRGB codes and the opacity, which the colours are not multiplied by.
    std::vector<unsigned char> rgba;
    /// Infinite where nothing is.
    std::vector<float> depth;

    /// An image without anything.
    OPENQUIL_API static ViewportImage clear(unsigned width, unsigned height);
};

/// The names of the registered renderers, in the order of their registration.
OPENQUIL_API std::vector<std::string> viewportRenderers();

/// The registered renderer of a name; null for none.
OPENQUIL_API ZViewportRenderer *findViewportRenderer(const std::string &name);

/// Draws the scene through the session's camera with a registered renderer, as much of it as the
/// renderer takes over, into an image of the size. A renderer that takes nothing over is a notice.
/// Fails with kNotFound when there is no such renderer or no camera, with kInvalidParameter when
/// the size is not 1 to 16384 pixels, with kFailure when the renderer supports no rendering
/// interface of this host, else as the renderer does.
OPENQUIL_API ZStatus renderViewport(const std::string &name, unsigned width, unsigned height,
                                    double pixelAspectRatio, ViewportImage &image);

} // namespace devhost
