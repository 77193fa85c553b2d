#pragma once

// An array of unsigned integers.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"

/// A growable array of unsigned integers.
class OPENQUIL_API ZUintArray : public ZArrayOf<unsigned int> {
  public:
    OPENQUIL_COUNTED(ZUintArray);
    using ZArrayOf<unsigned int>::ZArrayOf;
};
