// SPDX-License-Identifier: MIT
#pragma once

// Meshes that change their shape: mixed with other shapes (morph targets), then bent by joints
// (skins).

#include "devhost/scene/SceneGraph.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace devhost {

/// A mesh at rest and what can be done to it; shared by all nodes that show it.
struct Deformable {
    /// What a whole weight adds to the vertices; each empty, or as long as the mesh's own array.
    struct Shape {
        std::vector<float> positions, normals;
        std::vector<float> tangents; // three numbers: the hand stays
    };
    std::shared_ptr<const Mesh> rest;
    std::vector<Shape> shapes;
    /// How many joints hold a vertex, 0 where none do; their numbers and shares, one vertex's after
    /// the other's.
    unsigned influences = 0;
    std::vector<uint16_t> joints;
    std::vector<float> shares;
    /// The triangles whose normals are those of the flat triangle, by their number; their vertices
    /// belong to no other triangle.
    std::vector<unsigned> flatTriangles;
};

/// The mesh with the shapes added by their weights, and each vertex carried by its joints' matrices
/// where there are some.
std::shared_ptr<const Mesh> deformed(const Deformable &what, const std::vector<double> &weights,
                                     const std::vector<ZMatrix> &joints);

/// Gives the three vertices of a triangle the triangle's normal.
void flattenTriangle(Mesh &mesh, unsigned triangle);

} // namespace devhost
