// SPDX-License-Identifier: MIT
#include "runtime/function_pointer.h"

#include "runtime/convert.h"
#include "runtime/hex.h"
#include "runtime/result_codes.h"

#include <cstring>

using namespace binding;

namespace {

constexpr char kMarker[] = "swig_ptr: ";

/// What stands behind the marker in a built-in function's documentation, or null.
const char *advertised_pointer(PyObject *function) {
    const char *text = reinterpret_cast<PyCFunctionObject *>(function)->m_ml->ml_doc;
    const char *marker = text ? std::strstr(text, kMarker) : nullptr;
    return marker ? marker + std::strlen(kMarker) : nullptr;
}

} // namespace

int SWIG_Python_ConvertFunctionPtr(PyObject *object, void **pointer, swig_type_info *type) {
    if (!PyCFunction_Check(object))
        return SWIG_Python_ConvertPtrAndOwn(object, pointer, type, 0);
    const char *text = advertised_pointer(object);
    if (!text)
        return SWIG_ERROR;
    void *found = nullptr;
    const bool is_null = std::strcmp(text, "NULL") == 0;
    const char *type_name = is_null ? type->name : SWIG_UnpackVoidPtr(text, &found);
    swig_cast_info *entry = type_name ? SWIG_TypeCheck(type_name, type) : nullptr;
    if (!entry)
        return SWIG_ERROR;
    int new_memory = 0;
    found = SWIG_TypeCast(entry, found, &new_memory);
    if (pointer)
        *pointer = found;
    return SWIG_OK;
}
