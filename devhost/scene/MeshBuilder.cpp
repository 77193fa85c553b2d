// Making of normals and welding of vertices.
#include "devhost/scene/MeshBuilder.h"

#include "devhost/scene/PolygonCutter.h"

#include <algorithm>
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
        size_t missing = 0;
        for (size_t corner = 0; corner < count; ++corner)
            missing += !draft.hasNormal(corner);
        if (!missing)
            return;
        collect();
        for (size_t point = 0; point < draft.pointCount; ++point)
            makeAround({&around_[ends_[point]], ends_[point + 1] - ends_[point]});
    }

  private:
    struct Neighbour {
        unsigned corner, face;
        float weight;
    };

    /// Sorts the corners by their points.
    void collect() {
        faceNormals_.reserve(draft_.faces.size());
        ends_.assign(draft_.pointCount + 2, 0);
        for (int point : draft_.points)
            ++ends_[size_t(point) + 2];
        for (size_t point = 2; point < ends_.size(); ++point)
            ends_[point] += ends_[point - 1];
        around_.resize(draft_.points.size());
        std::vector<ZFloatVector> places;
        for (const Face &face : draft_.faces) {
            const size_t first = draft_.firstCorner(face), count = face.cornerCount;
            places.clear();
            for (size_t k = 0; k < count; ++k)
                places.push_back(draft_.position(first + k));
            for (size_t k = 0; k < count; ++k) {
                const ZFloatVector next = places[(k + 1) % count] - places[k];
                const ZFloatVector last = places[(k + count - 1) % count] - places[k];
                around_[ends_[size_t(draft_.points[first + k]) + 1]++] = {
                    unsigned(first + k), unsigned(faceNormals_.size()), next.angle(last)};
            }
            faceNormals_.push_back(ZFloatVector(polygonNormal(places)).normal());
        }
    }

    int smoothing(const Neighbour &each) const { return draft_.faces[each.face].smoothing; }

    void makeAround(std::span<Neighbour> around) {
        const auto byGroup = [this](const Neighbour &a, const Neighbour &b) {
            return smoothing(a) < smoothing(b);
        };
        if (!std::is_sorted(around.begin(), around.end(), byGroup))
            std::stable_sort(around.begin(), around.end(), byGroup);
        for (size_t begin = 0, end = 0; begin < around.size(); begin = end) {
            while (end < around.size() && smoothing(around[end]) == smoothing(around[begin]))
                ++end;
            makeInGroup(around.subspan(begin, end - begin));
        }
    }

    void makeInGroup(std::span<const Neighbour> group) {
        const int kind = smoothing(group.front());
        const size_t firstMade = normals.size();
        ZFloatVector all;
        for (const Neighbour &each : group)
            all += faceNormals_[each.face] * each.weight;
        all = all.normal();
        const bool byAngle =
            kind == Face::kByAngle && group.size() <= kManyFaces && !isBlunt(group, all);
        for (const Neighbour &each : group) {
            if (draft_.hasNormal(each.corner))
                continue;
            const ZFloatVector own = faceNormals_[each.face];
            ZFloatVector normal = kind == Face::kFlat ? own
                                  : byAngle           ? smoothSum(group, own).normal()
                                                      : all;
            if (!(normal.length() > 0.5f))
                normal = own.length() > 0.5f ? own : ZFloatVector(0, 1, 0); // a face without area
            ofCorner[each.corner] =
                number(normal, kind == Face::kFlat ? normals.size() : firstMade);
        }
    }

    /// Whether all faces lie so close to their mean that any two are smoothed.
    bool isBlunt(std::span<const Neighbour> group, const ZFloatVector &mean) const {
        return std::all_of(group.begin(), group.end(), [&](const Neighbour &each) {
            return faceNormals_[each.face] * mean > kHalfCreaseCosine;
        });
    }

    ZFloatVector smoothSum(std::span<const Neighbour> group, const ZFloatVector &own) const {
        ZFloatVector sum;
        for (const Neighbour &each : group)
            if (faceNormals_[each.face] * own >= kCreaseCosine)
                sum += faceNormals_[each.face] * each.weight;
        return sum;
    }

    /// The number of a normal among those made from `first` on: few, as many faces share theirs.
    int number(const ZFloatVector &normal, size_t first) {
        const auto begin = normals.begin() + std::ptrdiff_t(first);
        const auto known = std::find(begin, normals.end(), normal);
        const auto result = known - normals.begin();
        if (known == normals.end())
            normals.push_back(normal);
        return int(result);
    }

    const Draft &draft_;
    std::vector<ZFloatVector> faceNormals_; // unit
    std::vector<Neighbour> around_;         // by point
    std::vector<size_t> ends_;
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
    mesh.triangles.reserve(draft.corners.size());
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
