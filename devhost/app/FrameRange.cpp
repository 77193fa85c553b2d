#include "devhost/app/FrameRange.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <stdexcept>

namespace quilhost {
namespace {

constexpr size_t kMostFrames = 1'000'000;

[[noreturn]] void fail(const std::string &part, const std::string &why) {
    throw std::invalid_argument("bad frame range '" + part + "': " + why);
}

/// Reads an integer and moves the cursor behind it.
int takeNumber(const std::string &part, const char *&cursor) {
    int value = 0;
    const auto [end, error] = std::from_chars(cursor, part.data() + part.size(), value);
    if (error == std::errc::result_out_of_range)
        fail(part, "a number is too large");
    if (error != std::errc())
        fail(part, "expected numbers and ranges such as 1-10x2,20");
    cursor = end;
    return value;
}

/// Moves the cursor over the character if it stands there.
bool take(char character, const char *&cursor) {
    if (*cursor != character)
        return false;
    ++cursor;
    return true;
}

} // namespace

std::vector<int> parseFrames(const std::string &text) {
    std::vector<int> frames;
    std::set<int> seen;
    for (size_t start = 0; start <= text.size();) {
        const size_t comma = std::min(text.find(',', start), text.size());
        const std::string part = text.substr(start, comma - start);
        start = comma + 1;

        const char *cursor = part.c_str();
        const int first = takeNumber(part, cursor);
        const bool isRange = take('-', cursor);
        const int last = isRange ? takeNumber(part, cursor) : first;
        const int step = isRange && take('x', cursor) ? takeNumber(part, cursor) : 1;
        if (cursor != part.c_str() + part.size())
            fail(part, "expected numbers and ranges such as 1-10x2,20");
        if (last < first)
            fail(part, "it runs backwards");
        if (step < 1)
            fail(part, "the step is not positive");
        for (long long frame = first; frame <= last; frame += step) {
            if (seen.insert(static_cast<int>(frame)).second)
                frames.push_back(static_cast<int>(frame));
            if (frames.size() > kMostFrames)
                fail(part, "it has more than a million frames");
        }
    }
    return frames;
}

} // namespace quilhost
