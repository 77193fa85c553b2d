// SPDX-License-Identifier: MIT
// Conversion between UTF-8 and Unicode code points.
#include "devhost/util/Utf8.h"

namespace devhost {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCodePoint = 0x10FFFF;

/// Gives the length of the sequence that a lead byte begins, or 0.
std::size_t sequenceLength(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead < 0xE0)
        return 2;
    if (lead >= 0xE0 && lead < 0xF0)
        return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

/// Decodes the sequence of two or more bytes, or gives the replacement when it is not valid.
char32_t decodeSequence(std::string_view sequence) {
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto length = sequence.size();
    char32_t codePoint = static_cast<unsigned char>(sequence[0]) & (0xFFu >> (length + 1));
    for (const char next : sequence.substr(1)) {
        const auto byte = static_cast<unsigned char>(next);
        if ((byte & 0xC0) != 0x80)
            return kReplacement;
        codePoint = codePoint << 6 | (byte & 0x3F);
    }
    const bool valid = codePoint >= kSmallest[length] && codePoint <= kLastCodePoint;
    return valid ? codePoint : kReplacement;
}

} // namespace

std::wstring decodeUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto lead = static_cast<unsigned char>(bytes[0]);
        std::size_t length = sequenceLength(lead);
        char32_t codePoint = lead;
        if (length == 0 || length > bytes.size())
            codePoint = kReplacement;
        else if (length > 1)
            codePoint = decodeSequence(bytes.substr(0, length));
        // Decoding takes up again right after a byte that begins no valid sequence; the encoded
        // replacement character itself is a valid one of three bytes.
        if (codePoint == kReplacement && bytes.substr(0, 3) != "\xEF\xBF\xBD")
            length = 1;
        text.push_back(static_cast<wchar_t>(codePoint));
        bytes.remove_prefix(length);
    }
    return text;
}

std::string encodeUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t character : text) {
        auto c = static_cast<char32_t>(character);
        if (c > kLastCodePoint)
            c = kReplacement;
        if (c < 0x80) {
            bytes.push_back(static_cast<char>(c));
            continue;
        }
        const int following = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
        const unsigned leadMark = 0xFF00u >> (following + 1) & 0xFFu;
        bytes.push_back(static_cast<char>(leadMark | c >> (6 * following)));
        for (int i = following - 1; i >= 0; --i)
            bytes.push_back(static_cast<char>(0x80 | (c >> (6 * i) & 0x3F)));
    }
    return bytes;
}

} // namespace devhost
