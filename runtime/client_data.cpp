// SPDX-License-Identifier: MIT
#include "runtime/client_data.h"

#include "runtime/convert.h"

#include <cstdlib>
#include <initializer_list>

namespace {

/// Looks for an attribute that a class may well lack, or refuse with any exception. False, with the
/// exception left, only when memory is short.
bool find_attribute(PyObject *klass, const char *name, PyObject *&value) {
    value = PyObject_GetAttrString(klass, name);
    if (!value) {
        if (PyErr_ExceptionMatches(PyExc_MemoryError))
            return false;
        PyErr_Clear();
    }
    return true;
}

/// Takes over the class's way of making raw instances.
bool set_constructor(SwigPyClientData *data) {
    if (!PyClass_Check(data->klass) && !find_attribute(data->klass, "__new__", data->newraw))
        return false;
    if (data->newraw)
        return (data->newargs = PyTuple_Pack(1, data->klass));
    Py_INCREF(data->klass);
    data->newargs = data->klass;
    return true;
}

/// A built-in that takes one object is called directly, anything else through the interpreter.
bool needs_fresh_argument(PyObject *destroy) {
    return !PyCFunction_Check(destroy) || !(PyCFunction_GET_FLAGS(destroy) & METH_O);
}

bool set_destructor(SwigPyClientData *data) {
    if (!find_attribute(data->klass, "__swig_destroy__", data->destroy))
        return false;
    data->delargs = data->destroy && needs_fresh_argument(data->destroy);
    return true;
}

/// True for a class whose "__new__" is object's own. Most proxy classes are such, and their
/// instances are made without the detour through the callable.
bool has_plain_new(SwigPyClientData *data) {
    return PyCFunction_Check(data->newraw) &&
           PyCFunction_GET_SELF(data->newraw) == reinterpret_cast<PyObject *>(&PyBaseObject_Type) &&
           PyType_Check(data->klass) &&
           reinterpret_cast<PyTypeObject *>(data->klass)->tp_new == PyBaseObject_Type.tp_new;
}

PyObject *make_instance(SwigPyClientData *data) {
    if (!has_plain_new(data))
        return PyObject_Call(data->newraw, data->newargs, nullptr);
    static PyObject *const no_arguments = PyTuple_New(0);
    return PyBaseObject_Type.tp_new(reinterpret_cast<PyTypeObject *>(data->klass), no_arguments,
                                    nullptr);
}

PyObject *new_style_instance(SwigPyClientData *data, PyObject *pointer_object) {
    PyObject *instance = make_instance(data);
    PyObject **dictionary = instance ? _PyObject_GetDictPtr(instance) : nullptr;
    if (!dictionary || *dictionary)
        return instance;
    *dictionary = PyDict_New();
    if (*dictionary && SWIG_SetThis(*dictionary, pointer_object))
        return instance;
    Py_DECREF(instance);
    return nullptr;
}

PyObject *classic_instance(SwigPyClientData *data, PyObject *pointer_object) {
    PyObject *dictionary = PyDict_New();
    if (!dictionary)
        return nullptr;
    PyObject *instance = nullptr;
    if (SWIG_SetThis(dictionary, pointer_object))
        instance = PyInstance_NewRaw(data->newargs, dictionary);
    Py_DECREF(dictionary);
    return instance;
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
    if (set_constructor(data) && set_destructor(data))
        return data;
    for (PyObject *object : {data->klass, data->newraw, data->newargs, data->destroy})
        Py_XDECREF(object);
    std::free(data);
    return nullptr;
}

PyObject *SWIG_Python_NewShadowInstance(SwigPyClientData *data, PyObject *pointer_object) {
    if (data->newraw)
        return new_style_instance(data, pointer_object);
    return data->newargs ? classic_instance(data, pointer_object) : nullptr;
}
