#pragma once

// An array of colours.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"
#include "host/core/ZColor.h"

/// A growable array of colours.
class OPENQUIL_API ZColorArray : public ZArrayOf<ZColor> {
  public:
    OPENQUIL_COUNTED(ZColorArray);
    using ZArrayOf<ZColor>::ZArrayOf;
};
