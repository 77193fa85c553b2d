// SPDX-License-Identifier: MIT
#pragma once

// An array of single-precision points.

#include "host/core/ZArray.h"
#include "host/core/ZFloatPoint.h"

extern template class ZArrayOf<ZFloatPoint>;

/// A growable array of single-precision points.
class OPENQUIL_API ZFloatPointArray : public ZArrayOf<ZFloatPoint> {
  public:
    using ZArrayOf<ZFloatPoint>::ZArrayOf;
};
