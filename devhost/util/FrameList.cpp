// SPDX-License-Identifier: MIT
#include "devhost/util/FrameList.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <tuple>
#include <unordered_set>

namespace devhost {
namespace {

constexpr long long kMostFrames = 1'000'000;

/// Reads the numbers and marks of a list of frames one after the other; blanks between them do not
/// count.
class ListReader {
  public:
    explicit ListReader(const std::string &text) : text_(text), cursor_(text.data()) {
        skipBlanks();
    }

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

/// One part of a printed list: a frame, or a range of several.
std::string partText(const FrameList &frames, size_t first, size_t last, char stepMark) {
    std::string text = std::to_string(frames[first]);
    if (first == last)
        return text;
    text += "-" + std::to_string(frames[last]);
    const long long step = std::abs((long long)frames[first + 1] - frames[first]);
    return step == 1 ? text : text + stepMark + std::to_string(step);
}

/// For each frame, the last one of the longest range that begins there.
std::vector<size_t> rangeEnds(const FrameList &frames) {
    std::vector<size_t> ends(frames.size());
    for (size_t i = frames.size(); i-- > 0;) {
        const auto step = [&](size_t at) { return (long long)frames[at + 1] - frames[at]; };
        if (i + 1 == frames.size() || std::abs(step(i)) > std::numeric_limits<int>::max())
            ends[i] = i; // no step is that large
        else
            ends[i] = i + 2 < frames.size() && step(i) == step(i + 1) ? ends[i + 1] : i + 1;
    }
    return ends;
}

/// How the rest of a list, from some frame on, is best written.
struct Rest {
    size_t length = 0, parts = 0;
    /// The last frame of its first part.
    size_t last = 0;
    bool operator<(const Rest &other) const {
        return std::tie(length, parts) < std::tie(other.length, other.parts);
    }
};

/// The best way for each frame. A part is a frame alone, or a range that goes on for as long as it
/// can, but for its last frame where another range begins there: shorter ones save nothing.
std::vector<Rest> bestRests(const FrameList &frames, char stepMark) {
    const std::vector<size_t> ends = rangeEnds(frames);
    std::vector<Rest> rests(frames.size() + 1);
    for (size_t i = frames.size(); i-- > 0;) {
        rests[i].length = std::string::npos;
        for (const size_t last : {i, ends[i], std::max(ends[i], i + 1) - 1}) {
            const Rest &behind = rests[last + 1];
            const size_t comma = behind.parts ? 1 : 0;
            const size_t length = partText(frames, i, last, stepMark).size() + comma;
            rests[i] = std::min(rests[i], Rest{length + behind.length, behind.parts + 1, last});
        }
    }
    return rests;
}

} // namespace

FrameList parseFrames(const std::string &text) {
    FrameList frames;
    std::unordered_set<int> seen;
    ListReader reader(text);
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

std::string printFrames(const FrameList &frames, char stepMark) {
    const std::vector<Rest> rests = bestRests(frames, stepMark);
    std::string text;
    for (size_t i = 0; i < frames.size(); i = rests[i].last + 1)
        text += (i ? "," : "") + partText(frames, i, rests[i].last, stepMark);
    return text;
}

std::vector<FrameList> chunksOf(const FrameList &frames, size_t size) {
    std::vector<FrameList> chunks;
    for (size_t begin = 0; begin < frames.size(); begin += size) {
        const auto first = frames.begin() + std::ptrdiff_t(begin);
        chunks.emplace_back(first, first + std::ptrdiff_t(std::min(size, frames.size() - begin)));
    }
    return chunks;
}

FrameList unite(const FrameList &frames, const FrameList &more) {
    FrameList united = frames;
    const FrameList added = subtract(more, frames);
    united.insert(united.end(), added.begin(), added.end());
    return united;
}

FrameList subtract(const FrameList &first, const FrameList &second) {
    const std::unordered_set<int> out(second.begin(), second.end());
    FrameList frames;
    std::copy_if(first.begin(), first.end(), std::back_inserter(frames),
                 [&](int frame) { return !out.contains(frame); });
    return frames;
}

} // namespace devhost
