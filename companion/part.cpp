// SPDX-License-Identifier: MIT
#include "companion/part.h"

namespace companion {
namespace {

/// The dictionary of an instance (borrowed), or null.
PyObject *dictionary_of(PyObject *object) {
    PyObject **dictionary = _PyObject_GetDictPtr(object);
    return dictionary ? *dictionary : nullptr;
}

/// A name, made on first use; null with an exception set when memory is short.
PyObject *interned(PyObject *&name, const char *text) {
    if (!name)
        name = PyString_InternFromString(text);
    return name;
}

bool note(PyObject *dictionary, PyObject *name, PyObject *value) {
    return PyDict_SetItem(dictionary, name, value) == 0;
}

} // namespace

PyObject *keep_whole(PyObject *whole, PyObject *result) {
    PyObject *kept = result && whole ? dictionary_of(result) : nullptr;
    if (!kept)
        return result;
    static PyObject *this_name, *whole_name, *pointer_name;
    if (interned(this_name, "this") && interned(whole_name, "_whole") &&
        interned(pointer_name, "_whole_this")) {
        PyObject *names = dictionary_of(whole);
        PyObject *pointer = names ? PyDict_GetItem(names, this_name) : nullptr;
        if (note(kept, whole_name, whole) && (!pointer || note(kept, pointer_name, pointer)))
            return result;
    }
    Py_DECREF(result);
    return nullptr;
}

} // namespace companion
