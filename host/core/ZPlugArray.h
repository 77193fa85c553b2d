// SPDX-License-Identifier: MIT
#pragma once

// An array of plugs.

#include "host/core/ZArray.h"
#include "host/core/ZPlug.h"

/// An array of plugs.
class OPENQUIL_API ZPlugArray : public ZArrayOf<ZPlug> {
  public:
    using ZArrayOf<ZPlug>::ZArrayOf;
};
