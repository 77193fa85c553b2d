// SPDX-License-Identifier: MIT
#pragma once

// Which pictures of a job are there.

#include "devhost/farm/Job.h"

namespace quilfarm {

struct PictureCheck {
    size_t frames = 0;
    /// Frames that lack a file, and those others that have one that is not whole.
    devhost::FrameList missing, damaged;
    /// What is wrong with the first damaged one.
    std::string firstDamage;

    bool isWhole() const { return missing.empty() && damaged.empty(); }
    /// What is to be rendered again, in the order of the frames.
    devhost::FrameList unfinished(const Pictures &pictures) const;
    /// "10 frames: 7 whole, 2 missing (3,8), 1 damaged (5)".
    std::string summary() const;
};

/// Opens every file; with a resolution, pictures of another one are damaged.
PictureCheck checkFiles(const Pictures &pictures, const std::vector<unsigned> &resolution = {});

/// The job's files that are there, whole or not.
std::vector<std::string> presentFiles(const Pictures &pictures);

} // namespace quilfarm
