// SPDX-License-Identifier: MIT
#pragma once

// The software renderer's side of the registered render callbacks.

#include "host/base/HostApi.h"

class ZRenderData;
class ZRenderShadowData;

namespace devhost {

OPENQUIL_API bool hasRenderCallbacks();

// Each calls one member of all registered callbacks, in their order, on the calling thread. Native
// exceptions end with the callback that threw them: they are counted in the render session and
// reported through it.
OPENQUIL_API void runShadowCastCallbacks(const ZRenderShadowData &data);
OPENQUIL_API void runRenderCallbacks(const ZRenderData &data);
OPENQUIL_API void runPostProcessCallbacks(const ZRenderData &data);

} // namespace devhost
