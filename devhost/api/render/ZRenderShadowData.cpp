// SPDX-License-Identifier: MIT
#include "host/render/ZRenderShadowData.h"

#include "devhost/raytrace/ShadowMaps.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZPoint.h"
#include "host/core/ZStatus.h"

#include <cmath>

ZRenderShadowData::ZRenderShadowData()
    : perspective(false), useMidDistMap(false), lightType(kInvalid), shadowResX(0), shadowResY(0),
      lightPosition(0, 0, 0, 0), depthMaps(nullptr), midDistMaps(nullptr), internalData(nullptr) {}

void ZRenderShadowData::worldToZbuffer(ZFloatPoint const &worldPoint,
                                       ZFloatPoint &zbufferPoint) const {
    ZPoint inLight = ZPoint(worldPoint) * ZMatrix(projectionMatrix);
    inLight.cartesianize();
    const unsigned face = lightType == kPoint ? devhost::shadowMapFace(inLight) : 0;
    const ZPoint inMap =
        lightType == kPoint ? inLight * devhost::shadowMapFaceMatrix(face) : inLight;
    ZPoint square = inMap * ZMatrix(perspectiveMatrix);
    square.cartesianize();
    zbufferPoint = ZFloatPoint(static_cast<float>((square.x + 1) / 2 * shadowResX),
                               static_cast<float>(((square.y + 1) / 2 + face) * shadowResY),
                               static_cast<float>(-inMap.z));
}

void ZRenderShadowData::zbufferToWorld(ZFloatPoint const &zbufferPoint,
                                       ZFloatPoint &worldPoint) const {
    ZPoint buffer(zbufferPoint);
    buffer.cartesianize();
    double row = buffer.y / shadowResY;
    unsigned face = 0;
    if (lightType == kPoint) {
        face = static_cast<unsigned>(std::fmin(std::fmax(std::floor(row), 0), 5));
        row -= face;
    }
    // The square's scale grows with the depth in perspective only.
    const double scale = perspective ? buffer.z : 1;
    const ZPoint inMap((buffer.x / shadowResX * 2 - 1) * scale / perspectiveMatrix(0, 0),
                       (row * 2 - 1) * scale / perspectiveMatrix(1, 1), -buffer.z);
    const ZPoint inLight =
        lightType == kPoint ? inMap * devhost::shadowMapFaceMatrix(face).inverse() : inMap;
    worldPoint = ZFloatPoint(inLight * ZMatrix(projectionMatrix).inverse());
    worldPoint.cartesianize();
}
