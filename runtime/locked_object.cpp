// SPDX-License-Identifier: MIT
// This module's own instance of the host's locked readers. Every touch of the interpreter happens
// under a TpythonLock, so that a wrapper may be entered from any host thread.

#include "host/base/TpythonObjectWithLock.h"
#include "runtime/object_holder.h"
#include "runtime/pending_error.h"

#include <strings.h>

#include <cstring>
#include <memory>
#include <new>

using namespace binding;

using Holder = TpythonObjectWithLock<TpythonLock>;

namespace {

PyObject *decode(const char *bytes, Py_ssize_t size) {
    // The usual encoding without the registry's detour through Python code, which is slow and, when
    // memory is short, not safe in the interpreter.
    if (Py_FileSystemDefaultEncoding && !strcasecmp(Py_FileSystemDefaultEncoding, "utf-8"))
        return PyUnicode_DecodeUTF8(bytes, size, "strict");
    return PyUnicode_Decode(bytes, size, Py_FileSystemDefaultEncoding, "strict");
}

PyObject *decode_buffer(PyObject *object) {
    Py_buffer view;
    if (PyObject_GetBuffer(object, &view, PyBUF_SIMPLE) < 0)
        return nullptr;
    PyObject *text = decode(static_cast<const char *>(view.buf), view.len);
    PyBuffer_Release(&view);
    return text;
}

/// The text of an object other than a unicode object; null with an exception set when it has none.
PyObject *make_text(PyObject *object) {
    if (PyString_Check(object))
        return decode(PyString_AS_STRING(object), PyString_GET_SIZE(object));
    if (!PyCallable_Check(object) && PyObject_CheckBuffer(object))
        return decode_buffer(object);
    return PyObject_Unicode(object);
}

/// The same, or null, with the error indicator as it was found: an earlier argument of the same
/// call may have left its error there on purpose.
PyObject *text_of(PyObject *object) {
    const PendingError keep;
    return make_text(object);
}

bool copy_text(PyObject *text, Tstring &out) {
    const Py_ssize_t size = PyUnicode_GET_SIZE(text);
    wchar_t *buffer = sPythonObjectCharConvertBuffer;
    std::unique_ptr<wchar_t[]> large;
    if (size >= kPythonObjectCharConvertBufferSize) {
        large.reset(new (std::nothrow) wchar_t[static_cast<size_t>(size) + 1]);
        buffer = large.get();
    }
    if (!buffer)
        return false;
    // What the interpreter's own copy to wide characters does in a UCS4 build, in one move.
    static_assert(sizeof(Py_UNICODE) == sizeof(wchar_t));
    std::memcpy(buffer, PyUnicode_AS_UNICODE(text), static_cast<size_t>(size) * sizeof(wchar_t));
    try {
        out.set(buffer, static_cast<unsigned>(size));
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

} // namespace

template <>
bool Holder::getValue(Tstring &out) const {
    if (!object_ || object_ == Py_None)
        return false;
    // One lock for the whole read: it is all that makes the shared conversion buffer safe.
    TpythonLock lock(kPythonLock);
    if (PyUnicode_Check(object_)) // no script runs meanwhile, so the holder's reference is enough
        return copy_text(object_, out);
    Py_INCREF(object_);
    const swig::SwigPtr_PyObject object(object_);
    const swig::SwigPtr_PyObject text(text_of(object.get()));
    return text && copy_text(text.get(), out);
}

template <>
bool Holder::getValue(TstringArray &out) const {
    TpythonLock lock(kPythonLock);
    if (!object_ || !PySequence_Check(object_) || PyString_Check(object_) ||
        PyUnicode_Check(object_))
        return false;
    const Py_ssize_t size = PySequence_Size(object_);
    if (size < 0) {
        PyErr_Clear();
        return false;
    }
    // The array counts in 32 bits, and a script's __len__ may claim more, or more than there is
    // memory for.
    const auto count = static_cast<unsigned>(size);
    try {
        out.changeLogicalSizeTo(count);
        for (unsigned i = 0; i < count; ++i) {
            const swig::SwigPtr_PyObject object(PySequence_GetItem(object_, i));
            if (!object)
                PyErr_Clear();
            const Holder item(object.get());
            Tstring text;
            if (!item.getValue(text))
                return false;
            out[i] = text;
        }
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}
