// SPDX-License-Identifier: MIT
#pragma once

// A rotation as three angles around the axes.

#include "host/base/HostApi.h"
#include "host/core/ZVector.h"

class ZMatrix;
class ZQuaternion;

/// A rotation as three angles, in radians, around the x, y and z axes, and the order in which the
/// axes turn.
class OPENQUIL_API ZEulerRotation {
  public:
    /// The order in which the axes turn: with kXYZ x is first and z last.
    enum RotationOrder : int { kXYZ = 0, kYZX = 1, kZXY = 2, kXZY = 3, kYXZ = 4, kZYX = 5 };

    /// The angle around the x axis in radians.
    double x;
    /// The angle around the y axis in radians.
    double y;
    /// The angle around the z axis in radians.
    double z;
    /// The order in which the axes turn.
    RotationOrder order;

    /// Makes the rotation that turns nothing, in the order kXYZ.
    constexpr ZEulerRotation() : x(0), y(0), z(0), order(kXYZ) {}
    /// Makes a rotation from its angles in radians; an unknown order means kXYZ.
    constexpr ZEulerRotation(double xx, double yy, double zz, RotationOrder ord = kXYZ)
        : x(xx), y(yy), z(zz), order(ord >= kXYZ && ord <= kZYX ? ord : kXYZ) {}
    /// Makes a rotation from a vector of angles in radians; an unknown order means kXYZ.
    explicit ZEulerRotation(const ZVector &angles, RotationOrder ord = kXYZ)
        : ZEulerRotation(angles.x, angles.y, angles.z, ord) {}

    /// Returns the rotation as a matrix.
    ZMatrix asMatrix() const;
    /// Returns the rotation as a quaternion.
    ZQuaternion asQuaternion() const;
    /// Returns the three angles in radians.
    ZVector asVector() const { return {x, y, z}; }
    /// Returns the same rotation with its axes turning in another order; an unknown order means
    /// kXYZ.
    ZEulerRotation reorder(RotationOrder ord) const;

    /// Returns the angles, in the given order, of the matrix's upper left 3 by 3 part, which must
    /// be a pure rotation; an unknown order means kXYZ. The angle of the second axis is from -pi/2
    /// to pi/2; where it is one of these, that of the third axis is 0.
    static ZEulerRotation decompose(const ZMatrix &rotation, RotationOrder ord);

    /// Returns true when order and angles are the same.
    bool operator==(const ZEulerRotation &other) const {
        return x == other.x && y == other.y && z == other.z && order == other.order;
    }
    /// Returns true when the orders are the same and no angle differs by more than the tolerance.
    bool isEquivalent(const ZEulerRotation &other, double tolerance = 1.0e-10) const;
};
