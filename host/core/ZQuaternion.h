// SPDX-License-Identifier: MIT
#pragma once

// A rotation as a unit quaternion.

#include "host/base/HostApi.h"

class ZMatrix;
class ZStatus;
class ZVector;

/// A rotation as a quaternion of length one.
class OPENQUIL_API ZQuaternion {
  public:
    /// The x component of the vector part.
    double x;
    /// The y component of the vector part.
    double y;
    /// The z component of the vector part.
    double z;
    /// The scalar part.
    double w;

    /// Makes the rotation that turns nothing.
    constexpr ZQuaternion() : x(0), y(0), z(0), w(1) {}
    /// Makes a quaternion from its components.
    constexpr ZQuaternion(double xx, double yy, double zz, double ww)
        : x(xx), y(yy), z(zz), w(ww) {}
    /// Makes the rotation by the angle, in radians, around the axis, counter-clockwise when the
    /// axis points at the viewer; turns nothing when the axis is the zero vector.
    ZQuaternion(double angle, const ZVector &axis);
    /// Makes the smallest rotation that turns the first direction to the second.
    ZQuaternion(const ZVector &from, const ZVector &to);
    /// Makes the rotation of the matrix's upper left 3 by 3 part, which must be a pure rotation.
    explicit ZQuaternion(const ZMatrix &rotation);

    /// Becomes the rotation by the angle, in radians, around the axis, and returns it.
    ZQuaternion &setAxisAngle(const ZVector &axis, double angle);
    /// Gives the axis, of length one, and the angle in radians; returns false when nothing is
    /// turned, and then gives the z axis and 0.
    bool getAxisAngle(ZVector &axis, double &angle) const;
    /// Returns the rotation as a matrix.
    ZMatrix asMatrix() const;

    /// Returns the product: first this rotation, then the right one, as with matrices.
    ZQuaternion operator*(const ZQuaternion &right) const;
    /// Replaces this rotation by its product with the right one.
    ZQuaternion &operator*=(const ZQuaternion &right) { return *this = *this * right; }
    /// Returns true when all components are the same.
    bool operator==(const ZQuaternion &other) const {
        return x == other.x && y == other.y && z == other.z && w == other.w;
    }

    /// Returns the quaternion with the vector part reversed.
    ZQuaternion conjugate() const { return {-x, -y, -z, w}; }
    /// Returns the inverse, or the rotation that turns nothing when all components are zero.
    ZQuaternion inverse() const;
    /// Returns the quaternion scaled to length one, or the rotation that turns nothing when all
    /// components are zero.
    ZQuaternion normal() const;
    /// Scales this quaternion to length one; fails with kFailure when all components are zero.
    ZStatus normalize();
    /// Returns true when no component differs by more than the tolerance.
    bool isEquivalent(const ZQuaternion &other, double tolerance = 1.0e-10) const;
    /// Returns the rotation the given part (0 to 1) of the shorter way from the first to the
    /// second.
    static ZQuaternion slerp(const ZQuaternion &from, const ZQuaternion &to, double part);
};
