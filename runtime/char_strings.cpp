// SPDX-License-Identifier: MIT
#include "runtime/char_strings.h"

#include "runtime/convert.h"

#include <climits>
#include <cstring>
#include <new>

using namespace binding;

int SWIG_AsCharPtrAndSize(PyObject *object, char **text, int *mark) {
    if (PyString_Check(object)) {
        if (!text)
            return SWIG_OK;
        char *buffer = PyString_AS_STRING(object);
        if (mark && *mark == kNewString) {
            const size_t size = static_cast<size_t>(PyString_GET_SIZE(object)) + 1;
            *text = new (std::nothrow) char[size];
            if (!*text)
                return SWIG_MemoryError;
            std::memcpy(*text, buffer, size);
            return SWIG_OK;
        }
        *text = buffer;
        if (mark)
            *mark = kOldString;
        return SWIG_OK;
    }
    swig_type_info *type = SWIG_pchar_descriptor();
    void *pointer = nullptr;
    if (!type || SWIG_Python_ConvertPtrAndOwn(object, &pointer, type, 0) != SWIG_OK)
        return SWIG_TypeError;
    if (text)
        *text = static_cast<char *>(pointer);
    if (mark)
        *mark = kOldString;
    return SWIG_OK;
}

swig_type_info *SWIG_pchar_descriptor() {
    static swig_type_info *const type = SWIG_TypeQuery("_p_char");
    return type;
}

PyObject *SWIG_FromCharPtr(const char *text) {
    if (!text)
        Py_RETURN_NONE;
    const size_t size = std::strlen(text);
    if (size <= INT_MAX)
        return PyString_FromStringAndSize(text, static_cast<Py_ssize_t>(size));
    if (swig_type_info *type = SWIG_pchar_descriptor())
        return SWIG_Python_NewPointerObj(const_cast<char *>(text), type, kBorrowed);
    Py_RETURN_NONE;
}
