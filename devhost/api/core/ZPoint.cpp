// SPDX-License-Identifier: MIT
// A place in space in homogeneous coordinates, in double precision.
#include "host/core/ZPoint.h"

#include "host/core/ZFloatPoint.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZStatus.h"
#include "host/core/ZVector.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

using Scalar = double;
using Point = ZPoint;
using Vector = ZVector;
using Matrix = ZMatrix;

#include "devhost/api/core/PointOperations.inc"

ZPoint::ZPoint(const ZFloatPoint &other)
    : x(static_cast<double>(other.x)), y(static_cast<double>(other.y)),
      z(static_cast<double>(other.z)), w(static_cast<double>(other.w)) {}

ZPoint::ZPoint(const ZVector &vector) : x(vector.x), y(vector.y), z(vector.z), w(1) {}
