// SPDX-License-Identifier: MIT
#pragma once

// Operators as functions, for rows. The row's declared type chooses the instance.

namespace binding {

template <class A, class B>
auto plus(A &a, B b) {
    return a + b;
}
template <class A, class B>
auto minus(A &a, B b) {
    return a - b;
}
template <class A, class B>
auto times(A &a, B b) {
    return a * b;
}
template <class A, class B>
auto divided_by(A &a, B b) {
    return a / b;
}
template <class A, class B>
auto cross(A &a, B b) {
    return a ^ b;
}
template <class A>
auto negative(A &a) {
    return -a;
}

} // namespace binding
