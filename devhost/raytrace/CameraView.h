// SPDX-License-Identifier: MIT
#pragma once

// What is seen through a camera of the scene in an image of some size.

#include "devhost/raytrace/RayTracer.h"
#include "devhost/raytrace/ViewFrame.h"
#include "devhost/scene/SceneGraph.h"
#include "host/core/ZStatus.h"

#include <optional>

namespace devhost {

struct OPENQUIL_API CameraView {
    NodeId camera;
    ViewRays rays;
    /// Width over height of what the image shows.
    double aspect;
    double nearClip, farClip;

    /// What lies between the clipping planes, in units of depth; cameras without sensible planes
    /// see everything in front of them.
    RaySpan clip() const;
    /// To clip space, where the visible part of x/w, y/w and z/w is -1 to 1.
    ZMatrix projection() const;
};

/// Looks through the camera of the render session, or else the scene's first. Fails with kNotFound
/// when the scene has no camera, and with kInvalidParameter when the size is not 1 to 16384.
OPENQUIL_API ZStatus findCameraView(unsigned width, unsigned height, double pixelAspectRatio,
                                    std::optional<CameraView> &view);

} // namespace devhost
