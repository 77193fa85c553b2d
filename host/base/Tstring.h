#pragma once

// The host's text class: Unicode characters, with room for short texts inside the object, so that
// the usual names and paths' parts never allocate.

#include "host/base/HostApi.h"

#include <atomic>
#include <cstring>
#include <cwchar>

static_assert(sizeof(wchar_t) == 4, "a character is a whole Unicode code point");

/// A text of Unicode characters. It may hold null characters; its length never counts the
/// terminating one.
class OPENQUIL_API Tstring {
  public:
    /// Makes an empty text.
    Tstring() noexcept : data_(inline_), length_(0), capacity_(kInlineCapacity), utf8_(nullptr) {
        inline_[0] = L'\0';
    }
    /// Makes a text from UTF-8. Bytes that are not valid UTF-8 become U+FFFD; null gives an empty
    /// text.
    Tstring(const char *utf8);
    /// Makes a text from null-terminated wide characters; null gives an empty text.
    Tstring(const wchar_t *chars);
    /// Makes a text of the given number of wide characters.
    Tstring(const wchar_t *chars, unsigned count) : Tstring() { set(chars, count); }
    Tstring(const Tstring &other) : Tstring() { set(other.data_, other.length_); }
    Tstring(Tstring &&other) noexcept : Tstring() { take(other); }
    ~Tstring() {
        if (data_ != inline_ || utf8_.load(std::memory_order_relaxed))
            release();
    }

    Tstring &operator=(const Tstring &other) {
        set(other.data_, other.length_);
        return *this;
    }
    Tstring &operator=(Tstring &&other) noexcept {
        take(other);
        return *this;
    }

    /// Replaces the text by the given number of wide characters. They may be a part of this text.
    void set(const wchar_t *chars, unsigned count) {
        if (count <= capacity_ && !utf8_.load(std::memory_order_relaxed))
            assignInPlace(chars, count);
        else
            assignAnew(chars, count);
    }
    /// Replaces the text by the UTF-8 bytes up to the terminating null; null gives an empty text.
    void setUTF8(const char *utf8);
    /// Replaces the text by the given number of UTF-8 bytes.
    void setUTF8(const char *utf8, unsigned byteCount);
    /// Appends the given number of wide characters. They may be a part of this text.
    void append(const wchar_t *chars, unsigned count);

    /// Returns the characters, null-terminated; valid until the text changes.
    const wchar_t *asW() const { return data_; }
    /// Returns the number of characters.
    unsigned numChars() const { return length_; }
    /// Returns the text as null-terminated UTF-8; valid until the text changes.
    const char *asUTF8() const;
    /// Returns the text as null-terminated UTF-8; valid until the text changes.
    const char *asChar() const { return asUTF8(); }

    /// Returns true when both texts have the same characters.
    bool operator==(const Tstring &other) const {
        return length_ == other.length_ && std::wmemcmp(data_, other.data_, length_) == 0;
    }
    /// Returns true when the texts differ.
    bool operator!=(const Tstring &other) const { return !(*this == other); }
    /// Orders texts by their characters' code points.
    bool operator<(const Tstring &other) const;

  private:
    static constexpr unsigned kInlineCapacity = 23;

    void assignInPlace(const wchar_t *chars, unsigned count) {
        if (count)
            std::wmemmove(data_, chars, count);
        data_[count] = L'\0';
        length_ = count;
    }
    void assignAnew(const wchar_t *chars, unsigned count);
    void take(Tstring &other) noexcept;
    void release() noexcept;
    void dropUTF8() noexcept;

    wchar_t *data_;
    unsigned length_;
    unsigned capacity_;
    // Atomic, because readers on several threads may ask for the UTF-8 form of one shared text.
    mutable std::atomic<char *> utf8_;
    wchar_t inline_[kInlineCapacity + 1];
};
