// SPDX-License-Identifier: MIT
// The state of a scene at a time.
#include "devhost/scene/Motion.h"

#include <algorithm>

namespace devhost {

namespace {

/// From the mesh's own space through each joint back into it. Empty when the mesh has no joints.
/// False when some joint is gone, or the mesh's space is flat.
bool jointMatrices(const Scene &scene, const Deformation &deformation,
                   std::vector<ZMatrix> &result) {
    if (!deformation.skin)
        return true;
    const ZMatrix world = scene.worldMatrix(deformation.node);
    if (world.isSingular())
        return false;
    const ZMatrix toMesh = world.inverse();
    const Skin &skin = *deformation.skin;
    for (size_t at = 0; at < skin.joints.size(); ++at) {
        if (!scene.node(skin.joints[at]))
            return false;
        result.push_back(skin.inverseBind[at] * scene.worldMatrix(skin.joints[at]) * toMesh);
    }
    return true;
}

} // namespace

std::pair<double, double> Motion::span() const {
    std::pair<double, double> result(0, 0);
    bool any = false;
    const auto include = [&](const std::shared_ptr<const Track> &track) {
        if (!track)
            return;
        const double first = track->times.front(), last = track->times.back();
        result = any ? std::pair(std::min(result.first, first), std::max(result.second, last))
                     : std::pair(first, last);
        any = true;
    };
    for (const auto &[node, movement] : movements)
        for (const auto &track : {movement.translation, movement.rotation, movement.scale})
            include(track);
    for (const Deformation &each : deformations)
        include(each.weightsOverTime);
    return result;
}

void Scene::setMotion(Motion motion) {
    motion_ = std::make_shared<Motion>(std::move(motion));
    setTime(time_);
}

void Scene::setTime(double seconds) {
    time_ = seconds;
    if (!motion_)
        return;
    for (const auto &[id, movement] : motion_->movements)
        moveUnadjusted(id, movement.at(seconds).matrix());
    for (Deformation &each : motion_->deformations)
        if (each.weightsOverTime) {
            each.weights = each.weightsOverTime->at(seconds);
            deformedRevision_ = 0; // to look at it, although no node changed
        }
    deformMeshes();
}

void Scene::moveUnadjusted(NodeId id, const ZMatrix &local) {
    if (const Node *current = node(currentLayer_)) {
        const auto &adjustments = current->layer()->adjustments;
        for (size_t at = 0; at < unadjusted_.size(); ++at)
            if (adjustments[at].node == id && adjustments[at].attribute == "matrix") {
                unadjusted_[at] = local;
                return;
            }
    }
    if (node(id) && !(node(id)->local == local))
        edit(id)->local = local;
}

void Scene::deformMeshes() {
    if (!motion_ || deformedRevision_ == revision_)
        return;
    for (Deformation &each : motion_->deformations) {
        std::vector<ZMatrix> joints;
        if (!node(each.node) || !jointMatrices(*this, each, joints))
            continue;
        if (joints == each.shownJoints && each.weights == each.shownWeights)
            continue;
        edit(each.node)->payload = deformed(*each.what, each.weights, joints);
        each.shownJoints = std::move(joints);
        each.shownWeights = each.weights;
    }
    deformedRevision_ = revision_;
}

Bounds Scene::motionBounds() {
    Bounds result = bounds();
    if (!motion_)
        return result;
    const double now = time_;
    const auto [first, last] = motion_->span();
    constexpr int steps = 16; // enough to tell where things go
    for (int step = 0; step <= steps && last > first; ++step) {
        setTime(first + (last - first) * step / steps);
        const Bounds then = bounds();
        if (!then.empty) {
            result.extend(then.low);
            result.extend(then.high);
        }
    }
    setTime(now);
    return result;
}

} // namespace devhost
