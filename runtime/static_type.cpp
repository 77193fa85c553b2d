// SPDX-License-Identifier: MIT
#include "runtime/static_type.h"

namespace binding {

PyTypeObject *ready(PyTypeObject &type) {
    if (PyType_HasFeature(&type, Py_TPFLAGS_READY))
        return &type;
    // The interpreter does not tell in every case.
    if (PyType_Ready(&type) == 0 && !PyErr_ExceptionMatches(PyExc_MemoryError))
        return &type;
    PyErr_NoMemory();
    return nullptr;
}

} // namespace binding
