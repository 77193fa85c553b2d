#include "runtime/director.h"
#include "host/base/TpythonInterpreter.h"
#include "runtime/object_holder.h"
#include "runtime/result_codes.h"

namespace Swig {

Director::Director(PyObject *self) : swig_self(self) {
    TpythonLock lock(kPythonLock);
}

Director::~Director() {
    if (swig_disown_flag) {
        TpythonLock lock(kPythonLock);
        Py_DECREF(swig_self);
    }
    swig_owner.clear();
}

void Director::swig_disown() const {
    if (swig_disown_flag)
        return;
    TpythonLock lock(kPythonLock);
    swig_disown_flag = true;
    Py_INCREF(swig_self);
}

static void report_exception() {
    if (!TpythonInterpreter::fsInterpreter)
        TpythonInterpreter::fsInterpreter = new TpythonInterpreter;
    TpythonInterpreter::fsInterpreter->catchAndReportException();
}

bool Director::swig_call_predicate(const char *class_name, PyObject *name,
                                   PyObject *argument) const {
    if (!swig_self) {
        const std::string message = std::string("'self' uninitialized, maybe you forgot to call ") +
                                    class_name + ".__init__.";
        DirectorException::raise(message.c_str());
    }
    const swig::SwigPtr_PyObject result(
        PyObject_CallMethodObjArgs(swig_self, name, argument, nullptr));
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

DirectorException::DirectorException(PyObject *type, const char *header, const char *text)
    : swig_msg(header) {
    if (*text)
        swig_msg.append(" ").append(text);
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
