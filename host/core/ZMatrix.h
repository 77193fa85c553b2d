// SPDX-License-Identifier: MIT
#pragma once

// A 4 by 4 transformation matrix in double precision.

#include "host/base/HostApi.h"

class ZStatus;
class ZFloatMatrix;

/// A 4 by 4 transformation matrix in double precision. Points are rows that stand to its left, so
/// the translation is in row 3, and of a product the left factor acts first.
class OPENQUIL_API ZMatrix {
  public:
    /// The elements, by row and column.
    double matrix[4][4];

    /// Makes the identity.
    ZMatrix() { setToIdentity(); }
    /// Makes a matrix from its elements.
    explicit ZMatrix(const double elements[4][4]);
    /// Makes a matrix from the other precision.
    ZMatrix(const ZFloatMatrix &other);

    /// Returns the element at the row and column, each 0 to 3.
    double &operator()(unsigned row, unsigned column) { return matrix[row][column]; }
    /// Returns the element at the row and column, each 0 to 3.
    double operator()(unsigned row, unsigned column) const { return matrix[row][column]; }
    /// Returns the four elements of the row, 0 to 3.
    double *operator[](unsigned row) { return matrix[row]; }
    /// Returns the four elements of the row, 0 to 3.
    const double *operator[](unsigned row) const { return matrix[row]; }
    /// Copies the elements to the destination, by row and column.
    ZStatus get(double destination[4][4]) const;

    /// Becomes the identity and returns this matrix.
    ZMatrix &setToIdentity();
    /// Becomes the product of left and right and returns this matrix.
    ZMatrix &setToProduct(const ZMatrix &left, const ZMatrix &right);
    /// Returns the product: first this transformation, then the right one.
    ZMatrix operator*(const ZMatrix &right) const;
    /// Replaces this matrix by its product with the right one.
    ZMatrix &operator*=(const ZMatrix &right) { return *this = *this * right; }
    /// Returns the matrix with every element scaled by the factor.
    ZMatrix operator*(double factor) const;
    /// Returns the sum, element by element.
    ZMatrix operator+(const ZMatrix &other) const;
    /// Returns the difference, element by element.
    ZMatrix operator-(const ZMatrix &other) const;
    /// Returns true when all elements are the same.
    bool operator==(const ZMatrix &other) const;

    /// Returns the transposed matrix.
    ZMatrix transpose() const;
    /// Returns the inverse, or the identity when isSingular().
    ZMatrix inverse() const;
    /// Returns true when the matrix has no inverse.
    bool isSingular() const;
    /// Returns the determinant.
    double det4x4() const;
    /// Returns the determinant of the upper left 3 by 3 part.
    double det3x3() const;
    /// Returns true when no element differs by more than the tolerance.
    bool isEquivalent(const ZMatrix &other, double tolerance = 1.0e-10) const;
};
