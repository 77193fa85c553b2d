// SPDX-License-Identifier: MIT
#pragma once

// What kinds of images and of hardware textures there are.

#include "host/base/HostApi.h"

/// What kinds of images and of hardware textures there are.
class OPENQUIL_API ZImageFileInfo {
  public:
    /// What the values of an image mean.
    enum ZImageType : int {
        /// Whatever the image holds, as it is.
        kImageTypeUnknown = 0,
        /// Colours.
        kImageTypeColor = 1,
        /// Directions of surface normals.
        kImageTypeNormal = 2,
        /// Heights.
        kImageTypeBump = 3
    };
    /// What a texture is in the graphics hardware.
    enum ZHwTextureType : int {
        /// No texture, or one of no known kind.
        kHwTextureUnknown = 0,
        /// A row of pixels.
        kHwTexture1D = 1,
        /// An image.
        kHwTexture2D = 2,
        /// A stack of images.
        kHwTexture3D = 3,
        /// An image whose texture coordinates are pixels.
        kHwTextureRectangle = 4,
        /// Six images around a point.
        kHwTextureCubeMap = 5
    };
};
