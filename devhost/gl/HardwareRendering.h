// SPDX-License-Identifier: MIT
#pragma once

// Drawing with the hardware renderer.

#include "devhost/session/Viewport.h"
#include "host/base/HostApi.h"
#include "host/core/ZImage.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZStatus.h"

#include <array>
#include <functional>
#include <vector>

namespace devhost {

/// What is seen in a hardware frame.
struct HardwareView {
    /// A place in a pixel, each coordinate 0 to 1.
    using Place = std::array<double, 2>;

    ZMatrix view, projection;
    /// One exposure is drawn through each of these places of the pixels.
    std::vector<Place> places{{0.5, 0.5}};
    /// Draws what the host draws, as seen through a place, where nothing nearer is in the image.
    std::function<void(ViewportImage &, const Place &)> drawMeshes;
};

/// Draws a frame of the render session's size. The enabled draw procedures of the four locations
/// are executed at their places, with OpenGL's matrices set to those of the view. Each exposure
/// begins with what the procedures before all of them have drawn; the frame becomes the mean of
/// the exposures, with the nearest depths of all, before the procedures behind them draw into it.
/// Without OpenGL everything is called as well, with no buffers for procedures to draw in. Fails
/// with kInvalidParameter when there are no exposures or no size, and with kFailure when a frame is
/// being drawn already, another thread has OpenGL, that has no buffers of the size, or the session
/// was cancelled.
OPENQUIL_API ZStatus drawHardwareFrame(const HardwareView &view = {},
                                       ViewportImage *result = nullptr);

/// Replaces the image by the last frame that was drawn. Fails with kFailure when there is none.
OPENQUIL_API ZStatus readHardwareFrame(ZImage &image);

/// Deletes the hardware renderer's device, of which the registered device callbacks are told. The
/// next use makes a new one.
OPENQUIL_API void closeHardwareDevice();

} // namespace devhost
