// SPDX-License-Identifier: MIT
#pragma once

// Evaluation of shading nodes by name.

#include "host/core/ZFloatArray.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPointArray.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZStatus.h"

#include <string>

namespace devhost {

/// The samples to evaluate; what is not known is null.
struct ShadingSamples {
    unsigned count = 0;
    bool castShadows = false;
    ZFloatMatrix cameraToWorld;
    const ZFloatPointArray *points = nullptr;
    const ZFloatArray *u = nullptr, *v = nullptr;
    const ZFloatVectorArray *normals = nullptr;
    const ZFloatPointArray *refPoints = nullptr;
};

/// Colours and transparencies of a material, a texture, "checker" or "noise" at the samples. Fails
/// with kInvalidParameter for an unknown name or where samples lack what the node needs.
ZStatus sampleNetwork(const std::string &name, const ShadingSamples &samples,
                      ZFloatVectorArray &colors, ZFloatVectorArray &transparencies);

} // namespace devhost
