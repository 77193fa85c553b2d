// SPDX-License-Identifier: MIT
// A direction or displacement in space, in single precision.
#include "host/core/ZFloatVector.h"

#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPoint.h"
#include "host/core/ZStatus.h"
#include "host/core/ZVector.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

using Scalar = float;
using Vector = ZFloatVector;
using Matrix = ZFloatMatrix;

#include "devhost/api/core/VectorOperations.inc"

ZFloatVector::ZFloatVector(const ZVector &other)
    : x(static_cast<float>(other.x)), y(static_cast<float>(other.y)),
      z(static_cast<float>(other.z)) {}

ZFloatVector::ZFloatVector(const ZFloatPoint &point) : x(point.x), y(point.y), z(point.z) {}
