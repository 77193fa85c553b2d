#pragma once

// The host's own renderer: one colour and one depth for every pixel of the scene, traced with rays,
// with the registered render callbacks called at their three points.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"
#include "host/render/ZRenderData.h"

#include <vector>

namespace devhost {

struct Frame {
    /// The view and the sizes; its pointers lead to the buffers below.
    ZRenderData data;
    std::vector<unsigned char> rgba;
    std::vector<float> depth;
};

/// Renders the scene as the render session says: camera, size and threads. Callbacks run on the
/// calling thread, which must not have the interpreter lock. Fails with kNotFound when the scene
/// has no camera, and with kFailure when the session was cancelled.
OPENQUIL_API ZStatus renderFrame(Frame &frame);

} // namespace devhost
