// SPDX-License-Identifier: MIT
#pragma once

// The types of the module that is being compiled. The include path decides whose class_types.def
// this is; the lines of native_types.def follow it in every module.

#include "runtime/type_registry.h"

#include <iosfwd>

namespace ZHWRender {
class ZDrawContext;
}

namespace binding {

/// Places in the module's type table, named like the types.
enum TypeIndex {
#define TYPE(id, readable, bases, ...) k##id,
#include "runtime/types.def"
    kTypeCount
};

/// Stands for a native type that has no C++ name of its own here.
template <TypeIndex>
class OpaqueType;

/// The place of a C++ type; types without a line have none.
template <class T>
inline constexpr int type_index = -1;

} // namespace binding

#define TYPE(id, readable, bases, ...) \
    template <>                        \
    inline constexpr int binding::type_index<__VA_ARGS__> = binding::k##id;
#include "runtime/types.def"

/// The records in use, one per place and a null slot: this module's own, or those of a module that
/// was in the ring before it.
extern swig_type_info *swig_types[binding::kTypeCount + 1];

namespace binding {

/// The record in use for pointers to T.
template <class T>
swig_type_info *type_of() {
    static_assert(type_index<T> >= 0, "the type has no line in class_types.def");
    return swig_types[type_index<T>];
}

} // namespace binding
