// SPDX-License-Identifier: MIT
#pragma once

#include <Python.h>

namespace binding {

/// Where a key is, or comes to be, unless another one has the place: dictionaries look there first.
/// The key is an interned str, whose hash is known.
inline PyDictEntry &first_place(PyObject *dictionary, PyObject *key) {
    auto *table = reinterpret_cast<PyDictObject *>(dictionary);
    return table->ma_table[reinterpret_cast<PyStringObject *>(key)->ob_shash & table->ma_mask];
}

/// A new dictionary of one entry; null with MemoryError set. Every proxy that is made has such a
/// one, so the entry goes straight to its place, in a tenth of the instructions of PyDict_SetItem.
/// The value is nothing that the garbage collector looks at, as pointer objects are.
inline PyObject *single_entry(PyObject *key, PyObject *value) {
    PyObject *dictionary = PyDict_New();
    if (!dictionary)
        return nullptr;
    Py_INCREF(key);
    Py_INCREF(value);
    first_place(dictionary, key) = {reinterpret_cast<PyStringObject *>(key)->ob_shash, key, value};
    auto *table = reinterpret_cast<PyDictObject *>(dictionary);
    table->ma_fill = table->ma_used = 1;
    return dictionary;
}

} // namespace binding
