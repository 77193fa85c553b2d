#pragma once

// An array of integers.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"

/// A growable array of integers.
class OPENQUIL_API ZIntArray : public ZArrayOf<int> {
  public:
    OPENQUIL_COUNTED(ZIntArray);
    using ZArrayOf<int>::ZArrayOf;
};
