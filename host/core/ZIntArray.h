// SPDX-License-Identifier: MIT
#pragma once

// An array of integers.

#include "host/core/ZArray.h"

extern template class ZArrayOf<int>;

/// A growable array of integers.
class OPENQUIL_API ZIntArray : public ZArrayOf<int> {
  public:
    using ZArrayOf<int>::ZArrayOf;
};
