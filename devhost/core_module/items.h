// SPDX-License-Identifier: MIT
#pragma once

// Python sequences as native items and back, for arrays, buffers and values with components.

#include "devhost/core_module/components.h"
#include "runtime/object_holder.h"
#include "wrappers/rows/argument.h"
#include "wrappers/rows/result.h"

#include <cstddef>

namespace binding {

// Integers beyond those that the render module's signatures have

/// int or long in the range of a native unsigned long.
int as_unsigned_long(PyObject *object, unsigned long *value);

template <>
struct Argument<unsigned long> {
    unsigned long value = 0;
    int read(PyObject *object, int) { return as_unsigned_long(object, &value); }
    void use_default(double d) { value = static_cast<unsigned long>(d); }
    unsigned long get() const { return value; }
    static bool probe(PyObject *object) { return as_unsigned_long(object, nullptr) >= 0; }
};

// One item

/// Turns a Python object into a native item. Leaves no exception pending.
template <class T>
ReadResult read_item(PyObject *object, T &value) {
    Argument<T> argument;
    const ReadResult result = argument.read(object, 0);
    if (!result.failed())
        value = argument.get();
    return result;
}

/// A character is a str of length one.
ReadResult read_item(PyObject *object, char &value);
ReadResult read_item(PyObject *object, signed char &value);
ReadResult read_item(PyObject *object, unsigned char &value);
ReadResult read_item(PyObject *object, ZString &value);
/// Any pointer object's address.
ReadResult read_item(PyObject *object, void *&value);

/// A value with components is a pointer object or a sequence of its numbers.
template <HasComponents T>
ReadResult read_item(PyObject *object, T &value) {
    Argument<T> argument;
    const ReadResult result = argument.read(object, 0);
    if (!result.failed())
        value = argument.get();
    if (!result.failed() || result.remark == ReadResult::kNullReference)
        return result;
    const swig::SwigPtr_PyObject numbers(PySequence_Tuple(object));
    if (!numbers) {
        PyErr_Clear();
        return SWIG_TypeError;
    }
    const Py_ssize_t count = PyTuple_GET_SIZE(numbers.get());
    if (count < Components<T>::minimum || count > component_count<T>)
        return SWIG_TypeError;
    T components;
    for (Py_ssize_t i = 0; i < count; ++i)
        if (const ReadResult component = read_item(PyTuple_GET_ITEM(numbers.get(), i),
                                                   components.*Components<T>::members[i]);
            component.failed())
            return component;
    value = components;
    return SWIG_OK;
}

/// Raises what belongs to a value that did not convert, with a text that says so; returns false.
bool raise_value(ReadResult result, const char *text);

template <class T>
PyObject *make_item(T value) {
    return to_python<T>(std::move(value));
}
inline PyObject *make_item(char value) {
    return PyString_FromStringAndSize(&value, 1);
}

// Many items

/// An exception for an item that did not convert; returns false.
bool raise_item(Py_ssize_t index, ReadResult result);

/// Reads every item of a tuple into destination[0], [1], ...; false with an exception set.
template <class Destination>
bool read_items(PyObject *tuple, Destination &&destination) {
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(tuple); ++i)
        if (const ReadResult result =
                read_item(PyTuple_GET_ITEM(tuple, i), destination[static_cast<unsigned>(i)]);
            result.failed())
            return raise_item(i, result);
    return true;
}

/// A list of make_item(item(i)) for i below the count; null with an exception set.
template <class ItemAt>
PyObject *make_list(Py_ssize_t count, ItemAt item_at) {
    swig::SwigPtr_PyObject list(PyList_New(count));
    for (Py_ssize_t i = 0; list && i < count; ++i) {
        PyObject *item = make_item(item_at(i));
        if (!item)
            return nullptr;
        PyList_SET_ITEM(list.get(), i, item);
    }
    return list.release();
}

/// True, with an exception set, for a number that came to be taken for a sequence of items: as a
/// length it is out of range, or it would have been taken for that.
bool refuse_length(PyObject *items);

/// Makes a Python index (negative ones count from the end) the native one; raises IndexError and
/// returns false when there is no such item.
bool find_index(long &index, unsigned long length);

// Helpers of rows that every class has

/// A new native object for its proxy's initialiser; null with an exception set.
template <class T>
PyObject *constructed(T *object) {
    PyObject *result = SWIG_Python_NewPointerObj(object, type_of<T>(), kConstructed);
    if (!result)
        delete object;
    return result;
}

/// "Class(...)" with a tuple's items, or with one other object; takes its reference over.
PyObject *represent(const swig_type_info *type, PyObject *items);

/// The iterator over the items; takes their reference over.
PyObject *iterate(PyObject *items);

/// The native object behind the other side of a comparison; null when it is of another type.
template <class T>
const T *comparable(PyObject *object) {
    void *pointer = nullptr;
    SWIG_Python_ConvertPtrAndOwn(object, &pointer, type_of<T>(), 0);
    return static_cast<const T *>(pointer);
}

inline PyObject *not_implemented() {
    Py_INCREF(Py_NotImplemented);
    return Py_NotImplemented;
}

template <class T>
PyObject *is_equal(T &self, PyObject *object) {
    const T *other = comparable<T>(object);
    return other ? PyBool_FromLong(self == *other) : not_implemented();
}

template <class T>
PyObject *is_different(T &self, PyObject *object) {
    const T *other = comparable<T>(object);
    return other ? PyBool_FromLong(!(self == *other)) : not_implemented();
}

} // namespace binding

/// The rows of a class with operator==. Objects of other types are different, not an error.
#define EQUALITY(Class)                                               \
    EXTENSION(Class, __eq__, bool(PyObject *) const, is_equal<Class>) \
    EXTENSION(Class, __ne__, bool(PyObject *) const, is_different<Class>)
