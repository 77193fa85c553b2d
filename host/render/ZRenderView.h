// SPDX-License-Identifier: MIT
#pragma once

// The host's render view: collects the picture that a renderer sends in blocks of pixels.

#include "host/base/HostApi.h"
#include "host/core/ZString.h"

class ZDagPath;
class ZStatus;

/// One pixel of the render view: a colour that is not multiplied by the opacity. Its values are
/// sRGB codes, 0 to 1; those of pictures that are sent with the high-dynamic-range flag are linear
/// light without bounds.
struct OPENQUIL_API RV_PIXEL {
    /// Red.
    float r = 0.0f;
    /// Green.
    float g = 0.0f;
    /// Blue.
    float b = 0.0f;
    /// Opacity: 0 is transparent, 1 opaque.
    float a = 0.0f;
};

/// One extra layer (such as depth or normals) that a block of pixels carries beside its colours.
struct OPENQUIL_API RV_AOV {
    /// Makes a layer without name and values.
    RV_AOV();
    RV_AOV(const RV_AOV &other);
    RV_AOV &operator=(const RV_AOV &other) = default;
    ~RV_AOV();
    /// The number of values per pixel.
    unsigned int numberOfChannels = 0;
    /// The layer's name.
    ZString name;
    /// The layer's values for the block of pixels it comes with, in the same order,
    /// numberOfChannels values per pixel; null until it is set. The memory stays the caller's: a
    /// layer never frees it.
    float *pPixels = nullptr;
};

/// The render view. One picture at a time: open it with startRender or startRegionRender, send
/// its pixels with updatePixels in blocks of any size and order, close it with endRender. Pixel
/// coordinates count from the lower left corner of the picture, and a block's right and top
/// borders belong to it. Calls that come in the wrong order fail with kFailure.
class OPENQUIL_API ZRenderView {
  public:
    /// Makes an object of no state: all operations are static.
    ZRenderView();
    /// Destroys it; the picture in the view stays.
    ~ZRenderView();

    /// True when there is a render view to send pixels to. The development host always has one.
    static bool doesRenderEditorExist();
    /// Names the camera that the next picture is seen from. Fails with kInvalidParameter when the
    /// path is not that of a camera.
    static ZStatus setCurrentCamera(ZDagPath &cameraDagPath);
    /// Tells the part of the picture that is to be rendered: the open picture's region, or else
    /// the one that was asked for (quilhost's --region), or else the whole picture of the current
    /// resolution. Fails with kFailure when that is zero.
    static ZStatus getRenderRegion(unsigned int &left, unsigned int &right, unsigned int &bottom,
                                   unsigned int &top);
    /// Opens a picture of the given size. It starts transparent black, or with the previous
    /// picture of this size when doNotClearBackground is true. immediateFeedback asks for progress
    /// to be told at every updatePixels instead of at refresh. Fails with kInvalidParameter when a
    /// size is zero or above 16384, and with kFailure when a picture is open already.
    static ZStatus startRender(unsigned int width, unsigned int height,
                               bool doNotClearBackground = false, bool immediateFeedback = false);
    /// Opens a region of a picture of the given size: pixels outside the region keep the previous
    /// picture of this size. doNotClearBackground keeps those inside as well. Fails as startRender
    /// does, and with kInvalidParameter when the region is empty or not inside the picture.
    static ZStatus startRegionRender(unsigned int imageWidth, unsigned int imageHeight,
                                     unsigned int regionLeft, unsigned int regionRight,
                                     unsigned int regionBottom, unsigned int regionTop,
                                     bool doNotClearBackground = false,
                                     bool immediateFeedback = false);
    /// Sends a block of (right-left+1) x (top-bottom+1) pixels, its rows from the bottom up, with
    /// numberOfAOVs extra layers. isHdr tells that colours are linear light rather than sRGB codes.
    /// Either kind of picture is written to PNG files as codes, clamped to 0..1, and to OpenEXR
    /// files as light, multiplied by the opacity; extra layers are written as they are. Fails with
    /// kInvalidParameter when the block is empty or not inside the open region, when a pointer is
    /// null, when isHdr or a layer's channel count differs from earlier blocks, and when there are
    /// fewer layers, or, as far as the host knows the memory (that of buffers which scripts made),
    /// fewer pixels or values of a layer than the block has.
    static ZStatus updatePixels(unsigned int left, unsigned int right, unsigned int bottom,
                                unsigned int top, RV_PIXEL *pPixels, bool isHdr = false,
                                unsigned int numberOfAOVs = 0, const RV_AOV *const pAOVs = nullptr);
    /// Shows the block, whose pixels have been sent. Fails with kInvalidParameter when the block
    /// is empty or not inside the picture.
    static ZStatus refresh(unsigned int left, unsigned int right, unsigned int bottom,
                           unsigned int top);
    /// Closes the picture and writes it to the render's output file, if there is one: PNG, or
    /// OpenEXR with the extra layers. Fails with kFailure when no picture is open or the file
    /// cannot be written; the picture is closed in any case.
    static ZStatus endRender();
    /// Turns the drawing of tile borders on or off. It does not touch what is written to files.
    static ZStatus setDrawTileBoundary(bool draw);
    /// Returns "ZRenderView".
    static const char *className();
};
