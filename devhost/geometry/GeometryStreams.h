// SPDX-License-Identifier: MIT
#pragma once

// What the handles of the geometry classes refer to, and how it is made from meshes.
//
// A stream keeps the memory that it describes. Positions, normals, texture coordinates and indices
// are those of the mesh itself where the element size allows it; the rest is made once and shared
// by all geometry of the mesh as long as some handle to it lives.

#include "devhost/scene/SceneGraph.h"
#include "host/core/ZDagPath.h"
#include "host/render/ZGeometryData.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace devhost {

struct GeometryStream {
    std::string name;
    int id = 0;
    ZGeometryData::DataType type = ZGeometryData::kInvalidDataType;
    ZGeometryData::ElementType elementType = ZGeometryData::kInvalidElementType;
    int elementSize = 0;
    unsigned elementCount = 0;
    void *data = nullptr;
    /// What the data lie in; null for memory that is not ours.
    std::shared_ptr<const void> keeper;
    bool ownsData = true;
    int collectionNumber = 0;
};

using StreamHandle = std::shared_ptr<GeometryStream>;

/// A number that no stream has yet.
int nextStreamId();

/// The streams of one object, and the indices of its triangles, if it has any.
struct GeometryStreams {
    std::vector<StreamHandle> streams;
    StreamHandle triangles;
};

/// The sets of texture coordinates and colours that a mesh may have.
inline constexpr const char *kUvSet = "uv";
inline constexpr const char *kSecondUvSet = "uv1";
inline constexpr const char *kColorSet = "color";
inline constexpr const char *kComponentIds = "componentId";
inline constexpr const char *kFaceOffsets = "faceOffsets";

/// Element sizes by data type and name.
class GeometryRequirementList {
  public:
    using Key = std::pair<ZGeometryData::DataType, std::string>;

    void add(ZGeometryData::DataType type, const std::string &name, int elementSize) {
        sizes_[{type, name}] = elementSize;
    }
    /// Asks for everything that a mesh can have.
    void addAll();
    auto begin() const { return sizes_.begin(); }
    auto end() const { return sizes_.end(); }
    // NOLINTNEXTLINE(modernize-use-nullptr): what is generated compares with a literal 0
    auto operator<=>(const GeometryRequirementList &) const = default;

  private:
    std::map<Key, int> sizes_;
};

using MeshHandle = std::shared_ptr<const Mesh>;

/// The mesh node at the end of a path, or the first right below it; kNoNode when there is none.
NodeId meshNode(const ZDagPath &path);
/// The mesh of a node; null when it has none.
MeshHandle meshOfNode(NodeId id);

/// The required streams, as far as the mesh has them, and its indices. Without a mesh, nothing.
std::shared_ptr<const GeometryStreams> makeGeometry(const MeshHandle &mesh,
                                                    const GeometryRequirementList &requirements);

} // namespace devhost
