// SPDX-License-Identifier: MIT
#include "runtime/client_data.h"

#include "runtime/convert.h"
#include "runtime/object_holder.h"
#include "runtime/pending_error.h"
#include "runtime/single_entry.h"

#include <cstdlib>

using namespace binding;

namespace {

/// A built-in that takes one object is called directly, anything else through the interpreter.
bool needs_fresh_argument(PyObject *destroy) {
    return !PyCFunction_Check(destroy) || !(PyCFunction_GET_FLAGS(destroy) & METH_O);
}

/// True for a class whose "__new__" is object's own and makes instances without more ado. Most
/// proxy classes are such, and their instances are allocated here.
bool has_plain_new(SwigPyClientData *data) {
    return PyCFunction_Check(data->newraw) &&
           PyCFunction_GET_SELF(data->newraw) == reinterpret_cast<PyObject *>(&PyBaseObject_Type) &&
           PyType_Check(data->klass) &&
           reinterpret_cast<PyTypeObject *>(data->klass)->tp_new == PyBaseObject_Type.tp_new &&
           !PyType_HasFeature(reinterpret_cast<PyTypeObject *>(data->klass),
                              Py_TPFLAGS_IS_ABSTRACT); // which "__new__" refuses by name
}

PyObject *make_instance(SwigPyClientData *data) {
    if (!has_plain_new(data))
        return PyObject_Call(data->newraw, data->newargs, nullptr);
    auto *type = reinterpret_cast<PyTypeObject *>(data->klass);
    return type->tp_alloc(type, 0);
}

/// An instance's dictionary; null with an exception set.
PyObject *only_this(PyObject *pointer_object) {
    PyObject *name = SWIG_This();
    return name ? binding::single_entry(name, pointer_object) : nullptr;
}

PyObject *new_style_instance(SwigPyClientData *data, PyObject *pointer_object) {
    PyObject *instance = make_instance(data);
    PyObject **dictionary = instance ? _PyObject_GetDictPtr(instance) : nullptr;
    if (!dictionary || *dictionary)
        return instance;
    *dictionary = only_this(pointer_object);
    if (*dictionary)
        return instance;
    Py_DECREF(instance);
    return nullptr;
}

PyObject *classic_instance(SwigPyClientData *data, PyObject *pointer_object) {
    const swig::SwigPtr_PyObject dictionary(only_this(pointer_object));
    return dictionary ? PyInstance_NewRaw(data->newargs, dictionary.get()) : nullptr;
}

} // namespace

SwigPyClientData *SwigPyClientData_New(PyObject *klass) {
    if (!klass)
        return nullptr;
    auto *data = static_cast<SwigPyClientData *>(std::calloc(1, sizeof(SwigPyClientData)));
    if (!data) {
        PyErr_NoMemory();
        return nullptr;
    }
    Py_INCREF(klass);
    data->klass = klass;
    if (!PyClass_Check(klass))
        data->newraw = PyObject_GetAttrString(klass, "__new__");
    data->newargs = data->newraw ? PyTuple_Pack(1, klass) : (Py_INCREF(klass), klass);
    if (!data->newargs) {
        Py_DECREF(data->newraw);
        Py_DECREF(data->klass);
        std::free(data);
        return nullptr;
    }
    data->destroy = PyObject_GetAttrString(klass, "__swig_destroy__");
    // Whichever of the two look-ups failed: such a class destroys nothing.
    if (PyErr_Occurred()) {
        PyErr_Clear();
        Py_CLEAR(data->destroy);
    }
    data->delargs = data->destroy && needs_fresh_argument(data->destroy);
    return data;
}

void SwigPyClientData_Release(SwigPyClientData *data) {
    if (!data->newargs)
        return;
    Py_CLEAR(data->newraw);
    Py_CLEAR(data->newargs);
    Py_XDECREF(data->destroy);
}

PyObject *SwigPyClientData_Destructor(const SwigPyClientData *data) {
    if (!data->klass || data->newargs || !data->destroy) {
        Py_XINCREF(data->destroy);
        return data->destroy;
    }
    const PendingError keep;
    PyObject *destroy = PyObject_GetAttrString(data->klass, "__swig_destroy__");
    if (destroy != data->destroy)
        Py_CLEAR(destroy);
    return destroy;
}

PyObject *SWIG_Python_NewShadowInstance(SwigPyClientData *data, PyObject *pointer_object) {
    if (data->newraw)
        return new_style_instance(data, pointer_object);
    return data->newargs ? classic_instance(data, pointer_object) : nullptr;
}
