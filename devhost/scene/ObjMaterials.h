// SPDX-License-Identifier: MIT
#pragma once

// The material libraries (.mtl) of .obj files.

#include "devhost/scene/SceneGraph.h"
#include "devhost/util/Notices.h"

#include <map>
#include <string>

namespace devhost {

/// Adds a node for each material of the library, and one for each of their textures, unless there
/// is a material of that name already. Throws BadFile with the library's name.
void addObjMaterials(const std::string &path, Scene &scene, FileNotices &notices,
                     std::map<std::string, NodeId, std::less<>> &materials);

} // namespace devhost
