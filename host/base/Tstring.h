// SPDX-License-Identifier: MIT
#pragma once

// The host's text class: Unicode characters, with room for short texts inside the object, so that
// the usual names and paths' parts never allocate.

#include "host/base/HostApi.h"

static_assert(sizeof(wchar_t) == 4, "a character is a whole Unicode code point");

/// A text of Unicode characters. It may hold null characters; its length never counts the
/// terminating one.
class OPENQUIL_API Tstring {
  public:
    /// Makes an empty text.
    Tstring() noexcept;
    /// Makes a text from UTF-8. Bytes that are not valid UTF-8 become U+FFFD; null gives an empty
    /// text.
    Tstring(const char *utf8);
    /// Makes a text from null-terminated wide characters; null gives an empty text.
    Tstring(const wchar_t *chars);
    /// Makes a text of the given number of wide characters.
    Tstring(const wchar_t *chars, unsigned count);
    Tstring(const Tstring &other);
    Tstring(Tstring &&other) noexcept;
    ~Tstring();

    Tstring &operator=(const Tstring &other);
    Tstring &operator=(Tstring &&other) noexcept;

    /// Replaces the text by the given number of wide characters. They may be a part of this text.
    void set(const wchar_t *chars, unsigned count);
    /// Replaces the text by the UTF-8 bytes up to the terminating null; null gives an empty text.
    void setUTF8(const char *utf8);
    /// Replaces the text by the given number of UTF-8 bytes.
    void setUTF8(const char *utf8, unsigned byteCount);
    /// Appends the given number of wide characters. They may be a part of this text.
    void append(const wchar_t *chars, unsigned count);

    /// Returns the characters, null-terminated; valid until the text changes.
    const wchar_t *asW() const;
    /// Returns the number of characters.
    unsigned numChars() const;
    /// Returns the text as null-terminated UTF-8; valid until the text changes.
    const char *asUTF8() const;

    /// Returns true when both texts have the same characters.
    bool operator==(const Tstring &other) const;
    /// Returns true when the texts differ.
    bool operator!=(const Tstring &other) const;
    /// Orders texts by their characters' code points.
    bool operator<(const Tstring &other) const;

  private:
    static constexpr unsigned kInlineCapacity = 23;

    void assignInPlace(const wchar_t *chars, unsigned count);
    void assignAnew(const wchar_t *chars, unsigned count);
    void take(Tstring &other) noexcept;
    void release() noexcept;
    void dropUTF8() noexcept;

    wchar_t *data_;
    unsigned length_;
    unsigned capacity_;
    mutable char *utf8_; // made on demand, by whichever thread asks first
    wchar_t inline_[kInlineCapacity + 1];
};
