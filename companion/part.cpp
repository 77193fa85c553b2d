// SPDX-License-Identifier: MIT
#include "companion/part.h"

namespace companion {
namespace {

/// The dictionary of an instance (borrowed), or null.
PyObject *dictionary_of(PyObject *object) {
    PyObject **dictionary = _PyObject_GetDictPtr(object);
    return dictionary ? *dictionary : nullptr;
}

bool note(PyObject *dictionary, PyObject *name, PyObject *value) {
    return name && PyDict_SetItem(dictionary, name, value) == 0;
}

} // namespace

PyObject *keep_whole(PyObject *whole, PyObject *result) {
    PyObject *kept = result && whole ? dictionary_of(result) : nullptr;
    if (!kept)
        return result;
    static PyObject *const this_name = PyString_InternFromString("this");
    static PyObject *const whole_name = PyString_InternFromString("_whole");
    static PyObject *const pointer_name = PyString_InternFromString("_whole_this");
    PyObject *names = dictionary_of(whole);
    PyObject *pointer = names && this_name ? PyDict_GetItem(names, this_name) : nullptr;
    if (note(kept, whole_name, whole) && (!pointer || note(kept, pointer_name, pointer)))
        return result;
    Py_DECREF(result);
    return nullptr;
}

} // namespace companion
