// SPDX-License-Identifier: MIT
#pragma once

// Opening of scene files.

#include "host/base/HostApi.h"

class ZStatus;
class ZString;

/// Opening of scene files.
class OPENQUIL_API ZFileIO {
  public:
    /// Replaces the scene by the file's contents (.obj, .gltf or .glb). On failure the scene is
    /// unchanged: kNotFound when there is no such file, kInvalidParameter for an unknown extension,
    /// kFailure when the file cannot be read or holds no usable mesh.
    static ZStatus open(const ZString &fileName);
    /// Replaces the scene by one that holds the default camera, lights and layer only.
    static ZStatus newScene();
    /// The absolute name of the scene's file; empty for a new scene.
    static ZString currentFile();

    /// The class's name, "ZFileIO".
    static const char *className();
};
