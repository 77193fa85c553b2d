// SPDX-License-Identifier: MIT
#pragma once

// A by-value result of a host class on its way into Python.

#include <new>
#include <utility>

/// Holds the heap copy of a result while the Python object that is to own it is made; destroys it
/// where that fails.
template <class T>
class SwigValueWrapper {
    /// Owns the copy, or nothing where memory was short.
    class SwigMovePointer {
      public:
        explicit SwigMovePointer(T *pointer) : pointer_(pointer) {}
        ~SwigMovePointer() { delete pointer_; }
        SwigMovePointer(const SwigMovePointer &) = delete;
        SwigMovePointer &operator=(const SwigMovePointer &) = delete;

        T *get() const { return pointer_; }
        T *release() { return std::exchange(pointer_, nullptr); }

      private:
        T *pointer_;
    };

  public:
    explicit SwigValueWrapper(T &&value) : pointer_(new (std::nothrow) T(std::move(value))) {}

    /// The copy; null where memory was short.
    T *get() const { return pointer_.get(); }
    /// The same, which is the caller's from now on.
    T *release() { return pointer_.release(); }

  private:
    SwigMovePointer pointer_;
};
