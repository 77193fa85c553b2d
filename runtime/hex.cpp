// SPDX-License-Identifier: MIT
#include "runtime/hex.h"

namespace {

constexpr char kDigits[] = "0123456789abcdef";

/// The digit's value, or -1.
int value_of(char digit) {
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    return digit >= 'a' && digit <= 'f' ? digit - 'a' + 10 : -1;
}

} // namespace

char *SWIG_PackData(char *text, const void *data, size_t size) {
    const auto *bytes = static_cast<const unsigned char *>(data);
    for (size_t i = 0; i < size; ++i) {
        *text++ = kDigits[bytes[i] >> 4];
        *text++ = kDigits[bytes[i] & 15];
    }
    return text;
}

char *SWIG_PackVoidPtr(char *text, const void *pointer) {
    *text++ = '_';
    return SWIG_PackData(text, &pointer, sizeof(pointer));
}

const char *SWIG_UnpackData(const char *text, void *data, size_t size) {
    auto *bytes = static_cast<unsigned char *>(data);
    for (size_t i = 0; i < size; ++i, text += 2) {
        const int high = value_of(text[0]), low = high < 0 ? -1 : value_of(text[1]);
        if (low < 0)
            return nullptr;
        bytes[i] = static_cast<unsigned char>(high << 4 | low);
    }
    return text;
}

const char *SWIG_UnpackVoidPtr(const char *text, void **pointer) {
    return *text == '_' ? SWIG_UnpackData(text + 1, pointer, sizeof(*pointer)) : nullptr;
}
