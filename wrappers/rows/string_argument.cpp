// SPDX-License-Identifier: MIT
// A class of its own file: it is the longest reader, and compiled for speed where the wrappers are
// compiled for size.

#include "wrappers/rows/argument.h"

#include <new>

namespace binding {

/// Reads the usual text in place: the interpreter that calls a wrapper has its lock, and a unicode
/// object is read without running any code of a script.
static bool read_unicode(PyObject *object, Tstring &value) {
    static_assert(sizeof(Py_UNICODE) == sizeof(wchar_t), "for an interpreter built with UCS4");
    try {
        value.set(reinterpret_cast<const wchar_t *>(PyUnicode_AS_UNICODE(object)),
                  static_cast<unsigned>(PyUnicode_GET_SIZE(object)));
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

static bool read_text(PyObject *object, Tstring &value) {
    if (PyUnicode_Check(object)) [[likely]]
        return read_unicode(object, value);
    return TpythonObjectWithLock<TpythonLock>(object).getValue(value);
}

int StringArgument::read(PyObject *object, int position) {
    if (!read_text(object, value))
        raise_expected_string(position);
    return SWIG_OK;
}

} // namespace binding
