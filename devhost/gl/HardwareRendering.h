// SPDX-License-Identifier: MIT
#pragma once

// Drawing with the hardware renderer.

#include "host/base/HostApi.h"
#include "host/core/ZImage.h"
#include "host/core/ZStatus.h"

#include <functional>

namespace devhost {

/// Draws a frame of the render session's size in so many exposures. The enabled draw procedures of
/// the four locations are executed at their places; `expose` draws what the host draws, once for
/// each exposure counted from 0. Without OpenGL everything is called as well, with no buffers to
/// draw in. Fails with kInvalidParameter when there are no exposures or no size, and with kFailure
/// when a frame is being drawn already, another thread has OpenGL, or that has no buffers of the
/// size.
OPENQUIL_API ZStatus drawHardwareFrame(unsigned exposures = 1,
                                       const std::function<void(unsigned)> &expose = {});

/// Replaces the image by the last frame that was drawn. Fails with kFailure when there is none.
OPENQUIL_API ZStatus readHardwareFrame(ZImage &image);

/// Deletes the hardware renderer's device, of which the registered device callbacks are told. The
/// next use makes a new one.
OPENQUIL_API void closeHardwareDevice();

} // namespace devhost
