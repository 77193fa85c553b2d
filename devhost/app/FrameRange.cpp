// SPDX-License-Identifier: MIT
#include "devhost/app/FrameRange.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <set>
#include <stdexcept>

namespace quilhost {
namespace {

constexpr long long kMostFrames = 1'000'000;

/// Reads the numbers and marks of a list of frames one after the other; blanks between them do not
/// count.
class Reader {
  public:
    explicit Reader(const std::string &text) : text_(text), cursor_(text.data()) { skipBlanks(); }

    bool atEnd() const { return cursor_ == end(); }
    bool isBehindBlank() const { return cursor_ != text_.data() && isBlank(cursor_[-1]); }

    /// Moves over the mark if it stands there.
    bool take(char mark) {
        if (atEnd() || *cursor_ != mark)
            return false;
        ++cursor_;
        skipBlanks();
        return true;
    }
    int takeNumber() {
        int value = 0;
        const auto [behind, error] = std::from_chars(cursor_, end(), value);
        if (error == std::errc::result_out_of_range)
            fail("a number is too large");
        if (error != std::errc())
            fail("expected numbers and ranges such as 1-10x2,20");
        cursor_ = behind;
        skipBlanks();
        return value;
    }
    [[noreturn]] void fail(const std::string &why) const {
        const size_t at = size_t(cursor_ - text_.data());
        const size_t comma = at ? text_.rfind(',', at - 1) : std::string::npos;
        const size_t begin = comma == std::string::npos ? 0 : comma + 1;
        const std::string part = text_.substr(begin, text_.find(',', begin) - begin);
        throw std::invalid_argument("bad frame range '" + part + "': " + why);
    }

  private:
    static bool isBlank(char c) { return c == ' ' || c == '\t'; }
    const char *end() const { return text_.data() + text_.size(); }
    void skipBlanks() {
        while (!atEnd() && isBlank(*cursor_))
            ++cursor_;
    }

    const std::string &text_;
    const char *cursor_;
};

} // namespace

std::vector<int> parseFrames(const std::string &text) {
    std::vector<int> frames;
    std::set<int> seen;
    Reader reader(text);
    for (bool more = true; more;) {
        const int first = reader.takeNumber();
        const bool isRange = reader.take('-');
        const int last = isRange ? reader.takeNumber() : first;
        const int step = isRange && reader.take('x') ? reader.takeNumber() : 1;
        if (step < 1)
            reader.fail("the step is not positive");
        const long long count = std::abs((long long)last - first) / step + 1;
        if (count > kMostFrames)
            reader.fail("it has more than a million frames");
        for (long long index = 0; index < count; ++index) {
            const auto frame = int(first + (last < first ? -index : index) * step);
            if (seen.insert(frame).second)
                frames.push_back(frame);
        }
        if (frames.size() > kMostFrames)
            reader.fail("with it, there are more than a million frames");
        // A blank separates as a comma does where no mark stands beside it.
        more = reader.take(',') || (!reader.atEnd() && reader.isBehindBlank());
    }
    if (!reader.atEnd())
        reader.fail("expected numbers and ranges such as 1-10x2,20");
    return frames;
}

} // namespace quilhost
