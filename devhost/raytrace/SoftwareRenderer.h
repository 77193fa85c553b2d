// SPDX-License-Identifier: MIT
#pragma once

// The host's own renderer: the colour, as light, and the depth of every pixel of the scene, traced
// with rays, with the registered render callbacks called at their three points.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"
#include "host/render/ZRenderData.h"

#include <string>
#include <vector>

namespace devhost {

/// The pixels of the rendered region, row by row from the bottom.
struct Frame {
    /// The view, the size of the whole image and the region. It has no buffers: callbacks get a
    /// record of their own.
    ZRenderData data;
    /// Four values each: red, green and blue light, multiplied by the opacity, and the opacity.
    std::vector<float> pixels;
    /// The distance along the view direction at the pixel's centre, infinite where nothing is.
    /// Empty when nobody asked for depths.
    std::vector<float> depth;
    /// What made it, for people.
    std::string renderer = "software";
};

struct CameraView;

/// Fills in the frame's data, for the session's region. Fails with kInvalidParameter when that is
/// not inside the image.
ZStatus describeFrame(const CameraView &view, Frame &frame);

/// Renders the scene as the render session says: camera, size, region, samples, exposure and
/// threads. Callbacks run on the calling thread, which must not have the interpreter lock. Fails
/// with kNotFound when the scene has no camera, and with kFailure when the session was cancelled or
/// a frame is being rendered already.
OPENQUIL_API ZStatus renderFrame(Frame &frame, bool withDepth = true);

} // namespace devhost
