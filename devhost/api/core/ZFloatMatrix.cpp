// SPDX-License-Identifier: MIT
// A 4 by 4 transformation matrix in single precision.
#include "host/core/ZFloatMatrix.h"

#include "host/core/ZMatrix.h"
#include "host/core/ZStatus.h"

#include <Imath/ImathMatrix.h>

#include <cstring>
#include <stdexcept>

using Scalar = float;
using Matrix = ZFloatMatrix;

#include "devhost/api/core/MatrixOperations.inc"

ZFloatMatrix::ZFloatMatrix(const float elements[4][4]) {
    std::memcpy(matrix, elements, sizeof matrix);
}

ZFloatMatrix::ZFloatMatrix(const ZMatrix &other) {
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            matrix[row][column] = static_cast<float>(other.matrix[row][column]);
}
