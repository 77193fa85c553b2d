// SPDX-License-Identifier: MIT
#pragma once

// Reads the file beside a scene file that describes layers, passes, image sources and light links;
// docs/layers.md tells its format.

#include "host/core/ZStatus.h"

#include <string>

namespace devhost {

class Scene;

/// The name of the file that belongs to a scene file: its name with ".layers.json" in place of the
/// extension.
std::string layerFileOf(const std::string &scenePath);

/// Adds what the file describes to a scene. On failure the status says in one line what is wrong
/// and where, and the scene is left half done.
ZStatus loadLayers(const std::string &path, Scene &scene);

} // namespace devhost
