// SPDX-License-Identifier: MIT
#pragma once

// Python strings as native character strings and back.

#include "runtime/result_codes.h"
#include "runtime/type_registry.h"

namespace binding {

/// Marks a converted string that points into the Python object and must not be freed.
inline constexpr int kOldString = 0;
/// Marks a fresh copy that the caller frees with delete[].
inline constexpr int kNewString = 512;

} // namespace binding

/// str, a pointer object of type "char *", or None (a null string); unicode is refused.
/// With `mark` preset to kNewString a str is copied.
int SWIG_AsCharPtrAndSize(PyObject *object, char **text, int *mark);

/// The record of "char *", looked up once; null when no module of the ring has it.
swig_type_info *SWIG_pchar_descriptor();

/// A str with the text's bytes, None for null. A text too long for a str becomes a borrowed
/// "char *" pointer object.
PyObject *SWIG_FromCharPtr(const char *text);
