// SPDX-License-Identifier: MIT
// The arrays of numbers and of small values.
#include "host/core/ZArray.h"

#include "devhost/util/Guarded.h"
#include "devhost/util/Hidden.h"
#include "devhost/util/Statuses.h"
#include "devhost/util/ViewedMemory.h"
#include "host/core/ZColorArray.h"
#include "host/core/ZDagPathArray.h"
#include "host/core/ZDoubleArray.h"
#include "host/core/ZFloatArray.h"
#include "host/core/ZFloatPointArray.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZIntArray.h"
#include "host/core/ZMatrixArray.h"
#include "host/core/ZObjectArray.h"
#include "host/core/ZPlugArray.h"
#include "host/core/ZPointArray.h"
#include "host/core/ZTimeArray.h"
#include "host/core/ZUint64Array.h"
#include "host/core/ZUintArray.h"
#include "host/core/ZVectorArray.h"

#include <algorithm>
#include <utility>
#include <vector>

using devhost::contents;
using devhost::guarded;
using devhost::made;
using devhost::report;

/// What scripts see through views is left to these when the array frees it, or gets another length.
template <class T>
struct ZArrayOf<T>::Elements : std::vector<T> {
    static void drop(Elements *elements) noexcept {
        if (elements)
            devhost::deleteUnlessViewed(elements->data(), elements);
    }
    /// The elements to change the number of.
    static Elements &resizable(Elements *&elements) {
        if (elements && devhost::isViewed(elements->data()))
            drop(std::exchange(elements, new Elements(*elements)));
        return made(elements);
    }
    /// Takes over the elements of another array, to the place of its own where that is viewed.
    static void replace(Elements *&elements, Elements *&others) noexcept {
        const bool staysInPlace = elements && others && elements->size() == others->size() &&
                                  devhost::isViewed(elements->data());
        if (staysInPlace)
            std::swap_ranges(elements->begin(), elements->end(), others->begin());
        else
            std::swap(elements, others);
    }
};

template <class T>
ZArrayOf<T>::ZArrayOf() noexcept : elements_(nullptr), sizeIncrement_(8) {}

template <class T>
ZArrayOf<T>::ZArrayOf(unsigned count, const T &value, ZStatus *ReturnStatus) : ZArrayOf() {
    report(ReturnStatus, guarded([&] { made(elements_).assign(count, value); }));
}

template <class T>
ZArrayOf<T>::ZArrayOf(const T *source, unsigned count, ZStatus *ReturnStatus) : ZArrayOf() {
    report(ReturnStatus, guarded([&] { made(elements_).assign(source, source + count); }));
}

template <class T>
ZArrayOf<T>::ZArrayOf(const ZArrayOf &other)
    : elements_(devhost::copied(other.elements_)), sizeIncrement_(other.sizeIncrement_) {}

template <class T>
ZArrayOf<T>::ZArrayOf(ZArrayOf &&other) noexcept
    : elements_(std::exchange(other.elements_, nullptr)), sizeIncrement_(other.sizeIncrement_) {}

template <class T>
ZArrayOf<T>::~ZArrayOf() {
    Elements::drop(elements_);
}

template <class T>
ZArrayOf<T> &ZArrayOf<T>::operator=(const ZArrayOf &other) {
    *this = ZArrayOf(other);
    return *this;
}

template <class T>
ZArrayOf<T> &ZArrayOf<T>::operator=(ZArrayOf &&other) noexcept {
    Elements::replace(elements_, other.elements_);
    sizeIncrement_ = other.sizeIncrement_;
    return *this;
}

template <class T>
unsigned ZArrayOf<T>::length() const {
    return static_cast<unsigned>(contents(elements_).size());
}

template <class T>
ZStatus ZArrayOf<T>::setLength(unsigned count) {
    return guarded([&] {
        if (count != length())
            Elements::resizable(elements_).resize(count);
    });
}

template <class T>
ZStatus ZArrayOf<T>::append(const T &value) {
    return insert(value, length());
}

template <class T>
ZStatus ZArrayOf<T>::insert(const T &value, unsigned index) {
    if (index > length())
        return devhost::outsideArray();
    return guarded([&] {
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may lie in here
        const T kept = value;
        Elements &all = Elements::resizable(elements_);
        if (all.size() == all.capacity())
            all.reserve(all.size() + std::max<size_t>(all.size(), sizeIncrement_));
        all.insert(all.begin() + index, kept);
    });
}

template <class T>
ZStatus ZArrayOf<T>::remove(unsigned index) {
    if (index >= length())
        return devhost::outsideArray();
    return guarded([&] {
        Elements &all = Elements::resizable(elements_);
        all.erase(all.begin() + index);
    });
}

template <class T>
ZStatus ZArrayOf<T>::clear() {
    Elements::drop(std::exchange(elements_, nullptr));
    return ZStatus();
}

template <class T>
ZStatus ZArrayOf<T>::set(const T &value, unsigned index) {
    if (index >= length())
        return devhost::outsideArray();
    (*this)[index] = value;
    return ZStatus();
}

template <class T>
ZStatus ZArrayOf<T>::copy(const ZArrayOf &other) {
    return guarded([&] {
        ZArrayOf copied(other);
        Elements::replace(elements_, copied.elements_);
    });
}

template <class T>
ZStatus ZArrayOf<T>::get(T *destination) const {
    std::copy_n(data(), length(), destination);
    return ZStatus();
}

template <class T>
void ZArrayOf<T>::setSizeIncrement(unsigned count) {
    sizeIncrement_ = count;
}

template <class T>
unsigned ZArrayOf<T>::sizeIncrement() const {
    return sizeIncrement_;
}

template <class T>
T &ZArrayOf<T>::operator[](unsigned index) {
    return (*elements_)[index];
}

template <class T>
const T &ZArrayOf<T>::operator[](unsigned index) const {
    return (*elements_)[index];
}

template <class T>
bool ZArrayOf<T>::operator==(const ZArrayOf &other) const {
    return std::equal(data(), data() + length(), other.data(), other.data() + other.length());
}

template <class T>
T *ZArrayOf<T>::data() {
    return elements_ ? elements_->data() : nullptr;
}

template <class T>
const T *ZArrayOf<T>::data() const {
    return contents(elements_).data();
}

template class ZArrayOf<ZColor>;
template class ZArrayOf<ZDagPath>;
template class ZArrayOf<double>;
template class ZArrayOf<float>;
template class ZArrayOf<ZFloatPoint>;
template class ZArrayOf<ZFloatVector>;
template class ZArrayOf<int>;
template class ZArrayOf<ZMatrix>;
template class ZArrayOf<ZObject>;
template class ZArrayOf<ZPlug>;
template class ZArrayOf<ZPoint>;
template class ZArrayOf<ZTime>;
template class ZArrayOf<unsigned long>;
template class ZArrayOf<unsigned int>;
template class ZArrayOf<ZVector>;
