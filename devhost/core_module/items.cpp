// SPDX-License-Identifier: MIT
#include "devhost/core_module/items.h"

#include <climits>

namespace binding {

int as_unsigned_long(PyObject *object, unsigned long *value) {
    unsigned long result;
    if (PyInt_Check(object)) {
        if (PyInt_AS_LONG(object) < 0)
            return SWIG_OverflowError;
        result = static_cast<unsigned long>(PyInt_AS_LONG(object));
    } else if (PyLong_Check(object)) {
        if (_PyLong_Sign(object) < 0 || _PyLong_NumBits(object) > sizeof(unsigned long) * CHAR_BIT)
            return SWIG_OverflowError;
        result = PyLong_AsUnsignedLong(object);
    } else {
        return SWIG_TypeError;
    }
    if (value)
        *value = result;
    return SWIG_OK;
}

ReadResult read_item(PyObject *object, char &value) {
    if (!PyString_Check(object) || PyString_GET_SIZE(object) != 1)
        return SWIG_TypeError;
    value = PyString_AS_STRING(object)[0];
    return SWIG_OK;
}

template <class T>
static int read_small_integer(PyObject *object, T &value) {
    long wide;
    const int code = SWIG_AsVal_long(object, &wide);
    if (code < 0)
        return code;
    value = static_cast<T>(wide);
    return value == wide ? SWIG_OK : SWIG_OverflowError;
}

ReadResult read_item(PyObject *object, signed char &value) {
    return read_small_integer(object, value);
}

ReadResult read_item(PyObject *object, unsigned char &value) {
    return read_small_integer(object, value);
}

ReadResult read_item(PyObject *object, ZString &value) {
    const TpythonObjectWithLock<TpythonLock> holder(object);
    return holder.getValue(value) ? SWIG_OK : SWIG_TypeError;
}

ReadResult read_item(PyObject *object, void *&value) {
    return SWIG_Python_ConvertPtrAndOwn(object, &value, nullptr, 0);
}

bool raise_value(ReadResult result, const char *text) {
    const bool is_null = result.remark == ReadResult::kNullReference;
    if (result.remark != ReadResult::kRaised)
        PyErr_Format(
            SWIG_Python_ErrorType(result.code == SWIG_ERROR ? SWIG_TypeError : result.code), "%s%s",
            is_null ? "invalid null reference " : "", text);
    return false;
}

bool raise_item(Py_ssize_t index, ReadResult result) {
    const bool is_type_error =
        result.remark == ReadResult::kNullReference || result.code == SWIG_ERROR;
    PyErr_Format(is_type_error ? PyExc_TypeError : SWIG_Python_ErrorType(result.code),
                 "item %zd of the sequence does not fit", index);
    return false;
}

bool refuse_length(PyObject *items) {
    if (!PyInt_Check(items) && !PyLong_Check(items))
        return false;
    PyErr_SetString(PyExc_OverflowError, "a length is from 0 to 4294967295");
    return true;
}

bool find_index(long &index, unsigned long length) {
    if (index < 0)
        index += static_cast<long>(length);
    if (index >= 0 && static_cast<unsigned long>(index) < length)
        return true;
    PyErr_SetString(PyExc_IndexError, "index out of range");
    return false;
}

PyObject *represent(const swig_type_info *type, PyObject *items) {
    const swig::SwigPtr_PyObject owned(items);
    const swig::SwigPtr_PyObject text(items ? PyObject_Repr(items) : nullptr);
    if (!text)
        return nullptr;
    // The mangled name is "_p_" and the class.
    return PyString_FromFormat(PyTuple_Check(items) ? "%s%s" : "%s(%s)", type->name + 3,
                               PyString_AS_STRING(text.get()));
}

PyObject *iterate(PyObject *items) {
    const swig::SwigPtr_PyObject owned(items);
    return items ? PyObject_GetIter(items) : nullptr;
}

} // namespace binding
