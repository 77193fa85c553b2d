// SPDX-License-Identifier: MIT
#pragma once

// The timeline for people: as a file for a viewer, and as a table.

#include "host/core/ZStatus.h"

#include <string>

namespace quilhost {

/// Writes the timeline, which has stopped, in the Chrome trace format.
ZStatus writeTrace(const std::string &file);

/// One line for each name, those with the most own time first.
std::string statsTable();

} // namespace quilhost
