// SPDX-License-Identifier: MIT
#include "devhost/scene/Deformation.h"

#include "host/core/ZFloatVector.h"

#include <cmath>

namespace devhost {

namespace {

ZFloatVector vectorAt(const std::vector<float> &flat, size_t index, unsigned width = 3) {
    const float *p = &flat[index * width];
    return ZFloatVector(p[0], p[1], p[2]);
}

void put(std::vector<float> &flat, size_t index, const ZFloatVector &value, unsigned width = 3) {
    for (unsigned k = 0; k < 3; ++k)
        flat[index * width + k] = value[k];
}

/// The vector at length one; the other where it has none.
ZFloatVector unit(const ZFloatVector &vector, const ZFloatVector &otherwise) {
    const ZFloatVector result = vector.normal();
    return result.length() > 0.5f ? result : otherwise;
}

void addShape(Mesh &mesh, const Deformable::Shape &shape, float weight) {
    const auto add = [weight](std::vector<float> &to, unsigned width,
                              const std::vector<float> &difference) {
        for (size_t at = 0; at < difference.size(); ++at)
            to[at / 3 * width + at % 3] += difference[at] * weight;
    };
    add(mesh.positions, 3, shape.positions);
    add(mesh.normals, 3, shape.normals);
    if (!mesh.tangents.empty())
        add(mesh.tangents, 4, shape.tangents);
}

/// The first three columns of a matrix that carries points.
struct Carrier {
    ZFloatVector rows[4];

    void add(const ZMatrix &matrix, float share) {
        for (int row = 0; row < 4; ++row)
            rows[row] +=
                ZFloatVector(float(matrix[row][0]), float(matrix[row][1]), float(matrix[row][2])) *
                share;
    }
    ZFloatVector direction(const ZFloatVector &v) const {
        return rows[0] * v.x + rows[1] * v.y + rows[2] * v.z;
    }
    ZFloatVector point(const ZFloatVector &v) const { return direction(v) + rows[3]; }
    /// By the transposed inverse, up to its length.
    ZFloatVector normal(const ZFloatVector &v) const {
        const ZFloatVector across = rows[1] ^ rows[2];
        const ZFloatVector result =
            across * v.x + (rows[2] ^ rows[0]) * v.y + (rows[0] ^ rows[1]) * v.z;
        return rows[0] * across < 0 ? -result : result;
    }
};

void carryVertices(Mesh &mesh, const Deformable &what, const std::vector<ZMatrix> &joints) {
    for (size_t vertex = 0; vertex < mesh.vertexCount(); ++vertex) {
        Carrier carrier;
        for (size_t at = vertex * what.influences; at < (vertex + 1) * what.influences; ++at)
            if (what.shares[at] > 0)
                carrier.add(joints[what.joints[at]], what.shares[at]);
        put(mesh.positions, vertex, carrier.point(vectorAt(mesh.positions, vertex)));
        put(mesh.normals, vertex, carrier.normal(vectorAt(mesh.normals, vertex)));
        if (!mesh.tangents.empty())
            put(mesh.tangents, vertex, carrier.direction(vectorAt(mesh.tangents, vertex, 4)), 4);
    }
}

} // namespace

void flattenTriangle(Mesh &mesh, unsigned triangle) {
    const unsigned *corners = &mesh.triangles[size_t(triangle) * 3];
    const ZFloatVector origin = vectorAt(mesh.positions, corners[0]);
    const ZFloatVector normal = unit((vectorAt(mesh.positions, corners[1]) - origin) ^
                                         (vectorAt(mesh.positions, corners[2]) - origin),
                                     ZFloatVector(0, 1, 0)); // of a triangle without area
    for (int k = 0; k < 3; ++k)
        put(mesh.normals, corners[k], normal);
}

std::shared_ptr<const Mesh> deformed(const Deformable &what, const std::vector<double> &weights,
                                     const std::vector<ZMatrix> &joints) {
    auto mesh = std::make_shared<Mesh>(*what.rest);
    for (size_t shape = 0; shape < what.shapes.size(); ++shape)
        if (weights[shape] != 0)
            addShape(*mesh, what.shapes[shape], float(weights[shape]));
    if (!joints.empty())
        carryVertices(*mesh, what, joints);
    for (size_t vertex = 0; vertex < mesh->vertexCount(); ++vertex) {
        const ZFloatVector rest = vectorAt(what.rest->normals, vertex);
        put(mesh->normals, vertex, unit(vectorAt(mesh->normals, vertex), rest));
        if (!mesh->tangents.empty())
            put(mesh->tangents, vertex,
                unit(vectorAt(mesh->tangents, vertex, 4), vectorAt(what.rest->tangents, vertex, 4)),
                4);
    }
    for (unsigned triangle : what.flatTriangles)
        flattenTriangle(*mesh, triangle);
    return mesh;
}

} // namespace devhost
