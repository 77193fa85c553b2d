#include "runtime/client_data.h"
#include "runtime/convert.h"

#include <cstdlib>

namespace {

/// Takes over the class's way of making raw instances.
void set_constructor(SwigPyClientData *data) {
    data->newargs = data->klass;
    if (!PyClass_Check(data->klass)) {
        data->newraw = PyObject_GetAttrString(data->klass, "__new__");
        if (data->newraw) {
            data->newargs = PyTuple_Pack(1, data->klass);
            return;
        }
    }
    Py_INCREF(data->newargs);
}

/// A built-in that takes one object is called directly, anything else through the interpreter.
bool needs_fresh_argument(PyObject *destroy) {
    return !PyCFunction_Check(destroy) || !(PyCFunction_GET_FLAGS(destroy) & METH_O);
}

void set_destructor(SwigPyClientData *data) {
    // This also clears an error that set_constructor may have left.
    data->destroy = PyObject_GetAttrString(data->klass, "__swig_destroy__");
    if (PyErr_Occurred()) {
        PyErr_Clear();
        Py_CLEAR(data->destroy);
    }
    data->delargs = data->destroy && needs_fresh_argument(data->destroy);
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
    if (dictionary && !*dictionary) {
        *dictionary = PyDict_New();
        if (*dictionary)
            PyDict_SetItem(*dictionary, SWIG_This(), pointer_object);
    }
    return instance;
}

PyObject *classic_instance(SwigPyClientData *data, PyObject *pointer_object) {
    PyObject *dictionary = PyDict_New();
    if (!dictionary)
        return nullptr;
    PyDict_SetItem(dictionary, SWIG_This(), pointer_object);
    PyObject *instance = PyInstance_NewRaw(data->newargs, dictionary);
    Py_DECREF(dictionary);
    return instance;
}

} // namespace

SwigPyClientData *SwigPyClientData_New(PyObject *klass) {
    auto *data =
        static_cast<SwigPyClientData *>(klass ? std::calloc(1, sizeof(SwigPyClientData)) : nullptr);
    if (!data)
        return nullptr;
    Py_INCREF(klass);
    data->klass = klass;
    set_constructor(data);
    set_destructor(data);
    return data;
}

PyObject *SWIG_Python_NewShadowInstance(SwigPyClientData *data, PyObject *pointer_object) {
    if (data->newraw)
        return new_style_instance(data, pointer_object);
    return data->newargs ? classic_instance(data, pointer_object) : nullptr;
}
