// SPDX-License-Identifier: MIT
#pragma once

// Integer constants.

#include <span>

namespace binding {

/// One integer constant.
struct Constant {
    const char *name;
    int value;
};

/// A family's constants, in the order in which they are installed.
using Constants = std::span<const Constant>;

} // namespace binding

/// Defines `name` as the family of the constants that follow.
#define CONSTANTS(name, ...)                                          \
    static constexpr binding::Constant name##_list[] = {__VA_ARGS__}; \
    extern constinit const binding::Constants name = name##_list;

/// A constant named after its class and enumerator.
#define ENUMERATOR(Class, enumerator) \
    { #Class "_" #enumerator, static_cast < int>(Class::enumerator) }
