// SPDX-License-Identifier: MIT
#pragma once

// The values that shader parameters take from what is being drawn.

#include "host/core/ZMatrix.h"
#include "host/render/ZUniformParameter.h"

#include <vector>

namespace devhost {

/// What is being drawn, whoever draws it.
struct DrawState {
    ZMatrix world, view, projection;
    unsigned width = 0, height = 0;
};

/// Writes the values that a semantic stands for over the numbers: matrices into sixteen, row by
/// row; times and frame numbers into the first; the picture's size into two. False, changing
/// nothing, where the semantic or the count of numbers is another.
bool readSemantic(ZUniformParameter::DataSemantic semantic, const DrawState &state,
                  std::vector<double> &numbers);

} // namespace devhost
