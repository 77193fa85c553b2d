// SPDX-License-Identifier: MIT
#include "devhost/scene/ObjText.h"

#include "devhost/scene/SceneLoader.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace devhost {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// A number that takes up the whole token; false when it is none.
bool parseNumber(std::string_view token, float &number) {
    if (token.starts_with('+'))
        token.remove_prefix(1);
    const char *end = token.data() + token.size();
    const auto [stopped, problem] = std::from_chars(token.data(), end, number);
    if (problem == std::errc::result_out_of_range) // too small a number is 0
        number = std::strtof(std::string(token).c_str(), nullptr);
    else if (problem != std::errc())
        return false;
    return stopped == end;
}

} // namespace

ObjText::ObjText(const std::string &path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? std::streamoff(file.tellg()) : -1;
    if (size >= 0) {
        text_.resize(size_t(size));
        file.seekg(0);
        file.read(text_.data(), size);
    }
    if (!file)
        throw BadFile("it cannot be read");
}

/// A line without its end, which is that of any system.
std::string_view ObjText::nextLine() {
    const char *begin = text_.data() + at_, *end = text_.data() + text_.size();
    if (const void *newline = std::memchr(begin, '\n', size_t(end - begin)))
        end = static_cast<const char *>(newline);
    size_t length = size_t(end - begin);
    if (const void *ret = std::memchr(begin, '\r', length))
        length = size_t(static_cast<const char *>(ret) - begin);
    at_ += length;
    if (at_ < text_.size())
        at_ += text_[at_] == '\r' && at_ + 1 < text_.size() && text_[at_ + 1] == '\n' ? 2 : 1;
    ++nextLine_;
    return {begin, length};
}

bool ObjText::next() {
    while (at_ < text_.size()) {
        line_ = nextLine_;
        rest_ = nextLine();
        if (rest_.ends_with('\\')) {
            joined_ = rest_;
            while (joined_.ends_with('\\') && at_ < text_.size()) {
                joined_.back() = ' ';
                joined_ += nextLine();
            }
            rest_ = joined_;
        }
        rest_ = trimmed(rest_);
        word_ = token();
        if (!word_.empty() && word_[0] != '#')
            return true;
    }
    return false;
}

std::string ObjText::place() const {
    return "line " + std::to_string(line_);
}

std::string_view ObjText::token() {
    size_t length = 0;
    while (length < rest_.size() && !isBlank(rest_[length]))
        ++length;
    const std::string_view result = rest_.substr(0, length);
    while (length < rest_.size() && isBlank(rest_[length]))
        ++length;
    rest_.remove_prefix(length);
    return result;
}

bool ObjText::takeNumber(float &number) {
    const std::string_view before = rest_;
    if (parseNumber(token(), number))
        return true;
    rest_ = before;
    return false;
}

std::span<const float> ObjText::numbers(size_t least) {
    size_t count = 0;
    while (!rest_.empty()) {
        const std::string_view text = token();
        if (text[0] == '#') // what follows is a comment
            break;
        if (count == numbers_.size())
            fail("there are more than " + std::to_string(count) + " numbers");
        if (!parseNumber(text, numbers_[count]))
            fail("'" + std::string(text) + "' is no number");
        if (!std::isfinite(numbers_[count++]))
            fail("'" + std::string(text) + "' is not finite");
    }
    if (count < least)
        fail("there are " + std::to_string(count) + " numbers where " + std::to_string(least) +
             " are needed");
    return {numbers_.data(), count};
}

void ObjText::fail(const std::string &what) const {
    throw BadFile(place() + ": " + what);
}

} // namespace devhost
