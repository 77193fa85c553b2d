// SPDX-License-Identifier: MIT
#pragma once

// Fields of the common render settings that have no option of their own.

#include "host/render/ZCommonRenderSettings.h"

#include <string>

namespace quilhost {

/// The names of the fields, with commas between.
std::string settingNames();

/// Sets a field as "renumberStart=100" says. Throws std::invalid_argument with a text for the user.
void applySetting(const std::string &assignment, ZCommonRenderSettingsData &settings);

} // namespace quilhost
