// SPDX-License-Identifier: MIT
#pragma once

// The rows that all values with components have in common.

#include "devhost/core_module/items.h"
#include "devhost/core_module/operators.h"
#include "wrappers/rows/call.h"

namespace binding {

/// From any sequence of the components.
template <class T>
PyObject *value_from_sequence(PyObject *sequence) {
    T value;
    if (const ReadResult result = read_item(sequence, value); result.failed()) {
        PyErr_Format(
            SWIG_Python_ErrorType(result.code == SWIG_ERROR ? SWIG_TypeError : result.code),
            "%s takes numbers or a sequence of %d numbers", type_of<T>()->name + 3,
            component_count<T>);
        return nullptr;
    }
    return constructed(new T(value));
}

template <class T>
unsigned int value_length(T &) {
    return component_count<T>;
}

template <class T>
PyObject *component(T &self, long index) {
    if (!find_index(index, component_count<T>))
        return nullptr;
    return PyFloat_FromDouble(self.*Components<T>::members[index]);
}

template <class T, class Number>
PyObject *set_component(T &self, long index, Number value) {
    if (!find_index(index, component_count<T>))
        return nullptr;
    self.*Components<T>::members[index] = value;
    Py_RETURN_NONE;
}

template <class T>
PyObject *component_list(T &self) {
    return make_list(component_count<T>,
                     [&](Py_ssize_t i) { return self.*Components<T>::members[i]; });
}

template <class T>
PyObject *value_iterator(T &self) {
    return iterate(component_list(self));
}

template <class T>
PyObject *value_representation(T &self) {
    const swig::SwigPtr_PyObject list(component_list(self));
    return list ? represent(type_of<T>(), PyList_AsTuple(list.get())) : nullptr;
}

} // namespace binding

/// A comparison whose tolerance may be left out.
#define TOLERANT(Class, member, Number)                                      \
    EXTENSION_CASE(                                                          \
        Class, member, 1, bool(Class const &) const,                         \
        +[](Class &self, Class const &other) { return self.member(other); }) \
    METHOD_CASE(Class, member, 2, bool(Class const &, Number) const)         \
    OVERLOADS(Class, member, 2)

/// The rows behind the constructors and operators of a class.
#define VALUE(Class, Number)                                                          \
    EXTENSION(Class, __len__, unsigned int() const, value_length<Class>)              \
    EXTENSION(Class, __getitem__, Number(long) const, component<Class>)               \
    EXTENSION(Class, __setitem__, void(long, Number), (set_component<Class, Number>)) \
    EXTENSION(Class, __iter__, PyObject *() const, value_iterator<Class>)             \
    EXTENSION(Class, __repr__, PyObject *() const, value_representation<Class>)       \
    EQUALITY(Class)                                                                   \
    DESTRUCTOR(Class)                                                                 \
    PROXY(Class)
