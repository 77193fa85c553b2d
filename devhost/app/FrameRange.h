// SPDX-License-Identifier: MIT
#pragma once

// Frame ranges as people write them: "1-10x2,20".

#include <string>
#include <vector>

namespace quilhost {

/// The frames of a list of numbers and ranges, each range with an optional step: "1-10x2,20" is 1,
/// 3, 5, 7, 9, 20, and "10-1x3" is 10, 7, 4, 1. Blanks may stand between numbers and marks, and in
/// place of a comma. A frame that is named again counts once. Numbers may be negative. Throws
/// std::invalid_argument with a text for the user when the range is not well formed.
std::vector<int> parseFrames(const std::string &text);

} // namespace quilhost
