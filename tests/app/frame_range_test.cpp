// SPDX-License-Identifier: MIT
#include "devhost/app/FrameRange.h"

#include <gtest/gtest.h>

#include <stdexcept>

using quilhost::parseFrames;

TEST(FrameRange, ReadsListsAndRangesWithSteps) {
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

TEST(FrameRange, RefusesWhatIsNoRange) {
    for (const char *text :
         {"", ",", "1,", ",1", "a", "1-", "-", "1-2-3", "1x2", "1-5x", "1-5x0", "1-5x-1", "1 2-",
          "1 , , 2", "1.5", "99999999999", "1-99999999999", "0-2000000"})
        EXPECT_THROW(parseFrames(text), std::invalid_argument) << text;
}
