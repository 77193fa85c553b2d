// SPDX-License-Identifier: MIT
#pragma once

// An array of 64-bit unsigned integers.

#include "host/core/ZArray.h"

extern template class ZArrayOf<unsigned long>;

/// A growable array of 64-bit unsigned integers.
class OPENQUIL_API ZUint64Array : public ZArrayOf<unsigned long> {
  public:
    using ZArrayOf<unsigned long>::ZArrayOf;
};
