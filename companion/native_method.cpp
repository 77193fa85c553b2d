// SPDX-License-Identifier: MIT
#include "companion/native_method.h"

#include "companion/native_call.h"
#include "companion/part.h"
#include "runtime/object_holder.h"
#include "runtime/single_entry.h"
#include "runtime/static_type.h"

#include <structmember.h>

#include <algorithm>
#include <new>
#include <string>
#include <string_view>

namespace companion {
namespace {

using Reference = swig::SwigPtr_PyObject;

struct Method {
    PyObject_HEAD PyObject *function; ///< the flat function, a built-in
    PyObject *name;
    PyObject *parameters; ///< a tuple of names, without the one that takes the rest
    PyObject *doc;
    PyObject *defaults; ///< a tuple
    PyObject *module;   ///< the name of the module that made it
    PyObject *init;     ///< "swiginit", or null
    PyObject *weak_references;
    bool takes_rest; ///< any number of further arguments
    bool is_part;
    bool checks_this;
    bool is_reflected;
    bool is_plain; ///< none of those, and no "swiginit"
};

Method *as_method(PyObject *object) {
    return reinterpret_cast<Method *>(object);
}

PyObject *kept(PyObject *object) {
    Py_XINCREF(object);
    return object;
}

// Arguments

PyObject *wrong_count(const Method *self, Py_ssize_t given) {
    const Py_ssize_t most = PyTuple_GET_SIZE(self->parameters);
    const Py_ssize_t least = most - PyTuple_GET_SIZE(self->defaults);
    const Py_ssize_t bound = given < least ? least : most;
    PyErr_Format(PyExc_TypeError, "%s() takes %s %zd argument%s (%zd given)",
                 PyString_AS_STRING(self->name),
                 least == most   ? "exactly"
                 : given < least ? "at least"
                                 : "at most",
                 bound, bound == 1 ? "" : "s", given);
    return nullptr;
}

/// The place of the parameter of a name; -1 where there is none.
Py_ssize_t place_of(const Method *self, PyObject *name) {
    for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(self->parameters); ++i)
        if (PyObject_RichCompareBool(PyTuple_GET_ITEM(self->parameters, i), name, Py_EQ) == 1)
            return i;
    return -1;
}

PyObject *wrong_name(const Method *self, const char *what, PyObject *name) {
    const Reference shown(PyObject_Str(name));
    if (shown)
        PyErr_Format(PyExc_TypeError, "%s() got %s keyword argument '%s'",
                     PyString_AS_STRING(self->name), what, PyString_AS_STRING(shown.get()));
    return nullptr;
}

bool place_named(const Method *self, PyObject *all, PyObject *named) {
    PyObject *name, *value;
    for (Py_ssize_t at = 0; PyDict_Next(named, &at, &name, &value);) {
        const Py_ssize_t place = place_of(self, name);
        if (place < 0)
            return wrong_name(self, "an unexpected", name);
        if (PyTuple_GET_ITEM(all, place))
            return wrong_name(self, "multiple values for", name);
        Py_INCREF(value);
        PyTuple_SET_ITEM(all, place, value);
    }
    return true;
}

bool place_defaults(const Method *self, PyObject *all, Py_ssize_t given) {
    const Py_ssize_t count = PyTuple_GET_SIZE(all);
    const Py_ssize_t first = count - PyTuple_GET_SIZE(self->defaults);
    for (Py_ssize_t i = 0; i < count; ++i) {
        if (PyTuple_GET_ITEM(all, i))
            continue;
        if (i < first)
            return wrong_count(self, given);
        PyObject *value = PyTuple_GET_ITEM(self->defaults, i - first);
        Py_INCREF(value);
        PyTuple_SET_ITEM(all, i, value);
    }
    return true;
}

/// True for so many arguments that need no defaults.
bool are_enough(const Method *self, Py_ssize_t given) {
    const Py_ssize_t count = PyTuple_GET_SIZE(self->parameters);
    return given == count || (self->takes_rest && given > count);
}

/// True for arguments that need no names or defaults; `more` are not among them.
bool are_complete(const Method *self, PyObject *arguments, PyObject *named, Py_ssize_t more = 0) {
    return (!named || PyDict_Size(named) == 0) &&
           are_enough(self, PyTuple_GET_SIZE(arguments) + more);
}

/// All arguments in order: a new reference, or null with an exception set.
PyObject *all_arguments(const Method *self, PyObject *arguments, PyObject *named) {
    const Py_ssize_t given = PyTuple_GET_SIZE(arguments);
    const Py_ssize_t count = PyTuple_GET_SIZE(self->parameters);
    const bool has_named = named && PyDict_Size(named) > 0;
    if (self->takes_rest && has_named) {
        PyErr_Format(PyExc_TypeError, "%s() takes no keyword arguments",
                     PyString_AS_STRING(self->name));
        return nullptr;
    }
    if (given > count)
        return wrong_count(self, given);
    Reference all(PyTuple_New(count));
    if (!all)
        return nullptr;
    for (Py_ssize_t i = 0; i < given; ++i) {
        PyObject *value = PyTuple_GET_ITEM(arguments, i);
        Py_INCREF(value);
        PyTuple_SET_ITEM(all.get(), i, value);
    }
    if (has_named && !place_named(self, all.get(), named))
        return nullptr;
    return place_defaults(self, all.get(), given + (has_named ? PyDict_Size(named) : 0))
               ? all.release()
               : nullptr;
}

// Calls

/// Calls the flat function with a tuple.
[[gnu::always_inline]] inline PyObject *call_function(PyObject *function, PyObject *arguments) {
    const int flags = PyCFunction_GET_FLAGS(function);
    const Py_ssize_t count = PyTuple_GET_SIZE(arguments);
    if (flags == METH_VARARGS)
        return call_native(function, arguments);
    if (flags == METH_O && count == 1)
        return call_native(function, PyTuple_GET_ITEM(arguments, 0));
    if (flags == METH_NOARGS && count == 0)
        return call_native(function, nullptr);
    return PyObject_Call(function, arguments, nullptr); // which says what is wrong
}

/// Gives the instance its pointer object: at once where it is new, else as "swiginit" does.
bool attach(const Method *self, PyObject *instance, PyObject *pointer) {
    static PyObject *const name = PyString_InternFromString("this");
    PyObject **dictionary = _PyObject_GetDictPtr(instance);
    if (name && dictionary && !*dictionary) {
        *dictionary = binding::single_entry(name, pointer);
        return *dictionary;
    }
    const Reference both(PyTuple_Pack(2, instance, pointer));
    const Reference none(both ? call_function(self->init, both.get()) : nullptr);
    return static_cast<bool>(none);
}

/// Makes the native object with arguments that are complete, for the instance.
bool make_native(const Method *self, PyObject *instance, PyObject *arguments) {
    const Reference pointer(call_function(self->function, arguments));
    return pointer && attach(self, instance, pointer.get());
}

/// The same where the instance is the first of the arguments.
PyObject *make_native(const Method *self, PyObject *arguments) {
    const Reference rest(PyTuple_GetSlice(arguments, 1, PyTuple_GET_SIZE(arguments)));
    if (!rest || !make_native(self, PyTuple_GET_ITEM(arguments, 0), rest.get()))
        return nullptr;
    Py_RETURN_NONE;
}

bool has_this(PyObject *object) {
    const Reference found(PyObject_GetAttrString(object, "this"));
    return static_cast<bool>(found);
}

/// Calls with arguments that are complete.
PyObject *call_complete(const Method *self, PyObject *arguments) {
    if (self->init)
        return make_native(self, arguments);
    if (self->checks_this && !has_this(PyTuple_GET_ITEM(arguments, 0)))
        return nullptr;
    PyObject *result = call_function(self->function, arguments);
    if (!result && self->is_reflected && PyErr_ExceptionMatches(PyExc_TypeError)) {
        PyErr_Clear(); // what it cannot take is for the other operand to judge
        Py_INCREF(Py_NotImplemented);
        return Py_NotImplemented;
    }
    return self->is_part ? keep_whole(PyTuple_GET_ITEM(arguments, 0), result) : result;
}

[[gnu::noinline]] PyObject *call_with_names(const Method *self, PyObject *arguments,
                                            PyObject *named) {
    if (are_complete(self, arguments, named))
        return call_complete(self, arguments);
    const Reference all(all_arguments(self, arguments, named));
    return all ? call_complete(self, all.get()) : nullptr;
}

// What functions have

PyObject *method_get(PyObject *self, PyObject *instance, PyObject *type) {
    return PyMethod_New(self, instance == Py_None ? nullptr : instance, type);
}

PyObject *method_repr(PyObject *self) {
    return PyString_FromFormat("<native function %s at %p>",
                               PyString_AS_STRING(as_method(self)->name),
                               static_cast<void *>(self));
}

/// A code object of the same signature, for those who inspect it.
PyObject *code_of(PyObject *object, void *) {
    const Method *self = as_method(object);
    try {
        std::string text = "lambda ";
        for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(self->parameters); ++i)
            text += std::string(i ? ", " : "") +
                    PyString_AS_STRING(PyTuple_GET_ITEM(self->parameters, i));
        if (self->takes_rest)
            text += PyTuple_GET_SIZE(self->parameters) ? ", *args" : "*args";
        const Reference names(PyDict_New());
        const Reference function(
            names ? PyRun_String((text + ": None").c_str(), Py_eval_input, names.get(), names.get())
                  : nullptr);
        return function ? PyObject_GetAttrString(function.get(), "func_code") : nullptr;
    } catch (const std::bad_alloc &) {
        return PyErr_NoMemory();
    }
}

PyObject *get_defaults(PyObject *object, void *) {
    PyObject *defaults = as_method(object)->defaults;
    PyObject *result = PyTuple_GET_SIZE(defaults) ? defaults : Py_None;
    Py_INCREF(result);
    return result;
}

/// As for functions: a tuple, or None for no defaults.
int set_defaults(PyObject *object, PyObject *value, void *) {
    const bool is_none = !value || value == Py_None;
    const Reference defaults(is_none ? PyTuple_New(0) : kept(value));
    Method *self = as_method(object);
    if (defaults && (!PyTuple_Check(defaults.get()) ||
                     PyTuple_GET_SIZE(defaults.get()) > PyTuple_GET_SIZE(self->parameters)))
        PyErr_SetString(PyExc_TypeError, "the defaults are a tuple, at most one for a parameter");
    if (PyErr_Occurred())
        return -1;
    Py_INCREF(defaults.get());
    Py_DECREF(self->defaults);
    self->defaults = defaults.get();
    return 0;
}

/// isinstance() and inspect take it for what it stands for.
PyObject *get_class(PyObject *, void *) {
    auto *type = reinterpret_cast<PyObject *>(&PyFunction_Type);
    Py_INCREF(type);
    return type;
}

PyGetSetDef computed[] = {
    {const_cast<char *>("func_code"), code_of, nullptr, nullptr, nullptr},
    {const_cast<char *>("__code__"), code_of, nullptr, nullptr, nullptr},
    {const_cast<char *>("func_defaults"), get_defaults, set_defaults, nullptr, nullptr},
    {const_cast<char *>("__defaults__"), get_defaults, set_defaults, nullptr, nullptr},
    {const_cast<char *>("__class__"), get_class, nullptr, nullptr, nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};

#define MEMBER(shown, field) \
    { const_cast<char *>(shown), T_OBJECT, offsetof(Method, field), READONLY, nullptr }
PyMemberDef members[] = {MEMBER("__name__", name),     MEMBER("func_name", name),
                         MEMBER("__doc__", doc),       MEMBER("func_doc", doc),
                         MEMBER("__module__", module), MEMBER("native", function),
                         {nullptr, 0, 0, 0, nullptr}};
#undef MEMBER

void method_dealloc(PyObject *object) {
    Method *self = as_method(object);
    if (self->weak_references)
        PyObject_ClearWeakRefs(object);
    for (PyObject *held : {self->function, self->name, self->parameters, self->doc, self->defaults,
                           self->module, self->init})
        Py_XDECREF(held);
    PyObject_DEL(object);
}

/// The names of "self, other, *args", but for the last one where it takes the rest.
PyObject *names_in(const char *text, bool &takes_rest) {
    const Reference list(PyList_New(0));
    std::string_view rest = text;
    while (list && !rest.empty()) {
        const std::string_view name = rest.substr(0, rest.find(','));
        rest.remove_prefix(std::min(rest.size(), name.size() + 2));
        takes_rest = name.starts_with('*');
        if (takes_rest)
            break;
        const Reference item(PyString_FromStringAndSize(name.data(), Py_ssize_t(name.size())));
        if (!item || PyList_Append(list.get(), item.get()) < 0)
            return nullptr;
    }
    return list ? PyList_AsTuple(list.get()) : nullptr;
}

PyObject *method_new(PyTypeObject *type, PyObject *arguments, PyObject *named) {
    static const char *const keywords[] = {"function",    "name",     "parameters",
                                           "doc",         "defaults", "part",
                                           "checks_this", "init",     nullptr};
    PyObject *function, *name, *doc, *defaults = nullptr, *init = nullptr;
    const char *parameters;
    int is_part = 0, checks_this = 0;
    if (!PyArg_ParseTupleAndKeywords(arguments, named, "O!SsO|O!iiO!",
                                     const_cast<char **>(keywords), &PyCFunction_Type, &function,
                                     &name, &parameters, &doc, &PyTuple_Type, &defaults, &is_part,
                                     &checks_this, &PyCFunction_Type, &init))
        return nullptr;
    Method *self = PyObject_New(Method, type);
    if (!self)
        return nullptr;
    self->weak_references = nullptr;
    self->takes_rest = false;
    self->function = kept(function);
    self->name = kept(name);
    self->parameters = names_in(parameters, self->takes_rest);
    self->doc = kept(doc);
    self->defaults = defaults ? kept(defaults) : PyTuple_New(0);
    PyObject *globals = PyEval_GetGlobals();
    self->module = kept(globals ? PyDict_GetItemString(globals, "__name__") : nullptr);
    self->init = kept(init);
    self->is_part = is_part;
    self->checks_this = checks_this;
    self->is_reflected = PyString_AS_STRING(name) == std::string_view("__rmul__");
    self->is_plain = !is_part && !checks_this && !init && !self->is_reflected;
    const bool needs_object = is_part || checks_this || init;
    if (self->parameters && self->defaults && needs_object && !PyTuple_GET_SIZE(self->parameters))
        PyErr_SetString(PyExc_ValueError, "a method of an object has the object as a parameter");
    else if (self->parameters && self->defaults)
        return reinterpret_cast<PyObject *>(self);
    Py_DECREF(self);
    return nullptr;
}

constexpr PyTypeObject make_type() {
    PyTypeObject made = binding::static_type("_openquil_proxy.Method", sizeof(Method));
    made.tp_dealloc = method_dealloc;
    made.tp_repr = method_repr;
    made.tp_call = call_native_method;
    made.tp_weaklistoffset = offsetof(Method, weak_references);
    made.tp_members = members;
    made.tp_getset = computed;
    made.tp_descr_get = method_get;
    made.tp_new = method_new;
    return made;
}

constinit PyTypeObject type_object = make_type();

} // namespace

PyTypeObject *method_type() {
    return PyType_Ready(&type_object) == 0 ? &type_object : nullptr;
}

bool is_native_method(const PyObject *object) {
    return Py_TYPE(object) == &type_object;
}

PyObject *call_native_method(PyObject *method, PyObject *arguments, PyObject *named) {
    const Method *self = as_method(method);
    if (self->is_plain && !named && are_enough(self, PyTuple_GET_SIZE(arguments))) [[likely]]
        return call_function(self->function, arguments);
    return call_with_names(self, arguments, named);
}

bool construct(PyObject *method, PyObject *instance, PyObject *arguments, PyObject *named) {
    const Method *self = as_method(method);
    if (self->init && are_complete(self, arguments, named, 1)) [[likely]]
        return make_native(self, instance, arguments);
    const Reference first(PyTuple_Pack(1, instance));
    const Reference all(first ? PySequence_Concat(first.get(), arguments) : nullptr);
    const Reference none(all ? call_native_method(method, all.get(), named) : nullptr);
    return static_cast<bool>(none);
}

} // namespace companion
