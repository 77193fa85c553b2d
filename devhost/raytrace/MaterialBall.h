// SPDX-License-Identifier: MIT
#pragma once

// The host's own swatch generator.

#include "host/core/ZObject.h"

class ZSwatchRenderBase;

namespace devhost {

/// Begins the picture of a ball of a material, or of a plain material with a texture; null for
/// other nodes. The quality n, 0 to 3, takes (n + 1)² samples a pixel, one at each step.
ZSwatchRenderBase *createMaterialBall(ZObject swatchNode, ZObject node, int resolution);

} // namespace devhost
