// SPDX-License-Identifier: MIT
#pragma once

// The places of frame numbers in the names of files.

#include "host/base/HostApi.h"

#include <string>

namespace devhost {

/// Writes the places of frame numbers in a file name as runs of #, as many as the number has
/// digits: "%04d" and "$F4" become "####", "%d" and "$F" become "#".
OPENQUIL_API std::string hashPlaces(const std::string &name);

/// "0042", "-0042", "0042.5"; in thousandths, as far as they are not zero.
OPENQUIL_API std::string frameText(double number, unsigned padding);

/// Replaces every run of # by the number, with as many digits as the run is long.
OPENQUIL_API std::string numberHashes(const std::string &name, double number);

} // namespace devhost
