// SPDX-License-Identifier: MIT
#pragma once

// An array of single-precision vectors.

#include "host/core/ZArray.h"
#include "host/core/ZFloatVector.h"

extern template class ZArrayOf<ZFloatVector>;

/// A growable array of single-precision vectors.
class OPENQUIL_API ZFloatVectorArray : public ZArrayOf<ZFloatVector> {
  public:
    using ZArrayOf<ZFloatVector>::ZArrayOf;
};
