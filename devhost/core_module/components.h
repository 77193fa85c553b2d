// SPDX-License-Identifier: MIT
#pragma once

// The host's values that are a few numbers side by side, and which of their members these are.

#include "host/core/ZColor.h"
#include "host/core/ZEulerRotation.h"
#include "host/core/ZFloatPoint.h"
#include "host/core/ZFloatVector.h"
#include "host/core/ZPoint.h"
#include "host/core/ZQuaternion.h"
#include "host/core/ZVector.h"

#include <iterator>

namespace binding {

/// `members` are the numbers in order. A script may leave out those from number `minimum` on.
template <class T>
struct Components;

template <class T, class Number>
struct ThreeComponents {
    static constexpr Number T::*members[] = {&T::x, &T::y, &T::z};
    static constexpr int minimum = 3;
};

template <class T, class Number>
struct FourComponents {
    static constexpr Number T::*members[] = {&T::x, &T::y, &T::z, &T::w};
    static constexpr int minimum = 3;
};

template <>
struct Components<ZVector> : ThreeComponents<ZVector, double> {};
template <>
struct Components<ZFloatVector> : ThreeComponents<ZFloatVector, float> {};
template <>
struct Components<ZEulerRotation> : ThreeComponents<ZEulerRotation, double> {};
template <>
struct Components<ZPoint> : FourComponents<ZPoint, double> {};
template <>
struct Components<ZFloatPoint> : FourComponents<ZFloatPoint, float> {};
template <>
struct Components<ZQuaternion> : FourComponents<ZQuaternion, double> {
    static constexpr int minimum = 4;
};
template <>
struct Components<ZColor> {
    static constexpr float ZColor::*members[] = {&ZColor::r, &ZColor::g, &ZColor::b, &ZColor::a};
    static constexpr int minimum = 3;
};

template <class T>
concept HasComponents = requires {
    Components<T>::minimum;
};

template <class T>
inline constexpr int component_count = static_cast<int>(std::size(Components<T>::members));

} // namespace binding
