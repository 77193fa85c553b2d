// SPDX-License-Identifier: MIT
// A rotation as three angles around the axes.
#include "host/core/ZEulerRotation.h"

#include "host/core/ZMatrix.h"
#include "host/core/ZQuaternion.h"

#include <cmath>

namespace {

using Angle = double ZEulerRotation::*;

constexpr Angle kAngles[3] = {&ZEulerRotation::x, &ZEulerRotation::y, &ZEulerRotation::z};

/// The axes from the first that turns to the last, and +1 where they follow each other as x, y
/// and z do, else -1.
struct Axes {
    int first, second, third;
    double handedness;
};

constexpr Axes kAxesByOrder[6] = {{0, 1, 2, 1},  {1, 2, 0, 1},  {2, 0, 1, 1},
                                  {0, 2, 1, -1}, {1, 0, 2, -1}, {2, 1, 0, -1}};

/// The order may have been set to any number.
const Axes &axesOf(ZEulerRotation::RotationOrder order) {
    return kAxesByOrder[order >= ZEulerRotation::kXYZ && order <= ZEulerRotation::kZYX ? order : 0];
}

ZQuaternion aroundAxis(int axis, double angle) {
    return ZQuaternion(angle, ZVector(axis == 0, axis == 1, axis == 2));
}

} // namespace

ZQuaternion ZEulerRotation::asQuaternion() const {
    const auto &[first, second, third, handedness] = axesOf(order);
    return aroundAxis(first, this->*kAngles[first]) * aroundAxis(second, this->*kAngles[second]) *
           aroundAxis(third, this->*kAngles[third]);
}

ZMatrix ZEulerRotation::asMatrix() const {
    return asQuaternion().asMatrix();
}

ZEulerRotation ZEulerRotation::reorder(RotationOrder ord) const {
    return decompose(asMatrix(), ord);
}

ZEulerRotation ZEulerRotation::decompose(const ZMatrix &rotation, RotationOrder ord) {
    ZEulerRotation result(0, 0, 0, ord);
    const auto &[first, second, third, handedness] = axesOf(result.order);
    const auto &m = rotation.matrix;
    const double cosine = std::hypot(m[first][first], m[first][second]);
    result.*kAngles[second] = std::atan2(-handedness * m[first][third], cosine);
    if (cosine > 1.0e-9) {
        result.*kAngles[first] = std::atan2(handedness * m[second][third], m[third][third]);
        result.*kAngles[third] = std::atan2(handedness * m[first][second], m[first][first]);
    } else {
        // First and third axis turn in the same plane: only their sum or difference is known.
        result.*kAngles[first] = std::atan2(-handedness * m[third][second], m[second][second]);
    }
    return result;
}

bool ZEulerRotation::isEquivalent(const ZEulerRotation &other, double tolerance) const {
    return order == other.order && std::abs(x - other.x) <= tolerance &&
           std::abs(y - other.y) <= tolerance && std::abs(z - other.z) <= tolerance;
}
