// SPDX-License-Identifier: MIT
// The arrays of the core library. Items are copied out and in: a script that keeps one is not
// touched by what happens to the array, and a changed item has to be stored again.

#include "devhost/core_module/item_memory.h"
#include "devhost/util/ViewedMemory.h"
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

#include <memory>

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

/// The first item, null where there is none.
template <class Array>
auto *items_of(Array &array) {
    return array.length() ? &array[0] : nullptr;
}

template <class Array>
PyObject *array_from_data(PyObject *data) {
    if (refuse_length(data))
        return nullptr;
    GivenItems<ItemOf<Array>> given(data);
    if (given.failed())
        return nullptr;
    std::unique_ptr<Array> array(array_of_length<Array>(given.count()));
    if (!array)
        return nullptr;
    given.store(items_of(*array));
    return constructed(array.release());
}

template <class Array>
PyObject *array_from_copy(Array const &other) {
    return constructed(new Array(other));
}

template <class Array>
unsigned int array_length(Array &self) {
    return self.length();
}

/// True, with an exception set, where views see the items, which keep their places then. Only
/// numbers are seen so.
template <class Array>
bool refuse_viewed(Array &self) {
    if constexpr (HasNumbers<ItemOf<Array>>)
        if (devhost::isViewed(self.data())) {
            PyErr_SetString(PyExc_BufferError,
                            "the length cannot change while a view sees the array's memory");
            return true;
        }
    return false;
}

template <class Array>
PyObject *set_array_length(Array &self, unsigned int count) {
    if (count != self.length() && refuse_viewed(self))
        return nullptr;
    return status_result(self.setLength(count));
}

template <class Array, class Item>
PyObject *append(Array &self, Item value) {
    return refuse_viewed(self) ? nullptr : status_result(self.append(value));
}

template <class Array, class Item>
PyObject *insert(Array &self, Item value, unsigned int index) {
    return refuse_viewed(self) ? nullptr : status_result(self.insert(value, index));
}

template <class Array, class Item>
ZStatus set_at(Array &self, Item value, unsigned int index) {
    return self.set(value, index);
}

template <class Array>
PyObject *remove_at(Array &self, unsigned int index) {
    return refuse_viewed(self) ? nullptr : status_result(self.remove(index));
}

template <class Array>
PyObject *clear(Array &self) {
    return refuse_viewed(self) ? nullptr : status_result(self.clear());
}

template <class Array>
PyObject *copy_from(Array &self, Array const &other) {
    if (self.length() != other.length() && refuse_viewed(self))
        return nullptr;
    return status_result(self.copy(other));
}

template <class Array>
bool find_position(Array &self, PyObject *key, long &index) {
    return read_index(key, index, "index out of range") && find_index(index, self.length());
}

/// Items `step` apart. Those that are no plain numbers are copied first: making an object may run a
/// script that changes the array.
template <class Array>
PyObject *read_array(Array &self, const Slice &slice) {
    const ItemOf<Array> *const items = items_of(self) + slice.start;
    if constexpr (IsPlain<ItemOf<Array>>)
        return read_many(items, slice.count, slice.step);
    std::vector<ItemOf<Array>> copies;
    copies.reserve(static_cast<size_t>(slice.count));
    for (Py_ssize_t i = 0; i < slice.count; ++i)
        copies.push_back(items[i * slice.step]);
    return read_many(copies.data(), slice.count, 1);
}

/// The item at an index, or those of a slice as read() returns them.
template <class Array>
PyObject *subscript(Array &self, PyObject *key) {
    long index;
    if (!PySlice_Check(key))
        return find_position(self, key, index)
                   ? make_item(ItemOf<Array>(self[static_cast<unsigned>(index)]))
                   : nullptr;
    Slice slice;
    if (!read_slice(
            key, [&] { return self.length(); }, slice))
        return nullptr;
    return read_array(self, slice);
}

/// `wrong_value` is the text for an item of another type.
template <class Array>
PyObject *set_item(Array &self, PyObject *key, PyObject *value, const char *wrong_value) {
    ItemOf<Array> item{};
    long index;
    if (const ReadResult result = read_item(value, item); result.failed())
        raise_value(result, wrong_value);
    else if (find_position(self, key, index)) {
        self[static_cast<unsigned>(index)] = item;
        Py_RETURN_NONE;
    }
    return nullptr;
}

template <class Array>
PyObject *set_subscript(Array &self, PyObject *key, PyObject *value, const char *wrong_value) {
    if (!PySlice_Check(key))
        return set_item(self, key, value, wrong_value);
    std::vector<ItemOf<Array>> items;
    if (const Array *other = comparable<Array>(value)) {
        items.assign(items_of(*other), items_of(*other) + other->length());
    } else {
        GivenItems<ItemOf<Array>> given(value);
        if (given.failed())
            return nullptr;
        items = given.take();
    }
    Slice slice;
    return read_slice(
               key, [&] { return self.length(); }, slice)
               ? write_many(items_of(self), slice, items)
               : nullptr;
}

template <class Array>
bool check_range(Array &self, long start, long count) {
    const long length = self.length();
    if (start >= 0 && count >= 0 && start <= length && count <= length - start)
        return true;
    PyErr_SetString(PyExc_IndexError, "index out of range");
    return false;
}

template <class Array>
PyObject *read(Array &self, long start, long count) {
    return check_range(self, start, count) ? read_array(self, {start, start + count, 1, count})
                                           : nullptr;
}

template <class Array>
PyObject *read_bytes(Array &self, long start, long count) {
    return check_range(self, start, count) ? bytes_of(items_of(self) + start, count) : nullptr;
}

template <class Array>
PyObject *write(Array &self, long start, PyObject *data) {
    if (const Array *other = comparable<Array>(data)) {
        if (!check_range(self, start, other->length()))
            return nullptr;
        const Array items(*other); // which may be this one
        std::copy_n(items_of(items), items.length(), items_of(self) + start);
    } else {
        GivenItems<ItemOf<Array>> given(data);
        if (given.failed() || !check_range(self, start, static_cast<long>(given.count())))
            return nullptr;
        given.store(items_of(self) + start);
    }
    Py_RETURN_NONE;
}

template <class Array>
PyObject *memory(Array &self) {
    return tell_memory(items_of(self), self.length());
}

template <class Array>
PyObject *delete_item(Array &self, long index) {
    if (!find_index(index, self.length()) || refuse_viewed(self))
        return nullptr;
    return status_result(self.remove(static_cast<unsigned>(index)));
}

template <class Array>
PyObject *item_list(Array &self) {
    if constexpr (std::is_arithmetic_v<ItemOf<Array>>)
        return read_many(items_of(self), self.length(), 1);
    // Making an item may run a script that changes the array.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const Array items(self);
    const auto *const first = items_of(items);
    return make_list(items.length(), [=](Py_ssize_t i) { return ItemOf<Array>(first[i]); });
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
