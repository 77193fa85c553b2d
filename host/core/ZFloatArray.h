// SPDX-License-Identifier: MIT
#pragma once

// An array of 32-bit floating-point numbers.

#include "host/core/ZArray.h"

extern template class ZArrayOf<float>;

/// A growable array of 32-bit floating-point numbers.
class OPENQUIL_API ZFloatArray : public ZArrayOf<float> {
  public:
    using ZArrayOf<float>::ZArrayOf;
};
