// SPDX-License-Identifier: MIT
#include "devhost/util/FrameList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <set>
#include <stdexcept>

using devhost::FrameList;
using devhost::parseFrames;
using devhost::printFrames;

TEST(FrameList, ReadsListsAndRangesWithSteps) {
    const std::pair<const char *, std::vector<int>> cases[] = {
        {"1", {1}},
        {"1-4", {1, 2, 3, 4}},
        {"1-10x2,20", {1, 3, 5, 7, 9, 20}},
        {"20,1-2", {20, 1, 2}},
        {"1-3,2-4", {1, 2, 3, 4}},
        {"-2", {-2}},
        {"-2-1", {-2, -1, 0, 1}},
        {"-5--3x2", {-5, -3}},
        {"7-7x9", {7}},
        {"4-1", {4, 3, 2, 1}},
        {"10-1x3,2", {10, 7, 4, 1, 2}},
        {" 1 - 7 x 3 , 9 ", {1, 4, 7, 9}},
        {"1-3 8,-2", {1, 2, 3, 8, -2}},
        {"2147483646-2147483647", {2147483646, 2147483647}},
    };
    for (const auto &[text, frames] : cases)
        EXPECT_EQ(parseFrames(text), frames) << text;
}

TEST(FrameList, RefusesWhatIsNoRange) {
    for (const char *text :
         {"", ",", "1,", ",1", "a", "1-", "-", "1-2-3", "1x2", "1-5x", "1-5x0", "1-5x-1", "1 2-",
          "1 , , 2", "1.5", "99999999999", "1-99999999999", "0-2000000"})
        EXPECT_THROW(parseFrames(text), std::invalid_argument) << text;
}

namespace {

/// The length of the shortest text: every part is tried that is a range.
size_t shortestLength(const FrameList &frames) {
    const auto digits = [](long long number) { return std::to_string(number).size(); };
    std::vector<size_t> best(frames.size() + 1);
    for (size_t end = 1; end <= frames.size(); ++end) {
        best[end] = best[end - 1] + digits(frames[end - 1]) + (end > 1);
        for (size_t begin = 0; begin + 1 < end; ++begin) {
            const long long step = frames[begin + 1] - frames[begin];
            bool isRange = true;
            for (size_t i = begin + 1; i < end; ++i)
                isRange = isRange && frames[i] - frames[i - 1] == step;
            const size_t mark = std::abs(step) == 1 ? 0 : 1 + digits(std::abs(step));
            if (isRange)
                best[end] = std::min(best[end], best[begin] + (begin > 0) + digits(frames[begin]) +
                                                    1 + digits(frames[end - 1]) + mark);
        }
    }
    return best.back();
}

/// Runs of all steps, in both directions, and single frames among them.
FrameList randomFrames(std::mt19937 &random) {
    const auto pick = [&](int least, int most) {
        return std::uniform_int_distribution(least, most)(random);
    };
    FrameList frames;
    for (int parts = pick(0, 5); parts > 0; --parts) {
        const int step = pick(-3, 3);
        int frame = frames.empty() || pick(0, 1) ? pick(-30, 130) : frames.back() + pick(-3, 3);
        for (int count = pick(1, 7); count > 0; --count, frame += step)
            if (std::find(frames.begin(), frames.end(), frame) == frames.end())
                frames.push_back(frame);
    }
    return frames;
}

} // namespace

TEST(FrameList, PrintsTheShortestTextThatReadsTheSame) {
    const std::pair<FrameList, const char *> cases[] = {
        {{}, ""},
        {{7}, "7"},
        {{1, 2}, "1-2"},
        {{5, 9}, "5,9"},
        {{1, 2, 4, 6, 8}, "1,2-8x2"},
        {{-5, -3, -1}, "-5--1x2"},
        {{3, 2, 1, 20, 10, 0}, "3-1,20-0x10"},
        {{-2147483647 - 1, 2147483647}, "-2147483648,2147483647"},
    };
    for (const auto &[frames, text] : cases)
        EXPECT_EQ(printFrames(frames), text);
    EXPECT_EQ(printFrames({1, 4, 7, 10, 11}, ':'), "1-10:3,11");
    std::mt19937 random(1);
    for (int round = 0; round < 3000; ++round) {
        const FrameList frames = randomFrames(random);
        const std::string text = printFrames(frames);
        EXPECT_EQ(text.size(), shortestLength(frames)) << text;
        if (!frames.empty()) {
            EXPECT_EQ(parseFrames(text), frames) << text;
        }
    }
}

TEST(FrameList, ChunksUnionsAndDifferences) {
    std::mt19937 random(2);
    for (int round = 0; round < 1000; ++round) {
        const FrameList a = randomFrames(random), b = randomFrames(random);
        const size_t size = 1 + random() % 9;
        FrameList joined;
        const auto chunks = devhost::chunksOf(a, size);
        for (const FrameList &chunk : chunks) {
            EXPECT_EQ(chunk.size(), &chunk == &chunks.back() ? (a.size() - 1) % size + 1 : size);
            joined.insert(joined.end(), chunk.begin(), chunk.end());
        }
        EXPECT_EQ(joined, a); // in order, no frame twice

        const FrameList both = devhost::unite(a, b), rest = devhost::subtract(a, b);
        std::set<int> all(a.begin(), a.end()), expected;
        const std::set<int> ofA = all, ofB(b.begin(), b.end());
        all.insert(b.begin(), b.end());
        EXPECT_EQ(std::set<int>(both.begin(), both.end()), all);
        EXPECT_EQ(both.size(), all.size());
        EXPECT_TRUE(std::equal(a.begin(), a.end(), both.begin()));
        std::set_difference(ofA.begin(), ofA.end(), ofB.begin(), ofB.end(),
                            std::inserter(expected, expected.end()));
        EXPECT_EQ(std::set<int>(rest.begin(), rest.end()), expected);
        EXPECT_TRUE(std::is_sorted(rest.begin(), rest.end(), [&](int x, int y) {
            return std::find(a.begin(), a.end(), x) < std::find(a.begin(), a.end(), y);
        }));
    }
}
