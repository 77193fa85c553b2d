// SPDX-License-Identifier: MIT
#pragma once

// A box along the axes that encloses points.

#include "host/base/HostApi.h"
#include "host/core/ZPoint.h"

class ZMatrix;

/// A box along the axes that encloses points, or nothing while it is empty.
class OPENQUIL_API ZBoundingBox {
  public:
    /// Makes an empty box.
    ZBoundingBox();
    /// Makes the smallest box that encloses two points.
    ZBoundingBox(const ZPoint &corner, const ZPoint &otherCorner);

    /// Makes the box empty.
    void clear();
    /// Returns true when nothing has been enclosed.
    bool isEmpty() const;
    /// Grows the box until it encloses the point.
    void expand(const ZPoint &point);
    /// Grows the box until it encloses the other box.
    void expand(const ZBoundingBox &box);
    /// Replaces the box by the smallest one along the axes that encloses the transformed box.
    void transformUsing(const ZMatrix &matrix);

    /// Returns true when the point is inside or on the border.
    bool contains(const ZPoint &point) const;
    /// Returns true when the boxes, this one grown by the tolerance, have a point in common.
    bool intersects(const ZBoundingBox &box, double tolerance = 0.0) const;

    /// Returns the corner with the smallest coordinates, the origin when empty.
    ZPoint min() const;
    /// Returns the corner with the greatest coordinates, the origin when empty.
    ZPoint max() const;
    /// Returns the middle of the box, the origin when empty.
    ZPoint center() const;
    /// Returns the size along x, 0 when empty.
    double width() const;
    /// Returns the size along y, 0 when empty.
    double height() const;
    /// Returns the size along z, 0 when empty.
    double depth() const;

  private:
    ZPoint min_;
    ZPoint max_;
    bool empty_;
};
