// SPDX-License-Identifier: MIT
#include "runtime/arguments.h"

namespace {

Py_ssize_t wrong_count(const char *name, const char *qualifier, Py_ssize_t bound,
                       Py_ssize_t count) {
    PyErr_Format(PyExc_TypeError, "%s expected %s%d arguments, got %d", name, qualifier,
                 static_cast<int>(bound), static_cast<int>(count));
    return 0;
}

} // namespace

Py_ssize_t SWIG_Python_UnpackTuple(PyObject *arguments, const char *name, Py_ssize_t min,
                                   Py_ssize_t max, PyObject **objects) {
    if (!arguments) {
        if (min == 0 && max == 0)
            return 1;
        PyErr_Format(PyExc_TypeError, "%s expected %s%d arguments, got none", name,
                     min == max ? "" : "at least ", static_cast<int>(min));
        return 0;
    }
    if (!PyTuple_Check(arguments)) {
        PyErr_SetString(PyExc_SystemError, "UnpackTuple() argument list is not a tuple");
        return 0;
    }
    const Py_ssize_t count = PyTuple_GET_SIZE(arguments);
    if (count < min)
        return wrong_count(name, min == max ? "" : "at least ", min, count);
    if (count > max)
        return wrong_count(name, min == max ? "" : "at most ", max, count);
    for (Py_ssize_t i = 0; i < max; ++i)
        objects[i] = i < count ? PyTuple_GET_ITEM(arguments, i) : nullptr;
    return count + 1;
}
