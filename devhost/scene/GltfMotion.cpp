// SPDX-License-Identifier: MIT
#include "devhost/scene/GltfMotion.h"

#include "devhost/scene/GltfAccessor.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace devhost {

namespace {

/// A property of a node that has a given number of numbers, or none.
bool has(const std::vector<double> &value, size_t size, const char *what) {
    if (value.empty())
        return false;
    if (value.size() != size)
        throw BadFile(std::string("its ") + what + " has " + std::to_string(value.size()) +
                      " numbers instead of " + std::to_string(size));
    return true;
}

class MotionReader {
  public:
    MotionReader(const tinygltf::Model &model, const std::vector<GltfNode> &nodes,
                 const std::vector<std::shared_ptr<const Deformable>> &meshes, FileNotices &notices)
        : model_(model), nodes_(nodes), meshes_(meshes), notices_(notices) {}

    Motion read() {
        for (size_t index = 0; index < nodes_.size(); ++index)
            if (nodes_[index].meshId != kNoNode)
                inPlace(gltfPlace("node", index, model_.nodes[index].name),
                        [&] { addDeformation(index); });
        for (size_t index = 0; index < model_.animations.size(); ++index)
            addAnimation(index);
        return std::move(motion_);
    }

  private:
    // ---- skins and shapes --------------------------------------------------------------------

    void addDeformation(size_t index) {
        const tinygltf::Node &node = model_.nodes[index];
        const auto &mesh = meshes_[size_t(node.mesh)];
        Deformation deformation;
        deformation.node = nodes_[index].meshId;
        deformation.what = mesh;
        if (node.skin >= 0 && !mesh->influences)
            notices_.add("skin", gltfPlace("node", index, node.name),
                         "it has a skin, and its mesh no joints", "the skin is left out");
        else if (node.skin >= 0)
            deformation.skin = skinOf(node.skin, *mesh);
        deformation.weights =
            node.weights.empty() ? model_.meshes[size_t(node.mesh)].weights : node.weights;
        deformation.weights.resize(std::max(deformation.weights.size(), mesh->shapes.size()));
        if (deformation.weights.size() != mesh->shapes.size())
            throw BadFile("there are " + std::to_string(deformation.weights.size()) +
                          " weights for " + std::to_string(mesh->shapes.size()) + " morph targets");
        if (deformation.skin || !mesh->shapes.empty())
            motion_.deformations.push_back(std::move(deformation));
    }

    std::shared_ptr<const Skin> skinOf(int index, const Deformable &mesh) const {
        const tinygltf::Skin &from = gltfElement(model_.skins, index, "skin");
        return inPlace(gltfPlace("skin", size_t(index), from.name), [&] {
            auto skin = std::make_shared<Skin>();
            for (int joint : from.joints)
                skin->joints.push_back(shownNode(joint, "joint"));
            skin->inverseBind.resize(from.joints.size());
            if (from.inverseBindMatrices >= 0)
                readMatrices(from.inverseBindMatrices, skin->inverseBind);
            for (size_t at = 0; at < mesh.joints.size(); ++at)
                if (mesh.joints[at] >= skin->joints.size())
                    throw BadFile("vertex " + std::to_string(at / mesh.influences) +
                                  " is held by joint " + std::to_string(mesh.joints[at]) +
                                  ", and there are " + std::to_string(skin->joints.size()));
            return std::shared_ptr<const Skin>(std::move(skin));
        });
    }

    void readMatrices(int index, std::vector<ZMatrix> &matrices) const {
        const GltfAccessor from(model_, index, TINYGLTF_TYPE_MAT4, "inverseBindMatrices");
        if (from.count() < matrices.size())
            throw BadFile("there are " + std::to_string(from.count()) +
                          " inverse bind matrices for " + std::to_string(matrices.size()) +
                          " joints");
        const std::vector<float> numbers = from.numbers();
        for (size_t at = 0; at < matrices.size() * 16; ++at)
            matrices[at / 16][unsigned(at / 4 % 4)][at % 4] = numbers[at];
    }

    NodeId shownNode(int index, const char *what) const {
        gltfElement(model_.nodes, index, what);
        const NodeId id = nodes_[size_t(index)].id;
        if (id == kNoNode)
            throw BadFile(std::string(what) + " " + std::to_string(index) +
                          " is not in the file's scene");
        return id;
    }

    // ---- animations ----------------------------------------------------------------------------

    void addAnimation(size_t index) {
        const tinygltf::Animation &from = model_.animations[index];
        const std::string place = gltfPlace("animation", index, from.name);
        size_t moved = 0;
        for (size_t at = 0; at < from.channels.size(); ++at)
            inPlace(place + ": channel " + std::to_string(at),
                    [&] { moved += addChannel(from, from.channels[at], place); });
        if (moved)
            notices_.add("animation", place,
                         std::to_string(moved) + " of its channels move what an animation before "
                                                 "it moves",
                         "these are left out");
    }

    /// True when an earlier animation has the channel's property.
    bool addChannel(const tinygltf::Animation &animation, const tinygltf::AnimationChannel &channel,
                    const std::string &place) {
        const std::string &path = channel.target_path;
        const auto leaveOut = [&](const std::string &found) {
            notices_.add("animation path", place + ", " + path, found, "it is left out");
        };
        if (channel.target_node < 0) {
            leaveOut("a channel has no node");
            return false;
        }
        const size_t index = size_t(channel.target_node);
        const tinygltf::Node &node = gltfElement(model_.nodes, channel.target_node, "node");
        if (nodes_[index].id == kNoNode) {
            leaveOut("it moves node " + std::to_string(index) + ", which the scene does not show");
            return false;
        }
        if (path != "translation" && path != "rotation" && path != "scale" && path != "weights") {
            leaveOut("the path \"" + path + "\" is unknown");
            return false;
        }
        const auto &sampler = gltfElement(animation.samplers, channel.sampler, "sampler");
        if (path == "weights")
            return !addWeights(index, sampler);
        if (!node.matrix.empty())
            throw BadFile("it moves node " + std::to_string(index) + ", which has a matrix");
        Movement &movement =
            motion_.movements.try_emplace(nodes_[index].id, Movement{gltfPose(node), {}, {}, {}})
                .first->second;
        auto &track = path == "translation" ? movement.translation
                      : path == "rotation"  ? movement.rotation
                                            : movement.scale;
        if (track)
            return true;
        const bool isRotation = path == "rotation";
        track = trackOf(sampler, isRotation ? TINYGLTF_TYPE_VEC4 : TINYGLTF_TYPE_VEC3,
                        isRotation ? 4 : 3, isRotation);
        return false;
    }

    /// False when the node's weights are animated already.
    bool addWeights(size_t index, const tinygltf::AnimationSampler &sampler) {
        for (Deformation &each : motion_.deformations)
            if (each.node == nodes_[index].meshId && !each.what->shapes.empty()) {
                if (each.weightsOverTime)
                    return false;
                each.weightsOverTime =
                    trackOf(sampler, TINYGLTF_TYPE_SCALAR, unsigned(each.weights.size()), false);
                return true;
            }
        throw BadFile("it moves the weights of node " + std::to_string(index) +
                      ", which has no morph targets");
    }

    std::shared_ptr<const Track> trackOf(const tinygltf::AnimationSampler &sampler, int type,
                                         unsigned width, bool isRotation) const {
        auto track = std::make_shared<Track>();
        track->isRotation = isRotation;
        track->width = width;
        if (sampler.interpolation == "STEP")
            track->interpolation = Track::kStep;
        else if (sampler.interpolation == "CUBICSPLINE")
            track->interpolation = Track::kCubicSpline;
        else if (sampler.interpolation != "LINEAR")
            throw BadFile("interpolation \"" + sampler.interpolation + "\" is unknown");
        track->times = GltfAccessor(model_, sampler.input, TINYGLTF_TYPE_SCALAR, "input").numbers();
        track->values = GltfAccessor(model_, sampler.output, type, "output").numbers();
        checkKeys(*track);
        return track;
    }

    static void checkKeys(const Track &track) {
        if (track.times.empty())
            throw BadFile("it has no keys");
        const auto falling = std::adjacent_find(track.times.begin(), track.times.end(),
                                                [](float a, float b) { return a >= b; });
        if (falling != track.times.end())
            throw BadFile("its keys are not in order: " + std::to_string(*(falling + 1)) +
                          " s comes after " + std::to_string(*falling) + " s");
        const size_t parts = track.interpolation == Track::kCubicSpline ? 3 : 1;
        const size_t wanted = track.times.size() * parts * track.width;
        if (track.values.size() != wanted)
            throw BadFile("there are " + std::to_string(track.values.size()) + " numbers for " +
                          std::to_string(track.times.size()) + " keys, which take " +
                          std::to_string(wanted));
        for (size_t key = 0; track.isRotation && key < track.times.size(); ++key) {
            const float *value = &track.values[(key * parts + parts / 2) * 4];
            if (std::all_of(value, value + 4, [](float part) { return part == 0; }))
                throw BadFile("the rotation of key " + std::to_string(key) + " is all zeros");
        }
    }

    const tinygltf::Model &model_;
    const std::vector<GltfNode> &nodes_;
    const std::vector<std::shared_ptr<const Deformable>> &meshes_;
    FileNotices &notices_;
    Motion motion_;
};

} // namespace

Pose gltfPose(const tinygltf::Node &node) {
    Pose pose;
    if (has(node.translation, 3, "translation"))
        pose.translation = ZVector(node.translation[0], node.translation[1], node.translation[2]);
    if (has(node.scale, 3, "scale"))
        pose.scale = ZVector(node.scale[0], node.scale[1], node.scale[2]);
    if (has(node.rotation, 4, "rotation")) {
        const auto &r = node.rotation;
        const double length = std::sqrt(r[0] * r[0] + r[1] * r[1] + r[2] * r[2] + r[3] * r[3]);
        if (!(length > 0))
            throw BadFile("its rotation is all zeros");
        pose.rotation = ZQuaternion(r[0] / length, r[1] / length, r[2] / length, r[3] / length);
    }
    return pose;
}

Motion readGltfMotion(const tinygltf::Model &model, const std::vector<GltfNode> &nodes,
                      const std::vector<std::shared_ptr<const Deformable>> &meshes,
                      FileNotices &notices) {
    return MotionReader(model, nodes, meshes, notices).read();
}

} // namespace devhost
