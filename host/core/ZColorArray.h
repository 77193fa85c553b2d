// SPDX-License-Identifier: MIT
#pragma once

// An array of colours.

#include "host/core/ZArray.h"
#include "host/core/ZColor.h"

extern template class ZArrayOf<ZColor>;

/// A growable array of colours.
class OPENQUIL_API ZColorArray : public ZArrayOf<ZColor> {
  public:
    using ZArrayOf<ZColor>::ZArrayOf;
};
