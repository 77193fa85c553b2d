// SPDX-License-Identifier: MIT
#include "devhost/app/Progress.h"

#include "devhost/util/Terminal.h"

#include <nlohmann/json.hpp>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace quilhost {
namespace {

constexpr int kBarWidth = 30;
/// A line is worth writing when the render is this many percent further, or does something else.
constexpr int kPlainStep = 25;

/// A terminal that can draw over a line, and a user who wants it.
bool obeysEscapeCodes() {
    const char *const plain = std::getenv("NO_COLOR");
    const char *const terminal = std::getenv("TERM");
    return isatty(STDERR_FILENO) && !(plain && *plain) &&
           !(terminal && std::string_view(terminal) == "dumb");
}

/// What stays the same in "tile 3 of 80".
std::string withoutNumbers(std::string message) {
    std::erase_if(message, [](char c) { return c >= '0' && c <= '9'; });
    return message;
}

void writeJson(const nlohmann::json &object) {
    // Names of files need not be UTF-8.
    const auto text = object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    devhost::writeLine(text);
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
    const bool isStep = lastPercent_ < 0 || percent < lastPercent_ ||
                        percent / kPlainStep != lastPercent_ / kPlainStep ||
                        withoutNumbers(message) != withoutNumbers(lastMessage_);
    lastMessage_ = message;
    lastPercent_ = percent;
    switch (style_) {
    case kBar: {
        const std::string filled(percent * kBarWidth / 100, '#');
        std::fprintf(stderr, "\r\033[K[%-*s] %3d%%  frame %d (%zu of %zu)  %s", kBarWidth,
                     filled.c_str(), percent, frame_, done_ + 1, frames_,
                     devhost::harmless(message).c_str());
        std::fflush(stderr);
        barShown_ = true;
        break;
    }
    case kPlain:
        if (isStep)
            devhost::writeLine("frame " + std::to_string(frame_) + ": " + message + " " +
                               std::to_string(percent) + "%");
        break;
    case kJson:
        writeJson({{"event", "progress"},
                   {"frame", frame_},
                   {"done", done_},
                   {"frames", frames_},
                   {"percent", percent},
                   {"message", message}});
        break;
    case kOpenJd:
        tellJobProgress(percent);
        if (isStep)
            devhost::writeLine("openjd_status: frame " + std::to_string(frame_) + " (" +
                               std::to_string(done_ + 1) + " of " + std::to_string(frames_) +
                               "): " + message + " " + std::to_string(percent) + "%");
        break;
    case kSilent:
        break;
    }
}

/// Of all frames, as the frame that is being rendered is that far.
void Progress::tellJobProgress(int percent) const {
    const double whole = (100.0 * double(done_) + percent) / double(frames_);
    char number[16];
    std::snprintf(number, sizeof number, "%.1f", std::min(whole, 100.0));
    devhost::writeLine(std::string("openjd_progress: ") + number);
}

void Progress::endFrame(const std::string &output, Outcome outcome) {
    ++done_;
    clearBar();
    if (style_ == kOpenJd)
        tellJobProgress(0);
    if (style_ == kJson)
        writeJson({{"event", "frame"},
                   {"frame", frame_},
                   {"done", done_},
                   {"frames", frames_},
                   {"output", output},
                   {"skipped", outcome == kSkipped}});
    else if (style_ != kSilent)
        devhost::writeLine("frame " + std::to_string(frame_) + " (" + std::to_string(done_) +
                           " of " + std::to_string(frames_) + ")" +
                           (output.empty() ? "" : ": " + output) +
                           (outcome == kSkipped ? " exists, skipped" : ""));
}

void Progress::notice(const devhost::Notice &notice) {
    clearBar();
    if (style_ == kJson)
        writeJson({{"event", "notice"},
                   {"kind", notice.kind},
                   {"file", notice.file},
                   {"place", notice.place},
                   {"found", notice.found},
                   {"instead", notice.instead}});
    else if (style_ != kSilent || noticesAreErrors_)
        devhost::tell("notice: " + notice.line());
}

void Progress::countNotices(size_t count) {
    if (count == 0)
        return;
    clearBar();
    if (style_ == kJson)
        writeJson({{"event", "notices"}, {"count", count}});
    else if (style_ != kSilent)
        std::fprintf(stderr, "quilhost: %zu %s; see above\n", count,
                     count == 1 ? "notice" : "notices");
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
    if (name == "openjd")
        return Progress::kOpenJd;
    return name == "auto" && obeysEscapeCodes() ? Progress::kBar : Progress::kPlain;
}

void tellEnd(const std::string &progress, int exitCode, const std::string &why) {
    if (progress == "json")
        writeJson({{"event", "end"}, {"code", exitCode}, {"why", why}});
    if (progress == "openjd" && exitCode != 0)
        devhost::writeLine("openjd_fail: " +
                           (why.empty() ? "exit code " + std::to_string(exitCode) : why));
}

} // namespace quilhost
