// SPDX-License-Identifier: MIT
#pragma once

// One embedded interpreter for all tests of the program, with the module imported, and short ways
// to move between Python text and the runtime's objects.

#include "runtime/convert.h"
#include "tests/child_process.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace pytest {

/// Owns a reference, or none.
class Ref {
  public:
    Ref() = default;
    explicit Ref(PyObject *owned) : object_(owned) {}
    Ref(Ref &&other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Ref &operator=(Ref &&other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Ref() { Py_XDECREF(object_); }
    operator PyObject *() const { return object_; }
    Py_ssize_t count() const { return object_->ob_refcnt; }
    void drop() { Py_CLEAR(object_); }

  private:
    PyObject *object_ = nullptr;
};

/// Starts the interpreter, without the module.
void start_python();
/// Each program's own: makes the module that it tests, and returns its name.
const char *make_module();
/// Imports that module and fills the scope; repeated calls have no effect.
void import_module();

/// The dictionary in which run() and eval() work. `_r` is the module; `pointer(address, type name,
/// own)` makes a pointer object; `captured()` is getLockCaptureCount(); `eq(a, b)` asserts.
PyObject *scope();
/// Adds a native function, which must live as long as the scope.
void define(PyMethodDef &function);
void run(const char *code);
/// Null with the exception pending when the expression raises.
Ref eval(const std::string &expression);

/// Compares what expressions evaluate to with the repr() of it, or "<TypeError: text>".
void expect(std::initializer_list<std::pair<std::string, std::string>> rows);

/// "TypeError: text" of the pending exception, which is cleared; empty when there is none.
std::string pending();
/// str() and repr(); "<type: text>" of the exception when there is none.
std::string str(PyObject *object);
std::string repr(PyObject *object);

/// The record that is in use for a mangled name.
swig_type_info *type(const char *mangled);

inline void *address(size_t value) {
    return reinterpret_cast<void *>(value);
}
inline SwigPyObject *pointer_object(PyObject *object) {
    return reinterpret_cast<SwigPyObject *>(object);
}

/// Sets an exception and expects to find it, and no other, at the end of its life.
class KeepsEarlierException {
  public:
    KeepsEarlierException() { PyErr_SetString(PyExc_KeyError, "earlier"); }
    ~KeepsEarlierException() { EXPECT_EQ(pending(), "KeyError: 'earlier'"); }
};

/// Expects that a test leaves no exception and no captured lock behind.
class Test : public testing::Test {
  protected:
    static void SetUpTestSuite() { import_module(); }
    void TearDown() override;
};

} // namespace pytest
