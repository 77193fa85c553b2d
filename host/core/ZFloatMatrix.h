// SPDX-License-Identifier: MIT
#pragma once

// A 4 by 4 transformation matrix in single precision.

#include "host/base/HostApi.h"

class ZStatus;
class ZMatrix;

/// A 4 by 4 transformation matrix in single precision. Points are rows that stand to its left, so
/// the translation is in row 3, and of a product the left factor acts first.
class OPENQUIL_API ZFloatMatrix {
  public:
    /// The elements, by row and column.
    float matrix[4][4];

    /// Makes the identity.
    ZFloatMatrix() { setToIdentity(); }
    /// Makes a matrix from its elements.
    explicit ZFloatMatrix(const float elements[4][4]);
    /// Makes a matrix from the other precision.
    explicit ZFloatMatrix(const ZMatrix &other);

    /// Returns the element at the row and column, each 0 to 3.
    float &operator()(unsigned row, unsigned column) { return matrix[row][column]; }
    /// Returns the element at the row and column, each 0 to 3.
    float operator()(unsigned row, unsigned column) const { return matrix[row][column]; }
    /// Returns the four elements of the row, 0 to 3.
    float *operator[](unsigned row) { return matrix[row]; }
    /// Returns the four elements of the row, 0 to 3.
    const float *operator[](unsigned row) const { return matrix[row]; }
    /// Copies the elements to the destination, by row and column.
    ZStatus get(float destination[4][4]) const;

    /// Becomes the identity and returns this matrix.
    ZFloatMatrix &setToIdentity();
    /// Becomes the product of left and right and returns this matrix.
    ZFloatMatrix &setToProduct(const ZFloatMatrix &left, const ZFloatMatrix &right);
    /// Returns the product: first this transformation, then the right one.
    ZFloatMatrix operator*(const ZFloatMatrix &right) const;
    /// Replaces this matrix by its product with the right one.
    ZFloatMatrix &operator*=(const ZFloatMatrix &right) { return *this = *this * right; }
    /// Returns the matrix with every element scaled by the factor.
    ZFloatMatrix operator*(float factor) const;
    /// Returns the sum, element by element.
    ZFloatMatrix operator+(const ZFloatMatrix &other) const;
    /// Returns the difference, element by element.
    ZFloatMatrix operator-(const ZFloatMatrix &other) const;
    /// Returns true when all elements are the same.
    bool operator==(const ZFloatMatrix &other) const;

    /// Returns the transposed matrix.
    ZFloatMatrix transpose() const;
    /// Returns the inverse, or the identity when isSingular().
    ZFloatMatrix inverse() const;
    /// Returns true when the matrix has no inverse.
    bool isSingular() const;
    /// Returns the determinant.
    float det4x4() const;
    /// Returns the determinant of the upper left 3 by 3 part.
    float det3x3() const;
    /// Returns true when no element differs by more than the tolerance.
    bool isEquivalent(const ZFloatMatrix &other, float tolerance = 1.0e-5f) const;
};
