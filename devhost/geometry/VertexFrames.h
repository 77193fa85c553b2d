// SPDX-License-Identifier: MIT
#pragma once

// Tangents and binormals of a mesh, and numbers for the points that its vertices lie at.

#include "devhost/scene/SceneGraph.h"

#include <vector>

namespace devhost {

/// Unit vectors in the surface, three values for each vertex, and which way round they stand.
struct VertexFrames {
    std::vector<float> tangents;  // along growing u
    std::vector<float> binormals; // along growing v, at right angles to normal and tangent
    std::vector<float> hands;     // 1, or -1 where the texture is mirrored
};

/// Along one of the mesh's sets of texture coordinates. Where they do not tell a direction, any
/// does.
VertexFrames makeVertexFrames(const Mesh &mesh, const std::vector<float> &uvs);

/// Along the tangents that the mesh has.
VertexFrames givenVertexFrames(const Mesh &mesh);

/// For each vertex the number of its point; points are numbered as they come.
std::vector<unsigned> numberPoints(const Mesh &mesh);

} // namespace devhost
