// SPDX-License-Identifier: MIT
#pragma once

// The shapes that the host has ready for previews: meshes around the origin, from -1 to 1.

#include "devhost/scene/SceneGraph.h"

namespace devhost {

/// A sphere of flat facets with smooth normals. The texture coordinates, 0 to 1, run round it from
/// the +Z side and up from the lower pole; no triangle has a material.
Mesh makeSphere(unsigned around, unsigned up);

/// Made once, and kept; all have normals and texture coordinates from 0 to 1.
std::shared_ptr<const Mesh> defaultSphere();
std::shared_ptr<const Mesh> defaultPlane();
std::shared_ptr<const Mesh> defaultCube();

} // namespace devhost
