#pragma once

// An array of 32-bit floating-point numbers.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"

/// A growable array of 32-bit floating-point numbers.
class OPENQUIL_API ZFloatArray : public ZArrayOf<float> {
  public:
    OPENQUIL_COUNTED(ZFloatArray);
    using ZArrayOf<float>::ZArrayOf;
};
