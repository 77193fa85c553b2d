// SPDX-License-Identifier: MIT
#pragma once

// A direction or displacement in space, in double precision.

#include "host/base/HostApi.h"

class ZStatus;
class ZFloatVector;
class ZPoint;
class ZMatrix;
class ZQuaternion;

/// A direction or displacement in space, in double precision.
class OPENQUIL_API ZVector {
  public:
    /// The x coordinate.
    double x;
    /// The y coordinate.
    double y;
    /// The z coordinate.
    double z;

    /// Makes the zero vector.
    constexpr ZVector() : x(0), y(0), z(0) {}
    /// Makes a vector from its coordinates.
    constexpr ZVector(double xx, double yy, double zz = 0) : x(xx), y(yy), z(zz) {}
    /// Makes a vector from the other precision.
    ZVector(const ZFloatVector &other);
    /// Makes the vector from the origin to the point's x, y and z; its w is left out.
    explicit ZVector(const ZPoint &point);

    /// Returns the coordinate x, y or z for the index 0, 1 or 2.
    double &operator[](unsigned index) { return index == 0 ? x : index == 1 ? y : z; }
    /// Returns the coordinate x, y or z for the index 0, 1 or 2.
    double operator[](unsigned index) const { return index == 0 ? x : index == 1 ? y : z; }
    /// Copies the three coordinates to the destination.
    ZStatus get(double destination[3]) const;

    /// Returns the sum.
    ZVector operator+(const ZVector &v) const { return {x + v.x, y + v.y, z + v.z}; }
    /// Returns the difference.
    ZVector operator-(const ZVector &v) const { return {x - v.x, y - v.y, z - v.z}; }
    /// Returns the opposite vector.
    ZVector operator-() const { return {-x, -y, -z}; }
    /// Returns the vector scaled by the factor.
    ZVector operator*(double factor) const { return {x * factor, y * factor, z * factor}; }
    /// Returns the vector divided by the divisor.
    ZVector operator/(double divisor) const { return {x / divisor, y / divisor, z / divisor}; }
    /// Returns the dot product.
    double operator*(const ZVector &v) const { return x * v.x + y * v.y + z * v.z; }
    /// Returns the cross product.
    ZVector operator^(const ZVector &v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    /// Returns the row vector times the matrix's upper left 3 by 3 part: a displacement is not
    /// moved by the translation.
    ZVector operator*(const ZMatrix &matrix) const;
    /// Adds the vector to this one.
    ZVector &operator+=(const ZVector &v) { return *this = *this + v; }
    /// Subtracts the vector from this one.
    ZVector &operator-=(const ZVector &v) { return *this = *this - v; }
    /// Scales this vector by the factor.
    ZVector &operator*=(double factor) { return *this = *this * factor; }
    /// Divides this vector by the divisor.
    ZVector &operator/=(double divisor) { return *this = *this / divisor; }
    /// Returns true when all coordinates are the same.
    bool operator==(const ZVector &v) const { return x == v.x && y == v.y && z == v.z; }

    /// Returns the length.
    double length() const { return __builtin_sqrt(*this * *this); }
    /// Returns the vector of length one in the same direction, or the zero vector for the zero
    /// vector.
    ZVector normal() const;
    /// Gives this vector the length one; fails with kFailure when it is the zero vector.
    ZStatus normalize();
    /// Returns the angle to the other vector in radians, from 0 to pi; 0 when one is the zero
    /// vector.
    double angle(const ZVector &other) const;
    /// Returns the vector as a surface normal carried along by the matrix: times the transposed
    /// inverse of its upper left 3 by 3 part, of length one.
    ZVector transformAsNormal(const ZMatrix &matrix) const;
    /// Returns the vector turned by the unit quaternion.
    ZVector rotateBy(const ZQuaternion &rotation) const;
    /// Returns true when the difference is no longer than the tolerance.
    bool isEquivalent(const ZVector &other, double tolerance = 1.0e-10) const;
    /// Returns true when both point along the same line, one way or the other, so that the sine of
    /// the angle is within the tolerance.
    bool isParallel(const ZVector &other, double tolerance = 1.0e-10) const;
};

/// Returns the vector scaled by the factor.
inline ZVector operator*(double factor, const ZVector &v) {
    return v * factor;
}
