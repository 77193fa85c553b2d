// SPDX-License-Identifier: MIT
#pragma once

// Frames by the renderer of the session: the software renderer, the hardware renderer, or a
// registered viewport renderer.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"

#include <string>

namespace devhost {

struct Frame;

/// True for "software", "hardware", and "viewport:" with a name.
OPENQUIL_API bool isRendererName(const std::string &name);

/// Makes a renderer the session's. Fails with kInvalidParameter when that is no name of one; a
/// viewport renderer need not be registered before a frame is rendered. Where there is no OpenGL
/// for the hardware renderer, that is a notice.
OPENQUIL_API ZStatus chooseRenderer(const std::string &name);

/// Renders the session's frame with the session's renderer, as renderFrame, drawHardwareFrame and
/// renderViewport do. Only the software renderer calls the render callbacks. A hardware frame has
/// as many exposures as the session has samples; a viewport is drawn once.
OPENQUIL_API ZStatus renderSessionFrame(Frame &frame, bool withDepth = true);

} // namespace devhost
