// SPDX-License-Identifier: MIT
#include "companion/native_memory.h"

#include "runtime/object_holder.h"
#include "runtime/static_type.h"

namespace companion {
namespace {

using Reference = swig::SwigPtr_PyObject;

/// What memory() returns.
struct Memory {
    void *address;
    Py_ssize_t bytes;
    char format;
    int group; ///< how many items belong together
};

bool read_memory(PyObject *self, Memory &memory) {
    const Reference told(PyObject_CallMethod(self, const_cast<char *>("memory"), nullptr));
    PyObject *address;
    if (!told || !PyArg_ParseTuple(told.get(), "Onci", &address, &memory.bytes, &memory.format,
                                   &memory.group))
        return false;
    memory.address = PyLong_AsVoidPtr(address);
    return memory.address || !PyErr_Occurred();
}

Py_ssize_t size_of(char format) {
    switch (format) {
    case 'c':
    case 'b':
    case 'B':
        return 1;
    case 'h':
    case 'H':
        return 2;
    case 'i':
    case 'I':
    case 'f':
        return 4;
    default:
        return 8;
    }
}

/// The pointer object (a new reference) that owns the memory; null with an exception set.
PyObject *owner_of(PyObject *self) {
    Reference pointer(PyObject_GetAttrString(self, "this"));
    const Reference owns(
        pointer ? PyObject_CallMethod(pointer.get(), const_cast<char *>("own"), nullptr) : nullptr);
    if (!owns)
        return nullptr;
    if (owns.get() == Py_True)
        return pointer.release();
    PyErr_SetString(PyExc_BufferError,
                    "the host lends this memory: copy it by a slice, or see it through buffer()");
    return nullptr;
}

/// What views are of: it keeps the native memory, whatever becomes of the proxy. Nothing lies in
/// the views themselves, as memoryview copies them and releases the copies.
struct Exported {
    PyObject_HEAD PyObject *pointer;
    Memory memory;
    Py_ssize_t item_size;
    Py_ssize_t shape[2], strides[2];
    char format[2];
};

void exported_dealloc(PyObject *object) {
    Py_DECREF(reinterpret_cast<Exported *>(object)->pointer);
    PyObject_DEL(object);
}

int exported_get_buffer(PyObject *object, Py_buffer *view, int flags) {
    auto *self = reinterpret_cast<Exported *>(object);
    const int group = self->memory.group;
    const bool has_shape = (flags & PyBUF_ND) == PyBUF_ND, is_table = group > 1 && has_shape;
    self->shape[0] = self->memory.bytes / self->item_size / group;
    self->shape[1] = group;
    self->strides[0] = self->item_size * group;
    self->strides[1] = self->item_size;
    Py_INCREF(object);
    view->obj = object;
    view->buf = self->memory.address;
    view->len = self->memory.bytes;
    view->itemsize = self->item_size;
    view->readonly = 0;
    view->ndim = is_table ? 2 : 1;
    view->format = (flags & PyBUF_FORMAT) == PyBUF_FORMAT ? self->format : nullptr;
    view->shape = has_shape ? self->shape : nullptr;
    view->strides = (flags & PyBUF_STRIDES) == PyBUF_STRIDES ? self->strides : nullptr;
    view->suboffsets = nullptr;
    view->internal = nullptr;
    return 0;
}

PyTypeObject *exported_type() {
    static PyBufferProcs slots{};
    slots.bf_getbuffer = exported_get_buffer;
    static PyTypeObject type = [] {
        PyTypeObject made = binding::static_type("_openquil_proxy.Exported", sizeof(Exported));
        made.tp_dealloc = exported_dealloc;
        made.tp_as_buffer = &slots;
        made.tp_flags |= Py_TPFLAGS_HAVE_NEWBUFFER;
        return made;
    }();
    return PyType_Ready(&type) == 0 ? &type : nullptr;
}

int get_buffer(PyObject *self, Py_buffer *view, int flags) {
    view->obj = nullptr;
    Memory memory;
    Reference pointer(owner_of(self));
    if (!pointer || !read_memory(self, memory))
        return -1;
    PyTypeObject *type = exported_type();
    auto *exported = type ? PyObject_New(Exported, type) : nullptr;
    if (!exported)
        return -1;
    exported->pointer = pointer.release();
    exported->memory = memory;
    exported->item_size = size_of(memory.format);
    exported->format[0] = memory.format;
    exported->format[1] = 0;
    const Reference owned(reinterpret_cast<PyObject *>(exported));
    return exported_get_buffer(owned.get(), view, flags);
}

Py_ssize_t get_segment(PyObject *self, Py_ssize_t segment, void **start) {
    Memory memory;
    if (segment != 0) {
        PyErr_SetString(PyExc_SystemError, "there is one segment");
        return -1;
    }
    if (!read_memory(self, memory))
        return -1;
    *start = memory.address;
    return memory.bytes;
}

Py_ssize_t get_characters(PyObject *self, Py_ssize_t segment, char **start) {
    void *address = nullptr;
    const Py_ssize_t size = get_segment(self, segment, &address);
    *start = static_cast<char *>(address);
    return size;
}

Py_ssize_t count_segments(PyObject *self, Py_ssize_t *bytes) {
    Memory memory;
    if (!bytes)
        return 1;
    if (!read_memory(self, memory)) {
        PyErr_Clear();
        memory.bytes = 0;
    }
    *bytes = memory.bytes;
    return 1;
}

} // namespace

void install_memory(PyTypeObject *type) {
    type->tp_flags |= Py_TPFLAGS_HAVE_NEWBUFFER; // which classes of scripts do not have
    PyBufferProcs *slots = type->tp_as_buffer;
    slots->bf_getreadbuffer = get_segment;
    slots->bf_getwritebuffer = get_segment;
    slots->bf_getsegcount = count_segments;
    slots->bf_getcharbuffer = get_characters;
    slots->bf_getbuffer = get_buffer;
}

} // namespace companion
