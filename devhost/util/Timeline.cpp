// SPDX-License-Identifier: MIT
#include "devhost/util/Timeline.h"

#include <chrono>
#include <map>
#include <mutex>
#include <utility>

namespace devhost {

std::atomic<bool> timelineRuns = false;

namespace {

/// 512 MiB of them.
constexpr uint64_t kMostEvents = uint64_t(1) << 25;

using Clock = std::chrono::steady_clock;

struct Timeline {
    std::mutex mutex; // of the lists; a track's contents are its thread's
    std::map<std::pair<std::string, std::string>, TimelineName> numbers;
    std::deque<TimelineLabel> labels;
    std::deque<TimelineTrack> tracks;
    /// Of the places in crews, those that nobody has now: two crews may work at once.
    std::map<size_t, std::vector<TimelineTrack *>> free;
    Clock::time_point start;
    bool withEvents = false;
    std::atomic<uint64_t> events = 0, leftOut = 0;
};

Timeline &timeline() {
    // Never destroyed: threads note until the process has ended.
    static auto *const instance = new Timeline;
    return *instance;
}

thread_local TimelineTrack *ownTrack = nullptr;

TimelineTrack &addTrack(const std::string &thread) {
    return timeline().tracks.emplace_back(TimelineTrack{thread, {}, {}, {}});
}

TimelineTrack &track() {
    if (!ownTrack) {
        const std::lock_guard lock(timeline().mutex);
        ownTrack = &addTrack("thread " + std::to_string(timeline().tracks.size()));
    }
    return *ownTrack;
}

uint64_t now() {
    return static_cast<uint64_t>((Clock::now() - timeline().start).count());
}

void keep(TimelineTrack &track, const TimelineEvent &event) {
    track.events.push_back(event);
}

/// True when there is room for a begin and its end.
bool takeRoom() {
    return timeline().events.fetch_add(2, std::memory_order_relaxed) + 2 <= kMostEvents;
}

void close(TimelineTrack &track, uint64_t end) {
    const TimelineTrack::Open last = track.open.back();
    track.open.pop_back();
    const uint64_t duration = end - last.begin;
    TimelineTotal &total = track.totals[last.name];
    total.own += duration - last.inner;
    if (--total.depth == 0)
        total.total += duration;
    if (!track.open.empty())
        track.open.back().inner += duration;
    if (last.isKept)
        keep(track, {end, last.name, TimelineEvent::kEnd});
}

} // namespace

void startTimeline(bool withEvents) {
    timeline().start = Clock::now();
    timeline().withEvents = withEvents;
    ownTrack = &addTrack("main thread");
    timelineRuns = true;
}

TimelineName timelineName(const std::string &category, const std::string &text) {
    const std::lock_guard lock(timeline().mutex);
    const auto [place, isNew] = timeline().numbers.try_emplace(
        {category, text}, static_cast<TimelineName>(timeline().labels.size()));
    if (isNew)
        timeline().labels.push_back({category, text});
    return place->second;
}

void beginOnTimeline(TimelineName name) {
    TimelineTrack &own = track();
    if (own.totals.size() <= name)
        own.totals.resize(name + 1);
    ++own.totals[name].calls;
    ++own.totals[name].depth;
    const bool isKept = timeline().withEvents && takeRoom();
    if (timeline().withEvents && !isKept)
        ++timeline().leftOut;
    const uint64_t begin = now();
    own.open.push_back({name, isKept, begin, 0});
    if (isKept)
        keep(own, {begin, name, TimelineEvent::kBegin});
}

void endOnTimeline(TimelineName name) {
    TimelineTrack &own = track();
    size_t place = own.open.size();
    while (place > 0 && own.open[place - 1].name != name)
        --place;
    if (place == 0)
        return;
    const uint64_t end = now();
    while (own.open.size() >= place)
        close(own, end);
}

void markOnTimeline(const std::string &text) {
    if (timelineRuns && timeline().withEvents)
        keep(track(), {now(), timelineName("host", text), TimelineEvent::kMark});
}

void stopTimeline() {
    timelineRuns = false;
    const uint64_t end = now();
    for (TimelineTrack &each : timeline().tracks)
        while (!each.open.empty())
            close(each, end);
}

const std::deque<TimelineTrack> &timelineTracks() {
    return timeline().tracks;
}

const TimelineLabel &timelineLabel(TimelineName name) {
    return timeline().labels[name];
}

uint64_t timelineLeftOut() {
    return timeline().leftOut;
}

void Stage::begin(const char *name) {
    name_ = timelineName("host", name);
    isOpen_ = true;
    beginOnTimeline(name_);
}

CrewMember::CrewMember(size_t place) : earlier_(ownTrack), place_(place) {
    if (!timelineRuns)
        return;
    const std::lock_guard lock(timeline().mutex);
    auto &free = timeline().free[place];
    if (free.empty())
        free.push_back(&addTrack("render thread " + std::to_string(place)));
    taken_ = ownTrack = free.back();
    free.pop_back();
}

CrewMember::~CrewMember() {
    ownTrack = earlier_;
    if (!taken_)
        return;
    const std::lock_guard lock(timeline().mutex);
    timeline().free[place_].push_back(taken_);
}

} // namespace devhost
