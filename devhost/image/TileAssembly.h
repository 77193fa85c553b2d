// SPDX-License-Identifier: MIT
#pragma once

// Pictures that were rendered in parts.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"

#include <string>
#include <vector>

namespace devhost {

/// Writes the file that one render of all parts would have written, byte for byte. OpenEXR files
/// tell their places by their data windows, which have to make up rows of a rectangle; all their
/// channels are kept. PNG files are clear outside of their parts. Fails where the files do not fit
/// together, cannot be read or the picture cannot be written.
OPENQUIL_API ZStatus assembleTiles(const std::vector<std::string> &tiles, const std::string &path);

} // namespace devhost
