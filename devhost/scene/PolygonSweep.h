// SPDX-License-Identifier: MIT
#pragma once

// Triangles of a polygon in the plane, by a line that sweeps over it: in n log n steps for n
// corners, whatever its shape.

#include <array>
#include <span>
#include <vector>

namespace devhost {

struct PlanePoint {
    double x = 0, y = 0;
};

/// Twice the area of the triangle, negative when it runs clockwise.
inline double turn(const PlanePoint &a, const PlanePoint &b, const PlanePoint &c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// The corners' numbers of the n - 2 triangles of a polygon that runs anticlockwise. Empty when it
/// crosses itself.
std::vector<std::array<unsigned, 3>> sweepPolygon(std::span<const PlanePoint> corners);

} // namespace devhost
