#pragma once

// An array of node handles.

#include "host/base/TobjectCount.h"
#include "host/core/ZArray.h"
#include "host/core/ZObject.h"

/// An array of node handles.
class OPENQUIL_API ZObjectArray : public ZArrayOf<ZObject> {
  public:
    OPENQUIL_COUNTED(ZObjectArray);
    using ZArrayOf<ZObject>::ZArrayOf;
};
