// SPDX-License-Identifier: MIT
#pragma once

// The core library's text: the base library's, with the operations that scripts and plug-ins use.

#include "host/base/Tstring.h"

class ZStatus;
class ZStringArray;

/// A text of Unicode characters.
class OPENQUIL_API ZString : public Tstring {
  public:
    /// Makes an empty text.
    ZString() noexcept;
    /// Makes a text from UTF-8; null gives an empty text.
    ZString(const char *utf8);
    /// Makes a text from the given number of UTF-8 bytes.
    ZString(const char *utf8, unsigned byteCount);
    /// Makes a text from null-terminated wide characters; null gives an empty text.
    ZString(const wchar_t *chars);
    /// Makes a text of the given number of wide characters.
    ZString(const wchar_t *chars, unsigned count);
    /// Makes a copy of the text.
    ZString(const Tstring &other);

    /// Returns the number of characters.
    unsigned length() const;
    /// Returns the number of bytes of the text's UTF-8 form.
    unsigned numBytes() const;
    /// Returns the characters, null-terminated; valid until the text changes.
    const wchar_t *asWChar() const;
    /// Returns the text as null-terminated UTF-8; valid until the text changes.
    const char *asChar() const;
    /// Empties the text.
    void clear();

    using Tstring::set;
    /// Replaces the text by the number, written in the shortest form that reads back the same.
    ZStatus set(double value);
    /// Replaces the text by the number with the given number of decimals (0 to 99); fails with
    /// kInvalidParameter when the number of decimals is out of range.
    ZStatus set(double value, int precision);

    /// Appends a text.
    ZString &operator+=(const ZString &other);
    /// Returns this text followed by the other.
    ZString operator+(const ZString &other) const;

    /// Returns the characters from start to end, both included; an end past the last character
    /// means the last, a start before the first the first. Empty when start is past the end.
    ZString substring(int start, int end) const;
    /// Returns the place of the first such character, or -1.
    int index(char character) const;
    /// Returns the place of the last such character, or -1.
    int rindex(char character) const;
    /// Returns the place of the first such character (a code point), or -1.
    int indexW(wchar_t character) const;
    /// Returns the place of the last such character (a code point), or -1.
    int rindexW(wchar_t character) const;
    /// Returns the place where the other text first begins inside this one, or -1.
    int indexW(const ZString &other) const;
    /// Fills the array with the parts between the separators; empty parts are left out.
    ZStatus split(char separator, ZStringArray &parts) const;
    /// Replaces the first place where the old text stands; fails with kNotFound when it stands
    /// nowhere, or is empty.
    ZStatus substitute(const ZString &oldText, const ZString &newText);

    /// Returns true when the whole text is an integer that fits an int.
    bool isInt() const;
    /// Returns the integer, or 0 when isInt() is false.
    int asInt() const;
    /// Returns true when the whole text is an integer that fits an unsigned int.
    bool isUnsigned() const;
    /// Returns the integer, or 0 when isUnsigned() is false.
    unsigned asUnsigned() const;
    /// Returns true when the whole text is a number.
    bool isDouble() const;
    /// Returns the number, or 0 when isDouble() is false.
    double asDouble() const;
    /// Returns true when the whole text is a number that fits a float.
    bool isFloat() const;
    /// Returns the number, or 0 when isFloat() is false.
    float asFloat() const;

    /// Turns every letter into its lower-case form and returns this text.
    ZString &toLowerCase();
    /// Turns every letter into its upper-case form and returns this text.
    ZString &toUpperCase();
};

/// Returns the UTF-8 text followed by the other.
OPENQUIL_API ZString operator+(const char *utf8, const ZString &other);
