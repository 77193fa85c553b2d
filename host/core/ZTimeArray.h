// SPDX-License-Identifier: MIT
#pragma once

// An array of times.

#include "host/core/ZArray.h"
#include "host/core/ZTime.h"

extern template class ZArrayOf<ZTime>;

/// A growable array of times.
class OPENQUIL_API ZTimeArray : public ZArrayOf<ZTime> {
  public:
    using ZArrayOf<ZTime>::ZArrayOf;
};
