// SPDX-License-Identifier: MIT
// Places in both precisions, and the box that encloses some.

#include "devhost/core_module/values.h"
#include "host/core/ZBoundingBox.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZMatrix.h"

#define ROW_LIST "devhost/core_module/points.def"
#define ROW_TABLE point_rows
#include "wrappers/rows/make_rows.h"
