// SPDX-License-Identifier: MIT
#pragma once

// Tells the user how far the render is, on standard error.

#include "devhost/util/Notices.h"

#include <string>

namespace quilhost {

class Progress {
  public:
    /// A bar that is drawn over itself, a line for each step, one JSON object per line, the
    /// messages of Open Job Description, or nothing.
    enum Style { kBar, kPlain, kJson, kOpenJd, kSilent };

    /// Notices that are errors are told even where nothing else is.
    Progress(Style style, size_t frames, bool noticesAreErrors = false)
        : style_(style), frames_(frames), noticesAreErrors_(noticesAreErrors) {}
    ~Progress() { clearBar(); }

    void beginFrame(int frame);
    /// How far the frame is, 0 to 100.
    void update(const std::string &message, int percent);
    enum Outcome { kRendered, kSkipped };
    /// The frame is done; `output` is its file, or empty.
    void endFrame(const std::string &output, Outcome outcome = kRendered);
    /// Something was asked for and is not honoured.
    void notice(const devhost::Notice &notice);
    /// How many notices there were in all, if any.
    void countNotices(size_t count);
    /// Takes the bar away, so that other lines can be written.
    void clearBar();

  private:
    Style style_;
    size_t frames_;
    bool noticesAreErrors_;
    void tellJobProgress(int percent) const;

    size_t done_ = 0;
    int frame_ = 0;
    bool barShown_ = false;
    std::string lastMessage_;
    int lastPercent_ = -1;
};

/// The style for "auto", "plain", "json" or "openjd".
Progress::Style progressStyle(const std::string &name, bool quiet);

/// Tells whoever reads the progress of that name how the program ends, and why, if that is known.
void tellEnd(const std::string &progress, int exitCode, const std::string &why);

} // namespace quilhost
