// SPDX-License-Identifier: MIT
#pragma once

// Items side by side in native memory, as buffers, arrays and pixels have them: read and written
// many at a time, by positions and by slices, and seen as memory.

#include "devhost/core_module/items.h"
#include "devhost/core_module/numbers.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace binding {

/// Counts as a view of the memory as long as it lives; None for no memory. Null with an exception
/// set.
PyObject *view_of(const void *address);

// Reading

/// What can be made without an object of a class.
template <class T>
concept IsPlain = HasComponents<T> || std::is_arithmetic_v<T>;

/// An item without an object of a class for it, where that is possible: values with components are
/// tuples of their numbers.
template <class T>
PyObject *make_plain_item(const T &item) {
    if constexpr (HasComponents<T>) {
        swig::SwigPtr_PyObject tuple(PyTuple_New(component_count<T>));
        for (int i = 0; tuple && i < component_count<T>; ++i) {
            PyObject *number = PyFloat_FromDouble(item.*Components<T>::members[i]);
            if (!number)
                return nullptr;
            PyTuple_SET_ITEM(tuple.get(), i, number);
        }
        return tuple.release();
    } else {
        return make_item(T(item));
    }
}

/// Items `step` apart: characters and bytes as a str, everything else as a list.
template <class T>
PyObject *read_many(const T *items, Py_ssize_t count, Py_ssize_t step) {
    if constexpr (std::is_same_v<T, char> || std::is_same_v<T, unsigned char>) {
        const auto *bytes = reinterpret_cast<const char *>(items);
        PyObject *text = PyString_FromStringAndSize(step == 1 ? bytes : nullptr, count);
        for (Py_ssize_t i = 0; text && step != 1 && i < count; ++i)
            PyString_AS_STRING(text)[i] = bytes[i * step];
        return text;
    } else {
        swig::SwigPtr_PyObject list(PyList_New(count));
        for (Py_ssize_t i = 0; list && i < count; ++i) {
            PyObject *item = make_plain_item(items[i * step]);
            if (!item)
                return nullptr;
            PyList_SET_ITEM(list.get(), i, item);
        }
        return list.release();
    }
}

/// The bytes of items, as a str.
template <class T>
PyObject *bytes_of(const T *items, long count) {
    if (count > PY_SSIZE_T_MAX / static_cast<long>(sizeof(T)))
        return PyErr_NoMemory();
    return PyString_FromStringAndSize(reinterpret_cast<const char *>(items),
                                      count * static_cast<Py_ssize_t>(sizeof(T)));
}

/// Where the items are, as the buffer protocol needs it: address, bytes, format, the shape of an
/// item, and an object that keeps the memory.
template <HasNumbers T>
PyObject *tell_memory(const T *items, size_t count) {
    const swig::SwigPtr_PyObject keeper(view_of(items));
    swig::SwigPtr_PyObject shape(PyTuple_New(Numbers<T>::shape.size()));
    for (size_t i = 0; shape && i < Numbers<T>::shape.size(); ++i)
        PyTuple_SET_ITEM(shape.get(), i, PyInt_FromLong(Numbers<T>::shape[i]));
    if (!keeper || !shape)
        return nullptr;
    return Py_BuildValue("(NlcOO)", PyLong_FromVoidPtr(const_cast<T *>(items)),
                         static_cast<long>(count * sizeof(T)), format_of<NumberOf<T>>(),
                         shape.get(), keeper.get());
}

// Writing

/// The items that a script gives: memory of numbers of their type, bytes as they are, or a
/// sequence, which is read at once. So no script runs any more when their place is looked for. Not
/// inlined, as most classes use it three times.
template <class T>
class GivenItems {
  public:
    [[gnu::noinline]] explicit GivenItems(PyObject *data)
        : raw_(data, format_of<NumberOf<T>>(), numbers_in_item<T>),
          failed_(raw_.failed() ||
                  !(raw_ ? whole_items(raw_.size(), sizeof(T), count_) : read_sequence(data))) {}

    /// True with an exception set.
    bool failed() const { return failed_; }
    size_t count() const { return count_; }

    /// Moves them to so many items, which may lie in the given memory.
    [[gnu::noinline]] void store(T *destination) {
        if (!raw_)
            std::move(items_.begin(), items_.end(), destination);
        else if constexpr (HasNumbers<T>)
            if (count_)
                std::memmove(static_cast<void *>(destination), raw_.data(), raw_.size());
    }

    /// Moves them out; what is given may be changed by scripts afterwards.
    [[gnu::noinline]] std::vector<T> take() {
        if (raw_) {
            items_.resize(count_);
            store(items_.data());
        }
        return std::move(items_);
    }

  private:
    bool read_sequence(PyObject *data) {
        const swig::SwigPtr_PyObject tuple(PySequence_Tuple(data));
        if (!tuple)
            return false;
        count_ = static_cast<size_t>(PyTuple_GET_SIZE(tuple.get()));
        items_.resize(count_);
        return read_items(tuple.get(), items_);
    }

    RawItems raw_;
    std::vector<T> items_;
    size_t count_ = 0;
    bool failed_;
};

// Places

/// An index as a number, which may be negative; false with an exception set, IndexError with that
/// text.
bool read_index(PyObject *object, long &index, const char *out_of_range);

/// The items that a slice means.
struct Slice {
    Py_ssize_t start, stop, step, count;
};

/// The slice with its bounds as plain numbers, so that no script runs when it is read; null with an
/// exception set.
PyObject *plain_slice(PyObject *object);
bool read_plain_slice(PyObject *object, long length, Slice &slice);

/// The slice of length() items, which is asked for when no script can change it any more; false
/// with an exception set.
template <class Length>
bool read_slice(PyObject *object, Length length, Slice &slice) {
    const swig::SwigPtr_PyObject plain(plain_slice(object));
    return plain && read_plain_slice(plain.get(), length(), slice);
}

/// True where so many values fit the slice; otherwise ValueError is set.
bool fits_slice(const Slice &slice, size_t count);

/// Replaces the items of a slice by as many values; null with ValueError set where they are not.
template <class T>
PyObject *write_many(T *items, const Slice &slice, const std::vector<T> &values) {
    if (!fits_slice(slice, values.size()))
        return nullptr;
    for (Py_ssize_t i = 0; i < slice.count; ++i)
        items[slice.start + i * slice.step] = values[static_cast<size_t>(i)];
    Py_RETURN_NONE;
}

} // namespace binding
