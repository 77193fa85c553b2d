// SPDX-License-Identifier: MIT
#pragma once

// A place in space in homogeneous coordinates, in double precision.

#include "host/base/HostApi.h"

class ZStatus;
class ZFloatPoint;
class ZVector;
class ZMatrix;

/// A place in space in homogeneous coordinates, in double precision.
class OPENQUIL_API ZPoint {
  public:
    /// The x coordinate.
    double x;
    /// The y coordinate.
    double y;
    /// The z coordinate.
    double z;
    /// The weight: the place is x, y and z divided by it.
    double w;

    /// Makes the origin.
    constexpr ZPoint() : x(0), y(0), z(0), w(1) {}
    /// Makes a point from its coordinates.
    constexpr ZPoint(double xx, double yy, double zz = 0, double ww = 1)
        : x(xx), y(yy), z(zz), w(ww) {}
    /// Makes a point from the other precision.
    ZPoint(const ZFloatPoint &other);
    /// Makes the point that the vector leads to from the origin.
    explicit ZPoint(const ZVector &vector);

    /// Returns the coordinate x, y, z or w for the index 0 to 3.
    double &operator[](unsigned index) {
        return index == 0 ? x : index == 1 ? y : index == 2 ? z : w;
    }
    /// Returns the coordinate x, y, z or w for the index 0 to 3.
    double operator[](unsigned index) const {
        return index == 0 ? x : index == 1 ? y : index == 2 ? z : w;
    }
    /// Copies the four coordinates to the destination.
    ZStatus get(double destination[4]) const;

    /// Returns the point moved by the vector, with weight one.
    ZPoint operator+(const ZVector &vector) const;
    /// Returns the point moved back by the vector, with weight one.
    ZPoint operator-(const ZVector &vector) const;
    /// Returns the vector from the other point to this one.
    ZVector operator-(const ZPoint &other) const;
    /// Returns the point with x, y and z scaled by the factor; the weight stays.
    ZPoint operator*(double factor) const { return {x * factor, y * factor, z * factor, w}; }
    /// Returns the row of four coordinates times the matrix; the weight is not divided out.
    ZPoint operator*(const ZMatrix &matrix) const;
    /// Moves this point by the vector; its weight becomes one.
    ZPoint &operator+=(const ZVector &vector) { return *this = *this + vector; }
    /// Moves this point back by the vector; its weight becomes one.
    ZPoint &operator-=(const ZVector &vector) { return *this = *this - vector; }
    /// Replaces this point by itself times the matrix.
    ZPoint &operator*=(const ZMatrix &matrix) { return *this = *this * matrix; }
    /// Returns true when all four coordinates are the same.
    bool operator==(const ZPoint &p) const { return x == p.x && y == p.y && z == p.z && w == p.w; }

    /// Divides all coordinates by the weight, which becomes one; fails with kFailure, and changes
    /// nothing, when the weight is zero.
    ZStatus cartesianize();
    /// Returns the distance between the places.
    double distanceTo(const ZPoint &other) const;
    /// Returns true when the places are no further apart than the tolerance.
    bool isEquivalent(const ZPoint &other, double tolerance = 1.0e-10) const;
};
