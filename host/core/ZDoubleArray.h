#pragma once

// An array of 64-bit floating-point numbers.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"

/// A growable array of 64-bit floating-point numbers.
class OPENQUIL_API ZDoubleArray : public ZArrayOf<double> {
  public:
    OPENQUIL_COUNTED(ZDoubleArray);
    using ZArrayOf<double>::ZArrayOf;
};
