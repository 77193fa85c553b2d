// SPDX-License-Identifier: MIT
#pragma once

// Polygons into triangles.

#include "host/core/ZFloatVector.h"

#include <span>
#include <vector>

namespace devhost {

/// The direction that a polygon faces, with the length of twice its area. Its corners need not lie
/// in one plane.
ZVector polygonNormal(std::span<const ZFloatVector> corners);

/// Appends the corners' numbers of n - 2 triangles that make up a polygon of n corners; those of a
/// polygon that crosses itself lie all around its first corner.
void cutPolygon(std::span<const ZFloatVector> corners, std::vector<unsigned> &triangles);

} // namespace devhost
