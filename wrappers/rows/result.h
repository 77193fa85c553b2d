// SPDX-License-Identifier: MIT
#pragma once

// How what a host operation returns becomes a Python object.

#include "host/core/ZStatus.h"
#include "host/core/ZString.h"
#include "runtime/char_strings.h"
#include "runtime/convert.h"
#include "runtime/module_types.h"
#include "runtime/value_wrapper.h"

#include <climits>
#include <new>
#include <type_traits>
#include <utility>

namespace binding {

/// None on success, the string "unknown" for an unknown parameter, else RuntimeError with the
/// status's text.
PyObject *status_result(const ZStatus &status);

/// Raises RuntimeError with the status's text; returns null.
PyObject *raise_status(const ZStatus &status);

/// Always a unicode object.
PyObject *string_result(const ZString &text);

/// A pointer object, or proxy, that owns `object`; takes over null where memory was short.
template <class T>
PyObject *owned(T *object, int flags) {
    if (!object)
        return PyErr_NoMemory();
    PyObject *result = SWIG_Python_NewPointerObj(object, type_of<T>(), flags);
    if (!result)
        delete object;
    return result;
}

/// The same for a heap copy of a result.
template <class T>
PyObject *copied(T &&value) {
    SwigValueWrapper<T> copy(std::forward<T>(value));
    if (!copy.get())
        return PyErr_NoMemory();
    PyObject *result = SWIG_Python_NewPointerObj(copy.get(), type_of<T>(), kOwned);
    if (result)
        copy.release();
    return result;
}

template <class T>
PyObject *borrowed(const T *pointer) {
    return SWIG_Python_NewPointerObj(const_cast<T *>(pointer), type_of<T>(), kBorrowed);
}

inline PyObject *borrowed(const void *pointer) {
    return SWIG_Python_NewPointerObj(const_cast<void *>(pointer), type_of<void>(), kBorrowed);
}

/// R is the declared result type; the host's value arrives as R&&.
template <class R>
PyObject *to_python(std::type_identity_t<R> &&value) {
    using Bare = std::remove_cvref_t<R>;
    if constexpr (std::is_same_v<R, PyObject *>)
        return value;
    else if constexpr (std::is_same_v<R, ZStatus>)
        return status_result(value);
    else if constexpr (std::is_same_v<R, ZString>)
        return string_result(value);
    else if constexpr (std::is_same_v<Bare, bool>)
        return PyBool_FromLong(value);
    else if constexpr (std::is_floating_point_v<Bare>)
        return PyFloat_FromDouble(value);
    else if constexpr (std::is_same_v<R, unsigned long>)
        return value > LONG_MAX ? PyLong_FromUnsignedLong(value)
                                : PyInt_FromLong(static_cast<long>(value));
    else if constexpr (std::is_enum_v<R>)
        return PyInt_FromLong(static_cast<int>(value)); // signed, whatever the compiler chose
    else if constexpr (std::is_integral_v<R>)
        return PyInt_FromLong(static_cast<long>(value));
    else if constexpr (std::is_same_v<R, const char *>)
        return SWIG_FromCharPtr(value);
    else if constexpr (std::is_pointer_v<R> && std::is_function_v<std::remove_pointer_t<R>>)
        return SWIG_Python_NewPointerObj(reinterpret_cast<void *>(value),
                                         type_of<std::remove_pointer_t<R>>(), kBorrowed);
    else if constexpr (std::is_pointer_v<R>)
        return borrowed(value);
    else if constexpr (std::is_reference_v<R>)
        return borrowed(&value);
    else
        return copied(std::move(value));
}

} // namespace binding
