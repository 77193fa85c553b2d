// SPDX-License-Identifier: MIT
#include "runtime/registration.h"

#include "runtime/arguments.h"
#include "runtime/client_data.h"
#include "runtime/convert.h"
#include "runtime/hex.h"
#include "runtime/object_holder.h"
#include "runtime/packed_object.h"

#include <cstdlib>
#include <cstring>

using namespace binding;

namespace {

constexpr char kPointerMarker[] = "swig_ptr: ";

/// The instance's dictionary (a new reference), made where the instance has room for one.
PyObject *dictionary_of(PyObject *instance) {
    PyObject **slot = _PyObject_GetDictPtr(instance);
    if (!slot)
        return PyObject_GetAttrString(instance, "__dict__");
    if (!*slot)
        *slot = PyDict_New();
    Py_XINCREF(*slot);
    return *slot;
}

/// Gives an instance its first pointer object; false with an exception set when it has no place
/// for one.
bool set_this(PyObject *instance, PyObject *pointer_object) {
    PyObject *name = SWIG_This();
    const swig::SwigPtr_PyObject dictionary(dictionary_of(instance));
    return name && dictionary && PyDict_SetItem(dictionary.get(), name, pointer_object) == 0;
}

const swig_const_info *named_in(const swig_const_info *constants, const char *text) {
    for (; constants->type; ++constants)
        if (std::strncmp(constants->name, text, std::strlen(constants->name)) == 0)
            return constants;
    return nullptr;
}

/// The documentation with the pointer's address in place of its constant's name; null when memory
/// is short.
char *with_address(const char *doc, size_t head_size, const swig_const_info &constant) {
    const char *type_name = (*constant.ptype)->name;
    auto *text = static_cast<char *>(std::malloc(head_size + std::strlen(type_name) + 18 + 10));
    if (!text)
        return nullptr;
    std::memcpy(text, doc, head_size);
    std::memcpy(text + head_size, kPointerMarker, sizeof(kPointerMarker) - 1);
    char *end = SWIG_PackVoidPtr(text + head_size + sizeof(kPointerMarker) - 1, constant.pvalue);
    std::strcpy(end, type_name);
    return text;
}

PyObject *make_constant(const swig_const_info &constant) {
    switch (constant.type) {
    case kPointerConstant:
        return SWIG_Python_NewPointerObj(constant.pvalue, *constant.ptype, kBorrowed);
    case kPackedConstant:
        if (constant.pvalue)
            return SwigPyPacked_New(constant.pvalue, static_cast<size_t>(constant.lvalue),
                                    *constant.ptype);
        Py_RETURN_NONE;
    default:
        return nullptr;
    }
}

} // namespace

PyObject *SWIG_RegisterProxy(PyObject *arguments, swig_type_info *type) {
    PyObject *klass;
    if (!SWIG_Python_UnpackTuple(arguments, "swigregister", 1, 1, &klass))
        return nullptr;
    SwigPyClientData *data = SwigPyClientData_New(klass);
    if (!data)
        return nullptr;
    SWIG_TypeNewClientData(type, data);
    Py_RETURN_NONE;
}

PyObject *SWIG_InitialiseProxy(PyObject *arguments) {
    PyObject *objects[2];
    if (!SWIG_Python_UnpackTuple(arguments, "swiginit", 2, 2, objects))
        return nullptr;
    PyObject *instance = objects[0], *pointer_object = objects[1];
    if (!SwigPyObject_Check(pointer_object))
        Py_RETURN_NONE;
    if (SwigPyObject *self = SWIG_Python_GetSwigThis(instance))
        return SwigPyObject_append(reinterpret_cast<PyObject *>(self), pointer_object);
    if (!set_this(instance, pointer_object))
        return nullptr;
    Py_RETURN_NONE;
}

PyObject *SWIG_PyInstanceMethod_New(PyObject *, PyObject *) {
    return nullptr;
}

int SWIG_Python_SetConstant(PyObject *dictionary, const char *name, PyObject *object) {
    if (!object)
        return -1;
    const int status = PyDict_SetItemString(dictionary, name, object);
    Py_DECREF(object);
    return status;
}

void SWIG_Python_FixMethods(PyMethodDef *methods, const swig_const_info *constants) {
    for (; methods->ml_name; ++methods) {
        const char *marker =
            methods->ml_doc ? std::strstr(methods->ml_doc, kPointerMarker) : nullptr;
        if (!marker)
            continue;
        const swig_const_info *constant = named_in(constants, marker + sizeof(kPointerMarker) - 1);
        if (!constant || constant->type != kPointerConstant || !constant->pvalue)
            continue;
        const auto head_size = static_cast<size_t>(marker - methods->ml_doc);
        if (const char *doc = with_address(methods->ml_doc, head_size, *constant))
            methods->ml_doc = doc;
    }
}

void SWIG_Python_InstallConstants(PyObject *dictionary, const swig_const_info *constants) {
    for (; constants->type; ++constants)
        if (PyObject *object = make_constant(*constants))
            SWIG_Python_SetConstant(dictionary, constants->name, object);
}
