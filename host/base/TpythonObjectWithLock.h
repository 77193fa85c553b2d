// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/TpythonLock.h"
#include "host/base/Tstring.h"
#include "host/base/TstringArray.h"

/// A reference to an interpreter object, or to none.
class TpythonObjectBase {
  public:
    PyObject *object() const { return object_; }

  protected:
    explicit TpythonObjectBase(PyObject *object = nullptr) : object_(object) {}
    PyObject *object_;
};

/// A counted reference whose every count change happens under a Lock, with readers that turn the
/// object into host values. Each library that uses it carries its own instance.
template <class Lock>
class TpythonObjectWithLock : public TpythonObjectBase {
  public:
    TpythonObjectWithLock() = default;
    explicit TpythonObjectWithLock(PyObject *object) : TpythonObjectBase(object) {
        if (!object_)
            return;
        Lock lock(kPythonLock);
        Py_INCREF(object_);
    }
    ~TpythonObjectWithLock() {
        if (!object_)
            return;
        Lock lock(kPythonLock);
        Py_DECREF(object_);
    }
    TpythonObjectWithLock(const TpythonObjectWithLock &) = delete;
    TpythonObjectWithLock &operator=(const TpythonObjectWithLock &) = delete;

    /// Reads the object as text. False for null, None and objects without a text; the interpreter's
    /// error indicator is left as it was.
    bool getValue(Tstring &out) const;

    /// Reads a sequence of texts. False when it is not a sequence, is itself a text, or at the
    /// first item that is no text; `out` then has the sequence's length and the items before it.
    bool getValue(TstringArray &out) const;
};

/// Longest text, with its terminator, that the readers convert without allocating.
inline constexpr int kPythonObjectCharConvertBufferSize = 1024;

/// Conversion buffer shared by all readers; only the interpreter lock makes sharing it safe.
extern OPENQUIL_API wchar_t sPythonObjectCharConvertBuffer[kPythonObjectCharConvertBufferSize];
