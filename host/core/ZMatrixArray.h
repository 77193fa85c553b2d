// SPDX-License-Identifier: MIT
#pragma once

// An array of double-precision matrices.

#include "host/core/ZArray.h"
#include "host/core/ZMatrix.h"

extern template class ZArrayOf<ZMatrix>;

/// A growable array of double-precision matrices.
class OPENQUIL_API ZMatrixArray : public ZArrayOf<ZMatrix> {
  public:
    using ZArrayOf<ZMatrix>::ZArrayOf;
};
