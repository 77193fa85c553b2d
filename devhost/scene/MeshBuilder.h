// SPDX-License-Identifier: MIT
#pragma once

// Turns what scene files hold (separate pools of positions, normals and texture coordinates) into
// meshes with one set of vertices.

#include "devhost/scene/SceneGraph.h"

#include <memory>
#include <span>
#include <vector>

namespace devhost {

/// Flat arrays that all meshes of a file share.
struct MeshPools {
    std::vector<float> positions, normals, uvs;
    std::vector<float> colors; // empty, or three for each position
};

/// A polygon's corner as indices into the pools; -1 for what it does not have.
struct Corner {
    int position = -1, normal = -1, uv = -1;
};

/// A polygon of three corners or more.
struct Face {
    /// What smooths corners that have no normals: the angle to the faces around them, nothing, or
    /// the number that the faces share.
    enum Smoothing { kByAngle = -1, kFlat = 0 };
    unsigned firstCorner = 0, cornerCount = 0;
    NodeId material = kNoNode;
    int smoothing = kByAngle;
};

/// Welds equal corners into vertices and cuts the faces into triangles. Corners without a normal
/// get one that is smooth across the edges of blunt angles and keeps the sharp ones. Indices have
/// to be in range.
class MeshBuilder {
  public:
    explicit MeshBuilder(const MeshPools &pools);

    std::shared_ptr<const Mesh> build(std::span<const Corner> corners, std::span<const Face> faces);

  private:
    const MeshPools &pools_;
    /// For each position the number that it has in the current mesh, if any; cleared behind each.
    std::vector<int> points_;
};

} // namespace devhost
