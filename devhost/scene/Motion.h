// SPDX-License-Identifier: MIT
#pragma once

// What changes in a scene over time: nodes that move, and meshes that change their shape with the
// nodes or with weights of their own.

#include "devhost/scene/Animation.h"
#include "devhost/scene/Deformation.h"
#include "devhost/scene/SceneGraph.h"

#include <map>
#include <memory>
#include <vector>

namespace devhost {

/// The nodes that bend a mesh. A vertex goes from the mesh's space into a joint's, and from there
/// into the world.
struct Skin {
    std::vector<NodeId> joints;
    std::vector<ZMatrix> inverseBind; // one for each joint
};

/// A node's mesh that changes its shape.
struct Deformation {
    NodeId node = kNoNode;
    std::shared_ptr<const Deformable> what;
    std::shared_ptr<const Skin> skin;             // null for a mesh without joints
    std::vector<double> weights;                  // of the shapes
    std::shared_ptr<const Track> weightsOverTime; // null when they stay

    /// What the node's mesh was made with last.
    std::vector<double> shownWeights = {};
    std::vector<ZMatrix> shownJoints = {};
};

struct Motion {
    std::map<NodeId, Movement> movements;
    std::vector<Deformation> deformations;

    /// The times of the first and last key; both 0 where nothing is animated.
    std::pair<double, double> span() const;
};

} // namespace devhost
