// SPDX-License-Identifier: MIT
#include "runtime/packed_object.h"

#include "runtime/hex.h"
#include "runtime/static_type.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace binding;

namespace {

constexpr size_t kTextSize = 1024;

SwigPyPacked *as_packed(PyObject *object) {
    return reinterpret_cast<SwigPyPacked *>(object);
}

/// '_' and the digits of the pack as a string, or an empty one when they are too many to show.
struct PackText {
    char text[kTextSize];
    explicit PackText(const SwigPyPacked *self) {
        char *end = text;
        if (2 * self->size + 2 <= sizeof(text)) {
            *end++ = '_';
            end = SWIG_PackData(end, self->pack, self->size);
        }
        *end = '\0';
    }
    explicit operator bool() const { return text[0]; }
};

PyObject *SwigPyPacked_repr(PyObject *object) {
    const SwigPyPacked *self = as_packed(object);
    const PackText pack(self);
    return PyString_FromFormat("<Swig Packed %s%s%s>", pack ? "at " : "", pack.text,
                               self->ty->name);
}

PyObject *SwigPyPacked_str(PyObject *object) {
    const SwigPyPacked *self = as_packed(object);
    return PyString_FromFormat("%s%s", PackText(self).text, self->ty->name);
}

int SwigPyPacked_print(PyObject *object, FILE *stream, int) {
    const SwigPyPacked *self = as_packed(object);
    const PackText pack(self);
    std::fprintf(stream, "<Swig Packed %s%s%s>", pack ? "at " : "", pack.text, self->ty->name);
    return 0;
}

/// Compares twice the packs' size; harmless because the comparison ends at the first difference or
/// zero byte, and every pack is followed by a zero byte.
int SwigPyPacked_compare(PyObject *a, PyObject *b) {
    const SwigPyPacked *left = as_packed(a), *right = as_packed(b);
    if (left->size != right->size)
        return left->size < right->size ? -1 : 1;
    const int order = std::strncmp(static_cast<const char *>(left->pack),
                                   static_cast<const char *>(right->pack), 2 * left->size);
    return order < 0 ? -1 : order > 0;
}

void SwigPyPacked_dealloc(PyObject *object) {
    std::free(as_packed(object)->pack);
    PyObject_DEL(object);
}

constexpr PyTypeObject make_packed_type() {
    PyTypeObject type = static_type("SwigPyPacked", sizeof(SwigPyPacked), kPointerDoc);
    type.tp_dealloc = SwigPyPacked_dealloc;
    type.tp_print = SwigPyPacked_print;
    type.tp_compare = SwigPyPacked_compare;
    type.tp_repr = SwigPyPacked_repr;
    type.tp_str = SwigPyPacked_str;
    return type;
}

constinit PyTypeObject packed_object_type = make_packed_type();

} // namespace

PyTypeObject *SwigPyPacked_type() {
    return ready(packed_object_type);
}

bool SwigPyPacked_Check(PyObject *object) {
    const PyTypeObject *type = Py_TYPE(object);
    return type == &packed_object_type || std::strcmp(type->tp_name, "SwigPyPacked") == 0;
}

PyObject *SwigPyPacked_New(const void *bytes, size_t size, swig_type_info *type) {
    PyTypeObject *kind = SwigPyPacked_type();
    SwigPyPacked *self = kind ? PyObject_New(SwigPyPacked, kind) : nullptr;
    if (!self)
        return nullptr;
    // One byte more than asked for: see SwigPyPacked_compare.
    auto *pack = static_cast<char *>(std::malloc(size + 1));
    if (!pack) {
        PyObject_DEL(self);
        PyErr_NoMemory();
        return nullptr;
    }
    std::memcpy(pack, bytes, size);
    pack[size] = '\0';
    self->pack = pack;
    self->ty = type;
    self->size = size;
    return reinterpret_cast<PyObject *>(self);
}
