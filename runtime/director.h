// SPDX-License-Identifier: MIT
#pragma once

// The native side of a Python instance that overrides a host class's virtual functions. A director
// class derives from the host class and from Swig::Director; each virtual function it overrides
// takes the interpreter lock and calls the Python method of the same name.

#include "host/base/TpythonObjectWithLock.h"

#include <exception>
#include <map>
#include <memory>
#include <string>

namespace Swig {

/// A Python object that is kept for a native one, and dropped under the lock.
using GCItem_var = std::unique_ptr<TpythonObjectWithLock<TpythonLock>>;

class Director {
  public:
    /// `self` receives the calls. It is not kept alive until swig_disown, unless it cannot be
    /// weakly referenced. Throws std::bad_alloc.
    explicit Director(PyObject *self);
    virtual ~Director();
    Director(const Director &) = delete;
    Director &operator=(const Director &) = delete;

    virtual bool swig_get_inner(const char *) const { return false; }
    virtual void swig_set_inner(const char *, bool) const {}

    /// To compare with an object that is alive: the instance itself may be gone.
    PyObject *swig_get_self() const { return swig_self; }

    /// Passes the native object to the host: from now on it keeps its Python instance alive.
    /// Only the first call has an effect, and only while the instance lives.
    void swig_disown() const;

    /// Calls the Python method `name` with a borrowed `argument` and returns the truth of its
    /// result. The caller holds the lock. An exception that the method raises, or the one
    /// that is pending where `name` or `argument` could not be made, is reported by the host and
    /// reads as false. Throws DirectorException when there is no instance to call,
    /// DirectorTypeMismatchException when the result has no truth value.
    bool swig_call_predicate(const char *class_name, PyObject *name, PyObject *argument) const;

  private:
    /// The instance while it lives, else null.
    PyObject *swig_instance() const;

    PyObject *swig_self;
    mutable bool swig_disown_flag = false;
    mutable std::map<void *, GCItem_var> swig_owner;
    /// A weak reference to the instance, which may die before this object: a script that keeps its
    /// "this" keeps the native object alone. Null where the instance cannot be weakly referenced
    /// (`__slots__` without "__weakref__"): then this object holds it, and both live until the
    /// native object is deleted.
    PyObject *swig_watch = nullptr;
};

/// A call into Python that could not be completed. Its Python side is the pending exception.
class DirectorException : public std::exception {
  public:
    /// Sets an exception of `type` with the message "header text" unless one is pending.
    DirectorException(PyObject *type, const char *header, const char *text);
    const char *what() const noexcept override { return swig_msg.c_str(); }

    [[noreturn]] static void raise(const char *message);

  private:
    std::string swig_msg;
};

/// A Python method returned a value of the wrong type.
class DirectorTypeMismatchException : public DirectorException {
  public:
    using DirectorException::DirectorException;
    [[noreturn]] static void raise(PyObject *type, const char *message);
};

} // namespace Swig

/// Number of holders that have the interpreter lock captured at this moment.
int getLockCaptureCount();
