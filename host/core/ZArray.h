#pragma once

// What the core library's arrays of numbers and of small values have in common.

#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"

#include <algorithm>
#include <exception>
#include <vector>

/// A growable array of numbers or of small values.
template <class T>
class ZArrayOf {
  public:
    /// Makes an empty array.
    ZArrayOf() = default;
    /// Makes an array of the given number of copies of the value; it stays empty, and the status
    /// is kInsufficientMemory, when memory is short.
    explicit ZArrayOf(unsigned count, const T &value = T(), ZStatus *ReturnStatus = nullptr) {
        report(ReturnStatus, guarded([&] { elements_.assign(count, value); }));
    }
    /// Makes an array from the given number of elements; it stays empty, and the status is
    /// kInsufficientMemory, when memory is short.
    ZArrayOf(const T *source, unsigned count, ZStatus *ReturnStatus = nullptr) {
        report(ReturnStatus, guarded([&] { elements_.assign(source, source + count); }));
    }

    /// Returns the number of elements.
    unsigned length() const { return static_cast<unsigned>(elements_.size()); }
    /// Sets the number of elements; new ones have the type's default value. Fails with
    /// kInsufficientMemory.
    ZStatus setLength(unsigned count) {
        return guarded([&] { elements_.resize(count); });
    }
    /// Adds an element at the end.
    ZStatus append(const T &value) {
        return guarded([&] {
            // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may lie in here
            const T kept = value;
            makeRoom();
            elements_.push_back(kept);
        });
    }
    /// Puts an element before the one at the index; the index may be length(). Fails with
    /// kInvalidParameter when it is past that.
    ZStatus insert(const T &value, unsigned index) {
        if (index > length())
            return outOfRange();
        return guarded([&] {
            // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may lie in here
            const T kept = value;
            makeRoom();
            elements_.insert(elements_.begin() + index, kept);
        });
    }
    /// Takes the element at the index out; fails with kInvalidParameter when there is none.
    ZStatus remove(unsigned index) {
        if (index >= length())
            return outOfRange();
        elements_.erase(elements_.begin() + index);
        return ZStatus();
    }
    /// Takes every element out.
    ZStatus clear() {
        elements_.clear();
        return ZStatus();
    }
    /// Replaces the element at the index; fails with kInvalidParameter when there is none.
    ZStatus set(const T &value, unsigned index) {
        if (index >= length())
            return outOfRange();
        elements_[index] = value;
        return ZStatus();
    }
    /// Becomes a copy of the other array.
    ZStatus copy(const ZArrayOf &other) {
        return guarded([&] { elements_ = other.elements_; });
    }
    /// Copies every element to the destination, which must have room for length() of them.
    ZStatus get(T *destination) const {
        std::copy(elements_.begin(), elements_.end(), destination);
        return ZStatus();
    }

    /// Sets by how many elements, at least, the array's room grows when an element is added.
    void setSizeIncrement(unsigned count) { sizeIncrement_ = count; }
    /// Returns by how many elements, at least, the array's room grows.
    unsigned sizeIncrement() const { return sizeIncrement_; }

    /// Returns the element at the index, which must be below length().
    T &operator[](unsigned index) { return elements_[index]; }
    /// Returns the element at the index, which must be below length().
    const T &operator[](unsigned index) const { return elements_[index]; }
    /// Returns true when both arrays have the same elements.
    bool operator==(const ZArrayOf &other) const { return elements_ == other.elements_; }

    /// Returns the first element's place in memory; valid until the length changes.
    T *data() { return elements_.data(); }
    /// Returns the first element's place in memory; valid until the length changes.
    const T *data() const { return elements_.data(); }
    T *begin() { return elements_.data(); }
    T *end() { return elements_.data() + elements_.size(); }
    const T *begin() const { return elements_.data(); }
    const T *end() const { return elements_.data() + elements_.size(); }

  private:
    static ZStatus outOfRange() {
        return ZStatus(ZStatus::kInvalidParameter, "the index is outside the array");
    }
    static void report(ZStatus *ReturnStatus, const ZStatus &status) {
        if (ReturnStatus)
            *ReturnStatus = status;
    }
    template <class Change>
    static ZStatus guarded(Change change) noexcept {
        try {
            change();
            return ZStatus();
        } catch (const std::exception &) {
            return ZStatus::kInsufficientMemory;
        }
    }
    void makeRoom() {
        const auto room = elements_.capacity();
        if (elements_.size() == room)
            elements_.reserve(room + std::max<std::size_t>(room, sizeIncrement_));
    }

    std::vector<T> elements_;
    unsigned sizeIncrement_ = 8;
};
