// SPDX-License-Identifier: MIT
#pragma once

// What the core library's arrays of numbers and of small values have in common.

#include "host/base/HostApi.h"

class ZStatus;

/// A growable array of numbers or of small values.
template <class T>
class OPENQUIL_API ZArrayOf {
  public:
    /// Makes an empty array.
    ZArrayOf() noexcept;
    /// Makes an array of the given number of copies of the value; it stays empty, and the status
    /// is kInsufficientMemory, when memory is short.
    explicit ZArrayOf(unsigned count, const T &value = T(), ZStatus *ReturnStatus = nullptr);
    /// Makes an array from the given number of elements; it stays empty, and the status is
    /// kInsufficientMemory, when memory is short.
    ZArrayOf(const T *source, unsigned count, ZStatus *ReturnStatus = nullptr);
    ZArrayOf(const ZArrayOf &other);
    ZArrayOf(ZArrayOf &&other) noexcept;
    ~ZArrayOf();
    ZArrayOf &operator=(const ZArrayOf &other);
    ZArrayOf &operator=(ZArrayOf &&other) noexcept;

    /// Returns the number of elements.
    unsigned length() const;
    /// Sets the number of elements; new ones have the type's default value. Fails with
    /// kInsufficientMemory.
    ZStatus setLength(unsigned count);
    /// Adds an element at the end.
    ZStatus append(const T &value);
    /// Puts an element before the one at the index; the index may be length(). Fails with
    /// kInvalidParameter when it is past that.
    ZStatus insert(const T &value, unsigned index);
    /// Takes the element at the index out; fails with kInvalidParameter when there is none.
    ZStatus remove(unsigned index);
    /// Takes every element out.
    ZStatus clear();
    /// Replaces the element at the index; fails with kInvalidParameter when there is none.
    ZStatus set(const T &value, unsigned index);
    /// Becomes a copy of the other array.
    ZStatus copy(const ZArrayOf &other);
    /// Copies every element to the destination, which must have room for length() of them.
    ZStatus get(T *destination) const;

    /// Sets by how many elements, at least, the array's room grows when an element is added.
    void setSizeIncrement(unsigned count);
    /// Returns by how many elements, at least, the array's room grows.
    unsigned sizeIncrement() const;

    /// Returns the element at the index, which must be below length().
    T &operator[](unsigned index);
    /// Returns the element at the index, which must be below length().
    const T &operator[](unsigned index) const;
    /// Returns true when both arrays have the same elements.
    bool operator==(const ZArrayOf &other) const;

    /// Returns the first element's place in memory; valid until the length changes.
    T *data();
    /// Returns the first element's place in memory; valid until the length changes.
    const T *data() const;

  private:
    struct Elements;
    Elements *elements_;
    unsigned sizeIncrement_;
};
