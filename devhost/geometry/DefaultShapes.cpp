// SPDX-License-Identifier: MIT
#include "devhost/geometry/DefaultShapes.h"

#include "host/core/ZFloatVector.h"

#include <cmath>
#include <numbers>

namespace devhost {

namespace {

using Vector = ZFloatVector;

void addVertex(Mesh &mesh, const Vector &position, const Vector &normal, float u, float v) {
    mesh.positions.insert(mesh.positions.end(), {position.x, position.y, position.z});
    mesh.normals.insert(mesh.normals.end(), {normal.x, normal.y, normal.z});
    mesh.uvs.insert(mesh.uvs.end(), {u, v});
}

void addTriangle(Mesh &mesh, unsigned a, unsigned b, unsigned c) {
    mesh.triangles.insert(mesh.triangles.end(), {a, b, c});
    mesh.materials.push_back(kNoNode);
}

/// A square around `normal`, with u growing to the right.
void addSquare(Mesh &mesh, const Vector &centre, const Vector &normal, const Vector &right) {
    const Vector up = normal ^ right;
    const unsigned first = mesh.vertexCount();
    for (int v = 0; v < 2; ++v)
        for (int u = 0; u < 2; ++u)
            addVertex(mesh, centre + right * float(2 * u - 1) + up * float(2 * v - 1), normal,
                      float(u), float(v));
    addTriangle(mesh, first, first + 1, first + 3);
    addTriangle(mesh, first, first + 3, first + 2);
}

std::shared_ptr<const Mesh> makePlane() {
    auto mesh = std::make_shared<Mesh>();
    addSquare(*mesh, Vector(0, 0, 0), Vector(0, 0, 1), Vector(1, 0, 0));
    return mesh;
}

std::shared_ptr<const Mesh> makeCube() {
    auto mesh = std::make_shared<Mesh>();
    for (const float side : {1.0f, -1.0f}) {
        addSquare(*mesh, Vector(0, 0, side), Vector(0, 0, side), Vector(side, 0, 0));
        addSquare(*mesh, Vector(side, 0, 0), Vector(side, 0, 0), Vector(0, 0, -side));
        addSquare(*mesh, Vector(0, side, 0), Vector(0, side, 0), Vector(1, 0, 0));
    }
    return mesh;
}

} // namespace

Mesh makeSphere(unsigned around, unsigned up) {
    Mesh mesh;
    for (unsigned row = 0; row <= up; ++row)
        for (unsigned column = 0; column <= around; ++column) {
            const float u = float(column) / float(around), v = float(row) / float(up);
            // The poles and the seam are told exactly, so that their vertices share a point.
            const bool isPole = row == 0 || row == up;
            const float height =
                isPole ? (row ? 1.0f : -1.0f) : -std::cos(v * std::numbers::pi_v<float>);
            const float width = isPole ? 0.0f : std::sin(v * std::numbers::pi_v<float>);
            const float angle =
                float(column % around) / float(around) * 2 * std::numbers::pi_v<float>;
            const Vector point(width * std::sin(angle), height, width * std::cos(angle));
            addVertex(mesh, point, point, u, v);
        }
    for (unsigned row = 0; row < up; ++row)
        for (unsigned column = 0; column < around; ++column) {
            const unsigned low = row * (around + 1) + column, high = low + around + 1;
            if (row > 0)
                addTriangle(mesh, low, low + 1, high + 1);
            if (row + 1 < up)
                addTriangle(mesh, low, high + 1, high);
        }
    return mesh;
}

// Never destroyed: handles to the shapes may outlive everything else.
std::shared_ptr<const Mesh> defaultSphere() {
    static const auto *const mesh =
        new std::shared_ptr<const Mesh>(std::make_shared<Mesh>(makeSphere(32, 16)));
    return *mesh;
}
std::shared_ptr<const Mesh> defaultPlane() {
    static const auto *const mesh = new std::shared_ptr<const Mesh>(makePlane());
    return *mesh;
}
std::shared_ptr<const Mesh> defaultCube() {
    static const auto *const mesh = new std::shared_ptr<const Mesh>(makeCube());
    return *mesh;
}

} // namespace devhost
