// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/HostApi.h"
#include "host/render/ZCommonRenderSettings.h"

#include <string>
#include <vector>

namespace devhost {

/// What the settings ask for and this host does not do, one line each.
OPENQUIL_API std::vector<std::string> unmetSettings(const ZCommonRenderSettingsData &settings);

} // namespace devhost
