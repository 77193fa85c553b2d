// SPDX-License-Identifier: MIT
#pragma once

// The hardware renderer's shapes, made when first taken and dropped when all are given back.

#include "host/render/ZHardwareRenderer.h"

namespace devhost {

struct GeometryReference {
    ZGeometryData *data = nullptr;
    unsigned dataCount = 0;
    unsigned *indices = nullptr;
    unsigned indexCount = 0;
};

/// All zeros when there is no such shape.
GeometryReference referenceShape(ZHardwareRenderer::GeometricShape shape);
/// False when the streams are not in use, or not of that number.
bool dereferenceShape(const ZGeometryData *data, unsigned dataCount);

} // namespace devhost
