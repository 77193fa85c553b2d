// SPDX-License-Identifier: MIT
// A rotation as a unit quaternion.
#include "host/core/ZQuaternion.h"

#include "host/core/ZMatrix.h"
#include "host/core/ZStatus.h"
#include "host/core/ZVector.h"

#include <Imath/ImathMatrixAlgo.h>
#include <Imath/ImathQuat.h>

#include <algorithm>
#include <cmath>

namespace {

Imath::Quatd imath(const ZQuaternion &q) {
    return {q.w, q.x, q.y, q.z};
}

ZQuaternion fromImath(const Imath::Quatd &q) {
    return {q.v.x, q.v.y, q.v.z, q.r};
}

Imath::V3d imath(const ZVector &v) {
    return {v.x, v.y, v.z};
}

bool isZero(const ZQuaternion &q) {
    return q == ZQuaternion(0, 0, 0, 0);
}

} // namespace

ZQuaternion::ZQuaternion(double angle, const ZVector &axis) {
    setAxisAngle(axis, angle);
}

ZQuaternion::ZQuaternion(const ZVector &from, const ZVector &to) : ZQuaternion() {
    if (from == ZVector() || to == ZVector())
        return;
    *this = fromImath(Imath::Quatd().setRotation(imath(from), imath(to)));
}

ZQuaternion::ZQuaternion(const ZMatrix &rotation)
    : ZQuaternion(fromImath(Imath::extractQuat(Imath::M44d(rotation.matrix)))) {}

ZQuaternion &ZQuaternion::setAxisAngle(const ZVector &axis, double angle) {
    if (axis == ZVector())
        return *this = ZQuaternion();
    return *this = fromImath(Imath::Quatd().setAxisAngle(imath(axis), angle));
}

bool ZQuaternion::getAxisAngle(ZVector &axis, double &angle) const {
    const ZVector turned(x, y, z);
    if (turned == ZVector()) {
        axis = ZVector(0, 0, 1);
        angle = 0;
        return false;
    }
    axis = turned.normal();
    angle = 2 * std::atan2(turned.length(), w);
    return true;
}

ZMatrix ZQuaternion::asMatrix() const {
    return ZMatrix(imath(*this).toMatrix44().x);
}

ZQuaternion ZQuaternion::operator*(const ZQuaternion &right) const {
    // Quaternions compose from the right, rows and matrices from the left.
    return fromImath(imath(right) * imath(*this));
}

ZQuaternion ZQuaternion::inverse() const {
    return isZero(*this) ? ZQuaternion() : fromImath(imath(*this).inverse());
}

ZQuaternion ZQuaternion::normal() const {
    return fromImath(imath(*this).normalized());
}

ZStatus ZQuaternion::normalize() {
    if (isZero(*this))
        return ZStatus(ZStatus::kFailure, "the zero quaternion cannot be scaled to length one");
    *this = normal();
    return ZStatus();
}

bool ZQuaternion::isEquivalent(const ZQuaternion &other, double tolerance) const {
    const double differences[] = {x - other.x, y - other.y, z - other.z, w - other.w};
    return std::all_of(std::begin(differences), std::end(differences),
                       [&](double d) { return std::abs(d) <= tolerance; });
}

ZQuaternion ZQuaternion::slerp(const ZQuaternion &from, const ZQuaternion &to, double part) {
    return fromImath(Imath::slerpShortestArc(imath(from), imath(to), part));
}
