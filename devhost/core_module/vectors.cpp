// SPDX-License-Identifier: MIT
// Directions and displacements in both precisions.

#include "devhost/core_module/values.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZMatrix.h"

#define ROW_LIST "devhost/core_module/vectors.def"
#define ROW_TABLE vector_rows
#include "wrappers/rows/make_rows.h"
