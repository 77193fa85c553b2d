// SPDX-License-Identifier: MIT
#include "companion/native_property.h"

#include "companion/argument_tuple.h"
#include "companion/native_call.h"
#include "companion/part.h"
#include "runtime/object_holder.h"
#include "runtime/static_type.h"

namespace companion {
namespace {

using Reference = swig::SwigPtr_PyObject;

/// Behind what a property itself consists of: the flat functions (borrowed, as the property has
/// them), or null.
struct Functions {
    PyObject *get, *set;
};

Functions &functions_of(PyObject *property) {
    return *reinterpret_cast<Functions *>(reinterpret_cast<char *>(property) +
                                          PyProperty_Type.tp_basicsize);
}

/// An attribute that the property keeps, borrowed, if it is a built-in with the flags.
PyObject *flat_function(PyObject *property, const char *name, int flags) {
    const Reference found(PyObject_GetAttrString(property, name));
    if (!found)
        PyErr_Clear();
    const bool fits =
        found && PyCFunction_Check(found.get()) && PyCFunction_GET_FLAGS(found.get()) == flags;
    return fits ? found.get() : nullptr;
}

int property_init(PyObject *self, PyObject *arguments, PyObject *named) {
    if (PyProperty_Type.tp_init(self, arguments, named) < 0)
        return -1;
    functions_of(self) = {flat_function(self, "fget", METH_O),
                          flat_function(self, "fset", METH_VARARGS)};
    return 0;
}

template <bool is_part>
PyObject *property_get(PyObject *self, PyObject *instance, PyObject *type) {
    PyObject *get = functions_of(self).get;
    if (!get || !instance || instance == Py_None)
        return PyProperty_Type.tp_descr_get(self, instance, type);
    PyObject *result = call_native(get, instance);
    return is_part ? keep_whole(instance, result) : result;
}

int property_set(PyObject *self, PyObject *instance, PyObject *value) {
    PyObject *set = functions_of(self).set;
    if (!set || !value)
        return PyProperty_Type.tp_descr_set(self, instance, value);
    const ArgumentTuple both(instance, value);
    const Reference none(both.get() ? call_native(set, both.get()) : nullptr);
    return none ? 0 : -1;
}

template <bool is_part>
PyTypeObject *make_type(const char *name) {
    static PyTypeObject type = [=] {
        PyTypeObject made = binding::static_type(name, PyProperty_Type.tp_basicsize +
                                                           Py_ssize_t(sizeof(Functions)));
        made.tp_base = &PyProperty_Type;
        made.tp_flags |= Py_TPFLAGS_HAVE_GC;
        made.tp_traverse = PyProperty_Type.tp_traverse;
        made.tp_clear = PyProperty_Type.tp_clear;
        made.tp_init = property_init;
        made.tp_descr_get = property_get<is_part>;
        made.tp_descr_set = property_set;
        return made;
    }();
    if (PyType_Ready(&type) < 0)
        return nullptr;
    // Each property's own documentation is meant, not one of the type.
    if (PyDict_DelItemString(type.tp_dict, "__doc__") < 0)
        PyErr_Clear();
    PyType_Modified(&type);
    return &type;
}

} // namespace

PyTypeObject *property_type() {
    return make_type<false>("_openquil_proxy.Property");
}

PyTypeObject *part_property_type() {
    return make_type<true>("_openquil_proxy.PartProperty");
}

} // namespace companion
