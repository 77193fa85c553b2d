// SPDX-License-Identifier: MIT
#include "runtime/scalars.h"

#include "runtime/pending_error.h"

using namespace binding;

namespace scalars {

int long_as_int(PyObject *object, int *value) {
    if (!PyLong_Check(object))
        return SWIG_TypeError;
    int overflow;
    const long wide = PyLong_AsLongAndOverflow(object, &overflow);
    if (overflow)
        return SWIG_TypeError;
    if (wide < INT_MIN || wide > INT_MAX)
        return SWIG_OverflowError;
    if (value)
        *value = static_cast<int>(wide);
    return SWIG_OK;
}

int long_as_long(PyObject *object, long *value) {
    if (!PyLong_Check(object))
        return SWIG_TypeError;
    int overflow;
    const long result = PyLong_AsLongAndOverflow(object, &overflow);
    if (overflow)
        return SWIG_OverflowError;
    if (value)
        *value = result;
    return SWIG_OK;
}

int long_as_unsigned_int(PyObject *object, unsigned int *value) {
    if (!PyLong_Check(object) || _PyLong_Sign(object) < 0 ||
        _PyLong_NumBits(object) > sizeof(unsigned long) * CHAR_BIT)
        return SWIG_TypeError;
    const unsigned long wide = PyLong_AsUnsignedLong(object);
    if (wide > UINT_MAX)
        return SWIG_OverflowError;
    if (value)
        *value = static_cast<unsigned int>(wide);
    return SWIG_OK;
}

int number_as_double(PyObject *object, double *value) {
    double result;
    if (PyInt_Check(object)) {
        result = static_cast<double>(PyInt_AS_LONG(object));
    } else if (PyLong_Check(object)) {
        PyObject *type, *pending, *traceback;
        PyErr_Fetch(&type, &pending, &traceback);
        result = PyLong_AsDouble(object);
        const bool failed = PyErr_Occurred();
        PyErr_Restore(type, pending, traceback);
        if (failed)
            return SWIG_TypeError;
    } else {
        return SWIG_TypeError;
    }
    if (value)
        *value = result;
    return SWIG_OK;
}

} // namespace scalars

int SWIG_AsVal_bool(PyObject *object, bool *value) {
    const PendingError keep;
    const int truth = PyObject_IsTrue(object);
    *value = truth > 0;
    return truth < 0 ? SWIG_TypeError : SWIG_OK;
}
