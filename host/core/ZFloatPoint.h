// SPDX-License-Identifier: MIT
#pragma once

// A place in space in homogeneous coordinates, in single precision.

#include "host/base/HostApi.h"

class ZStatus;
class ZPoint;
class ZFloatVector;
class ZFloatMatrix;

/// A place in space in homogeneous coordinates, in single precision.
class OPENQUIL_API ZFloatPoint {
  public:
    /// The x coordinate.
    float x;
    /// The y coordinate.
    float y;
    /// The z coordinate.
    float z;
    /// The weight: the place is x, y and z divided by it.
    float w;

    /// Makes the origin.
    constexpr ZFloatPoint() : x(0), y(0), z(0), w(1) {}
    /// Makes a point from its coordinates.
    constexpr ZFloatPoint(float xx, float yy, float zz = 0, float ww = 1)
        : x(xx), y(yy), z(zz), w(ww) {}
    /// Makes a point from the other precision.
    explicit ZFloatPoint(const ZPoint &other);
    /// Makes the point that the vector leads to from the origin.
    explicit ZFloatPoint(const ZFloatVector &vector);

    /// Returns the coordinate x, y, z or w for the index 0 to 3.
    float &operator[](unsigned index) {
        return index == 0 ? x : index == 1 ? y : index == 2 ? z : w;
    }
    /// Returns the coordinate x, y, z or w for the index 0 to 3.
    float operator[](unsigned index) const {
        return index == 0 ? x : index == 1 ? y : index == 2 ? z : w;
    }
    /// Copies the four coordinates to the destination.
    ZStatus get(float destination[4]) const;

    /// Returns the point moved by the vector, with weight one.
    ZFloatPoint operator+(const ZFloatVector &vector) const;
    /// Returns the point moved back by the vector, with weight one.
    ZFloatPoint operator-(const ZFloatVector &vector) const;
    /// Returns the vector from the other point to this one.
    ZFloatVector operator-(const ZFloatPoint &other) const;
    /// Returns the point with x, y and z scaled by the factor; the weight stays.
    ZFloatPoint operator*(float factor) const { return {x * factor, y * factor, z * factor, w}; }
    /// Returns the row of four coordinates times the matrix; the weight is not divided out.
    ZFloatPoint operator*(const ZFloatMatrix &matrix) const;
    /// Moves this point by the vector; its weight becomes one.
    ZFloatPoint &operator+=(const ZFloatVector &vector) { return *this = *this + vector; }
    /// Moves this point back by the vector; its weight becomes one.
    ZFloatPoint &operator-=(const ZFloatVector &vector) { return *this = *this - vector; }
    /// Replaces this point by itself times the matrix.
    ZFloatPoint &operator*=(const ZFloatMatrix &matrix) { return *this = *this * matrix; }
    /// Returns true when all four coordinates are the same.
    bool operator==(const ZFloatPoint &p) const {
        return x == p.x && y == p.y && z == p.z && w == p.w;
    }

    /// Divides all coordinates by the weight, which becomes one; fails with kFailure, and changes
    /// nothing, when the weight is zero.
    ZStatus cartesianize();
    /// Returns the distance between the places.
    float distanceTo(const ZFloatPoint &other) const;
    /// Returns true when the places are no further apart than the tolerance.
    bool isEquivalent(const ZFloatPoint &other, float tolerance = 1.0e-5f) const;
};
