// SPDX-License-Identifier: MIT
#include "host/base/TpythonInterpreter.h"

#include "devhost/process/ReportedExceptions.h"

#include <Python.h>

#include <atomic>

TpythonInterpreter *TpythonInterpreter::fsInterpreter = nullptr;

namespace {
std::atomic<unsigned> reported{0};
std::atomic<bool> interrupted{false};
std::atomic<bool> exitsExpected{false};
} // namespace

TpythonInterpreter::TpythonInterpreter() = default;

void TpythonInterpreter::catchAndReportException() {
    if (!PyErr_Occurred())
        return;
    if (exitsExpected && PyErr_ExceptionMatches(PyExc_SystemExit))
        return PyErr_Clear();
    ++reported;
    if (PyErr_ExceptionMatches(PyExc_KeyboardInterrupt))
        interrupted = true;
    if (!PyErr_ExceptionMatches(PyExc_SystemExit)) {
        PyErr_Print();
        PyErr_Clear(); // what printing itself may have run into
        return;
    }
    // PyErr_Print would end the process here.
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    PyErr_Display(type, value, traceback);
    Py_XDECREF(type);
    Py_XDECREF(value);
    Py_XDECREF(traceback);
    PyErr_Clear();
}

namespace devhost {

unsigned reportedExceptions() {
    return reported;
}

bool interruptReported() {
    return interrupted;
}

void expectExits() {
    exitsExpected = true;
}

} // namespace devhost
