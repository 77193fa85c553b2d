#include "runtime/hex.h"

namespace {
constexpr char kDigits[] = "0123456789abcdef";
}

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
