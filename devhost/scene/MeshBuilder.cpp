// Welding of vertices and making of normals.
#include "devhost/scene/MeshBuilder.h"

#include <cmath>
#include <cstddef>
#include <unordered_map>

namespace devhost {

namespace {

// Faces whose normals lie within 45 degrees of each other are shaded as one smooth surface.
constexpr float kCreaseCosine = 0.70710678f;
// Beyond this many faces around one point, comparing all pairs would take too long; the point is
// then smoothed over all of them.
constexpr size_t kManyFaces = 256;

ZFloatVector at(const std::vector<float> &pool, int index) {
    const float *p = &pool[size_t(index) * 3];
    return ZFloatVector(p[0], p[1], p[2]);
}

std::string checkRange(int index, size_t count, bool optional, const char *what) {
    if ((optional && index == -1) || (index >= 0 && size_t(index) < count))
        return {};
    return std::string(what) + " index " + std::to_string(index) + " is out of range (there are " +
           std::to_string(count) + ")";
}

std::string check(const MeshSource &source) {
    for (float value : source.positions)
        if (!std::isfinite(value))
            return "a vertex position is not finite";
    for (const Corner &corner : source.corners) {
        std::string wrong =
            checkRange(corner.position, source.positions.size() / 3, false, "vertex");
        if (wrong.empty())
            wrong = checkRange(corner.normal, source.normals.size() / 3, true, "normal");
        if (wrong.empty())
            wrong = checkRange(corner.uv, source.uvs.size() / 2, true, "texture coordinate");
        if (!wrong.empty())
            return wrong;
    }
    return {};
}

bool hasNormal(const MeshSource &source, const Corner &corner) {
    if (corner.normal < 0)
        return false;
    const float length = at(source.normals, corner.normal).length();
    return std::isfinite(length) && length > 0;
}

/// The face's angle at one of its corners, 0 to 3.
float angleAt(const MeshSource &source, const Corner *face, int corner) {
    const ZFloatVector tip = at(source.positions, face[corner].position);
    return (at(source.positions, face[(corner + 1) % 3].position) - tip)
        .angle(at(source.positions, face[(corner + 2) % 3].position) - tip);
}

void addMissingNormals(MeshSource &source) {
    const size_t faceCount = source.corners.size() / 3;
    std::vector<ZFloatVector> faceNormals(faceCount);
    // Weighted by the angle, the normals do not depend on how polygons were cut into triangles.
    struct Around {
        unsigned face;
        float weight;
    };
    std::vector<std::vector<Around>> facesAround(source.positions.size() / 3);
    for (size_t face = 0; face < faceCount; ++face) {
        const Corner *c = &source.corners[face * 3];
        const ZFloatVector origin = at(source.positions, c[0].position);
        faceNormals[face] = ((at(source.positions, c[1].position) - origin) ^
                             (at(source.positions, c[2].position) - origin))
                                .normal();
        for (int k = 0; k < 3; ++k)
            facesAround[c[k].position].push_back({unsigned(face), angleAt(source, c, k)});
    }
    for (size_t each = 0; each < source.corners.size(); ++each) {
        Corner &corner = source.corners[each];
        if (hasNormal(source, corner))
            continue;
        const ZFloatVector own = faceNormals[each / 3];
        const auto &around = facesAround[corner.position];
        ZFloatVector sum;
        for (const auto &[face, weight] : around)
            if (around.size() > kManyFaces || faceNormals[face] * own >= kCreaseCosine)
                sum += faceNormals[face] * weight;
        ZFloatVector normal = sum.normal();
        if (!(normal.length() > 0.5f))
            normal = own.length() > 0.5f ? own : ZFloatVector(0, 1, 0); // a face without area
        corner.normal = int(source.normals.size() / 3);
        source.normals.insert(source.normals.end(), {normal.x, normal.y, normal.z});
    }
}

/// A vertex by what it looks like, so that equal normals from different places weld too.
struct VertexKey {
    int position, uv;
    ZFloatVector normal;
    bool operator==(const VertexKey &) const = default;
};

struct VertexHash {
    size_t operator()(const VertexKey &key) const {
        size_t hash = 0;
        const auto mix = [&hash](size_t value) {
            hash = (hash ^ value) * 0x9e3779b97f4a7c15ull;
            hash ^= hash >> 29;
        };
        mix(size_t(key.position));
        mix(size_t(key.uv));
        for (float part : {key.normal.x, key.normal.y, key.normal.z})
            mix(std::hash<float>()(part));
        return hash;
    }
};

} // namespace

std::string buildMesh(MeshSource source, Mesh &mesh) {
    if (std::string wrong = check(source); !wrong.empty())
        return wrong;
    if (source.corners.empty())
        return "it holds no triangles";
    addMissingNormals(source);

    bool anyUv = false;
    for (const Corner &corner : source.corners)
        anyUv = anyUv || corner.uv >= 0;
    mesh = Mesh();
    mesh.materials = std::move(source.materials);
    mesh.materials.resize(source.corners.size() / 3, kNoNode);
    mesh.triangles.reserve(source.corners.size());
    std::unordered_map<VertexKey, unsigned, VertexHash> vertices;
    for (const Corner &corner : source.corners) {
        const ZFloatVector normal = at(source.normals, corner.normal).normal();
        const auto [entry, isNew] =
            vertices.try_emplace({corner.position, corner.uv, normal}, mesh.vertexCount());
        mesh.triangles.push_back(entry->second);
        if (!isNew)
            continue;
        const ZFloatVector position = at(source.positions, corner.position);
        mesh.positions.insert(mesh.positions.end(), {position.x, position.y, position.z});
        mesh.normals.insert(mesh.normals.end(), {normal.x, normal.y, normal.z});
        if (anyUv) {
            const float *uv = corner.uv < 0 ? nullptr : &source.uvs[size_t(corner.uv) * 2];
            mesh.uvs.insert(mesh.uvs.end(), {uv ? uv[0] : 0, uv ? uv[1] : 0});
        }
    }
    return {};
}

} // namespace devhost
