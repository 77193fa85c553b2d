#pragma once

// An array of times.

#include "host/core/ZArray.h"
#include "host/core/ZTime.h"

/// A growable array of times.
class OPENQUIL_API ZTimeArray : public ZArrayOf<ZTime> {
  public:
    using ZArrayOf<ZTime>::ZArrayOf;
};
