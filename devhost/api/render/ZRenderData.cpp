// SPDX-License-Identifier: MIT
#include "host/render/ZRenderData.h"

#include "host/core/ZMatrix.h"
#include "host/core/ZPoint.h"
#include "host/core/ZStatus.h"

#include <cmath>
#include <numbers>

namespace {

/// Half the width and height of the view at a depth in front of the eye.
struct HalfView {
    double width, height;
    HalfView(const ZRenderData &data, double depth)
        : width(data.perspective ? std::tan(data.fieldOfView * std::numbers::pi / 360) * depth
                                 : double(data.fieldOfView) / 2),
          height(width / data.aspectRatio) {}
};

} // namespace

ZRenderData::ZRenderData()
    : perspective(false), resX(0), resY(0), left(0), bottom(0), right(0), top(0),
      bytesPerChannel(0), xsize(0), ysize(0), fieldOfView(0), aspectRatio(0), eyePoint(0, 0, 0, 0),
      rgbaArr(nullptr), depthArr(nullptr), internalData(nullptr) {}

void ZRenderData::worldToScreen(ZFloatPoint const &worldPoint, ZFloatPoint &screenPoint) const {
    ZPoint eye = ZPoint(worldPoint) * ZMatrix(worldToEyeMatrix);
    eye.cartesianize();
    const double depth = -eye.z;
    const HalfView half(*this, depth);
    screenPoint = ZFloatPoint(static_cast<float>((eye.x / half.width + 1) * resX / 2),
                              static_cast<float>((eye.y / half.height + 1) * resY / 2),
                              static_cast<float>(depth));
}

void ZRenderData::screenToWorld(ZFloatPoint const &screenPoint, ZFloatPoint &worldPoint) const {
    ZPoint screen(screenPoint);
    screen.cartesianize();
    const HalfView half(*this, screen.z);
    const ZPoint eye((screen.x * 2 / resX - 1) * half.width,
                     (screen.y * 2 / resY - 1) * half.height, -screen.z);
    worldPoint = ZFloatPoint(eye * ZMatrix(worldToEyeMatrix).inverse());
    worldPoint.cartesianize();
}
