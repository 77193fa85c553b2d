// SPDX-License-Identifier: MIT
#pragma once

// What moves in a glTF file: node transforms over time, skins and weights of morph targets.

#include "devhost/scene/Motion.h"
#include "devhost/util/Notices.h"

#include <tiny_gltf.h>

#include <vector>

namespace devhost {

/// A node of the file as it is in the scene.
struct GltfNode {
    NodeId id = kNoNode;     // kNoNode for those that the file's scene does not show
    NodeId meshId = kNoNode; // where its mesh is
};

/// Where a node stands that has no matrix. Throws BadFile where the file's numbers do not tell.
Pose gltfPose(const tinygltf::Node &node);

/// `nodes` and `meshes` have the file's indices.
Motion readGltfMotion(const tinygltf::Model &model, const std::vector<GltfNode> &nodes,
                      const std::vector<std::shared_ptr<const Deformable>> &meshes,
                      FileNotices &notices);

} // namespace devhost
