// SPDX-License-Identifier: MIT
// Buffers: native numbers side by side, and single cells for out-arguments. A buffer that a script
// makes owns its block and knows its length. A pointer that the host returns is a buffer of the
// same class, borrowed. Its length is known where the host told it (what callbacks are lent); that
// of others (the pixels of an image, say) is not: their indices are checked against zero only, and
// a script must know how many items there are. Untyped memory of the host ("void *") has no class;
// a buffer is made as a copy of so many items of it.

#include "devhost/core_module/blocks.h"
#include "devhost/core_module/item_memory.h"
#include "devhost/util/KnownMemory.h"
#include "host/core/ZImageFileInfo.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZPxRenderPassImpl.h"

#include <cstring>
#include <vector>

// A buffer's class is the type that its pointers point to.
using CharBuffer = char;
using SignedCharBuffer = signed char;
using UnsignedCharBuffer = unsigned char;
using ShortBuffer = short;
using UnsignedShortBuffer = unsigned short;
using IntBuffer = int;
using UnsignedIntBuffer = unsigned int;
using LongBuffer = long;
using UnsignedLongBuffer = unsigned long;
using FloatBuffer = float;
using DoubleBuffer = double;
using CharPointerBuffer = char *;
using UnsignedIntPointerBuffer = unsigned int *;
using VoidPointerBuffer = void *;
using ZHwTextureTypeBuffer = ZImageFileInfo::ZHwTextureType;

template <>
inline constexpr int binding::type_index<ZImageFileInfo::ZHwTextureType> =
    binding::k_p_ZImageFileInfo__ZHwTextureType;

// Enumerations inside classes, which get their places in the type table here.
using BufferPixelFormatBuffer = ZHardwareRenderer::BufferPixelFormat;
template <>
inline constexpr int binding::type_index<BufferPixelFormatBuffer> =
    binding::k_p_ZHardwareRenderer__BufferPixelFormat;
using PassTypeBitBuffer = ZPxRenderPassImpl::PassTypeBit;
template <>
inline constexpr int binding::type_index<PassTypeBitBuffer> =
    binding::k_p_ZPxRenderPassImpl__PassTypeBit;

namespace binding {

/// Frees the block of a buffer; memory that is not ours stays. An item of a type that the render
/// module returns as a copy is no block and goes the way that it came.
template <class T>
requires std::is_scalar_v<T> PyObject *destroy(const Function &function, PyObject *argument) {
    return with_arguments<METH_O, Released<T *>>(
        function, argument, [](Argument<Released<T *>> &buffer) {
            const bool is_block = free_block(buffer.get());
            if (std::is_same_v<T, PassTypeBitBuffer> && !is_block)
                delete buffer.get();
            Py_RETURN_NONE;
        });
}

} // namespace binding

namespace {

using namespace binding;

template <class T>
PyObject *new_buffer(const T *items, size_t count) {
    void *block = make_block(count, sizeof(T));
    if (!block)
        return nullptr;
    if (items && count)
        std::memcpy(block, items, count * sizeof(T));
    PyObject *result = SWIG_Python_NewPointerObj(block, type_of<T>(), kConstructed);
    if (!result)
        free_block(block);
    return result;
}

template <class T>
PyObject *buffer_of_length(unsigned int count) {
    return new_buffer<T>(nullptr, count);
}

/// The number of items; -1 where it is not known.
template <class T>
long length_of(const T &buffer) {
    const auto size = devhost::knownBytes(&buffer);
    return size ? static_cast<long>(*size / sizeof(T)) : -1;
}

/// The length, where something would need it that was not given; -1 with an exception set.
template <class T>
long known_length(const T &buffer) {
    const long length = length_of(buffer);
    if (length < 0)
        PyErr_SetString(PyExc_TypeError, "the length of memory that the host made is not known");
    return length;
}

/// The items of another buffer of the same class (borrowed), or null.
template <class T>
const T *same_buffer(PyObject *data) {
    void *address = nullptr;
    return SWIG_Python_ConvertPtrAndOwn(data, &address, type_of<T>(), 0) < 0
               ? nullptr
               : static_cast<const T *>(address);
}

/// Reads the items of such a buffer, or those that are given otherwise; false with an exception
/// set.
template <class T>
bool read_buffer_data(PyObject *data, std::vector<T> &items) {
    if (const T *buffer = same_buffer<T>(data)) {
        const long length = known_length(*buffer);
        if (length < 0)
            return false;
        items.assign(buffer, buffer + length);
        return true;
    }
    GivenItems<T> given(data);
    if (given.failed())
        return false;
    items = given.take();
    return true;
}

template <class T>
PyObject *buffer_from_data(PyObject *data) {
    if (refuse_length(data))
        return nullptr;
    std::vector<T> items;
    return read_buffer_data(data, items) ? new_buffer(items.data(), items.size()) : nullptr;
}

/// A copy of so many items of native memory, untyped or of the buffer's own type.
template <class T>
PyObject *buffer_from_memory(PyObject *memory, unsigned int count) {
    void *address = nullptr;
    if (SWIG_Python_ConvertPtrAndOwn(memory, &address, type_of<void>(), 0) < 0 &&
        SWIG_Python_ConvertPtrAndOwn(memory, &address, type_of<T>(), 0) < 0) {
        PyErr_SetString(PyExc_TypeError, "expected a pointer to untyped memory, or a buffer");
        return nullptr;
    }
    const auto known = address ? devhost::knownBytes(address) : std::optional<size_t>(0);
    if (known && *known / sizeof(T) < count) {
        PyErr_SetString(PyExc_IndexError, "the memory has fewer items");
        return nullptr;
    }
    return new_buffer(static_cast<const T *>(address), count);
}

template <class T>
long buffer_length(T &buffer) {
    return length_of(buffer);
}

/// "<FloatBuffer [1.0, 2.0]>", with the first items of a long one.
template <class T>
PyObject *buffer_representation(T &buffer, const char *name) {
    constexpr long kMostShown = 8;
    const long length = length_of(buffer);
    if (length < 0)
        return PyString_FromFormat("<%s of unknown length>", name);
    const swig::SwigPtr_PyObject items(
        make_list(std::min(length, kMostShown), [&](Py_ssize_t i) { return T((&buffer)[i]); }));
    const swig::SwigPtr_PyObject text(items ? PyObject_Repr(items.get()) : nullptr);
    if (!text)
        return nullptr;
    if (length <= kMostShown)
        return PyString_FromFormat("<%s %s>", name, PyString_AS_STRING(text.get()));
    return PyString_FromFormat("<%s of %ld items, the first are %s>", name, length,
                               PyString_AS_STRING(text.get()));
}

constexpr char kOutOfRange[] = "buffer index out of range";

/// Checks that the items lie inside the buffer, as far as its length is known.
template <class T>
bool check_range(const T &buffer, long start, long count) {
    const long length = length_of(buffer);
    if (start >= 0 && count >= 0 && (length < 0 || (start <= length && count <= length - start)))
        return true;
    PyErr_SetString(PyExc_IndexError, kOutOfRange);
    return false;
}

template <class T>
PyObject *buffer_item(T &buffer, long index) {
    return check_range(buffer, index, 1) ? make_item((&buffer)[index]) : nullptr;
}

/// Turns a Python object into an item of the buffer; false with an exception set.
template <class T>
bool read_buffer_item(PyObject *object, T &value) {
    const ReadResult result = read_item(object, value);
    return !result.failed() || raise_value(result, "the value does not fit the buffer's type");
}

template <class T>
PyObject *set_buffer_item(T &buffer, long index, PyObject *object) {
    T value{};
    if (!read_buffer_item(object, value) || !check_range(buffer, index, 1))
        return nullptr;
    (&buffer)[index] = value;
    Py_RETURN_NONE;
}

template <class T>
PyObject *read_bytes(T &buffer, long start, long count) {
    return check_range(buffer, start, count) ? bytes_of(&buffer + start, count) : nullptr;
}

template <class T>
PyObject *read_buffer(T &buffer, long start, long count) {
    return check_range(buffer, start, count) ? read_many(&buffer + start, count, 1) : nullptr;
}

template <class T>
PyObject *write_buffer(T &buffer, long start, PyObject *data) {
    if (const T *other = same_buffer<T>(data)) {
        const long length = known_length(*other);
        if (length < 0 || !check_range(buffer, start, length))
            return nullptr;
        std::memmove(&buffer + start, other, static_cast<size_t>(length) * sizeof(T));
    } else {
        GivenItems<T> given(data);
        if (given.failed() || !check_range(buffer, start, static_cast<long>(given.count())))
            return nullptr;
        given.store(&buffer + start);
    }
    Py_RETURN_NONE;
}

/// An index as in Python: negative ones count from the end, where the length is known.
template <class T>
bool read_position(const T &buffer, PyObject *key, long &index) {
    if (!read_index(key, index, kOutOfRange))
        return false;
    if (index < 0)
        index += std::max(length_of(buffer), 0L);
    return true;
}

/// The item at an index, or those of a slice as read() returns them.
template <class T>
PyObject *subscript(T &buffer, PyObject *key) {
    long index;
    if (!PySlice_Check(key))
        return read_position(buffer, key, index) ? buffer_item(buffer, index) : nullptr;
    Slice slice;
    if (!read_slice(
            key, [&] { return known_length(buffer); }, slice))
        return nullptr;
    return read_many(&buffer + slice.start, slice.count, slice.step);
}

template <class T>
PyObject *set_subscript(T &buffer, PyObject *key, PyObject *value) {
    long index;
    if (!PySlice_Check(key))
        return read_position(buffer, key, index) ? set_buffer_item(buffer, index, value) : nullptr;
    Slice slice;
    std::vector<T> items;
    if (!read_buffer_data(value, items) || !read_slice(
                                               key, [&] { return known_length(buffer); }, slice))
        return nullptr;
    return write_many(&buffer, slice, items);
}

/// Where the items are: what the buffer protocol needs.
template <class T>
PyObject *memory(T &buffer) {
    const long length = known_length(buffer);
    if (length < 0)
        return nullptr;
    if constexpr (HasNumbers<T>)
        return tell_memory(&buffer, static_cast<size_t>(length));
    return PyErr_Format(PyExc_BufferError, "pointers cannot be seen as memory");
}

template <class T>
PyObject *len(T &buffer) {
    const long length = known_length(buffer);
    return length < 0 ? nullptr : PyInt_FromLong(length);
}

template <class T>
PyObject *buffer_iterator(T &buffer) {
    const long length = known_length(buffer);
    return length < 0 ? nullptr : iterate(read_buffer(buffer, 0, length));
}

} // namespace

#define ROW_LIST "devhost/core_module/buffers.def"
#define ROW_TABLE buffer_rows
#include "wrappers/rows/make_rows.h"
