// SPDX-License-Identifier: MIT
// A direction or displacement in space, in double precision.
#include "host/core/ZVector.h"

#include "host/core/ZFloatVector.h"
#include "host/core/ZMatrix.h"
#include "host/core/ZPoint.h"
#include "host/core/ZQuaternion.h"
#include "host/core/ZStatus.h"

#include <Imath/ImathMatrix.h>
#include <Imath/ImathVec.h>

using Scalar = double;
using Vector = ZVector;
using Matrix = ZMatrix;

#include "devhost/api/core/VectorOperations.inc"

ZVector::ZVector(const ZFloatVector &other)
    : x(static_cast<double>(other.x)), y(static_cast<double>(other.y)),
      z(static_cast<double>(other.z)) {}

ZVector::ZVector(const ZPoint &point) : x(point.x), y(point.y), z(point.z) {}

ZVector ZVector::rotateBy(const ZQuaternion &rotation) const {
    return *this * rotation.asMatrix();
}
