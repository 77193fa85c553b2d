// SPDX-License-Identifier: MIT
#pragma once

// Reads scene files into the process's scene.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"

#include <stdexcept>
#include <string>

namespace devhost {

class FileNotices;
class Scene;

/// Replaces the scene by the contents of an .obj, .gltf or .glb file, with the default camera and
/// lights where the file has none, and with the layers and links that a file NAME.layers.json
/// beside it describes, at the time that the scene was at. What is not honoured is told as notices.
/// On failure the scene is unchanged and the status says in one line what is wrong.
OPENQUIL_API ZStatus loadScene(const std::string &path);

/// Replaces the scene by an empty one with the default camera, lights and layer.
OPENQUIL_API void newScene();

/// What makes a file unusable; the text says why.
struct BadFile : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The failure to load a file, with the first line of the reason.
ZStatus cannotLoad(const std::string &path, const std::string &why);

// The readers by format: each fills an empty scene, or throws BadFile.
void loadObj(const std::string &path, Scene &scene, FileNotices &notices);
void loadGltf(const std::string &path, Scene &scene, FileNotices &notices);

/// Reads the textures that the scene's meshes show, as far as they are not read yet, and tells of
/// those that cannot be.
OPENQUIL_API void tellUnreadableTextures();

} // namespace devhost
