// SPDX-License-Identifier: MIT
#pragma once

// An array of node handles.

#include "host/core/ZArray.h"
#include "host/core/ZObject.h"

/// An array of node handles.
class OPENQUIL_API ZObjectArray : public ZArrayOf<ZObject> {
  public:
    using ZArrayOf<ZObject>::ZArrayOf;
};
