// SPDX-License-Identifier: MIT
#pragma once

// Casts from the core library's containers to the base library's that they are made of.

#include "host/base/TstringArray.h"

class ZStringArray;

/// Casts from core containers to base containers.
class OPENQUIL_API TapiCast {
  public:
    /// Returns the base library's view of the same array; changes go to the array itself.
    static TstringArray &stringArray(ZStringArray &array);
};
