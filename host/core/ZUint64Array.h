#pragma once

// An array of 64-bit unsigned integers.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"

/// A growable array of 64-bit unsigned integers.
class OPENQUIL_API ZUint64Array : public ZArrayOf<unsigned long> {
  public:
    OPENQUIL_COUNTED(ZUint64Array);
    using ZArrayOf<unsigned long>::ZArrayOf;
};
