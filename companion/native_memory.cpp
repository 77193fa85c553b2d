// SPDX-License-Identifier: MIT
#include "companion/native_memory.h"

#include "runtime/object_holder.h"
#include "runtime/static_type.h"

namespace companion {
namespace {

using Reference = swig::SwigPtr_PyObject;

/// The items, and up to two dimensions of each.
constexpr int kMostDimensions = 3;

/// What memory() returns.
struct Memory {
    void *address;
    Py_ssize_t bytes;
    char format;
    int item_dimensions;
    Py_ssize_t item_shape[kMostDimensions - 1];
    PyObject *keeper; ///< of the memory: a new reference
};

bool read_memory(PyObject *self, Memory &memory) {
    const Reference told(PyObject_CallMethod(self, const_cast<char *>("memory"), nullptr));
    PyObject *address, *shape;
    if (!told || !PyArg_ParseTuple(told.get(), "OncO!O", &address, &memory.bytes, &memory.format,
                                   &PyTuple_Type, &shape, &memory.keeper))
        return false;
    memory.item_dimensions = static_cast<int>(PyTuple_GET_SIZE(shape));
    if (memory.item_dimensions >= kMostDimensions) {
        PyErr_SetString(PyExc_BufferError, "the items of the memory have too many dimensions");
        return false;
    }
    for (int i = 0; i < memory.item_dimensions; ++i)
        memory.item_shape[i] = PyInt_AsSsize_t(PyTuple_GET_ITEM(shape, i));
    memory.address = PyLong_AsVoidPtr(address);
    if (PyErr_Occurred())
        return false;
    Py_INCREF(memory.keeper);
    return true;
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

/// True where the object owns its memory; otherwise BufferError is set.
bool owns_memory(PyObject *self) {
    const Reference pointer(PyObject_GetAttrString(self, "this"));
    const Reference owns(
        pointer ? PyObject_CallMethod(pointer.get(), const_cast<char *>("own"), nullptr) : nullptr);
    if (owns && owns.get() != Py_True)
        PyErr_SetString(
            PyExc_BufferError,
            "the host lends this memory: copy it by a slice, or see it through buffer()");
    return owns.get() == Py_True;
}

/// What views are of: it keeps the native memory, whatever becomes of the proxy. Nothing lies in
/// the views themselves, as memoryview copies them and releases the copies.
struct Exported {
    PyObject_HEAD Memory memory;
    Py_ssize_t item_size;
    Py_ssize_t shape[kMostDimensions], strides[kMostDimensions];
    char format[2];
};

void exported_dealloc(PyObject *object) {
    Py_DECREF(reinterpret_cast<Exported *>(object)->memory.keeper);
    PyObject_DEL(object);
}

void set_shape(Exported &self) {
    self.item_size = size_of(self.memory.format);
    Py_ssize_t stride = self.item_size;
    for (int i = self.memory.item_dimensions; i > 0; --i) {
        self.shape[i] = self.memory.item_shape[i - 1];
        self.strides[i] = stride;
        stride *= self.shape[i];
    }
    self.shape[0] = self.memory.bytes / stride;
    self.strides[0] = stride;
}

int exported_get_buffer(PyObject *object, Py_buffer *view, int flags) {
    auto *self = reinterpret_cast<Exported *>(object);
    const bool has_shape = (flags & PyBUF_ND) == PyBUF_ND;
    Py_INCREF(object);
    view->obj = object;
    view->buf = self->memory.address;
    view->len = self->memory.bytes;
    view->itemsize = self->item_size;
    view->readonly = 0;
    view->ndim = has_shape ? 1 + self->memory.item_dimensions : 1;
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
    if (!owns_memory(self) || !read_memory(self, memory))
        return -1;
    PyTypeObject *type = exported_type();
    auto *exported = type ? PyObject_New(Exported, type) : nullptr;
    if (!exported) {
        Py_DECREF(memory.keeper);
        return -1;
    }
    exported->memory = memory;
    exported->format[0] = memory.format;
    exported->format[1] = 0;
    set_shape(*exported);
    const Reference owned(reinterpret_cast<PyObject *>(exported));
    return exported_get_buffer(owned.get(), view, flags);
}

/// The memory for who sees it at once.
bool peek_memory(PyObject *self, Memory &memory) {
    if (!read_memory(self, memory))
        return false;
    Py_CLEAR(memory.keeper);
    return true;
}

Py_ssize_t get_segment(PyObject *self, Py_ssize_t segment, void **start) {
    Memory memory;
    if (segment != 0) {
        PyErr_SetString(PyExc_SystemError, "there is one segment");
        return -1;
    }
    if (!peek_memory(self, memory))
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
    if (!peek_memory(self, memory)) {
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
