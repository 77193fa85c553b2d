// SPDX-License-Identifier: MIT
#pragma once

// An array of unsigned integers.

#include "host/core/ZArray.h"

extern template class ZArrayOf<unsigned int>;

/// A growable array of unsigned integers.
class OPENQUIL_API ZUintArray : public ZArrayOf<unsigned int> {
  public:
    using ZArrayOf<unsigned int>::ZArrayOf;
};
