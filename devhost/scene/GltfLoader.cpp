// SPDX-License-Identifier: MIT
// Reader of .gltf and .glb files: the tree of nodes, cameras and lights; what else there is has
// files of its own.
#include "devhost/scene/GltfAccessor.h"
#include "devhost/scene/GltfMaterials.h"
#include "devhost/scene/GltfMeshes.h"
#include "devhost/scene/GltfMotion.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/scene/SceneLoader.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <set>
#include <sstream>

namespace devhost {

namespace {

constexpr const char *kExtensions[] = {"KHR_lights_punctual", "KHR_materials_emissive_strength",
                                       "KHR_materials_unlit", "KHR_mesh_quantization",
                                       "KHR_texture_transform"};

bool isSupported(const std::string &extension) {
    return std::find(std::begin(kExtensions), std::end(kExtensions), extension) !=
           std::end(kExtensions);
}

double degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

ZVector color(const std::vector<double> &value, const ZVector &otherwise) {
    return value.size() >= 3 ? ZVector(value[0], value[1], value[2]) : otherwise;
}

/// Throws where a node's matrix is none that carries points and can be undone. One that makes all
/// vanish is let through: files hide things so.
void checkMatrix(const ZMatrix &matrix, bool vanishes) {
    for (const auto &row : matrix.matrix)
        for (double value : row)
            if (!std::isfinite(value))
                throw BadFile("its transform is not finite");
    for (unsigned row = 0; row < 4; ++row)
        if (matrix[row][3] != (row == 3 ? 1 : 0))
            throw BadFile("its matrix is not affine");
    if (!vanishes && matrix.isSingular())
        throw BadFile("its transform has no inverse");
}

class GltfReader {
  public:
    GltfReader(const tinygltf::Model &model, const GltfImages &images, Scene &scene,
               FileNotices &notices)
        : model_(model), scene_(scene), notices_(notices),
          materials_(addGltfMaterials(model, images, scene, notices)), nodes_(model.nodes.size()),
          meshes_(model.meshes.size()) {}

    void read() {
        std::vector<std::pair<int, NodeId>> todo; // nodes of the file, and their parents here
        for (int root : rootNodes())
            todo.emplace_back(root, kNoNode);
        std::set<int> seen;
        for (size_t at = 0; at < todo.size(); ++at) {
            const int index = todo[at].first;
            const NodeId parent = todo[at].second;
            const tinygltf::Node &node = gltfElement(model_.nodes, index, "node");
            const std::string place = gltfPlace("node", size_t(index), node.name);
            if (!seen.insert(index).second)
                throw BadFile(place + " has several parents, or is its own");
            const NodeId id = inPlace(place, [&] { return addNode(node, parent, nodes_[index]); });
            for (int child : node.children)
                todo.emplace_back(child, id);
        }
        scene_.setMotion(readGltfMotion(model_, nodes_, meshes_, notices_));
    }

  private:
    std::vector<int> rootNodes() const {
        if (!model_.scenes.empty())
            return gltfElement(model_.scenes, std::max(model_.defaultScene, 0), "scene").nodes;
        std::vector<int> roots;
        std::set<int> children;
        for (const tinygltf::Node &node : model_.nodes)
            children.insert(node.children.begin(), node.children.end());
        for (int index = 0; index < int(model_.nodes.size()); ++index)
            if (!children.contains(index))
                roots.push_back(index);
        if (roots.empty() && !model_.nodes.empty())
            throw BadFile("every node is a child of another");
        return roots;
    }

    NodeId addNode(const tinygltf::Node &node, NodeId parent, GltfNode &added) {
        // What a node carries becomes the node itself where it is one thing only, else children.
        std::vector<std::pair<std::string, Payload>> carried;
        if (node.mesh >= 0)
            if (auto mesh = meshOf(node.mesh))
                carried.emplace_back("mesh", mesh);
        if (node.camera >= 0)
            carried.emplace_back("camera", cameraOf(node.camera));
        if (auto light = lightOf(node))
            carried.emplace_back("light", *light);
        const bool single = carried.size() == 1;
        const NodeId id = single
                              ? scene_.add(carried[0].first, node.name, carried[0].second, parent)
                              : scene_.add("transform", node.name, {}, parent);
        scene_.edit(id)->local = localMatrix(node);
        added.id = id;
        for (const auto &[type, payload] : carried) {
            const NodeId carrier = single ? id : scene_.add(type, type, payload, id);
            if (type == "mesh")
                added.meshId = carrier;
        }
        return id;
    }

    static ZMatrix localMatrix(const tinygltf::Node &node) {
        if (node.matrix.empty()) {
            const Pose pose = gltfPose(node);
            checkMatrix(pose.matrix(), pose.scale == ZVector());
            return pose.matrix();
        }
        if (node.matrix.size() != 16)
            throw BadFile("its matrix has " + std::to_string(node.matrix.size()) + " numbers");
        ZMatrix result; // by columns, for columns: just what rows by rows are
        for (unsigned at = 0; at < 16; ++at)
            result[at / 4][at % 4] = node.matrix[at];
        checkMatrix(result, false);
        return result;
    }

    Camera cameraOf(int index) const {
        const tinygltf::Camera &from = gltfElement(model_.cameras, index, "camera");
        Camera camera;
        if (from.type == "orthographic") {
            const auto &lens = from.orthographic;
            camera.orthographic = true;
            camera.orthographicWidth = 2 * lens.xmag;
            camera.filmAspect = lens.ymag != 0 ? std::abs(lens.xmag / lens.ymag) : 1;
            camera.nearClip = lens.znear;
            camera.farClip = lens.zfar;
            return camera;
        }
        const auto &lens = from.perspective;
        if (!(lens.yfov > 0 && lens.yfov < std::numbers::pi))
            throw BadFile("camera " + std::to_string(index) + " has a bad field of view");
        camera.filmAspect = lens.aspectRatio > 0 ? lens.aspectRatio : 4.0 / 3.0;
        camera.verticalFieldOfView = degrees(lens.yfov);
        camera.horizontalFieldOfView =
            degrees(2 * std::atan(std::tan(lens.yfov / 2) * camera.filmAspect));
        camera.nearClip = lens.znear;
        if (lens.zfar > lens.znear)
            camera.farClip = lens.zfar; // none means infinite: keep the default
        return camera;
    }

    std::optional<Light> lightOf(const tinygltf::Node &node) const {
        const auto extension = node.extensions.find("KHR_lights_punctual");
        if (extension == node.extensions.end() || !extension->second.Has("light"))
            return {};
        const int index = extension->second.Get("light").GetNumberAsInt();
        const tinygltf::Light &from = gltfElement(model_.lights, index, "light");
        Light light;
        light.color = color(from.color, ZVector(1, 1, 1));
        light.intensity = from.intensity;
        if (from.type == "point" || from.type == "spot")
            light.decay = 2;
        else if (from.type != "directional")
            throw BadFile("light type \"" + from.type + "\" is unknown");
        light.kind = from.type == "point"  ? Light::kPoint
                     : from.type == "spot" ? Light::kSpot
                                           : Light::kDirectional;
        if (from.range > 0)
            notices_.add("light range", gltfPlace("light", size_t(index), from.name),
                         "it has a range", "it reaches everywhere");
        light.innerCone = from.spot.innerConeAngle;
        light.outerCone = from.spot.outerConeAngle;
        return light;
    }

    std::shared_ptr<const Mesh> meshOf(int index) {
        gltfElement(model_.meshes, index, "mesh");
        std::shared_ptr<const Deformable> &mesh = meshes_[size_t(index)];
        if (!mesh)
            mesh = std::make_shared<const Deformable>(
                readGltfMesh(model_, index, materials_, notices_));
        return mesh->rest;
    }

    const tinygltf::Model &model_;
    Scene &scene_;
    FileNotices &notices_;
    std::vector<NodeId> materials_;
    std::vector<GltfNode> nodes_;
    std::vector<std::shared_ptr<const Deformable>> meshes_; // null until they are shown
};

/// What the parser found wrong although it went on. It wants inverse bind matrices, which a skin
/// need not have, and drops channels that only an extension knows the node of.
void checkComplaints(const std::string &complaints, FileNotices &notices) {
    std::istringstream lines(complaints);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.find("inverseBindMatrices") != std::string::npos)
            continue;
        if (line.find("node") == std::string::npos)
            throw BadFile(line);
        notices.add("animation", "animations", "a channel has no node", "it is left out");
    }
}

/// What the parser says, without the numbers of its own: "line 3, column 5: ...".
std::string withoutNumber(const std::string &error) {
    const size_t line = error.rfind("[json", 0) == 0 ? error.find("line ") : 0;
    return line == std::string::npos ? error : error.substr(line);
}

void checkExtensions(const tinygltf::Model &model, FileNotices &notices) {
    for (const std::string &extension : model.extensionsRequired)
        if (!isSupported(extension))
            throw BadFile("it needs the extension " + extension);
    for (const std::string &extension : model.extensionsUsed)
        if (!isSupported(extension))
            notices.add("extension", "extension " + extension, "it is not supported",
                        "what it adds is left out");
}

} // namespace

void loadGltf(const std::string &path, Scene &scene, FileNotices &notices) {
    tinygltf::TinyGLTF parser;
    GltfImages images;
    images.listenTo(parser);
    tinygltf::Model model;
    std::string error, warning;
    const bool binary = path.back() == 'b' || path.back() == 'B';
    if (!(binary ? parser.LoadBinaryFromFile(&model, &error, &warning, path)
                 : parser.LoadASCIIFromFile(&model, &error, &warning, path)))
        throw BadFile(error.empty() ? "it is no glTF file" : withoutNumber(error));
    checkExtensions(model, notices);
    checkComplaints(error, notices);
    images.readBuffers(model);
    GltfReader(model, images, scene, notices).read();
}

} // namespace devhost
