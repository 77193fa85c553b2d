// SPDX-License-Identifier: MIT
#pragma once

// A counted reference to a Python object.

#include <Python.h>

#include <memory>

namespace quilhost {

struct Release {
    void operator()(PyObject *object) const { Py_XDECREF(object); }
};
/// Used under the interpreter's lock.
using Reference = std::unique_ptr<PyObject, Release>;

} // namespace quilhost
