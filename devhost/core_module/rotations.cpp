// SPDX-License-Identifier: MIT
// Rotations: quaternions and angles around the axes.

#include "devhost/core_module/values.h"
#include "host/core/ZMatrix.h"
#include "wrappers/rows/constants.h"

#define ROW_LIST "devhost/core_module/rotations.def"
#define ROW_TABLE rotation_rows
#include "wrappers/rows/make_rows.h"

CONSTANTS(rotation_constants, ENUMERATOR(ZEulerRotation, kXYZ), ENUMERATOR(ZEulerRotation, kYZX),
          ENUMERATOR(ZEulerRotation, kZXY), ENUMERATOR(ZEulerRotation, kXZY),
          ENUMERATOR(ZEulerRotation, kYXZ), ENUMERATOR(ZEulerRotation, kZYX))
