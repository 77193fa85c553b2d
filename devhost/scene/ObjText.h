// SPDX-License-Identifier: MIT
#pragma once

// The statements of .obj and .mtl files, one after the other: a word and what follows it.

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace devhost {

class ObjText {
  public:
    /// Throws BadFile when the file cannot be read.
    explicit ObjText(const std::string &path);
    ObjText(const ObjText &) = delete;
    ObjText &operator=(const ObjText &) = delete;

    /// Goes to the next statement; false behind the last one.
    bool next();
    std::string_view word() const { return word_; }
    /// Without blanks at its ends.
    std::string_view rest() const { return rest_; }
    /// "line 7", of the statement.
    std::string place() const;
    unsigned line() const { return line_; }
    /// The bytes of the whole file.
    size_t size() const { return text_.size(); }

    /// Takes the next token off the rest; empty at its end.
    std::string_view token();
    /// Takes the next token off if it is a number.
    bool takeNumber(float &number);
    /// The rest, which has to be `least` to 8 finite numbers. Throws BadFile with the line.
    std::span<const float> numbers(size_t least);
    [[noreturn]] void fail(const std::string &what) const;

  private:
    std::string_view nextLine();

    std::string text_;
    size_t at_ = 0;
    unsigned line_ = 0, nextLine_ = 1;
    std::string joined_; // a statement that was continued on the next line
    std::string_view word_, rest_;
    std::array<float, 8> numbers_;
};

} // namespace devhost
