// SPDX-License-Identifier: MIT
#pragma once

// What a render callback is told about a rendered image.

#include "host/base/HostApi.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPoint.h"
#include "host/core/ZFloatVector.h"

/// A rendered image and its view. A callback may change the pixels and depths in place. Pixels
/// whose bytes differ after the last callback are written as these say; all others keep what was
/// rendered, which is finer and may be brighter than bytes can tell. The record is a copy for each
/// call: changing its members changes nothing. It and its buffers are valid during the callback
/// only.
class OPENQUIL_API ZRenderData {
  public:
    /// Makes a record of zeros, null buffers and an identity matrix.
    ZRenderData();

    /// Turns a world point into screen coordinates: x and y in pixels from the lower left corner
    /// of the whole image (pixel centres lie at .5), z the depth as in depthArr, w 1.
    void worldToScreen(ZFloatPoint const &worldPoint, ZFloatPoint &screenPoint) const;
    /// Turns screen coordinates, as worldToScreen gives them, into the world point.
    void screenToWorld(ZFloatPoint const &screenPoint, ZFloatPoint &worldPoint) const;

    /// True for a perspective view, false for an orthographic one.
    bool perspective;
    /// The width of the whole image in pixels.
    unsigned short resX;
    /// The height of the whole image in pixels.
    unsigned short resY;
    /// The first column of the rendered region.
    unsigned short left;
    /// The first (lowest) row of the rendered region.
    unsigned short bottom;
    /// The last column of the rendered region.
    unsigned short right;
    /// The last (topmost) row of the rendered region.
    unsigned short top;
    /// The size of one colour channel in rgbaArr: 1 byte.
    unsigned short bytesPerChannel;
    /// The number of columns in the buffers.
    unsigned short xsize;
    /// The number of rows in the buffers.
    unsigned short ysize;
    /// The horizontal field of view in degrees; the width of the view in scene units when the view
    /// is orthographic.
    float fieldOfView;
    /// The width of the whole image, as shown, divided by its height.
    float aspectRatio;
    /// The unit vector from the eye into the picture, in world space.
    ZFloatVector viewDirection;
    /// The eye's position in world space.
    ZFloatPoint eyePoint;
    /// Turns world points (row vectors) into eye space: x right, y up, looking down -z.
    ZFloatMatrix worldToEyeMatrix;
    /// The pixels of the region, 4 channels each (red, green, blue, opacity), rows from the bottom
    /// up: the pixel in column x and row y of it starts at (y * xsize + x) * 4 * bytesPerChannel.
    /// Colours are sRGB codes and not multiplied by the opacity.
    unsigned char *rgbaArr;
    /// The depths, at y * xsize + x: the distance from the eye in scene units, measured along the
    /// view direction; infinite where nothing was hit.
    float *depthArr;
    /// For the host's own use.
    void *internalData;
};
