// SPDX-License-Identifier: MIT
#pragma once

// Texture files for drawing with OpenGL.

#include "host/base/HostApi.h"
#include "host/core/ZImageFileInfo.h"

class ZObject;
class ZPlug;
class ZStatus;
class ZString;

/// A registered texture file. Handles are 1 and above.
using ZHwTextureFileHandle = int;

/// Texture files for drawing with OpenGL: files are registered under handles, and the textures of
/// files and nodes are bound to the current texture unit.
class OPENQUIL_API ZHwTextureManager {
  public:
    /// Returns "ZHwTextureManager".
    static const char *className();

    /// Binds the image of a texture node (or of the texture on a material's colour) to the current
    /// texture unit of the current OpenGL context, and tells the kind of texture. The image is
    /// uploaded when it was not yet, the same way for every image type. Fails with
    /// kInvalidParameter when the node has no texture or the image type is unknown, with kNotFound
    /// when there is no such file, and with kFailure when the file cannot be read or there is no
    /// OpenGL. The kind of texture is told even where only OpenGL is missing.
    static ZStatus glBind(ZObject const &object, ZImageFileInfo::ZHwTextureType &type,
                          ZImageFileInfo::ZImageType imageType = ZImageFileInfo::kImageTypeUnknown);
    /// Binds the texture that an attribute is or has: any attribute of a texture node, or the
    /// colour ("diffuse") of a material with a texture. Fails as the form for nodes.
    static ZStatus glBind(ZPlug const &plug, ZImageFileInfo::ZHwTextureType &type,
                          ZImageFileInfo::ZImageType imageType = ZImageFileInfo::kImageTypeUnknown);
    /// Binds a registered texture file. Fails with kInvalidParameter for an unknown handle, else as
    /// the form for nodes.
    static ZStatus glBind(ZHwTextureFileHandle const &handle, ZImageFileInfo::ZHwTextureType &type,
                          ZImageFileInfo::ZImageType imageType = ZImageFileInfo::kImageTypeUnknown);

    /// Reads an image file and gives its handle. A file that is registered already gets the same
    /// handle and one registration more. Fails with kNotFound when there is no such file and with
    /// kFailure when it cannot be read; the handle is then 0.
    static ZStatus registerTextureFile(ZString const &fileName, ZHwTextureFileHandle &handle);
    /// Takes one registration of the file back; after the last one the handle is unknown. Fails
    /// with kInvalidParameter for an unknown handle.
    static ZStatus deregisterTextureFile(ZHwTextureFileHandle const &handle);
    /// Gives the absolute name of a registered file. Fails with kInvalidParameter for an unknown
    /// handle. Scripts get no name from it, only the status.
    static ZStatus textureFile(ZHwTextureFileHandle const &handle, ZString &fileName);
};
