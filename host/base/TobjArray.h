#pragma once

// The base library's growable array of objects.

#include "host/base/HostApi.h"

#include <vector>

/// A growable array of objects.
template <class T>
class TobjArray {
  public:
    /// Returns the number of elements.
    unsigned logicalSize() const { return static_cast<unsigned>(elements_.size()); }
    /// Sets the number of elements; new ones are default-constructed, the others keep their values.
    void changeLogicalSizeTo(unsigned count) { elements_.resize(count); }
    /// Adds a copy of the element at the end.
    void append(const T &element) { elements_.push_back(element); }
    /// Returns the element; the index must be below logicalSize().
    T &operator[](unsigned index) { return elements_[index]; }
    /// Returns the element; the index must be below logicalSize().
    const T &operator[](unsigned index) const { return elements_[index]; }

  protected:
    std::vector<T> elements_;
};
