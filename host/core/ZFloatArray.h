#pragma once

// An array of 32-bit floating-point numbers.

#include "host/core/ZArray.h"

/// A growable array of 32-bit floating-point numbers.
class OPENQUIL_API ZFloatArray : public ZArrayOf<float> {
  public:
    using ZArrayOf<float>::ZArrayOf;
};
