// SPDX-License-Identifier: MIT
#pragma once

// The Direct3D 9 counterpart of the hardware renderer's swatch functions.

#include "host/base/HostApi.h"
#include "host/core/ZColor.h"

class ZImage;
class ZStatus;

class IDirect3DDevice9;

/// Drawing of swatches with Direct3D 9. Where there is no Direct3D, as in the development host,
/// there is no device and every operation fails with kNotImplemented.
class OPENQUIL_API ZD3D9Renderer {
  public:
    /// The one renderer of the process.
    static ZD3D9Renderer *theRenderer();

    /// The platform's device; none where there is no Direct3D.
    IDirect3DDevice9 *getD3D9Device();
    /// Makes the swatch context current, of a size of at least width by height, which become the
    /// true size.
    ZStatus makeSwatchContextCurrent(unsigned int &width, unsigned int &height);
    /// Reads the swatch context's pixels into an image.
    ZStatus readSwatchContextPixels(ZImage &image);
    /// Sets the colour that the swatch context is cleared to.
    ZStatus setBackgroundColor(ZColor const &color);
};
