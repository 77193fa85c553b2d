// SPDX-License-Identifier: MIT
#include "runtime/convert.h"

#include "runtime/client_data.h"
#include "runtime/pending_error.h"
#include "runtime/result_codes.h"
#include "runtime/single_entry.h"

using namespace binding;

constinit PyObject *binding::swig_this = nullptr;

namespace {

/// "this" for lookups, which leave no exception; null when memory is short.
PyObject *this_or_null() {
    if (swig_this) [[likely]]
        return swig_this;
    const PendingError keep;
    return SWIG_This();
}

/// True where the type alone tells that there is no "this", as it does for numbers, texts and
/// lists.
bool cannot_have_this(const PyObject *object) {
    PyTypeObject *type = Py_TYPE(object);
    return type->tp_getattro == PyObject_GenericGetAttr && !_PyType_Lookup(type, swig_this);
}

/// The "this" of a type without an instance dictionary (borrowed: its owner keeps it), or null.
PyObject *this_attribute(PyObject *object) {
    if (cannot_have_this(object))
        return nullptr;
    const PendingError keep;
    PyObject *value = PyObject_GetAttr(object, swig_this);
    if (!value)
        return nullptr;
    // A property may have made the value just now: then nobody keeps it.
    const bool is_kept = value->ob_refcnt > 1;
    Py_DECREF(value);
    return is_kept ? value : nullptr;
}

/// "this" in a dictionary (borrowed), or null. Nearly always it is where its hash says.
PyObject *this_in(PyObject *dictionary) {
    const PyDictEntry &likely = first_place(dictionary, swig_this);
    return likely.me_key == swig_this ? likely.me_value : PyDict_GetItem(dictionary, swig_this);
}

/// The next candidate on the way from a value to its pointer object (borrowed), or null.
PyObject *candidate_behind(PyObject *object) {
    PyObject *name = this_or_null();
    if (!name)
        return nullptr;
    if (PyInstance_Check(object)) {
        const PendingError keep;
        return _PyInstance_Lookup(object, name);
    }
    if (PyObject **dictionary = _PyObject_GetDictPtr(object))
        return *dictionary ? this_in(*dictionary) : nullptr;
    if (PyWeakref_CheckProxy(object))
        return PyWeakref_GET_OBJECT(object);
    return this_attribute(object);
}

/// Tells when a walk along links that scripts can tie into a cycle has come back to where it was:
/// Brent's cycle detection, which remembers one place at a time, at distances that double, and so
/// needs no memory and at most three times the steps of the walk.
class LoopGuard {
  public:
    bool came_back(const void *place) {
        if (place == mark_)
            return true;
        if (++steps_ == limit_) {
            mark_ = place;
            steps_ = 0;
            limit_ *= 2;
        }
        return false;
    }

  private:
    const void *mark_ = nullptr;
    unsigned steps_ = 0, limit_ = 1;
};

/// The pointer that one pointer object yields for a type; false when it does not convert.
bool pointer_of(SwigPyObject *self, swig_type_info *type, void **pointer) {
    if (!type || self->ty == type) {
        *pointer = self->ptr;
        return true;
    }
    swig_cast_info *entry = SWIG_TypeCheck(self->ty->name, type);
    if (!entry)
        return false;
    int new_memory = 0;
    *pointer = SWIG_TypeCast(entry, self->ptr, &new_memory);
    return true;
}

int convert_implicitly(PyObject *object, void **pointer, swig_type_info *type) {
    auto *data = static_cast<SwigPyClientData *>(type->clientdata);
    if (!data || data->implicitconv || !data->klass)
        return SWIG_ERROR;
    data->implicitconv = 1;
    PyObject *made = PyObject_CallFunctionObjArgs(data->klass, object, nullptr);
    data->implicitconv = 0;
    if (PyErr_Occurred()) {
        PyErr_Clear();
        Py_XDECREF(made);
        return SWIG_ERROR;
    }
    int code = SWIG_ERROR;
    if (SwigPyObject *self = SWIG_Python_GetSwigThis(made)) {
        void *converted = nullptr;
        code =
            SWIG_Python_ConvertPtrAndOwn(reinterpret_cast<PyObject *>(self), &converted, type, 0);
        if (code >= 0) {
            if (pointer)
                *pointer = converted;
            self->own = 0;
            code += kNewObject;
        }
    }
    Py_DECREF(made);
    return code;
}

} // namespace

PyObject *SWIG_This() {
    if (!swig_this)
        swig_this = PyString_InternFromString("this");
    return swig_this;
}

void SWIG_ForgetThis() {
    swig_this = nullptr;
}

SwigPyObject *binding::pointer_of_proxy(PyObject *instance, const swig_type_info *type) {
    const Py_ssize_t offset = Py_TYPE(instance)->tp_dictoffset;
    if (offset <= 0 || !swig_this)
        return nullptr;
    PyObject *dictionary =
        *reinterpret_cast<PyObject **>(reinterpret_cast<char *>(instance) + offset);
    PyObject *found = dictionary ? this_in(dictionary) : nullptr;
    return found && is_bare_pointer(found, type) ? reinterpret_cast<SwigPyObject *>(found)
                                                 : nullptr;
}

SwigPyObject *SWIG_Python_GetSwigThis(PyObject *object) {
    // What is asked most where a call has cases for objects and for numbers.
    if (object && (PyFloat_CheckExact(object) || PyInt_CheckExact(object)))
        return nullptr;
    LoopGuard guard;
    while (object && !SwigPyObject_Check(object)) {
        if (guard.came_back(object))
            return nullptr;
        object = candidate_behind(object);
    }
    return reinterpret_cast<SwigPyObject *>(object);
}

int SWIG_Python_ConvertPtrAndOwn(PyObject *object, void **pointer, swig_type_info *type,
                                 int flags) {
    if (!object)
        return SWIG_ERROR;
    if (object == Py_None) {
        if (pointer)
            *pointer = nullptr;
        return SWIG_OK;
    }
    LoopGuard guard;
    for (SwigPyObject *self = SWIG_Python_GetSwigThis(object); self && !guard.came_back(self);
         self = reinterpret_cast<SwigPyObject *>(self->next)) {
        void *found;
        if (!pointer_of(self, type, &found))
            continue;
        if (pointer)
            *pointer = found;
        if (flags & kReleaseOwnership)
            self->own = 0;
        return SWIG_OK;
    }
    if (type && (flags & kImplicitConversion))
        return convert_implicitly(object, pointer, type);
    return SWIG_ERROR;
}

PyObject *SWIG_Python_NewPointerObj(void *pointer, swig_type_info *type, int flags) {
    if (!pointer)
        Py_RETURN_NONE;
    PyObject *bare = SwigPyObject_New(pointer, type, flags & kOwned ? 1 : 0);
    auto *data = static_cast<SwigPyClientData *>(type ? type->clientdata : nullptr);
    if (!bare || !data || (flags & kNoProxy))
        return bare;
    PyObject *proxy = SWIG_Python_NewShadowInstance(data, bare);
    if (!proxy)
        return bare;
    Py_DECREF(bare);
    return proxy;
}
