// SPDX-License-Identifier: MIT
#include "devhost/core_module/item_memory.h"

#include "devhost/util/ViewedMemory.h"

namespace binding {
namespace {

void end_view(PyObject *capsule) {
    devhost::endView(PyCapsule_GetPointer(capsule, nullptr));
}

/// One bound of a slice; null with an exception set.
PyObject *plain_bound(PyObject *bound) {
    if (bound != Py_None && PyIndex_Check(bound))
        return PyNumber_Index(bound);
    Py_INCREF(bound); // what is no bound is refused when the slice is read
    return bound;
}

} // namespace

PyObject *view_of(const void *address) {
    if (!address)
        Py_RETURN_NONE;
    devhost::beginView(address);
    PyObject *view = PyCapsule_New(const_cast<void *>(address), nullptr, end_view);
    if (!view)
        devhost::endView(address);
    return view;
}

bool read_index(PyObject *object, long &index, const char *out_of_range) {
    if (SWIG_AsVal_long(object, &index) >= 0)
        return true;
    const bool is_number = PyLong_Check(object);
    PyErr_SetString(is_number ? PyExc_IndexError : PyExc_TypeError,
                    is_number ? out_of_range : "indices are integers or slices");
    return false;
}

PyObject *plain_slice(PyObject *object) {
    const auto *slice = reinterpret_cast<PySliceObject *>(object);
    const swig::SwigPtr_PyObject start(plain_bound(slice->start));
    const swig::SwigPtr_PyObject stop(start ? plain_bound(slice->stop) : nullptr);
    const swig::SwigPtr_PyObject step(stop ? plain_bound(slice->step) : nullptr);
    return step ? PySlice_New(start.get(), stop.get(), step.get()) : nullptr;
}

bool read_plain_slice(PyObject *object, long length, Slice &slice) {
    return length >= 0 &&
           PySlice_GetIndicesEx(reinterpret_cast<PySliceObject *>(object), length, &slice.start,
                                &slice.stop, &slice.step, &slice.count) == 0;
}

bool fits_slice(const Slice &slice, size_t count) {
    if (static_cast<size_t>(slice.count) == count)
        return true;
    PyErr_Format(PyExc_ValueError, "%zd items do not fit a slice of %zd",
                 static_cast<Py_ssize_t>(count), slice.count);
    return false;
}

} // namespace binding
