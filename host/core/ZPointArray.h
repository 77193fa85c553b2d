// SPDX-License-Identifier: MIT
#pragma once

// An array of double-precision points.

#include "host/core/ZArray.h"
#include "host/core/ZPoint.h"

extern template class ZArrayOf<ZPoint>;

/// A growable array of double-precision points.
class OPENQUIL_API ZPointArray : public ZArrayOf<ZPoint> {
  public:
    using ZArrayOf<ZPoint>::ZArrayOf;
};
