// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/HostApi.h"
#include "host/render/ZCommonRenderSettings.h"

namespace devhost {

/// Tells a notice for each setting that asks for something which this host does not do.
OPENQUIL_API void tellUnmetSettings(const ZCommonRenderSettingsData &settings);

} // namespace devhost
