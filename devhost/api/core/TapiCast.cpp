// SPDX-License-Identifier: MIT
// Casts from the core library's containers to the base library's.
#include "host/base/TapiCast.h"

#include "host/core/ZStringArray.h"

TstringArray &TapiCast::stringArray(ZStringArray &array) {
    return array;
}
