// SPDX-License-Identifier: MIT
#pragma once

// What host classes keep behind a pointer, null as long as it is empty: an object without contents
// is made without memory, which constructors that must not fail rely on.

#include <atomic>

namespace devhost {

/// The contents to change, made where there are none yet.
template <class T>
T &made(T *&hidden) {
    if (!hidden)
        hidden = new T;
    return *hidden;
}

/// The contents to read.
template <class T>
const T &contents(const T *hidden) {
    static const T none;
    return hidden ? *hidden : none;
}

/// The contents for a copy of their object.
template <class T>
T *copied(const T *hidden) {
    return hidden ? new T(*hidden) : nullptr;
}

/// The base of contents that copies of their object share.
struct Shared {
    std::atomic<unsigned> users = 1;
};

/// The contents for one more object.
template <class T>
T *share(T *hidden) noexcept {
    if (hidden)
        ++hidden->users;
    return hidden;
}

/// Takes one object's contents from it; they go with the last one.
template <class T>
void drop(T *hidden) noexcept {
    if (hidden && --hidden->users == 0)
        delete hidden;
}

} // namespace devhost
