#pragma once

// Turns what scene files hold (separate pools of positions, normals and texture coordinates) into
// meshes with one set of vertices.

#include "devhost/scene/SceneGraph.h"

#include <array>
#include <string>
#include <vector>

namespace devhost {

/// A triangle's corner as indices into the pools; -1 for what it does not have.
struct Corner {
    int position = -1, normal = -1, uv = -1;
};

struct MeshSource {
    std::vector<float> positions, normals, uvs;
    std::vector<Corner> corners;   // three for each triangle
    std::vector<NodeId> materials; // one for each triangle
};

/// Welds equal corners into vertices. Corners without a normal get one that is smooth across the
/// edges of blunt angles and keeps the sharp ones. Returns what is wrong with the source, or an
/// empty text.
std::string buildMesh(MeshSource source, Mesh &mesh);

} // namespace devhost
