// SPDX-License-Identifier: MIT
#pragma once

// Calculations that pictures need by the million.

#include "host/core/ZFloatVector.h"
#include "host/core/ZVector.h"

#include <cmath>

namespace devhost {

/// As ZFloatVector's constructor.
inline ZFloatVector rounded(const ZVector &v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/// As ZFloatVector::normal, in single precision wherever the squares fit that.
inline ZFloatVector unit(const ZFloatVector &v) {
    const float squares = v * v;
    return squares > 1e-30f && squares < 1e30f ? v * (1 / std::sqrt(squares)) : v.normal();
}

} // namespace devhost
