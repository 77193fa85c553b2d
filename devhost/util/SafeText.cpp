// SPDX-License-Identifier: MIT
#include "devhost/util/SafeText.h"

#include <unistd.h>

#include <charconv>

namespace devhost {

SafeText &SafeText::operator<<(std::string_view text) {
    for (const char character : text.substr(0, kRoom - size_)) {
        const auto byte = static_cast<unsigned char>(character);
        buffer_[size_++] = byte < ' ' || byte == 0x7f ? '?' : character;
    }
    return *this;
}

SafeText &SafeText::operator<<(long long number) {
    char digits[24];
    const auto [end, none] = std::to_chars(digits, digits + sizeof digits, number);
    return *this << std::string_view(digits, size_t(end - digits));
}

SafeText &SafeText::address(uintptr_t value) {
    *this << "0x";
    for (int shift = 60; shift >= 0; shift -= 4)
        *this << std::string_view(&"0123456789abcdef"[value >> shift & 0xf], 1);
    return *this;
}

void SafeText::writeLine(int descriptor) {
    buffer_[size_++] = '\n';
    const char *rest = buffer_;
    while (size_ > 0) {
        const ssize_t written = write(descriptor, rest, size_);
        if (written <= 0)
            break;
        rest += written;
        size_ -= static_cast<size_t>(written);
    }
    size_ = 0;
}

} // namespace devhost
