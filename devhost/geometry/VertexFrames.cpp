// SPDX-License-Identifier: MIT
#include "devhost/geometry/VertexFrames.h"

#include "host/core/ZFloatVector.h"

#include <array>
#include <cmath>
#include <map>
#include <utility>

namespace devhost {

namespace {

ZFloatVector vectorAt(const std::vector<float> &values, size_t index) {
    return {values[index * 3], values[index * 3 + 1], values[index * 3 + 2]};
}

void put(std::vector<float> &values, size_t index, const ZFloatVector &vector) {
    values[index * 3] = vector.x;
    values[index * 3 + 1] = vector.y;
    values[index * 3 + 2] = vector.z;
}

/// The part of a vector at right angles to the unit normal, of length 1; any where nothing is left.
ZFloatVector inSurface(const ZFloatVector &vector, const ZFloatVector &normal) {
    const ZFloatVector part = vector - normal * (vector * normal);
    if (part.length() > 1e-6f * vector.length() && part.length() > 0)
        return part.normal();
    const ZFloatVector other =
        std::fabs(normal.x) < 0.9f ? ZFloatVector(1, 0, 0) : ZFloatVector(0, 1, 0);
    return (other - normal * (other * normal)).normal();
}

/// The frames whose tangents and hands `tangentAt` gives for a vertex and its normal.
template <class TangentAt>
VertexFrames framesWith(const Mesh &mesh, TangentAt tangentAt) {
    const size_t count = mesh.vertexCount();
    VertexFrames frames;
    frames.tangents.resize(count * 3);
    frames.binormals.resize(count * 3);
    frames.hands.resize(count);
    for (size_t i = 0; i < count; ++i) {
        const ZFloatVector normal = vectorAt(mesh.normals, i);
        const auto [tangent, hand] = tangentAt(i, normal);
        put(frames.tangents, i, tangent);
        put(frames.binormals, i, (normal ^ tangent) * hand);
        frames.hands[i] = hand;
    }
    return frames;
}

} // namespace

VertexFrames makeVertexFrames(const Mesh &mesh, const std::vector<float> &uvs) {
    const size_t count = mesh.vertexCount();
    std::vector<ZFloatVector> alongU(count), alongV(count);
    for (size_t i = 0; i + 2 < mesh.triangles.size(); i += 3) {
        const unsigned *corner = &mesh.triangles[i];
        const ZFloatVector origin = vectorAt(mesh.positions, corner[0]);
        const ZFloatVector edge1 = vectorAt(mesh.positions, corner[1]) - origin;
        const ZFloatVector edge2 = vectorAt(mesh.positions, corner[2]) - origin;
        const auto uv = [&](int k, int part) { return uvs[corner[k] * 2 + part]; };
        const float u1 = uv(1, 0) - uv(0, 0), v1 = uv(1, 1) - uv(0, 1);
        const float u2 = uv(2, 0) - uv(0, 0), v2 = uv(2, 1) - uv(0, 1);
        const float area = u1 * v2 - u2 * v1;
        if (area == 0)
            continue;
        // Not divided by the area but by its sign: large triangles weigh more.
        const float sign = area < 0 ? -1.0f : 1.0f;
        for (int k = 0; k < 3; ++k) {
            alongU[corner[k]] += (edge1 * v2 - edge2 * v1) * sign;
            alongV[corner[k]] += (edge2 * u1 - edge1 * u2) * sign;
        }
    }
    return framesWith(mesh, [&](size_t i, const ZFloatVector &normal) {
        const ZFloatVector tangent = inSurface(alongU[i], normal);
        return std::pair(tangent, (normal ^ tangent) * alongV[i] < 0 ? -1.0f : 1.0f);
    });
}

VertexFrames givenVertexFrames(const Mesh &mesh) {
    return framesWith(mesh, [&](size_t i, const ZFloatVector &) {
        const float *tangent = &mesh.tangents[i * 4];
        return std::pair(ZFloatVector(tangent[0], tangent[1], tangent[2]), tangent[3]);
    });
}

std::vector<unsigned> numberPoints(const Mesh &mesh) {
    std::map<std::array<float, 3>, unsigned> points;
    std::vector<unsigned> numbers(mesh.vertexCount());
    for (size_t i = 0; i < numbers.size(); ++i) {
        const float *p = &mesh.positions[i * 3];
        numbers[i] = points.try_emplace({p[0], p[1], p[2]}, unsigned(points.size())).first->second;
    }
    return numbers;
}

} // namespace devhost
