// SPDX-License-Identifier: MIT
#include "runtime/pointer_object.h"

#include "runtime/client_data.h"
#include "runtime/hex.h"
#include "runtime/static_type.h"

#include <cstdio>
#include <cstring>

using namespace binding;

namespace {

SwigPyObject *as_pointer_object(PyObject *object) {
    return reinterpret_cast<SwigPyObject *>(object);
}

PyObject *none() {
    Py_RETURN_NONE;
}

const char *pretty_name(const SwigPyObject *self) {
    return self->ty ? SWIG_TypePrettyName(self->ty) : "unknown";
}

// Slots

PyObject *SwigPyObject_repr(PyObject *object) {
    const SwigPyObject *self = as_pointer_object(object);
    PyObject *text = PyString_FromFormat("<Swig Object of type '%s' at %p>", pretty_name(self),
                                         static_cast<void *>(object));
    if (!text || !self->next)
        return text;
    // A chain that a script has closed into a loop ends here instead of exhausting the stack.
    if (Py_EnterRecursiveCall(const_cast<char *>(" while showing a chain of pointer objects"))) {
        Py_DECREF(text);
        return nullptr;
    }
    PyString_ConcatAndDel(&text, SwigPyObject_repr(self->next));
    Py_LeaveRecursiveCall();
    return text;
}

int SwigPyObject_print(PyObject *object, FILE *stream, int) {
    PyObject *text = SwigPyObject_repr(object);
    if (!text)
        return 1;
    std::fputs(PyString_AS_STRING(text), stream);
    Py_DECREF(text);
    return 0;
}

PyObject *SwigPyObject_str(PyObject *object) {
    const SwigPyObject *self = as_pointer_object(object);
    char text[1024];
    char *end = SWIG_PackVoidPtr(text, self->ptr);
    const size_t name_size = std::strlen(self->ty->name) + 1;
    if (name_size > sizeof(text) - static_cast<size_t>(end - text))
        return nullptr;
    std::memcpy(end, self->ty->name, name_size);
    return PyString_FromString(text);
}

int SwigPyObject_compare(PyObject *a, PyObject *b) {
    const void *left = as_pointer_object(a)->ptr, *right = as_pointer_object(b)->ptr;
    return left < right ? -1 : left > right;
}

PyObject *SwigPyObject_richcompare(PyObject *a, PyObject *b, int operation) {
    if ((operation != Py_EQ && operation != Py_NE) || !SwigPyObject_Check(b)) {
        Py_INCREF(Py_NotImplemented);
        return Py_NotImplemented;
    }
    const bool equal = as_pointer_object(a)->ptr == as_pointer_object(b)->ptr;
    return PyBool_FromLong(equal == (operation == Py_EQ));
}

PyObject *SwigPyObject_long(PyObject *object) {
    return PyLong_FromVoidPtr(as_pointer_object(object)->ptr);
}

PyObject *format_address(PyObject *object, const char *format) {
    PyObject *text = nullptr;
    PyObject *arguments = PyTuple_New(1);
    PyObject *format_text = PyString_FromString(format);
    PyObject *address = SwigPyObject_long(object);
    if (arguments && format_text && address) {
        PyTuple_SET_ITEM(arguments, 0, address);
        address = nullptr;
        text = PyString_Format(format_text, arguments);
    }
    Py_XDECREF(address);
    Py_XDECREF(format_text);
    Py_XDECREF(arguments);
    return text;
}

PyObject *SwigPyObject_oct(PyObject *object) {
    return format_address(object, "%o");
}
PyObject *SwigPyObject_hex(PyObject *object) {
    return format_address(object, "%x");
}

/// Calls the class's destroy callable for an object that is being deallocated. An exception that
/// was pending before stays; one that the destructor raises stays where none was.
void destroy_native(SwigPyObject *self, PyObject *destroy, bool needs_fresh_argument) {
    PyObject *type = nullptr, *value, *traceback;
    if (PyThreadState_GET()->curexc_type)
        PyErr_Fetch(&type, &value, &traceback);
    PyObject *result = nullptr;
    if (needs_fresh_argument) {
        // The callable may keep or drop its argument: hand it a stand-in, not the dying object.
        if (PyObject *stand_in = SwigPyObject_New(self->ptr, self->ty, 0)) {
            result = PyObject_CallFunctionObjArgs(destroy, stand_in, nullptr);
            Py_DECREF(stand_in);
        }
    } else {
        PyCFunction native = PyCFunction_GET_FUNCTION(destroy);
        result = native(PyCFunction_GET_SELF(destroy), reinterpret_cast<PyObject *>(self));
    }
    Py_XDECREF(result);
    if (type)
        PyErr_Restore(type, value, traceback);
}

/// Destroys what a dying object owns; false when the destroy callable has kept the object itself.
bool give_up(SwigPyObject *self) {
    if (self->own != 1)
        return true;
    const auto *data = static_cast<SwigPyClientData *>(self->ty ? self->ty->clientdata : nullptr);
    PyObject *destroy = data ? SwigPyClientData_Destructor(data) : nullptr;
    if (!destroy) {
        std::printf("swig/python detected a memory leak of type '%s', no destructor found.\n",
                    pretty_name(self));
        return true;
    }
    self->ob_refcnt = 1; // the callable may count it up and down as it likes, or keep it
    destroy_native(self, destroy, data->delargs);
    Py_DECREF(destroy);
    if (--self->ob_refcnt == 0)
        return true;
    self->own = 0;
    return false;
}

// A chain dies from its head on, whichever module's objects are in it: in a loop, as scripts can
// make it longer than the stack is deep.
void SwigPyObject_dealloc(PyObject *object) {
    while (object && give_up(as_pointer_object(object))) {
        PyObject *next = as_pointer_object(object)->next;
        PyObject_DEL(object);
        object = next && --next->ob_refcnt == 0 ? next : nullptr;
    }
}

// Methods

PyObject *SwigPyObject_disown(PyObject *self, PyObject *) {
    as_pointer_object(self)->own = 0;
    return none();
}

PyObject *SwigPyObject_acquire(PyObject *self, PyObject *) {
    as_pointer_object(self)->own = 1;
    return none();
}

PyObject *SwigPyObject_own(PyObject *self, PyObject *arguments) {
    PyObject *value = nullptr;
    if (!PyArg_UnpackTuple(arguments, "own", 0, 1, &value))
        return nullptr;
    PyObject *before = PyBool_FromLong(as_pointer_object(self)->own);
    if (value) {
        const int truth = PyObject_IsTrue(value);
        if (truth < 0) {
            Py_DECREF(before);
            return nullptr;
        }
        as_pointer_object(self)->own = truth;
    }
    return before;
}

PyObject *SwigPyObject_next(PyObject *self, PyObject *) {
    PyObject *next = as_pointer_object(self)->next;
    if (!next)
        return none();
    Py_INCREF(next);
    return next;
}

PyObject *SwigPyObject_repr_method(PyObject *self, PyObject *) {
    return SwigPyObject_repr(self);
}

PyMethodDef swigobject_methods[] = {
    {"disown", SwigPyObject_disown, METH_NOARGS, "releases ownership of the pointer"},
    {"acquire", SwigPyObject_acquire, METH_NOARGS, "aquires ownership of the pointer"},
    {"own", SwigPyObject_own, METH_VARARGS, "returns/sets ownership of the pointer"},
    {"append", SwigPyObject_append, METH_O, "appends another 'this' object"},
    {"next", SwigPyObject_next, METH_NOARGS, "returns the next 'this' object"},
    {"__repr__", SwigPyObject_repr_method, METH_NOARGS, "returns object representation"},
    {nullptr, nullptr, 0, nullptr}};

constexpr PyNumberMethods number_methods() {
    PyNumberMethods methods{};
    methods.nb_int = SwigPyObject_long;
    methods.nb_long = SwigPyObject_long;
    methods.nb_oct = SwigPyObject_oct;
    methods.nb_hex = SwigPyObject_hex;
    return methods;
}

constinit PyNumberMethods SwigPyObject_as_number = number_methods();

constexpr PyTypeObject make_pointer_type() {
    PyTypeObject type = static_type("SwigPyObject", sizeof(SwigPyObject), kPointerDoc);
    type.tp_dealloc = SwigPyObject_dealloc;
    type.tp_print = SwigPyObject_print;
    type.tp_compare = SwigPyObject_compare;
    type.tp_repr = SwigPyObject_repr;
    type.tp_as_number = &SwigPyObject_as_number;
    type.tp_str = SwigPyObject_str;
    type.tp_richcompare = SwigPyObject_richcompare;
    type.tp_methods = swigobject_methods;
    return type;
}

} // namespace

constinit PyTypeObject binding::pointer_object_type = make_pointer_type();
constinit PyTypeObject *binding::other_pointer_object_type = nullptr;

PyTypeObject *SwigPyObject_type() {
    return ready(pointer_object_type);
}

bool SwigPyObject_Check(PyObject *object) {
    PyTypeObject *type = Py_TYPE(object);
    if (type == &pointer_object_type || type == other_pointer_object_type)
        return true;
    if (PyType_HasFeature(type, Py_TPFLAGS_HEAPTYPE) ||
        std::strcmp(type->tp_name, "SwigPyObject") != 0)
        return false;
    other_pointer_object_type = type;
    return true;
}

PyObject *SwigPyObject_New(void *pointer, swig_type_info *type, int own) {
    PyTypeObject *kind = SwigPyObject_type();
    SwigPyObject *self = kind ? PyObject_New(SwigPyObject, kind) : nullptr;
    if (!self)
        return nullptr;
    self->ptr = pointer;
    self->ty = type;
    self->own = own;
    self->next = nullptr;
    return reinterpret_cast<PyObject *>(self);
}

PyObject *SwigPyObject_append(PyObject *self, PyObject *next) {
    if (!SwigPyObject_Check(next))
        return nullptr;
    Py_INCREF(next);
    as_pointer_object(self)->next = next;
    return none();
}
