// SPDX-License-Identifier: MIT
#pragma once

// An array of double-precision vectors.

#include "host/core/ZArray.h"
#include "host/core/ZVector.h"

extern template class ZArrayOf<ZVector>;

/// A growable array of double-precision vectors.
class OPENQUIL_API ZVectorArray : public ZArrayOf<ZVector> {
  public:
    using ZArrayOf<ZVector>::ZArrayOf;
};
