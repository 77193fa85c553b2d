#pragma once

// An array of double-precision points.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"
#include "host/core/ZPoint.h"

/// A growable array of double-precision points.
class OPENQUIL_API ZPointArray : public ZArrayOf<ZPoint> {
  public:
    OPENQUIL_COUNTED(ZPointArray);
    using ZArrayOf<ZPoint>::ZArrayOf;
};
