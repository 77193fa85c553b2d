// SPDX-License-Identifier: MIT
#pragma once

// An array of 64-bit floating-point numbers.

#include "host/core/ZArray.h"

extern template class ZArrayOf<double>;

/// A growable array of 64-bit floating-point numbers.
class OPENQUIL_API ZDoubleArray : public ZArrayOf<double> {
  public:
    using ZArrayOf<double>::ZArrayOf;
};
