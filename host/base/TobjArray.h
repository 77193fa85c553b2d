// SPDX-License-Identifier: MIT
#pragma once

// The base library's growable array of objects.

#include "host/base/HostApi.h"

/// A growable array of objects.
template <class T>
class OPENQUIL_API TobjArray {
  public:
    /// Makes an empty array.
    TobjArray() noexcept;
    TobjArray(const TobjArray &other);
    TobjArray(TobjArray &&other) noexcept;
    ~TobjArray();
    TobjArray &operator=(const TobjArray &other);
    TobjArray &operator=(TobjArray &&other) noexcept;

    /// Returns the number of elements.
    unsigned logicalSize() const;
    /// Sets the number of elements; new ones are default-constructed, the others keep their values.
    void changeLogicalSizeTo(unsigned count);
    /// Adds a copy of the element at the end.
    void append(const T &element);
    /// Returns the element; the index must be below logicalSize().
    T &operator[](unsigned index);
    /// Returns the element; the index must be below logicalSize().
    const T &operator[](unsigned index) const;

  private:
    struct Elements;
    Elements *elements_;
};
