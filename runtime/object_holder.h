// SPDX-License-Identifier: MIT
#pragma once

#include <Python.h>

namespace swig {

/// Owns one strong reference, or none, and drops it when destroyed.
class SwigPtr_PyObject {
  public:
    SwigPtr_PyObject() = default;
    /// Takes over a reference that the caller owns.
    explicit SwigPtr_PyObject(PyObject *owned) : object_(owned) {}
    SwigPtr_PyObject(const SwigPtr_PyObject &) = delete;
    SwigPtr_PyObject &operator=(const SwigPtr_PyObject &) = delete;
    ~SwigPtr_PyObject() { Py_XDECREF(object_); }

    PyObject *get() const { return object_; }
    PyObject *release() {
        PyObject *object = object_;
        object_ = nullptr;
        return object;
    }
    explicit operator bool() const { return object_; }

  private:
    PyObject *object_ = nullptr;
};

} // namespace swig
