// SPDX-License-Identifier: MIT
#include "devhost/geometry/GeometryStreams.h"

#include "devhost/geometry/VertexFrames.h"
#include "devhost/util/GuardedMemory.h"

#include <atomic>
#include <cstring>
#include <optional>
#include <tuple>

namespace devhost {

namespace {

/// Everything that was made of meshes and is still in use.
class StreamCache {
  public:
    using Key = std::tuple<const Mesh *, ZGeometryData::DataType, std::string, int>;

    StreamHandle find(const Key &key) const {
        const auto found = streams_.find(key);
        return found == streams_.end() ? nullptr : found->second.lock();
    }
    void add(const Key &key, const StreamHandle &stream) {
        // A stream keeps its mesh, so a key can go stale but cannot be met by another mesh's
        // stream.
        if (streams_.size() > sweepAt_) {
            std::erase_if(streams_, [](const auto &entry) { return entry.second.expired(); });
            sweepAt_ = 2 * streams_.size() + 64;
        }
        streams_[key] = stream;
    }

  private:
    std::map<Key, std::weak_ptr<GeometryStream>> streams_;
    size_t sweepAt_ = 64;
};

/// Values of our own, with the mesh that they were made of.
template <class T>
struct Made {
    MeshHandle mesh;
    std::vector<T> values;
};

template <class T>
constexpr ZGeometryData::ElementType elementType() {
    return std::is_same_v<T, float> ? ZGeometryData::kFloat : ZGeometryData::kUnsignedInt32;
}

constexpr char kStream[] = "a stream of a geometry";

/// With the guard, scripts get a copy, which is closed when nobody uses the stream any more.
void guardCopy(GeometryStream &stream, size_t bytes) {
    void *const copy = bytes ? openGuarded(bytes, sizeof(float), kStream) : nullptr;
    if (!copy)
        return;
    std::memcpy(copy, stream.data, bytes);
    stream.data = copy;
    // The mesh stays as well: streams are found by it.
    stream.keeper = std::shared_ptr<const void>(copy, [of = stream.keeper](const void *address) {
        closeGuarded(address, "the last handle to the stream was gone");
    });
}

template <class T>
StreamHandle streamOf(const std::vector<T> &values, std::shared_ptr<const void> keeper, int size) {
    auto stream = std::make_shared<GeometryStream>();
    stream->elementType = elementType<T>();
    stream->elementSize = size;
    stream->elementCount = unsigned(values.size() / size);
    stream->data = const_cast<T *>(values.data());
    stream->keeper = std::move(keeper);
    guardCopy(*stream, values.size() * sizeof(T));
    return stream;
}

template <class T>
StreamHandle madeStream(const MeshHandle &mesh, std::vector<T> values, int size) {
    auto made = std::make_shared<const Made<T>>(Made<T>{mesh, std::move(values)});
    return streamOf(made->values, made, size);
}

/// Three values for each vertex as two, three or four; `fourth` gives the last for a vertex.
template <class Fourth>
std::vector<float> resized(const std::vector<float> &threes, int size, Fourth fourth) {
    std::vector<float> values;
    values.reserve(threes.size() / 3 * size);
    for (size_t i = 0; i < threes.size() / 3; ++i)
        for (int k = 0; k < size; ++k)
            values.push_back(k < 3 ? threes[i * 3 + k] : fourth(i));
    return values;
}

StreamHandle resizedStream(const MeshHandle &mesh, const std::vector<float> &threes, int size,
                           float fourth) {
    return size == 3
               ? streamOf(threes, mesh, size)
               : madeStream(mesh, resized(threes, size, [=](size_t) { return fourth; }), size);
}

std::vector<unsigned> faceOffsets(const Mesh &mesh) {
    const bool allTriangles = mesh.faceSizes.empty();
    std::vector<unsigned> offsets(1 +
                                  (allTriangles ? mesh.triangleCount() : mesh.faceSizes.size()));
    for (size_t i = 1; i < offsets.size(); ++i)
        offsets[i] = offsets[i - 1] + (allTriangles ? 3 : mesh.faceSizes[i - 1]);
    return offsets;
}

/// The texture coordinates of a set; an empty name is the first.
const std::vector<float> &uvsOf(const Mesh &mesh, const std::string &name) {
    static const std::vector<float> none;
    if (name.empty() || name == kUvSet)
        return mesh.uvs;
    return name == kSecondUvSet ? mesh.secondUvs : none;
}

/// The file's own tangents, which belong to the first set, or those that follow the set's
/// coordinates; empty where there are neither.
std::optional<VertexFrames> framesOf(const Mesh &mesh, const std::string &name) {
    if (!mesh.tangents.empty() && (name.empty() || name == kUvSet))
        return givenVertexFrames(mesh);
    const std::vector<float> &uvs = uvsOf(mesh, name);
    if (uvs.empty())
        return {};
    return makeVertexFrames(mesh, uvs);
}

StreamHandle makeStream(const MeshHandle &mesh, const GeometryRequirementList::Key &key, int size) {
    const auto &[type, name] = key;
    switch (type) {
    case ZGeometryData::kPosition:
        return resizedStream(mesh, mesh->positions, size, 1);
    case ZGeometryData::kNormal:
        return resizedStream(mesh, mesh->normals, size, 0);
    case ZGeometryData::kTexCoord: {
        const std::vector<float> &uvs = uvsOf(*mesh, name);
        return uvs.empty() ? nullptr : streamOf(uvs, mesh, 2);
    }
    case ZGeometryData::kColor: {
        const bool isColorSet = !mesh->colors.empty() && (name.empty() || name == kColorSet);
        return isColorSet ? streamOf(mesh->colors, mesh, 4) : nullptr;
    }
    case ZGeometryData::kTangent: {
        const auto frames = framesOf(*mesh, name);
        const auto hand = [&](size_t i) { return frames->hands[i]; };
        return frames ? madeStream(mesh, resized(frames->tangents, size, hand), size) : nullptr;
    }
    case ZGeometryData::kBiNormal: {
        const auto frames = framesOf(*mesh, name);
        const auto none = [](size_t) { return 0.0f; };
        return frames ? madeStream(mesh, resized(frames->binormals, size, none), size) : nullptr;
    }
    case ZGeometryData::kUserData:
        if (name == kComponentIds)
            return madeStream(mesh, numberPoints(*mesh), 1);
        return name == kFaceOffsets ? madeStream(mesh, faceOffsets(*mesh), 1) : nullptr;
    default:
        return nullptr;
    }
}

/// The name that a stream goes by: an empty name of a set stands for the first set.
std::string streamName(const GeometryRequirementList::Key &key) {
    const auto &[type, name] = key;
    if (type == ZGeometryData::kPosition)
        return "position";
    if (type == ZGeometryData::kNormal)
        return "normal";
    if (type == ZGeometryData::kColor)
        return name.empty() ? kColorSet : name;
    return name.empty() ? kUvSet : name;
}

StreamCache &cache() {
    // Never destroyed: scripts may drop their last handles after the process began to end.
    static auto *const streams = new StreamCache;
    return *streams;
}

/// The stream in use, else a new one of `make`; null when that makes none.
template <class Make>
StreamHandle shared(const StreamCache::Key &key, Make make) {
    if (StreamHandle known = cache().find(key))
        return known;
    StreamHandle stream = make();
    if (stream) {
        stream->id = nextStreamId();
        stream->type = std::get<ZGeometryData::DataType>(key);
        stream->name = std::get<std::string>(key);
        cache().add(key, stream);
    }
    return stream;
}

/// Null when the mesh has no such stream.
StreamHandle vertexStream(const MeshHandle &mesh, const GeometryRequirementList::Key &key,
                          int size) {
    return shared({mesh.get(), key.first, streamName(key), size},
                  [&] { return makeStream(mesh, key, size); });
}

StreamHandle indexStream(const MeshHandle &mesh) {
    return shared({mesh.get(), ZGeometryData::kInvalidDataType, "", 1},
                  [&] { return streamOf(mesh->triangles, mesh, 1); });
}

} // namespace

int nextStreamId() {
    static std::atomic<int> last = 0;
    return ++last;
}

void GeometryRequirementList::addAll() {
    add(ZGeometryData::kPosition, "", 3);
    add(ZGeometryData::kNormal, "", 3);
    add(ZGeometryData::kTexCoord, "", 2);
    add(ZGeometryData::kTexCoord, kSecondUvSet, 2);
    add(ZGeometryData::kColor, "", 4);
    add(ZGeometryData::kTangent, "", 3);
    add(ZGeometryData::kBiNormal, "", 3);
    add(ZGeometryData::kUserData, kComponentIds, 1);
    add(ZGeometryData::kUserData, kFaceOffsets, 1);
}

NodeId meshNode(const ZDagPath &path) {
    const Scene &all = scene();
    const NodeId id = all.id(path.node());
    const Node *node = all.node(id);
    if (!node || node->mesh())
        return node ? id : kNoNode;
    for (const NodeId child : node->children)
        if (all.node(child)->mesh())
            return child;
    return kNoNode;
}

MeshHandle meshOfNode(NodeId id) {
    scene().deformMeshes(); // a script may have moved what bends them
    const Node *node = scene().node(id);
    const auto *held = node ? std::get_if<MeshHandle>(&node->payload) : nullptr;
    return held ? *held : nullptr;
}

std::shared_ptr<const GeometryStreams> makeGeometry(const MeshHandle &mesh,
                                                    const GeometryRequirementList &requirements) {
    auto geometry = std::make_shared<GeometryStreams>();
    if (!mesh)
        return geometry;
    for (const auto &[key, size] : requirements)
        if (StreamHandle stream = vertexStream(mesh, key, size))
            geometry->streams.push_back(std::move(stream));
    geometry->triangles = indexStream(mesh);
    return geometry;
}

} // namespace devhost
