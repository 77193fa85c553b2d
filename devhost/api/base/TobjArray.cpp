// SPDX-License-Identifier: MIT
#include "host/base/TobjArray.h"

#include "devhost/util/Hidden.h"
#include "host/base/TstringArray.h"

#include <utility>
#include <vector>

using devhost::contents;
using devhost::made;

template <class T>
struct TobjArray<T>::Elements : std::vector<T> {};

template <class T>
TobjArray<T>::TobjArray() noexcept : elements_(nullptr) {}

template <class T>
TobjArray<T>::TobjArray(const TobjArray &other) : elements_(devhost::copied(other.elements_)) {}

template <class T>
TobjArray<T>::TobjArray(TobjArray &&other) noexcept
    : elements_(std::exchange(other.elements_, nullptr)) {}

template <class T>
TobjArray<T>::~TobjArray() {
    delete elements_;
}

template <class T>
TobjArray<T> &TobjArray<T>::operator=(const TobjArray &other) {
    *this = TobjArray(other);
    return *this;
}

template <class T>
TobjArray<T> &TobjArray<T>::operator=(TobjArray &&other) noexcept {
    std::swap(elements_, other.elements_);
    return *this;
}

template <class T>
unsigned TobjArray<T>::logicalSize() const {
    return static_cast<unsigned>(contents(elements_).size());
}

template <class T>
void TobjArray<T>::changeLogicalSizeTo(unsigned count) {
    made(elements_).resize(count);
}

template <class T>
void TobjArray<T>::append(const T &element) {
    made(elements_).push_back(element);
}

template <class T>
T &TobjArray<T>::operator[](unsigned index) {
    return (*elements_)[index];
}

template <class T>
const T &TobjArray<T>::operator[](unsigned index) const {
    return (*elements_)[index];
}

template class TobjArray<Tstring>;
