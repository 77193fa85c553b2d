// SPDX-License-Identifier: MIT
#pragma once

#include <Python.h>

namespace binding {

/// Keeps an exception that is pending while code runs that may leave one of its own, which is
/// dropped.
class PendingError {
  public:
    PendingError() { PyErr_Fetch(&type_, &value_, &traceback_); }
    ~PendingError() { PyErr_Restore(type_, value_, traceback_); }
    PendingError(const PendingError &) = delete;
    PendingError &operator=(const PendingError &) = delete;

  private:
    PyObject *type_, *value_, *traceback_;
};

} // namespace binding
