// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/HostApi.h"

#include <vector>

namespace devhost {

/// A place in a pixel, each coordinate 0 to 1.
struct PixelSample {
    double right, up;
};

/// Where in a pixel the given number of samples are taken, at least 1: each in a column and a row
/// of its own, and turned so that nearly level and nearly upright edges are smoothed too.
OPENQUIL_API std::vector<PixelSample> samplePattern(unsigned count);

} // namespace devhost
