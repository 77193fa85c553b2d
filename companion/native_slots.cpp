// SPDX-License-Identifier: MIT
#include "companion/native_slots.h"

#include "companion/argument_tuple.h"
#include "companion/native_memory.h"
#include "companion/native_method.h"
#include "runtime/object_holder.h"

namespace companion {
namespace {

using Reference = swig::SwigPtr_PyObject;

/// Names of special methods, interned on first use.
enum Special {
    kInit,
    kGetItem,
    kSetItem,
    kDelItem,
    kLen,
    kAdd,
    kSub,
    kMul,
    kReflectedMul,
    kDiv,
    kXor,
    kNeg,
    kMemory,
    kSpecials
};

PyObject *name_of(Special special) {
    static PyObject *names[kSpecials];
    static const char *const texts[kSpecials] = {
        "__init__", "__getitem__", "__setitem__", "__delitem__", "__len__", "__add__", "__sub__",
        "__mul__",  "__rmul__",    "__div__",     "__xor__",     "__neg__", "memory"};
    if (!names[special])
        names[special] = PyString_InternFromString(texts[special]);
    return names[special];
}

/// The class's native method of a name, or null. It is a new reference: what a call runs may
/// replace the method in its class.
PyObject *native_method(PyTypeObject *type, PyObject *name) {
    PyObject *found = name ? _PyType_Lookup(type, name) : nullptr;
    if (!found || !is_native_method(found))
        return nullptr;
    Py_INCREF(found);
    return found;
}

bool has_native_method(PyTypeObject *type, Special special) {
    return static_cast<bool>(Reference(native_method(type, name_of(special))));
}

/// Calls a special method, which the class has, with the instance and further arguments.
template <class... Argument>
PyObject *call_special(Special special, PyObject *self, Argument *...arguments) {
    PyObject *name = name_of(special);
    const Reference method(native_method(Py_TYPE(self), name));
    if (!method)
        return name ? PyObject_CallMethodObjArgs(self, name, arguments..., nullptr) : nullptr;
    const ArgumentTuple all(self, arguments...);
    return all.get() ? call_native_method(method.get(), all.get(), nullptr) : nullptr;
}

int status_of(PyObject *result) {
    const Reference owned(result);
    return owned ? 0 : -1;
}

int initialise(PyObject *self, PyObject *arguments, PyObject *named) {
    const Reference method(native_method(Py_TYPE(self), name_of(kInit)));
    if (method)
        return construct(method.get(), self, arguments, named) ? 0 : -1;
    const Reference found(PyObject_GetAttr(self, name_of(kInit)));
    return found ? status_of(PyObject_Call(found.get(), arguments, named)) : -1;
}

PyObject *item(PyObject *self, PyObject *key) {
    return call_special(kGetItem, self, key);
}

int set_item(PyObject *self, PyObject *key, PyObject *value) {
    return status_of(value ? call_special(kSetItem, self, key, value)
                           : call_special(kDelItem, self, key));
}

Py_ssize_t length(PyObject *self) {
    const Reference result(call_special(kLen, self));
    return result ? PyInt_AsSsize_t(result.get()) : -1;
}

PyObject *negative(PyObject *self) {
    return call_special(kNeg, self);
}

/// True for an instance of a class whose operator is this function: one of those installed here.
/// Derived classes have the interpreter's own functions, which look the methods up.
template <binaryfunc PyNumberMethods::*slot>
bool is_ours(PyObject *object, binaryfunc function) {
    const PyNumberMethods *numbers = Py_TYPE(object)->tp_as_number;
    return PyType_HasFeature(Py_TYPE(object), Py_TPFLAGS_HEAPTYPE) && numbers &&
           numbers->*slot == function;
}

PyObject *not_implemented() {
    Py_INCREF(Py_NotImplemented);
    return Py_NotImplemented;
}

/// Classes have no reflected methods for these: what is not the left operand's affair is nobody's.
template <Special special, binaryfunc PyNumberMethods::*slot>
PyObject *binary(PyObject *left, PyObject *right) {
    return is_ours<slot>(left, binary<special, slot>) ? call_special(special, left, right)
                                                      : not_implemented();
}

/// The product asks the left operand, and then the right one's reflected method where it is of
/// another class.
PyObject *product(PyObject *left, PyObject *right) {
    constexpr auto slot = &PyNumberMethods::nb_multiply;
    const bool has_left = is_ours<slot>(left, product);
    if (has_left) {
        PyObject *result = call_special(kMul, left, right);
        if (result != Py_NotImplemented)
            return result;
        Py_DECREF(result);
    }
    if (!is_ours<slot>(right, product) || (has_left && Py_TYPE(left) == Py_TYPE(right)))
        return not_implemented();
    PyObject *name = name_of(kReflectedMul);
    if (!name)
        return nullptr;
    return _PyType_Lookup(Py_TYPE(right), name) ? call_special(kReflectedMul, right, left)
                                                : not_implemented();
}

template <Special special, binaryfunc PyNumberMethods::*slot>
void install_binary(PyTypeObject *type) {
    if (has_native_method(type, special))
        type->tp_as_number->*slot = binary<special, slot>;
}

} // namespace

PyObject *install_slots(PyObject *, PyObject *klass) {
    auto *type = reinterpret_cast<PyTypeObject *>(klass);
    if (!PyType_Check(klass) || !PyType_HasFeature(type, Py_TPFLAGS_HEAPTYPE))
        return PyErr_Format(PyExc_TypeError, "install() takes a class");
    if (has_native_method(type, kInit))
        type->tp_init = initialise;
    if (has_native_method(type, kGetItem))
        type->tp_as_mapping->mp_subscript = item;
    if (has_native_method(type, kSetItem))
        type->tp_as_mapping->mp_ass_subscript = set_item;
    if (has_native_method(type, kLen))
        type->tp_as_mapping->mp_length = type->tp_as_sequence->sq_length = length;
    if (has_native_method(type, kNeg))
        type->tp_as_number->nb_negative = negative;
    if (has_native_method(type, kMemory))
        install_memory(type);
    install_binary<kAdd, &PyNumberMethods::nb_add>(type);
    install_binary<kSub, &PyNumberMethods::nb_subtract>(type);
    if (has_native_method(type, kMul))
        type->tp_as_number->nb_multiply = product;
    install_binary<kDiv, &PyNumberMethods::nb_divide>(type);
    install_binary<kXor, &PyNumberMethods::nb_xor>(type);
    Py_INCREF(klass);
    return klass;
}

} // namespace companion
