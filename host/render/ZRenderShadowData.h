// SPDX-License-Identifier: MIT
#pragma once

// What a render callback is told about the shadow maps of a light.

#include "host/base/HostApi.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPoint.h"

/// The shadow depth maps of one light. Directional and spot lights have one map; a point light has
/// six, which look along +X, -X, +Y, -Y, +Z and -Z, stacked with the first one lowest. The maps
/// are given for information: the development host traces its shadows, so changing a map does not
/// change the picture. The record and its maps are valid during the callback only.
class OPENQUIL_API ZRenderShadowData {
  public:
    /// The kind of a light.
    enum LightType : int {
        /// Not a light that casts shadows.
        kInvalid = 0,
        /// Shines from a point in all directions.
        kPoint = 1,
        /// Shines in one direction from far away.
        kDirectional = 2,
        /// Shines from a point into a cone.
        kSpot = 3
    };

    /// Makes a record of zeros, null maps and identity matrices.
    ZRenderShadowData();

    /// Turns a world point into shadow map coordinates: x and y in map pixels from the lower left
    /// corner of the lowest map, z the depth as in depthMaps, w 1. Points that the
    /// map of a directional or spot light does not show lie outside it or have a negative depth.
    void worldToZbuffer(ZFloatPoint const &worldPoint, ZFloatPoint &zbufferPoint) const;
    /// Turns shadow map coordinates, as worldToZbuffer gives them, into the world point.
    void zbufferToWorld(ZFloatPoint const &zbufferPoint, ZFloatPoint &worldPoint) const;

    /// True when the maps are seen in perspective (point and spot lights).
    bool perspective;
    /// True when midDistMaps is there. The development host makes none.
    bool useMidDistMap;
    /// The light's kind.
    LightType lightType;
    /// The width of one map in pixels.
    unsigned short shadowResX;
    /// The height of one map in pixels.
    unsigned short shadowResY;
    /// The light's position in world space; for a directional light, the point that its map is
    /// seen from.
    ZFloatPoint lightPosition;
    /// Turns world points (row vectors) into light space, where the light looks down -z.
    ZFloatMatrix projectionMatrix;
    /// Turns light space into the map's square, -1 to 1, before the division by w; for a point
    /// light it is that of each map.
    ZFloatMatrix perspectiveMatrix;
    /// The depths, rows from the bottom up, at y * shadowResX + x: the distance from the light in
    /// scene units, measured along the map's direction; infinite where nothing was hit.
    float *depthMaps;
    /// The middle distances, laid out as depthMaps; null when useMidDistMap is false.
    float *midDistMaps;
    /// For the host's own use.
    void *internalData;
};
