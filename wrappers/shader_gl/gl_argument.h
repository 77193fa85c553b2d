// SPDX-License-Identifier: MIT
#pragma once

// Arguments that only OpenGL's functions have.

#include "wrappers/rows/argument.h"

namespace gl {

/// Stands in rows for the host's ZGLvoid. Other host data are the address of the Python object
/// itself; what is declared ZGLvoid comes out of a typed pointer object.
class ZGLvoid;

} // namespace gl

namespace binding {

template <>
struct NativeOf<gl::ZGLvoid *> : std::type_identity<void *> {};
template <>
struct NativeOf<gl::ZGLvoid const *> : std::type_identity<void const *> {};
template <>
struct NativeOf<gl::ZGLvoid **> : std::type_identity<void **> {};
template <>
struct NativeOf<gl::ZGLvoid const **> : std::type_identity<void const **> {};

/// Pixels, vertices and the like: the address in a pointer object of one of eight number types, or
/// null for None. Other types of pointers are refused, signed char and void among them.
struct GlData {
    void *address = nullptr;
    ReadResult read(PyObject *object, int);
    void use_default(double) {}
    void *get() const { return address; }
};

template <>
struct Argument<gl::ZGLvoid *> : GlData {};
template <>
struct Argument<gl::ZGLvoid const *> : GlData {};

// Addresses of addresses. There is one pointer type for each, whatever is const in it.

template <>
struct Argument<gl::ZGLvoid **> : Argument<void **> {};
template <>
struct Argument<gl::ZGLvoid const **> : PointerArgument<void *> {
    void const **get() const { return static_cast<void const **>(pointer); }
};
template <>
struct Argument<char const **> : PointerArgument<char *> {
    char const **get() const { return static_cast<char const **>(pointer); }
};

} // namespace binding
