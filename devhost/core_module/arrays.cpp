// SPDX-License-Identifier: MIT
// The arrays of the core library. Items are copied out and in: a script that keeps one is not
// touched by what happens to the array, and a changed item has to be stored again.

#include "devhost/core_module/items.h"
#include "host/core/ZColorArray.h"
#include "host/core/ZDagPathArray.h"
#include "host/core/ZDoubleArray.h"
#include "host/core/ZFloatArray.h"
#include "host/core/ZFloatPointArray.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZIntArray.h"
#include "host/core/ZMatrixArray.h"
#include "host/core/ZObjectArray.h"
#include "host/core/ZPlugArray.h"
#include "host/core/ZPointArray.h"
#include "host/core/ZStringArray.h"
#include "host/core/ZTimeArray.h"
#include "host/core/ZUint64Array.h"
#include "host/core/ZUintArray.h"
#include "host/core/ZVectorArray.h"

namespace {

using namespace binding;

template <class Array>
using ItemOf = std::remove_reference_t<decltype(std::declval<Array &>()[0u])>;

/// A new array of default items, or null with an exception set.
template <class Array>
Array *array_of_length(size_t count) {
    auto *array = new Array;
    if (count <= UINT_MAX && array->setLength(static_cast<unsigned>(count)))
        return array;
    delete array;
    PyErr_NoMemory();
    return nullptr;
}

template <class Array>
PyObject *array_of_defaults(unsigned int count) {
    Array *array = array_of_length<Array>(count);
    return array ? constructed(array) : nullptr;
}

template <class Array, class Item>
PyObject *array_of_copies(unsigned int count, Item value) {
    Array *array = array_of_length<Array>(count);
    for (unsigned i = 0; array && i < count; ++i)
        (*array)[i] = value;
    return array ? constructed(array) : nullptr;
}

template <class Array>
PyObject *array_from_sequence(PyObject *sequence) {
    if (refuse_length(sequence))
        return nullptr;
    const swig::SwigPtr_PyObject items(PySequence_Tuple(sequence));
    if (!items)
        return nullptr;
    Array *array = array_of_length<Array>(static_cast<size_t>(PyTuple_GET_SIZE(items.get())));
    if (!array)
        return nullptr;
    if (read_items(items.get(), *array))
        return constructed(array);
    delete array;
    return nullptr;
}

template <class Array>
PyObject *array_from_copy(Array const &other) {
    return constructed(new Array(other));
}

template <class Array>
unsigned int array_length(Array &self) {
    return self.length();
}

template <class Array>
ZStatus set_array_length(Array &self, unsigned int count) {
    return self.setLength(count);
}

template <class Array, class Item>
ZStatus append(Array &self, Item value) {
    return self.append(value);
}

template <class Array, class Item>
ZStatus insert(Array &self, Item value, unsigned int index) {
    return self.insert(value, index);
}

template <class Array, class Item>
ZStatus set_at(Array &self, Item value, unsigned int index) {
    return self.set(value, index);
}

template <class Array>
ZStatus remove_at(Array &self, unsigned int index) {
    return self.remove(index);
}

template <class Array>
ZStatus clear(Array &self) {
    return self.clear();
}

template <class Array>
ZStatus copy_from(Array &self, Array const &other) {
    return self.copy(other);
}

template <class Array>
PyObject *item(Array &self, long index) {
    if (!find_index(index, self.length()))
        return nullptr;
    return make_item(ItemOf<Array>(self[static_cast<unsigned>(index)]));
}

template <class Array, class Item>
PyObject *set_item(Array &self, long index, Item value) {
    if (!find_index(index, self.length()))
        return nullptr;
    self[static_cast<unsigned>(index)] = value;
    Py_RETURN_NONE;
}

template <class Array>
PyObject *delete_item(Array &self, long index) {
    if (!find_index(index, self.length()))
        return nullptr;
    self.remove(static_cast<unsigned>(index));
    Py_RETURN_NONE;
}

template <class Array>
PyObject *item_list(Array &self) {
    // Making an item may run a script that changes the array.
    const Array items(self);
    return make_list(items.length(),
                     [&](Py_ssize_t i) { return ItemOf<Array>(items[static_cast<unsigned>(i)]); });
}

template <class Array>
PyObject *array_iterator(Array &self) {
    return iterate(item_list(self));
}

template <class Array>
PyObject *array_representation(Array &self) {
    return represent(type_of<Array>(), item_list(self));
}

template <class Array>
bool same_items(const Array &a, const Array &b) {
    if (a.length() != b.length())
        return false;
    for (unsigned i = 0; i < a.length(); ++i)
        if (!(a[i] == b[i]))
            return false;
    return true;
}

template <class Array>
PyObject *array_is_equal(Array &self, PyObject *object) {
    const Array *other = comparable<Array>(object);
    return other ? PyBool_FromLong(same_items(self, *other)) : not_implemented();
}

template <class Array>
PyObject *array_is_different(Array &self, PyObject *object) {
    const Array *other = comparable<Array>(object);
    return other ? PyBool_FromLong(!same_items(self, *other)) : not_implemented();
}

} // namespace

#define ROW_LIST "devhost/core_module/arrays.def"
#define ROW_TABLE array_rows
#include "wrappers/rows/make_rows.h"
