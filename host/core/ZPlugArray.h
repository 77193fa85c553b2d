#pragma once

// An array of plugs.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"
#include "host/core/ZPlug.h"

/// An array of plugs.
class OPENQUIL_API ZPlugArray : public ZArrayOf<ZPlug> {
  public:
    OPENQUIL_COUNTED(ZPlugArray);
    using ZArrayOf<ZPlug>::ZArrayOf;
};
