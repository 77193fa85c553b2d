// SPDX-License-Identifier: MIT
#pragma once

// An array of paths into the scene's hierarchy.

#include "host/core/ZArray.h"
#include "host/core/ZDagPath.h"

/// An array of paths into the scene's hierarchy.
class OPENQUIL_API ZDagPathArray : public ZArrayOf<ZDagPath> {
  public:
    using ZArrayOf<ZDagPath>::ZArrayOf;
};
