// SPDX-License-Identifier: MIT
#include "devhost/core_module/raw_items.h"

#include "runtime/object_holder.h"

#include <cstring>

namespace binding {
namespace {

/// True for an array.array of that type code.
bool is_array_of(PyObject *object, char format) {
    if (std::strcmp(Py_TYPE(object)->tp_name, "array.array") != 0)
        return false;
    const swig::SwigPtr_PyObject code(PyObject_GetAttrString(object, "typecode"));
    if (!code)
        PyErr_Clear();
    return code && PyString_Check(code.get()) && PyString_AS_STRING(code.get())[0] == format;
}

/// How many items of a view belong together, as its shape tells; 1 where it has none.
Py_ssize_t together_in(const Py_buffer &view) {
    Py_ssize_t count = 1;
    for (int i = 1; view.shape && i < view.ndim; ++i)
        count *= view.shape[i];
    return count;
}

/// True for items of one byte, however they are told, and for those of the format, side by side as
/// they are wanted.
bool fits(const Py_buffer &view, char format, int together) {
    const Py_ssize_t side_by_side = together_in(view);
    if (together != 1 && side_by_side != 1 && side_by_side != together)
        return false;
    const char *told = view.format ? view.format : "B";
    if (*told == '@' || *told == '=' || *told == '<')
        ++told;
    return std::strlen(told) == 1 && (std::strchr("Bbc", *told) || *told == format);
}

} // namespace

RawItems::RawItems(PyObject *object, char format, int together) {
    if (!format)
        return;
    if (PyString_Check(object) || PyByteArray_Check(object) || PyBuffer_Check(object) ||
        is_array_of(object, format))
        read_bytes(object);
    else if (PyObject_CheckBuffer(object))
        read_view(object, format, together);
}

void RawItems::read_bytes(PyObject *object) {
    const void *start;
    Py_ssize_t length;
    failed_ = PyObject_AsReadBuffer(object, &start, &length) < 0;
    if (failed_)
        return;
    data_ = length ? static_cast<const char *>(start) : "";
    size_ = static_cast<size_t>(length);
}

void RawItems::read_view(PyObject *object, char format, int together) {
    failed_ = PyObject_GetBuffer(object, &view_, PyBUF_CONTIG_RO | PyBUF_FORMAT) < 0;
    if (failed_)
        return;
    if (fits(view_, format, together)) {
        data_ = view_.len ? static_cast<const char *>(view_.buf) : "";
        size_ = static_cast<size_t>(view_.len);
        return;
    }
    PyBuffer_Release(&view_);
    if (!PyMemoryView_Check(object))
        return; // a sequence of numbers, which are converted
    failed_ = true;
    PyErr_SetString(PyExc_TypeError, "the items of the memory are of another type");
}

RawItems::~RawItems() {
    if (view_.obj)
        PyBuffer_Release(&view_);
}

bool whole_items(size_t bytes, size_t item_size, size_t &count) {
    count = bytes / item_size;
    if (bytes % item_size == 0)
        return true;
    PyErr_Format(PyExc_ValueError, "the number of bytes is not a multiple of %d",
                 static_cast<int>(item_size));
    return false;
}

} // namespace binding
