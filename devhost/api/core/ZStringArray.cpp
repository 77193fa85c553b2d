// SPDX-License-Identifier: MIT
// The core library's array of texts.
#include "host/core/ZStringArray.h"

#include "devhost/util/Guarded.h"
#include "devhost/util/Statuses.h"
#include "host/core/ZStatus.h"

#include <algorithm>
#include <utility>

using devhost::guarded;

ZStringArray::ZStringArray() noexcept = default;

ZStringArray::ZStringArray(unsigned count, const ZString &value, ZStatus *ReturnStatus) {
    devhost::report(ReturnStatus, guarded([&] {
                        ZStringArray filled;
                        filled.changeLogicalSizeTo(count);
                        for (unsigned i = 0; i < count; ++i)
                            filled[i] = value;
                        *this = std::move(filled);
                    }));
}

unsigned ZStringArray::length() const {
    return logicalSize();
}

ZStatus ZStringArray::setLength(unsigned count) {
    return guarded([&] { changeLogicalSizeTo(count); });
}

ZStatus ZStringArray::append(const ZString &value) {
    return guarded([&] { TstringArray::append(value); });
}

ZStatus ZStringArray::insert(const ZString &value, unsigned index) {
    if (index > length())
        return devhost::outsideArray();
    return guarded([&] {
        TstringArray::append(value);
        std::rotate(&(*this)[index], &(*this)[length() - 1], &(*this)[0] + length());
    });
}

ZStatus ZStringArray::remove(unsigned index) {
    if (index >= length())
        return devhost::outsideArray();
    std::move(&(*this)[index] + 1, &(*this)[0] + length(), &(*this)[index]);
    return setLength(length() - 1);
}

ZStatus ZStringArray::clear() {
    return copy(ZStringArray());
}

ZStatus ZStringArray::set(const ZString &value, unsigned index) {
    if (index >= length())
        return devhost::outsideArray();
    return guarded([&] { (*this)[index] = value; });
}

ZStatus ZStringArray::copy(const ZStringArray &other) {
    return guarded([&] { *this = other; });
}

// A ZString is a Tstring and nothing more, so an element can be given out as one.
static_assert(sizeof(ZString) == sizeof(Tstring));

ZString &ZStringArray::operator[](unsigned index) {
    return static_cast<ZString &>(TstringArray::operator[](index));
}

const ZString &ZStringArray::operator[](unsigned index) const {
    return static_cast<const ZString &>(TstringArray::operator[](index));
}

ZString ZStringArray::join(const ZString &separator) const {
    ZString joined;
    for (unsigned i = 0; i < length(); ++i) {
        if (i > 0)
            joined += separator;
        joined += (*this)[i];
    }
    return joined;
}
