// SPDX-License-Identifier: MIT
#pragma once

// The core library's array of texts: the base library's, element for element.

#include "host/base/TstringArray.h"
#include "host/core/ZString.h"

/// A growable array of texts.
class OPENQUIL_API ZStringArray : public TstringArray {
  public:
    /// Makes an empty array.
    ZStringArray() noexcept;
    /// Makes an array of the given number of copies of the text; it stays empty when memory is
    /// short.
    explicit ZStringArray(unsigned count, const ZString &value = ZString(),
                          ZStatus *ReturnStatus = nullptr);

    /// Returns the number of texts.
    unsigned length() const;
    /// Sets the number of texts; new ones are empty. Fails with kInsufficientMemory.
    ZStatus setLength(unsigned count);
    /// Adds a text at the end.
    ZStatus append(const ZString &value);
    /// Puts a text before the one at the index; the index may be length(). Fails with
    /// kInvalidParameter when it is past that.
    ZStatus insert(const ZString &value, unsigned index);
    /// Takes the text at the index out; fails with kInvalidParameter when there is none.
    ZStatus remove(unsigned index);
    /// Takes every text out.
    ZStatus clear();
    /// Replaces the text at the index; fails with kInvalidParameter when there is none.
    ZStatus set(const ZString &value, unsigned index);
    /// Becomes a copy of the other array.
    ZStatus copy(const ZStringArray &other);
    /// Returns the texts, joined with the separator between them.
    ZString join(const ZString &separator) const;

    /// Returns the text at the index, which must be below length().
    ZString &operator[](unsigned index);
    /// Returns the text at the index, which must be below length().
    const ZString &operator[](unsigned index) const;
};
