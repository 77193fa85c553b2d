// SPDX-License-Identifier: MIT
#pragma once

// What the host itself draws where renderers of plug-ins draw, too: the meshes, lit, without
// shadows.

#include "devhost/session/Viewport.h"

namespace devhost {

struct ViewRays;

/// Draws the meshes where nothing nearer is in the image, as they are seen through a place of each
/// pixel, whose coordinates are 0 to 1.
void drawMeshes(ViewportImage &image, const ViewRays &rays, double right = 0.5, double up = 0.5);

} // namespace devhost
