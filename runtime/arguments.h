// SPDX-License-Identifier: MIT
#pragma once

#include <Python.h>

/// Spreads an argument tuple into `objects` (borrowed; absent ones null). Returns the number of
/// arguments plus one, or 0 with an exception that names `name` when the count does not fit.
Py_ssize_t SWIG_Python_UnpackTuple(PyObject *arguments, const char *name, Py_ssize_t min,
                                   Py_ssize_t max, PyObject **objects);
