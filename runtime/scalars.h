// SPDX-License-Identifier: MIT
#pragma once

// Python numbers and strings as native ones. Conversions return a result code, write the value on
// success (where a destination is given) and leave the interpreter's error indicator as it was.
// Plain ints, by far the most common arguments, are converted inline; the rest is out of line.

#include "runtime/result_codes.h"

#include <climits>

namespace scalars {
int long_as_int(PyObject *object, int *value);
int long_as_long(PyObject *object, long *value);
int long_as_unsigned_int(PyObject *object, unsigned int *value);
int number_as_double(PyObject *object, double *value);
} // namespace scalars

/// The truth value of any object. An error of an earlier argument stays pending: the code that a
/// script runs here must neither see it nor clear it.
int SWIG_AsVal_bool(PyObject *object, bool *value);

/// int or long to a native int; floats are refused.
inline int SWIG_AsVal_int(PyObject *object, int *value) {
    if (!PyInt_Check(object))
        return scalars::long_as_int(object, value);
    const long wide = PyInt_AS_LONG(object);
    if (wide < INT_MIN || wide > INT_MAX)
        return SWIG_OverflowError;
    if (value)
        *value = static_cast<int>(wide);
    return SWIG_OK;
}

/// int or long to a native long; a long that exceeds it overflows.
inline int SWIG_AsVal_long(PyObject *object, long *value) {
    if (!PyInt_Check(object))
        return scalars::long_as_long(object, value);
    if (value)
        *value = PyInt_AS_LONG(object);
    return SWIG_OK;
}

/// int or long to a native unsigned int. A negative int overflows; a negative long, or one that
/// exceeds an unsigned long, is a type error.
inline int SWIG_AsVal_unsigned_SS_int(PyObject *object, unsigned int *value) {
    if (!PyInt_Check(object))
        return scalars::long_as_unsigned_int(object, value);
    const long wide = PyInt_AS_LONG(object);
    if (wide < 0 || wide > static_cast<long>(UINT_MAX))
        return SWIG_OverflowError;
    if (value)
        *value = static_cast<unsigned int>(wide);
    return SWIG_OK;
}

/// float, int or long to a native double; objects that merely offer a float conversion are refused.
inline int SWIG_AsVal_double(PyObject *object, double *value) {
    if (!PyFloat_Check(object))
        return scalars::number_as_double(object, value);
    if (value)
        *value = PyFloat_AS_DOUBLE(object);
    return SWIG_OK;
}
