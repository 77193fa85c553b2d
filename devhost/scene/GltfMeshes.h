// SPDX-License-Identifier: MIT
#pragma once

// The meshes of a glTF file.

#include "devhost/scene/Deformation.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/util/Notices.h"

#include <tiny_gltf.h>

#include <memory>
#include <vector>

namespace devhost {

/// Reads a mesh; its `rest` is null when it has no triangles. `materials` are the nodes by the
/// file's indices.
Deformable readGltfMesh(const tinygltf::Model &model, int index,
                        const std::vector<NodeId> &materials, FileNotices &notices);

} // namespace devhost
