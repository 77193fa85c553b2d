#pragma once

// An array of double-precision vectors.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"
#include "host/core/ZVector.h"

/// A growable array of double-precision vectors.
class OPENQUIL_API ZVectorArray : public ZArrayOf<ZVector> {
  public:
    OPENQUIL_COUNTED(ZVectorArray);
    using ZArrayOf<ZVector>::ZArrayOf;
};
