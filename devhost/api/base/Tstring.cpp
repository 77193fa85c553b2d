// SPDX-License-Identifier: MIT
#include "host/base/Tstring.h"

#include "devhost/util/Utf8.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <cwchar>
#include <limits>
#include <memory>
#include <stdexcept>

namespace {

std::unique_ptr<wchar_t[]> newBuffer(std::size_t capacity) {
    if (capacity >= std::numeric_limits<unsigned>::max())
        throw std::length_error("a text of more than 2^32 - 2 characters");
    return std::make_unique_for_overwrite<wchar_t[]>(capacity + 1);
}

/// Readers on several threads may ask for the UTF-8 form of one shared text.
std::atomic_ref<char *> shared(char *&utf8) {
    return std::atomic_ref(utf8);
}

} // namespace

Tstring::Tstring() noexcept
    : data_(inline_), length_(0), capacity_(kInlineCapacity), utf8_(nullptr) {
    inline_[0] = L'\0';
}

Tstring::Tstring(const char *utf8) : Tstring() {
    setUTF8(utf8);
}

Tstring::Tstring(const wchar_t *chars) : Tstring() {
    if (chars)
        set(chars, static_cast<unsigned>(std::wcslen(chars)));
}

Tstring::Tstring(const wchar_t *chars, unsigned count) : Tstring() {
    set(chars, count);
}

Tstring::Tstring(const Tstring &other) : Tstring() {
    set(other.data_, other.length_);
}

Tstring::Tstring(Tstring &&other) noexcept : Tstring() {
    take(other);
}

Tstring::~Tstring() {
    if (data_ != inline_ || shared(utf8_).load(std::memory_order_relaxed))
        release();
}

Tstring &Tstring::operator=(const Tstring &other) {
    set(other.data_, other.length_);
    return *this;
}

Tstring &Tstring::operator=(Tstring &&other) noexcept {
    take(other);
    return *this;
}

void Tstring::set(const wchar_t *chars, unsigned count) {
    if (count <= capacity_ && !shared(utf8_).load(std::memory_order_relaxed)) [[likely]]
        assignInPlace(chars, count);
    else
        assignAnew(chars, count);
}

void Tstring::setUTF8(const char *utf8) {
    setUTF8(utf8, utf8 ? static_cast<unsigned>(std::strlen(utf8)) : 0);
}

void Tstring::setUTF8(const char *utf8, unsigned byteCount) {
    if (!utf8)
        byteCount = 0;
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (byteCount <= kInlineCapacity && std::all_of(utf8, utf8 + byteCount, isAscii)) {
        wchar_t wide[kInlineCapacity];
        std::copy(utf8, utf8 + byteCount, wide);
        set(wide, byteCount);
        return;
    }
    const std::wstring wide = devhost::decodeUtf8({utf8, byteCount});
    set(wide.data(), static_cast<unsigned>(wide.size()));
}

void Tstring::append(const wchar_t *chars, unsigned count) {
    if (count == 0)
        return;
    const std::size_t length = std::size_t{length_} + count;
    if (length > capacity_) {
        const std::size_t capacity = std::max(length, std::size_t{capacity_} * 2);
        auto buffer = newBuffer(capacity);
        std::wmemcpy(buffer.get(), data_, length_);
        std::wmemcpy(buffer.get() + length_, chars, count);
        const auto kept = static_cast<unsigned>(length);
        release();
        data_ = buffer.release();
        capacity_ = static_cast<unsigned>(capacity);
        length_ = kept;
    } else {
        dropUTF8();
        std::wmemmove(data_ + length_, chars, count);
        length_ = static_cast<unsigned>(length);
    }
    data_[length_] = L'\0';
}

inline void Tstring::assignInPlace(const wchar_t *chars, unsigned count) {
    if (count)
        std::wmemmove(data_, chars, count);
    data_[count] = L'\0';
    length_ = count;
}

void Tstring::assignAnew(const wchar_t *chars, unsigned count) {
    if (count <= capacity_) {
        dropUTF8();
        assignInPlace(chars, count);
        return;
    }
    auto buffer = newBuffer(count);
    std::wmemcpy(buffer.get(), chars, count);
    release();
    data_ = buffer.release();
    capacity_ = count;
    data_[count] = L'\0';
    length_ = count;
}

void Tstring::take(Tstring &other) noexcept {
    if (this == &other)
        return;
    if (other.data_ == other.inline_) {
        dropUTF8();
        assignInPlace(other.data_, other.length_);
    } else {
        release();
        data_ = other.data_;
        length_ = other.length_;
        capacity_ = other.capacity_;
        other.data_ = other.inline_;
        other.capacity_ = kInlineCapacity;
    }
    other.dropUTF8();
    other.assignInPlace(nullptr, 0);
}

/// Gives every allocation back and leaves an empty text.
void Tstring::release() noexcept {
    dropUTF8();
    if (data_ != inline_)
        delete[] data_;
    data_ = inline_;
    capacity_ = kInlineCapacity;
    assignInPlace(nullptr, 0);
}

void Tstring::dropUTF8() noexcept {
    delete[] shared(utf8_).exchange(nullptr, std::memory_order_acq_rel);
}

const wchar_t *Tstring::asW() const {
    return data_;
}

unsigned Tstring::numChars() const {
    return length_;
}

const char *Tstring::asUTF8() const {
    if (length_ == 0)
        return "";
    if (const char *known = shared(utf8_).load(std::memory_order_acquire))
        return known;
    const std::string bytes = devhost::encodeUtf8({data_, length_});
    auto made = std::make_unique_for_overwrite<char[]>(bytes.size() + 1);
    std::memcpy(made.get(), bytes.c_str(), bytes.size() + 1);
    // Another reader may have been quicker; then its copy is the one that stays.
    char *kept = nullptr;
    if (shared(utf8_).compare_exchange_strong(kept, made.get(), std::memory_order_acq_rel))
        return made.release();
    return kept;
}

bool Tstring::operator==(const Tstring &other) const {
    return length_ == other.length_ && std::wmemcmp(data_, other.data_, length_) == 0;
}

bool Tstring::operator!=(const Tstring &other) const {
    return !(*this == other);
}

bool Tstring::operator<(const Tstring &other) const {
    return std::lexicographical_compare(data_, data_ + length_, other.data_,
                                        other.data_ + other.length_);
}
