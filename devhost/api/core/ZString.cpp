// SPDX-License-Identifier: MIT
// The core library's text: searching, splitting, numbers and letter case.
#include "host/core/ZString.h"

#include "host/core/ZStatus.h"
#include "host/core/ZStringArray.h"

#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale is not in <clocale>

#include <charconv>
#include <cmath>
#include <cstring>
#include <cwctype>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr int kMaximumPrecision = 99;

std::wstring_view view(const Tstring &text) {
    return {text.asW(), text.numChars()};
}

wchar_t wide(char character) {
    return static_cast<unsigned char>(character);
}

int place(std::wstring_view::size_type found) {
    return found == std::wstring_view::npos ? -1 : static_cast<int>(found);
}

/// The whole text read as one number; nothing when it is something else.
template <class Number>
std::optional<Number> parse(const ZString &text) {
    std::string_view digits(text.asUTF8(), text.numBytes());
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    Number parsed{};
    const char *const end = digits.data() + digits.size();
    const auto [stop, failure] = std::from_chars(digits.data(), end, parsed);
    if (failure != std::errc() || stop != end || !std::isfinite(static_cast<double>(parsed)))
        return std::nullopt;
    return parsed;
}

/// Letter case in every language, whatever the locale of the process.
locale_t unicodeLocale() {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
    return unicode ? unicode : LC_GLOBAL_LOCALE;
}

template <class Change>
ZString changed(const ZString &text, Change change) {
    std::wstring characters(view(text));
    for (wchar_t &character : characters)
        character = static_cast<wchar_t>(change(static_cast<wint_t>(character)));
    return ZString(characters.data(), static_cast<unsigned>(characters.size()));
}

} // namespace

ZString::ZString() noexcept = default;

ZString::ZString(const char *utf8) : Tstring(utf8) {}

ZString::ZString(const char *utf8, unsigned byteCount) {
    setUTF8(utf8, byteCount);
}

ZString::ZString(const wchar_t *chars) : Tstring(chars) {}

ZString::ZString(const wchar_t *chars, unsigned count) : Tstring(chars, count) {}

ZString::ZString(const Tstring &other) : Tstring(other) {}

unsigned ZString::length() const {
    return numChars();
}

unsigned ZString::numBytes() const {
    unsigned bytes = 0;
    for (const wchar_t character : view(*this)) {
        const auto c = static_cast<char32_t>(character);
        bytes += c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 || c > 0x10FFFF ? 3 : 4;
    }
    return bytes;
}

const wchar_t *ZString::asWChar() const {
    return asW();
}

const char *ZString::asChar() const {
    return asUTF8();
}

void ZString::clear() {
    Tstring::set(nullptr, 0);
}

ZStatus ZString::set(double value) {
    char digits[64];
    const auto [end, failure] = std::to_chars(digits, digits + sizeof digits, value);
    setUTF8(digits, static_cast<unsigned>(end - digits));
    return ZStatus();
}

ZStatus ZString::set(double value, int precision) {
    if (precision < 0 || precision > kMaximumPrecision)
        return ZStatus(ZStatus::kInvalidParameter, "the number of decimals must be 0 to 99");
    char digits[512];
    const auto [end, failure] =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, precision);
    setUTF8(digits, static_cast<unsigned>(end - digits));
    return ZStatus();
}

ZString &ZString::operator+=(const ZString &other) {
    append(other.asW(), other.numChars());
    return *this;
}

ZString ZString::operator+(const ZString &other) const {
    ZString sum(*this);
    return sum += other;
}

ZString operator+(const char *utf8, const ZString &other) {
    return ZString(utf8) + other;
}

ZString ZString::substring(int start, int end) const {
    const int count = static_cast<int>(length());
    start = std::max(start, 0);
    end = std::min(end, count - 1);
    if (start > end)
        return ZString();
    return ZString(asW() + start, static_cast<unsigned>(end - start + 1));
}

int ZString::index(char character) const {
    return indexW(wide(character));
}

int ZString::rindex(char character) const {
    return rindexW(wide(character));
}

int ZString::indexW(wchar_t character) const {
    return place(view(*this).find(character));
}

int ZString::rindexW(wchar_t character) const {
    return place(view(*this).rfind(character));
}

int ZString::indexW(const ZString &other) const {
    return place(view(*this).find(view(other)));
}

ZStatus ZString::split(char separator, ZStringArray &parts) const {
    // The text may be an element of the array that is filled.
    const ZString whole(*this);
    parts.clear();
    std::wstring_view rest = view(whole);
    while (!rest.empty()) {
        const auto end = std::min(rest.find(wide(separator)), rest.size());
        if (end > 0) {
            const ZString part(rest.data(), static_cast<unsigned>(end));
            if (const ZStatus status = parts.append(part); status.error())
                return status;
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return ZStatus();
}

ZStatus ZString::substitute(const ZString &oldText, const ZString &newText) {
    const int at = oldText.length() ? indexW(oldText) : -1;
    if (at < 0)
        return ZStatus(ZStatus::kNotFound, "the text to replace does not occur");
    ZString replaced(asW(), static_cast<unsigned>(at));
    replaced += newText;
    const unsigned after = static_cast<unsigned>(at) + oldText.length();
    replaced.append(asW() + after, length() - after);
    *this = std::move(replaced);
    return ZStatus();
}

bool ZString::isInt() const {
    return parse<int>(*this).has_value();
}

int ZString::asInt() const {
    return parse<int>(*this).value_or(0);
}

bool ZString::isUnsigned() const {
    return parse<unsigned>(*this).has_value();
}

unsigned ZString::asUnsigned() const {
    return parse<unsigned>(*this).value_or(0);
}

bool ZString::isDouble() const {
    return parse<double>(*this).has_value();
}

double ZString::asDouble() const {
    return parse<double>(*this).value_or(0);
}

bool ZString::isFloat() const {
    return parse<float>(*this).has_value();
}

float ZString::asFloat() const {
    return parse<float>(*this).value_or(0);
}

ZString &ZString::toLowerCase() {
    return *this = changed(*this, [](wint_t c) { return towlower_l(c, unicodeLocale()); });
}

ZString &ZString::toUpperCase() {
    return *this = changed(*this, [](wint_t c) { return towupper_l(c, unicodeLocale()); });
}
