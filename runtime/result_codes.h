// SPDX-License-Identifier: MIT
#pragma once

#include <Python.h>

/// Results of the runtime's conversions. Zero and above is success.
enum ResultCode {
    SWIG_OK = 0,
    SWIG_ERROR = -1,
    SWIG_IOError = -2,
    SWIG_RuntimeError = -3,
    SWIG_IndexError = -4,
    SWIG_TypeError = -5,
    SWIG_DivisionByZero = -6,
    SWIG_OverflowError = -7,
    SWIG_SyntaxError = -8,
    SWIG_ValueError = -9,
    SWIG_SystemError = -10,
    SWIG_AttributeError = -11,
    SWIG_MemoryError = -12
};

/// The exception type of a result code (borrowed); RuntimeError for every code without its own.
PyObject *SWIG_Python_ErrorType(int code);
