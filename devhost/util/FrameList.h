// SPDX-License-Identifier: MIT
#pragma once

// Lists of frames: as people write them ("1-10x2,20"), and what is done with them.

#include "host/base/HostApi.h"

#include <cstddef>
#include <string>
#include <vector>

namespace devhost {

/// Different frames, in the order in which they are rendered.
using FrameList = std::vector<int>;

/// The frames of a list of numbers and ranges, each range with an optional step: "1-10x2,20" is 1,
/// 3, 5, 7, 9, 20, and "10-1x3" is 10, 7, 4, 1. Blanks may stand between numbers and marks, and in
/// place of a comma. A frame that is named again counts once. Numbers may be negative. Throws
/// std::invalid_argument with a text for the user when the range is not well formed.
OPENQUIL_API FrameList parseFrames(const std::string &text);

/// The shortest text that parseFrames reads as this list, in its order; empty for no frames. Of
/// texts of the same length, one with the fewest parts. Others write another mark before a step.
OPENQUIL_API std::string printFrames(const FrameList &frames, char stepMark = 'x');

/// The parts that tasks render, in order: of `size` frames each, at least one, and the last of what
/// is left.
OPENQUIL_API std::vector<FrameList> chunksOf(const FrameList &frames, size_t size);

/// The frames, and behind them those of `more` that they lack.
OPENQUIL_API FrameList unite(const FrameList &frames, const FrameList &more);

/// The first list without what is in the second.
OPENQUIL_API FrameList subtract(const FrameList &first, const FrameList &second);

} // namespace devhost
