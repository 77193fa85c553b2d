// SPDX-License-Identifier: MIT
#pragma once

// Which files textures and background images are read from.

#include "host/core/ZObject.h"
#include "host/core/ZStatus.h"

#include <string>

namespace devhost {

/// The name below the scene's folder, or the name itself where it does not lie there.
std::string relativeToScene(const std::string &name);

/// Puts the frame in place of the last run of digits or "#" in the file name proper.
std::string withFrame(const std::string &name, const std::string &frame);
/// Puts the tile in place of every "<UDIM>".
std::string withTile(const std::string &name, const std::string &tile);

/// Each gives an absolute name through `file`, and fails with kNotFound when there is no such file.
ZStatus existingFile(const std::string &name, std::string &file);
ZStatus textureFile(const ZObject &texture, std::string &file);
ZStatus backgroundFile(const ZObject &camera, std::string &file);

/// textureFile, with a .psd written beside itself as .png: always, or where that is missing or
/// older.
ZStatus convertedFile(const ZObject &texture, bool always, std::string &file);

} // namespace devhost
