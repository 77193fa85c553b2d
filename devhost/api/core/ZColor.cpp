// SPDX-License-Identifier: MIT
// A colour with opacity.
#include "host/core/ZColor.h"

#include "host/core/ZStatus.h"

ZStatus ZColor::get(float destination[4]) const {
    for (unsigned i = 0; i < 4; ++i)
        destination[i] = (*this)[i];
    return ZStatus();
}
