// SPDX-License-Identifier: MIT
#pragma once

// Reading of texture images.

#include "devhost/scene/SceneGraph.h"
#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"

#include <memory>
#include <string>

namespace devhost {

/// The absolute name of a file that a scene names: as it stands, else below the scene's folder,
/// else below the working folder; empty when there is no such file.
OPENQUIL_API std::string resolveFile(const std::string &name);

/// Decodes an image file: OpenEXR, or what decodeImage knows. Fails with kNotFound when there is no
/// such file, and with kFailure when it cannot be read.
OPENQUIL_API ZStatus readImage(const std::string &fileName, std::shared_ptr<const Pixels> &pixels);

/// The pixels of a texture node of a scene, read on first use. Fails with kInvalidParameter when
/// the node is no texture, else as readImage does. Not for rendering threads: call it before they
/// start.
OPENQUIL_API ZStatus texturePixels(NodeId id, std::shared_ptr<const Pixels> &pixels,
                                   const Scene &from = scene());

/// Why the image of a texture cannot be had, as a sentence; it is read to find out.
OPENQUIL_API std::string whyUnreadable(const Texture &texture);

/// The colour, as light, and alpha, each 0 to 1, at texture coordinates: v runs upwards, and the
/// centres of the pixels have their exact colours. What lies between and beside them is as the
/// texture says; without one the image is smooth and repeats.
OPENQUIL_API void sampleImage(const Pixels &pixels, double u, double v, double rgba[4],
                              const Texture &how = {});

} // namespace devhost
