// SPDX-License-Identifier: MIT
#include "wrappers/rows/result.h"

#include <new>

namespace binding {

PyObject *status_result(const ZStatus &status) {
    if (!status.error())
        Py_RETURN_NONE;
    if (status.statusCode() == ZStatus::kUnknownParameter)
        return PyString_InternFromString("unknown");
    return raise_status(status);
}

PyObject *raise_status(const ZStatus &status) {
    try {
        PyErr_SetString(PyExc_RuntimeError, status.errorString().asChar());
    } catch (const std::bad_alloc &) {
        PyErr_NoMemory();
    }
    return nullptr;
}

PyObject *string_result(const ZString &text) {
    static_assert(sizeof(Py_UNICODE) == sizeof(wchar_t), "for an interpreter built with UCS4");
    return PyUnicode_FromUnicode(reinterpret_cast<const Py_UNICODE *>(text.asW()),
                                 static_cast<Py_ssize_t>(text.numChars()));
}

} // namespace binding
