// SPDX-License-Identifier: MIT
#include "runtime/director.h"

#include "host/base/TpythonInterpreter.h"
#include "runtime/interpreter_lock.h"
#include "runtime/object_holder.h"
#include "runtime/pending_error.h"
#include "runtime/result_codes.h"

#include <cstdio>
#include <new>

using namespace binding;

namespace Swig {

Director::Director(PyObject *self) : swig_self(self) {
    TpythonLock lock(kPythonLock);
    if (!self)
        return;
    const PendingError keep;
    swig_watch = PyWeakref_NewRef(self, nullptr);
    if (!swig_watch && PyErr_ExceptionMatches(PyExc_MemoryError))
        throw std::bad_alloc();
    if (!swig_watch)
        Py_INCREF(self);
}

Director::~Director() {
    // The host may keep callbacks for longer than the interpreter runs.
    if (Py_IsInitialized()) {
        TpythonLock lock(kPythonLock);
        if (has_interpreter_lock()) { // else the interpreter ended before
            if (!swig_watch)
                Py_XDECREF(swig_self);
            Py_XDECREF(swig_watch);
            if (swig_disown_flag)
                Py_DECREF(swig_self);
        }
    }
    swig_owner.clear();
}

PyObject *Director::swig_instance() const {
    return swig_watch && PyWeakref_GET_OBJECT(swig_watch) == Py_None ? nullptr : swig_self;
}

void Director::swig_disown() const {
    TpythonLock lock(kPythonLock);
    if (swig_disown_flag || !swig_instance())
        return;
    swig_disown_flag = true;
    Py_INCREF(swig_self);
}

static void report_exception() {
    auto *&interpreter = TpythonInterpreter::fsInterpreter;
    if (!interpreter)
        interpreter = new (std::nothrow) TpythonInterpreter;
    if (interpreter)
        interpreter->catchAndReportException();
    else
        PyErr_WriteUnraisable(Py_None);
}

bool Director::swig_call_predicate(const char *class_name, PyObject *name,
                                   PyObject *argument) const {
    PyObject *const self = swig_instance();
    if (!self) {
        char message[160]; // memory may be what is short
        std::snprintf(message, sizeof(message),
                      "'self' uninitialized, maybe you forgot to call %s.__init__.", class_name);
        DirectorException::raise(message);
    }
    // Where the argument is not even a proxy for want of memory, the method would only stumble.
    const bool is_complete = name && argument && !PyErr_ExceptionMatches(PyExc_MemoryError);
    const swig::SwigPtr_PyObject result(
        is_complete ? PyObject_CallMethodObjArgs(self, name, argument, nullptr) : nullptr);
    if (!result) {
        report_exception();
        return false;
    }
    const int truth = PyObject_IsTrue(result.get());
    if (truth < 0) {
        PyErr_Clear();
        DirectorTypeMismatchException::raise(SWIG_Python_ErrorType(SWIG_TypeError),
                                             "in output value of type 'bool'");
    }
    return truth;
}

DirectorException::DirectorException(PyObject *type, const char *header, const char *text) {
    try {
        swig_msg = header;
        if (*text)
            swig_msg.append(" ").append(text);
    } catch (const std::bad_alloc &) {
        // What there is has to do: the exception is of more use than its text.
    }
    if (!PyErr_Occurred())
        PyErr_SetString(type, swig_msg.c_str());
}

void DirectorException::raise(const char *message) {
    throw DirectorException(PyExc_RuntimeError, message, "");
}

void DirectorTypeMismatchException::raise(PyObject *type, const char *message) {
    throw DirectorTypeMismatchException(type, "SWIG director type mismatch", message);
}

} // namespace Swig

int getLockCaptureCount() {
    return TpythonLock::fsCapturedCount;
}
