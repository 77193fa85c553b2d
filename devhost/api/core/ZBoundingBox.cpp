// SPDX-License-Identifier: MIT
// A box along the axes that encloses points.
#include "host/core/ZBoundingBox.h"

#include "host/core/ZStatus.h"
#include "host/core/ZVector.h"

#include <algorithm>

ZBoundingBox::ZBoundingBox() {
    clear();
}

ZBoundingBox::ZBoundingBox(const ZPoint &corner, const ZPoint &otherCorner) : ZBoundingBox() {
    expand(corner);
    expand(otherCorner);
}

void ZBoundingBox::clear() {
    min_ = max_ = ZPoint();
    empty_ = true;
}

void ZBoundingBox::expand(const ZPoint &point) {
    ZPoint place(point);
    place.cartesianize();
    if (empty_)
        min_ = max_ = place;
    empty_ = false;
    for (unsigned axis = 0; axis < 3; ++axis) {
        min_[axis] = std::min(min_[axis], place[axis]);
        max_[axis] = std::max(max_[axis], place[axis]);
    }
}

void ZBoundingBox::expand(const ZBoundingBox &box) {
    if (box.empty_)
        return;
    expand(box.min_);
    expand(box.max_);
}

void ZBoundingBox::transformUsing(const ZMatrix &matrix) {
    const ZBoundingBox before(*this);
    if (before.empty_)
        return;
    clear();
    for (unsigned corner = 0; corner < 8; ++corner) {
        ZPoint place;
        for (unsigned axis = 0; axis < 3; ++axis)
            place[axis] = corner >> axis & 1 ? before.max_[axis] : before.min_[axis];
        expand(place * matrix);
    }
}

bool ZBoundingBox::contains(const ZPoint &point) const {
    return intersects(ZBoundingBox(point, point));
}

bool ZBoundingBox::intersects(const ZBoundingBox &box, double tolerance) const {
    if (empty_ || box.empty_)
        return false;
    for (unsigned axis = 0; axis < 3; ++axis)
        if (box.max_[axis] < min_[axis] - tolerance || box.min_[axis] > max_[axis] + tolerance)
            return false;
    return true;
}

ZPoint ZBoundingBox::center() const {
    return min_ + (max_ - min_) * 0.5;
}

bool ZBoundingBox::isEmpty() const {
    return empty_;
}

ZPoint ZBoundingBox::min() const {
    return min_;
}

ZPoint ZBoundingBox::max() const {
    return max_;
}

double ZBoundingBox::width() const {
    return max_.x - min_.x;
}

double ZBoundingBox::height() const {
    return max_.y - min_.y;
}

double ZBoundingBox::depth() const {
    return max_.z - min_.z;
}
