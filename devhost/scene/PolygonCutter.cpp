// SPDX-License-Identifier: MIT
// Most polygons are fans around a corner; the others are swept.
#include "devhost/scene/PolygonCutter.h"

#include "devhost/scene/PolygonSweep.h"
#include "host/core/ZVector.h"

#include <algorithm>
#include <cmath>

namespace devhost {

namespace {

using Corners = std::span<const ZFloatVector>;

ZVector cross(const ZFloatVector &a, const ZFloatVector &b, const ZFloatVector &c) {
    return (ZVector(b) - ZVector(a)) ^ (ZVector(c) - ZVector(a));
}

/// Whether all triangles around a corner look the same way as the polygon.
bool isFan(Corners corners, size_t around, const ZVector &normal) {
    const size_t count = corners.size();
    for (size_t step = 1; step + 1 < count; ++step)
        if (cross(corners[around], corners[(around + step) % count],
                  corners[(around + step + 1) % count]) *
                normal <
            0)
            return false;
    return true;
}

void addFan(size_t count, size_t around, std::vector<unsigned> &triangles) {
    for (size_t step = 1; step + 1 < count; ++step)
        for (size_t corner : {around, around + step, around + step + 1})
            triangles.push_back(unsigned(corner % count));
}

/// A quadrilateral is cut along its shorter diagonal, if that lies inside.
size_t bestOfFour(Corners corners, const ZVector &normal) {
    const bool first = isFan(corners, 0, normal), second = isFan(corners, 1, normal);
    if (first != second)
        return first ? 0 : 1;
    return (corners[2] - corners[0]).length() < (corners[3] - corners[1]).length() ? 0 : 1;
}

/// The polygon along the axis that it faces most, so that it runs anticlockwise.
std::vector<PlanePoint> flattened(Corners corners, const ZVector &normal) {
    unsigned across = 0;
    for (unsigned axis : {1u, 2u})
        if (std::abs(normal[axis]) > std::abs(normal[across]))
            across = axis;
    unsigned x = (across + 1) % 3, y = (across + 2) % 3;
    if (normal[across] < 0)
        std::swap(x, y);
    std::vector<PlanePoint> result;
    for (const ZFloatVector &corner : corners)
        result.push_back({corner[x], corner[y]});
    return result;
}

} // namespace

ZVector polygonNormal(Corners corners) {
    ZVector sum;
    for (size_t at = 1; at + 1 < corners.size(); ++at)
        sum += cross(corners[0], corners[at], corners[at + 1]);
    return sum;
}

void cutPolygon(Corners corners, std::vector<unsigned> &triangles) {
    const size_t count = corners.size();
    const ZVector normal = polygonNormal(corners);
    if (count == 4)
        return addFan(count, bestOfFour(corners, normal), triangles);
    if (count == 3 || isFan(corners, 0, normal))
        return addFan(count, 0, triangles);
    // Sides that lie on one another, as on the way to a hole and back, cross in some directions of
    // the sweep and in others they do not.
    std::vector<PlanePoint> plane = flattened(corners, normal);
    for (int quarter = 0; quarter < 4; ++quarter) {
        const auto swept = sweepPolygon(plane);
        for (const auto &triangle : swept)
            triangles.insert(triangles.end(), triangle.begin(), triangle.end());
        if (!swept.empty())
            return;
        for (PlanePoint &point : plane)
            point = {point.y, -point.x};
    }
    addFan(count, 0, triangles);
}

} // namespace devhost
