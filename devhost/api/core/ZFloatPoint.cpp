// SPDX-License-Identifier: MIT
// A place in space in homogeneous coordinates, in single precision.
#include "host/core/ZFloatPoint.h"

#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatVector.h"
#include "host/core/ZPoint.h"
#include "host/core/ZStatus.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

using Scalar = float;
using Point = ZFloatPoint;
using Vector = ZFloatVector;
using Matrix = ZFloatMatrix;

#include "devhost/api/core/PointOperations.inc"

ZFloatPoint::ZFloatPoint(const ZPoint &other)
    : x(static_cast<float>(other.x)), y(static_cast<float>(other.y)),
      z(static_cast<float>(other.z)), w(static_cast<float>(other.w)) {}

ZFloatPoint::ZFloatPoint(const ZFloatVector &vector)
    : x(vector.x), y(vector.y), z(vector.z), w(1) {}
