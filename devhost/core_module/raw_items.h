// SPDX-License-Identifier: MIT
#pragma once

// Items that a Python object holds side by side in memory, as native items are.

#include <Python.h>

#include <cstddef>
#include <type_traits>

namespace binding {

/// The code that Python's struct and array have for numbers of a type; 0 for other types. An
/// enumeration is an int.
template <class T>
constexpr char format_of() {
    using Bare = std::remove_cv_t<T>;
    if constexpr (std::is_enum_v<Bare> || std::is_same_v<Bare, int>)
        return 'i';
    else if constexpr (std::is_same_v<Bare, float>)
        return 'f';
    else if constexpr (std::is_same_v<Bare, double>)
        return 'd';
    else if constexpr (std::is_same_v<Bare, char>)
        return 'c';
    else if constexpr (std::is_same_v<Bare, signed char>)
        return 'b';
    else if constexpr (std::is_same_v<Bare, unsigned char>)
        return 'B';
    else if constexpr (std::is_same_v<Bare, short>)
        return 'h';
    else if constexpr (std::is_same_v<Bare, unsigned short>)
        return 'H';
    else if constexpr (std::is_same_v<Bare, unsigned int>)
        return 'I';
    else if constexpr (std::is_same_v<Bare, long>)
        return 'l';
    else if constexpr (std::is_same_v<Bare, unsigned long>)
        return 'L';
    else
        return 0;
}

/// The memory of an object that holds bytes (a str, bytearray or buffer, or what tells that its
/// items are bytes), or items of just the format (array.array, memoryview, native memory); no
/// memory for format 0. What tells a shape must have the same number of them side by side, unless
/// they are wanted one by one. Valid while this object lives.
class RawItems {
  public:
    RawItems(PyObject *object, char format, int together = 1);
    ~RawItems();
    RawItems(const RawItems &) = delete;
    RawItems &operator=(const RawItems &) = delete;

    /// False for an object of another kind; what it has may still be a sequence.
    explicit operator bool() const { return data_; }
    /// True where an exception is set: the object is memory, but not such memory.
    bool failed() const { return failed_; }
    const char *data() const { return data_; }
    size_t size() const { return size_; }

  private:
    void read_bytes(PyObject *object);
    void read_view(PyObject *object, char format, int together);

    const char *data_ = nullptr;
    size_t size_ = 0;
    bool failed_ = false;
    Py_buffer view_{};
};

/// The number of items in so many bytes; false, with ValueError set, where they are not whole.
bool whole_items(size_t bytes, size_t item_size, size_t &count);

} // namespace binding
