// SPDX-License-Identifier: MIT
#include "devhost/util/Terminal.h"

#include "devhost/util/Utf8.h"

#include <algorithm>
#include <cstdio>

namespace devhost {
namespace {

/// Control characters, line separators, and what changes the direction of the text that follows.
constexpr wchar_t kObeyed[][2] = {
    {0, 0x1f}, {0x7f, 0x9f}, {0x200e, 0x200f}, {0x2028, 0x202e}, {0x2066, 0x2069}};

bool isObeyed(wchar_t character) {
    return std::any_of(std::begin(kObeyed), std::end(kObeyed), [=](const wchar_t(&range)[2]) {
        return character >= range[0] && character <= range[1];
    });
}

} // namespace

std::string harmless(std::string_view text) {
    std::string result;
    for (const wchar_t character : decodeUtf8(text)) {
        char code[16];
        std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(character));
        result += isObeyed(character) ? code : encodeUtf8({&character, 1});
    }
    return result;
}

void writeLine(const std::string &line) {
    std::fprintf(stderr, "%s\n", harmless(line).c_str());
}

void tell(const std::string &text) {
    writeLine("quilhost: " + text);
}

} // namespace devhost
