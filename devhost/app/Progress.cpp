#include "devhost/app/Progress.h"

#include <nlohmann/json.hpp>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace quilhost {
namespace {

constexpr int kBarWidth = 30;
/// A line is worth writing when the render is this many percent further.
constexpr int kPlainStep = 25;

void writeJson(const nlohmann::json &object) {
    // Names of files need not be UTF-8.
    const auto text = object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    std::fprintf(stderr, "%s\n", text.c_str());
}

} // namespace

void Progress::beginFrame(int frame) {
    frame_ = frame;
    lastMessage_.clear();
    lastPercent_ = -1;
}

void Progress::update(const std::string &message, int percent) {
    percent = std::clamp(percent, 0, 100);
    if (message == lastMessage_ && percent == lastPercent_)
        return;
    const bool isStep = message != lastMessage_ || percent < lastPercent_ ||
                        percent / kPlainStep != lastPercent_ / kPlainStep;
    lastMessage_ = message;
    lastPercent_ = percent;
    switch (style_) {
    case kBar: {
        const std::string filled(percent * kBarWidth / 100, '#');
        std::fprintf(stderr, "\r\033[K[%-*s] %3d%%  frame %d (%zu of %zu)  %s", kBarWidth,
                     filled.c_str(), percent, frame_, done_ + 1, frames_, message.c_str());
        std::fflush(stderr);
        barShown_ = true;
        break;
    }
    case kPlain:
        if (isStep)
            std::fprintf(stderr, "frame %d: %s %d%%\n", frame_, message.c_str(), percent);
        break;
    case kJson:
        writeJson({{"event", "progress"},
                   {"frame", frame_},
                   {"done", done_},
                   {"frames", frames_},
                   {"percent", percent},
                   {"message", message}});
        break;
    case kSilent:
        break;
    }
}

void Progress::endFrame(const std::string &output, Outcome outcome) {
    ++done_;
    clearBar();
    if (style_ == kJson)
        writeJson({{"event", "frame"},
                   {"frame", frame_},
                   {"done", done_},
                   {"frames", frames_},
                   {"output", output},
                   {"skipped", outcome == kSkipped}});
    else if (style_ != kSilent)
        std::fprintf(stderr, "frame %d (%zu of %zu)%s%s%s\n", frame_, done_, frames_,
                     output.empty() ? "" : ": ", output.c_str(),
                     outcome == kSkipped ? " exists, skipped" : "");
}

void Progress::clearBar() {
    if (barShown_)
        std::fprintf(stderr, "\r\033[K");
    barShown_ = false;
}

Progress::Style progressStyle(const std::string &name, bool quiet) {
    if (quiet)
        return Progress::kSilent;
    if (name == "json")
        return Progress::kJson;
    return name == "auto" && isatty(STDERR_FILENO) ? Progress::kBar : Progress::kPlain;
}

} // namespace quilhost
