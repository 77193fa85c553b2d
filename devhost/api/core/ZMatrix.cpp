// SPDX-License-Identifier: MIT
// A 4 by 4 transformation matrix in double precision.
#include "host/core/ZMatrix.h"

#include "host/core/ZFloatMatrix.h"
#include "host/core/ZStatus.h"

#include <Imath/ImathMatrix.h>

#include <cstring>
#include <stdexcept>

using Scalar = double;
using Matrix = ZMatrix;

#include "devhost/api/core/MatrixOperations.inc"

ZMatrix::ZMatrix(const double elements[4][4]) {
    std::memcpy(matrix, elements, sizeof matrix);
}

ZMatrix::ZMatrix(const ZFloatMatrix &other) {
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            matrix[row][column] = static_cast<double>(other.matrix[row][column]);
}
