// SPDX-License-Identifier: MIT
// Choice of the reader by extension, and the change of scene.
#include "devhost/scene/SceneLoader.h"

#include "devhost/image/TextureImage.h"
#include "devhost/scene/LayerFile.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/util/FileName.h"
#include "devhost/util/Notices.h"
#include "devhost/util/Timeline.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <set>

namespace devhost {

namespace {

/// The materials that some triangle has.
std::set<NodeId> shownMaterials(const Scene &scene) {
    std::set<NodeId> result;
    for (NodeId id : scene.meshes()) {
        NodeId last = kNoNode; // triangles of one material come in runs
        for (NodeId material : scene.node(id)->mesh()->materials)
            if (material != last)
                result.insert(last = material);
    }
    return result;
}

ZStatus load(const std::string &given) {
    namespace fs = std::filesystem;
    std::error_code problem;
    const fs::path path = fs::absolute(given, problem).lexically_normal();
    if (given.empty() || !fs::exists(path, problem))
        return ZStatus(ZStatus::kNotFound, ("scene file not found: " + given).c_str());
    const std::string extension = lowerExtension(path);
    if (extension != ".obj" && extension != ".gltf" && extension != ".glb")
        return ZStatus(ZStatus::kInvalidParameter,
                       ("unsupported scene file (use .obj, .gltf or .glb): " + given).c_str());
    if (!fs::is_regular_file(path, problem) || !std::ifstream(path).is_open())
        return ZStatus(ZStatus::kFailure, ("scene file cannot be read: " + given).c_str());

    Scene fresh;
    FileNotices notices(path.string());
    (extension == ".obj" ? loadObj : loadGltf)(path.string(), fresh, notices);
    if (fresh.meshes().empty())
        throw BadFile("it holds no triangles");
    fresh.setFileName(path.string());
    fresh.addDefaults();
    if (const std::string layers = layerFileOf(path.string()); fs::exists(layers, problem))
        if (const ZStatus wrong = loadLayers(layers, fresh); !wrong)
            return wrong;
    scene().replaceBy(std::move(fresh));
    notices.tellAll();
    tellUnreadableTextures();
    return ZStatus();
}

} // namespace

void tellUnreadableTextures() {
    const Scene &all = scene();
    const std::string file = std::filesystem::path(all.fileName()).filename().string();
    for (NodeId id : shownMaterials(all)) {
        const Node *node = all.node(id);
        if (!node || !node->material())
            continue;
        for (NodeId texture : {node->material()->texture, node->material()->emissionTexture}) {
            std::shared_ptr<const Pixels> pixels;
            if (!all.node(texture) || texturePixels(texture, pixels))
                continue;
            const std::string &name = all.node(texture)->texture()->fileName;
            const std::string place = "material '" + node->name + "', texture '" +
                                      (name.empty() ? all.node(texture)->name : name) + "'";
            tell({"texture", file, place, whyUnreadable(*all.node(texture)->texture()),
                  "the material is shown without it"});
        }
    }
}

ZStatus loadScene(const std::string &path) {
    const Stage stage("load");
    try {
        return load(path);
    } catch (const std::bad_alloc &) {
        return ZStatus(ZStatus::kInsufficientMemory, ("scene file is too large: " + path).c_str());
    } catch (const std::exception &error) {
        return cannotLoad(path, error.what());
    }
}

ZStatus cannotLoad(const std::string &path, const std::string &why) {
    return ZStatus(ZStatus::kFailure,
                   ("cannot load " + path + ": " + why.substr(0, why.find('\n'))).c_str());
}

void newScene() {
    Scene fresh;
    fresh.addDefaults();
    scene().replaceBy(std::move(fresh));
}

} // namespace devhost
