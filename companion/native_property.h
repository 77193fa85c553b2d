// SPDX-License-Identifier: MIT
#pragma once

// What the proxy classes have for data members: properties whose getter, and setter where it is one
// too, are flat functions that are called without a detour.

#include <Python.h>

namespace companion {

/// The type, made ready; null with an exception set. Its constructor is that of property, whose
/// subclass it is. A getter or setter that is no built-in is left to property itself.
PyTypeObject *property_type();
/// The same for members that are parts of the object.
PyTypeObject *part_property_type();

} // namespace companion
