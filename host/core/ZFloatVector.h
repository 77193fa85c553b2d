// SPDX-License-Identifier: MIT
#pragma once

// A direction or displacement in space, in single precision.

#include "host/base/HostApi.h"

class ZStatus;
class ZVector;
class ZFloatPoint;
class ZFloatMatrix;

/// A direction or displacement in space, in single precision.
class OPENQUIL_API ZFloatVector {
  public:
    /// The x coordinate.
    float x;
    /// The y coordinate.
    float y;
    /// The z coordinate.
    float z;

    /// Makes the zero vector.
    constexpr ZFloatVector() : x(0), y(0), z(0) {}
    /// Makes a vector from its coordinates.
    constexpr ZFloatVector(float xx, float yy, float zz = 0) : x(xx), y(yy), z(zz) {}
    /// Makes a vector from the other precision.
    explicit ZFloatVector(const ZVector &other);
    /// Makes the vector from the origin to the point's x, y and z; its w is left out.
    explicit ZFloatVector(const ZFloatPoint &point);

    /// Returns the coordinate x, y or z for the index 0, 1 or 2.
    float &operator[](unsigned index) { return index == 0 ? x : index == 1 ? y : z; }
    /// Returns the coordinate x, y or z for the index 0, 1 or 2.
    float operator[](unsigned index) const { return index == 0 ? x : index == 1 ? y : z; }
    /// Copies the three coordinates to the destination.
    ZStatus get(float destination[3]) const;

    /// Returns the sum.
    ZFloatVector operator+(const ZFloatVector &v) const { return {x + v.x, y + v.y, z + v.z}; }
    /// Returns the difference.
    ZFloatVector operator-(const ZFloatVector &v) const { return {x - v.x, y - v.y, z - v.z}; }
    /// Returns the opposite vector.
    ZFloatVector operator-() const { return {-x, -y, -z}; }
    /// Returns the vector scaled by the factor.
    ZFloatVector operator*(float factor) const { return {x * factor, y * factor, z * factor}; }
    /// Returns the vector divided by the divisor.
    ZFloatVector operator/(float divisor) const { return {x / divisor, y / divisor, z / divisor}; }
    /// Returns the dot product.
    float operator*(const ZFloatVector &v) const { return x * v.x + y * v.y + z * v.z; }
    /// Returns the cross product.
    ZFloatVector operator^(const ZFloatVector &v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    /// Returns the row vector times the matrix's upper left 3 by 3 part: a displacement is not
    /// moved by the translation.
    ZFloatVector operator*(const ZFloatMatrix &matrix) const;
    /// Adds the vector to this one.
    ZFloatVector &operator+=(const ZFloatVector &v) { return *this = *this + v; }
    /// Subtracts the vector from this one.
    ZFloatVector &operator-=(const ZFloatVector &v) { return *this = *this - v; }
    /// Scales this vector by the factor.
    ZFloatVector &operator*=(float factor) { return *this = *this * factor; }
    /// Divides this vector by the divisor.
    ZFloatVector &operator/=(float divisor) { return *this = *this / divisor; }
    /// Returns true when all coordinates are the same.
    bool operator==(const ZFloatVector &v) const { return x == v.x && y == v.y && z == v.z; }

    /// Returns the length.
    float length() const {
        return static_cast<float>(__builtin_sqrt(double{x} * x + double{y} * y + double{z} * z));
    }
    /// Returns the vector of length one in the same direction, or the zero vector for the zero
    /// vector.
    ZFloatVector normal() const;
    /// Gives this vector the length one; fails with kFailure when it is the zero vector.
    ZStatus normalize();
    /// Returns the angle to the other vector in radians, from 0 to pi; 0 when one is the zero
    /// vector.
    float angle(const ZFloatVector &other) const;
    /// Returns the vector as a surface normal carried along by the matrix: times the transposed
    /// inverse of its upper left 3 by 3 part, of length one.
    ZFloatVector transformAsNormal(const ZFloatMatrix &matrix) const;
    /// Returns true when the difference is no longer than the tolerance.
    bool isEquivalent(const ZFloatVector &other, float tolerance = 1.0e-5f) const;
    /// Returns true when both point along the same line, one way or the other, so that the sine of
    /// the angle is within the tolerance.
    bool isParallel(const ZFloatVector &other, float tolerance = 1.0e-5f) const;
};

/// Returns the vector scaled by the factor.
inline ZFloatVector operator*(float factor, const ZFloatVector &v) {
    return v * factor;
}
