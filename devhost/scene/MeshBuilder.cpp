// SPDX-License-Identifier: MIT
// Making of normals and welding of vertices.
#include "devhost/scene/MeshBuilder.h"

#include "devhost/scene/PolygonCutter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <unordered_map>

namespace devhost {

namespace {

// Faces whose normals lie within 45 degrees of each other are shaded as one smooth surface.
constexpr float kCreaseCosine = 0.70710678f;
constexpr float kHalfCreaseCosine = 0.92387953f;
// Around a point with more faces than this, comparing each with each would take too long; the point
// is then smoothed over all of them.
constexpr size_t kManyFaces = 256;

ZFloatVector at(const std::vector<float> &pool, int index) {
    const float *p = &pool[size_t(index) * 3];
    return ZFloatVector(p[0], p[1], p[2]);
}

/// Everything about one mesh while it is made. Corners are numbered from the mesh's first one.
struct Draft {
    const MeshPools &pools;
    std::span<const Corner> corners;
    std::span<const Face> faces;
    std::vector<int> points; // for each corner, the number of its position in this mesh
    size_t pointCount = 0;

    size_t firstCorner(const Face &face) const {
        return face.firstCorner - faces.front().firstCorner;
    }
    ZFloatVector position(size_t corner) const {
        return at(pools.positions, corners[corner].position);
    }
    bool hasNormal(size_t corner) const {
        const int index = corners[corner].normal;
        return index >= 0 && !(at(pools.normals, index) == ZFloatVector());
    }
};

/// The angle between two edges, which need not be exact; 0 where one has no length.
float angleBetween(const ZFloatVector &a, const ZFloatVector &b) {
    const float lengths = std::sqrt((a * a) * (b * b));
    return lengths > 0 ? std::acos(std::clamp(a * b / lengths, -1.0f, 1.0f)) : 0;
}

/// Makes the normals of corners that have none. Weighted by the faces' angles, they do not depend
/// on how a surface is cut into faces.
class NormalMaker {
  public:
    /// The made normals, and for each corner the number of its own; -1 for those that have one.
    std::vector<ZFloatVector> normals;
    std::vector<int> ofCorner;

    explicit NormalMaker(const Draft &draft) : draft_(draft) {
        const size_t count = draft.corners.size();
        ofCorner.assign(count, -1);
        bool anyMissing = false;
        for (size_t corner = 0; corner < count && !anyMissing; ++corner)
            anyMissing = !draft.hasNormal(corner);
        if (!anyMissing)
            return;
        addUp();
        forCorners([this](const Neighbour &each) { judge(each); });
        forCorners([this](const Neighbour &each) { share(each); });
        makeApart();
    }

  private:
    /// What is around a point.
    struct Point {
        ZFloatVector sum; // of the faces' normals, then its direction
        unsigned corners = 0;
        int smoothing = 0;    // of all faces, where they are smoothed together
        bool together = true; // whether one normal does for all corners
        int normal = -1;
    };
    struct Neighbour {
        unsigned corner, face;
    };

    template <class Use>
    void forCorners(Use use) const {
        for (unsigned face = 0; face < draft_.faces.size(); ++face) {
            const size_t first = draft_.firstCorner(draft_.faces[face]);
            for (unsigned k = 0; k < draft_.faces[face].cornerCount; ++k)
                use(Neighbour{unsigned(first) + k, face});
        }
    }
    Point &pointOf(const Neighbour &each) { return points_[size_t(draft_.points[each.corner])]; }
    int smoothing(const Neighbour &each) const { return draft_.faces[each.face].smoothing; }

    float angle(const Neighbour &each) const {
        const Face &face = draft_.faces[each.face];
        const size_t first = draft_.firstCorner(face), count = face.cornerCount;
        const size_t k = each.corner - first;
        const ZFloatVector tip = draft_.position(each.corner);
        return angleBetween(draft_.position(first + (k + 1) % count) - tip,
                            draft_.position(first + (k + count - 1) % count) - tip);
    }

    void addUp() {
        points_.resize(draft_.pointCount);
        faceNormals_.reserve(draft_.faces.size());
        std::vector<ZFloatVector> places;
        for (const Face &face : draft_.faces) {
            places.clear();
            for (size_t k = 0; k < face.cornerCount; ++k)
                places.push_back(draft_.position(draft_.firstCorner(face) + k));
            faceNormals_.push_back(ZFloatVector(polygonNormal(places)).normal());
        }
        forCorners([this](const Neighbour &each) {
            Point &point = pointOf(each);
            point.sum += faceNormals_[each.face] * angle(each);
            if (point.corners++ == 0)
                point.smoothing = smoothing(each);
        });
        for (Point &point : points_)
            point.sum = point.sum.normal();
    }

    /// A point has one normal where its faces share a smoothing group, or all lie so close to their
    /// mean that any two are smoothed, or are too many to compare.
    void judge(const Neighbour &each) {
        Point &point = pointOf(each);
        const bool isClose =
            point.corners > kManyFaces || faceNormals_[each.face] * point.sum > kHalfCreaseCosine;
        point.together = point.together && point.smoothing == smoothing(each) &&
                         smoothing(each) != Face::kFlat &&
                         (smoothing(each) != Face::kByAngle || isClose);
    }

    void share(const Neighbour &each) {
        Point &point = pointOf(each);
        if (!point.together) {
            apart_.push_back(each);
        } else if (!draft_.hasNormal(each.corner)) {
            if (point.normal < 0)
                point.normal = add(point.sum, faceNormals_[each.face]);
            ofCorner[each.corner] = point.normal;
        }
    }

    /// Adds a normal, or else the face's own.
    int add(ZFloatVector normal, const ZFloatVector &own) {
        if (!(normal.length() > 0.5f))
            normal = own.length() > 0.5f ? own : ZFloatVector(0, 1, 0); // a face without area
        normals.push_back(normal);
        return int(normals.size()) - 1;
    }

    /// The points whose corners have to be told from each other.
    void makeApart() {
        const auto key = [this](const Neighbour &each) {
            return std::pair(draft_.points[each.corner], smoothing(each));
        };
        std::stable_sort(apart_.begin(), apart_.end(),
                         [&](const Neighbour &a, const Neighbour &b) { return key(a) < key(b); });
        const std::span<const Neighbour> all(apart_);
        for (size_t begin = 0, end = 0; begin < all.size(); begin = end) {
            while (end < all.size() && key(all[end]) == key(all[begin]))
                ++end;
            makeInGroup(all.subspan(begin, end - begin));
        }
    }

    void makeInGroup(std::span<const Neighbour> group) {
        const int kind = smoothing(group.front());
        const bool one = kind > 0 || (kind == Face::kByAngle && group.size() > kManyFaces);
        std::vector<float> angles;
        for (const Neighbour &each : group)
            angles.push_back(angle(each));
        const auto sum = [&](auto isSmoothed) {
            ZFloatVector result;
            for (size_t at = 0; at < group.size(); ++at)
                if (isSmoothed(faceNormals_[group[at].face]))
                    result += faceNormals_[group[at].face] * angles[at];
            return result.normal();
        };
        const size_t first = normals.size();
        int shared = -1;
        for (const Neighbour &each : group) {
            if (draft_.hasNormal(each.corner))
                continue;
            const ZFloatVector own = faceNormals_[each.face];
            int &number = ofCorner[each.corner];
            if (kind == Face::kFlat) {
                number = add(own, own);
            } else if (one) {
                if (shared < 0)
                    shared = add(sum([](const ZFloatVector &) { return true; }), own);
                number = shared;
            } else {
                add(sum([&](const ZFloatVector &normal) { return normal * own >= kCreaseCosine; }),
                    own);
                number = mergeLast(first);
            }
        }
    }

    /// The number of the last normal, which goes where an equal one was made from `first` on: few,
    /// as many faces share theirs.
    int mergeLast(size_t first) {
        const auto begin = normals.begin() + std::ptrdiff_t(first), last = normals.end() - 1;
        const auto known = std::find(begin, last, *last);
        const auto result = known - normals.begin();
        if (known != last)
            normals.pop_back();
        return int(result);
    }

    const Draft &draft_;
    std::vector<ZFloatVector> faceNormals_; // unit
    std::vector<Point> points_;
    std::vector<Neighbour> apart_; // the corners of points that have no one normal
};

/// Numbers what differs at each point. Most points have one vertex, which is found without hashing.
class Welder {
  public:
    explicit Welder(size_t pointCount) : first_(pointCount) {}

    /// The vertex of a corner, and whether it is a new one.
    std::pair<unsigned, bool> vertex(int point, int uv, int normal) {
        First &first = first_[size_t(point)];
        if (!first.isUsed) {
            first = {uv, normal, count_, true};
            return {count_++, true};
        }
        if (first.uv == uv && first.normal == normal)
            return {first.vertex, false};
        const auto [entry, isNew] = others_.try_emplace({point, uv, normal}, count_);
        count_ += isNew;
        return {entry->second, isNew};
    }

  private:
    struct First {
        int uv = -1, normal = -1;
        unsigned vertex = 0;
        bool isUsed = false;
    };
    struct Key {
        int point, uv, normal;
        bool operator==(const Key &) const = default;
    };
    struct Hash {
        size_t operator()(const Key &key) const {
            size_t hash = 0;
            for (int part : {key.point, key.uv, key.normal}) {
                hash = (hash ^ unsigned(part)) * 0x9e3779b97f4a7c15ull;
                hash ^= hash >> 29;
            }
            return hash;
        }
    };
    std::vector<First> first_;
    std::unordered_map<Key, unsigned, Hash> others_;
    unsigned count_ = 0;
};

class VertexMaker {
  public:
    VertexMaker(const Draft &draft, const NormalMaker &made)
        : draft_(draft), made_(made), welder_(draft.pointCount),
          hasUvs_(std::any_of(draft.corners.begin(), draft.corners.end(),
                              [](const Corner &corner) { return corner.uv >= 0; })) {}

    Mesh mesh;

    /// The vertex of a corner, in the order of their first use.
    unsigned vertex(size_t number) {
        const Corner &corner = draft_.corners[number];
        const int made = made_.ofCorner[number];
        // Made normals are numbered downwards, so that they do not meet those of the file.
        const int normal = made < 0 ? corner.normal : -2 - made;
        const auto [vertex, isNew] = welder_.vertex(draft_.points[number], corner.uv, normal);
        if (isNew)
            add(corner,
                made < 0 ? at(draft_.pools.normals, corner.normal) : made_.normals[size_t(made)]);
        return vertex;
    }

  private:
    void add(const Corner &corner, const ZFloatVector &normal) {
        const MeshPools &pools = draft_.pools;
        const ZFloatVector position = at(pools.positions, corner.position);
        mesh.positions.insert(mesh.positions.end(), {position.x, position.y, position.z});
        mesh.normals.insert(mesh.normals.end(), {normal.x, normal.y, normal.z});
        if (hasUvs_) {
            const float *uv = corner.uv < 0 ? nullptr : &pools.uvs[size_t(corner.uv) * 2];
            mesh.uvs.insert(mesh.uvs.end(), {uv ? uv[0] : 0, uv ? uv[1] : 0});
        }
        if (!pools.colors.empty()) {
            const ZFloatVector color = at(pools.colors, corner.position);
            mesh.colors.insert(mesh.colors.end(), {color.x, color.y, color.z, 1});
        }
    }

    const Draft &draft_;
    const NormalMaker &made_;
    Welder welder_;
    bool hasUvs_;
};

void addFaces(const Draft &draft, VertexMaker &vertices) {
    Mesh &mesh = vertices.mesh;
    std::vector<unsigned> numbers, cut;
    std::vector<ZFloatVector> places;
    bool allTriangles = true;
    mesh.positions.reserve(draft.pointCount * 3);
    mesh.normals.reserve(draft.pointCount * 3);
    mesh.triangles.reserve(draft.corners.size());
    mesh.materials.reserve(draft.faces.size());
    mesh.faceSizes.reserve(draft.faces.size());
    for (const Face &face : draft.faces) {
        numbers.clear();
        places.clear();
        cut.clear();
        const size_t first = draft.firstCorner(face);
        for (size_t k = 0; k < face.cornerCount; ++k)
            numbers.push_back(vertices.vertex(first + k));
        mesh.faceSizes.push_back(face.cornerCount);
        mesh.materials.resize(mesh.materials.size() + face.cornerCount - 2, face.material);
        if (face.cornerCount == 3) {
            mesh.triangles.insert(mesh.triangles.end(), numbers.begin(), numbers.end());
            continue;
        }
        allTriangles = false;
        for (size_t k = 0; k < face.cornerCount; ++k)
            places.push_back(draft.position(first + k));
        cutPolygon(places, cut);
        for (unsigned corner : cut)
            mesh.triangles.push_back(numbers[corner]);
    }
    if (allTriangles)
        mesh.faceSizes = {};
}

} // namespace

MeshBuilder::MeshBuilder(const MeshPools &pools)
    : pools_(pools), points_(pools.positions.size() / 3, -1) {}

std::shared_ptr<const Mesh> MeshBuilder::build(std::span<const Corner> corners,
                                               std::span<const Face> faces) {
    Draft draft{pools_, corners, faces, {}, 0};
    draft.points.reserve(corners.size());
    for (const Corner &corner : corners) {
        int &point = points_[size_t(corner.position)];
        if (point < 0)
            point = int(draft.pointCount++);
        draft.points.push_back(point);
    }
    for (const Corner &corner : corners)
        points_[size_t(corner.position)] = -1;

    const NormalMaker made(draft);
    VertexMaker vertices(draft, made);
    addFaces(draft, vertices);
    return std::make_shared<const Mesh>(std::move(vertices.mesh));
}

} // namespace devhost
