// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/HostApi.h"

#include <string>

namespace devhost {

/// Writes the places of frame numbers in a file name as runs of #, as many as the number has
/// digits:
/// "%04d" and "$F4" become "####", "%d" and "$F" become "#".
OPENQUIL_API std::string hashPlaces(const std::string &name);

} // namespace devhost
