// SPDX-License-Identifier: MIT
#pragma once

// What ran when, on which thread, and how often: the host's own stages, and whatever else a program
// notes. Nothing is noted before startTimeline; until then a stage costs one look at a flag.
//
// A track belongs to one thread at a time, which notes without a lock. The tracks are read when
// nobody notes any more.

#include "host/base/HostApi.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace devhost {

/// A name that is noted often, by its number.
using TimelineName = uint32_t;

struct TimelineLabel {
    std::string category; ///< "host", "python" or "native"
    std::string text;
};

struct TimelineEvent {
    enum Kind : uint32_t { kBegin, kEnd, kMark };
    uint64_t nanoseconds; ///< since the start
    TimelineName name;
    Kind kind;
};

/// Calls by one name on one thread. What a recursion calls counts once.
struct TimelineTotal {
    uint64_t calls = 0, total = 0, own = 0; ///< nanoseconds
    unsigned depth = 0;
};

struct TimelineTrack {
    struct Open {
        TimelineName name;
        bool isKept; ///< among the events
        uint64_t begin, inner;
    };
    std::string thread;
    std::vector<TimelineEvent> events; ///< each end behind its begin
    std::vector<TimelineTotal> totals; ///< by name
    std::vector<Open> open;
};

/// Begins to note totals, and events where they are wanted; the calling thread is the main one.
OPENQUIL_API void startTimeline(bool withEvents);
OPENQUIL_API extern std::atomic<bool> timelineRuns;

/// The number of a name; new ones may come from any thread.
OPENQUIL_API TimelineName timelineName(const std::string &category, const std::string &text);

// On the calling thread. An end without its begin is ignored; what was begun inside ends with it.
OPENQUIL_API void beginOnTimeline(TimelineName name);
OPENQUIL_API void endOnTimeline(TimelineName name);
/// A moment, such as the begin of a frame.
OPENQUIL_API void markOnTimeline(const std::string &text);

/// Ends what is open on all tracks.
OPENQUIL_API void stopTimeline();

// What was noted, once it has stopped.
OPENQUIL_API const std::deque<TimelineTrack> &timelineTracks();
OPENQUIL_API const TimelineLabel &timelineLabel(TimelineName name);
/// Calls that are in the totals only, as there were too many events.
OPENQUIL_API uint64_t timelineLeftOut();

/// A stage of the host's work, as long as it lives.
class Stage {
  public:
    explicit Stage(const char *name) {
        if (timelineRuns.load(std::memory_order_relaxed))
            begin(name);
    }
    ~Stage() {
        if (isOpen_)
            endOnTimeline(name_);
    }
    Stage(const Stage &) = delete;
    Stage &operator=(const Stage &) = delete;

  private:
    OPENQUIL_API void begin(const char *name);

    TimelineName name_ = 0;
    bool isOpen_ = false;
};

/// The calling thread is one of a crew that comes and goes; it goes on with a track of its place
/// that no other has.
class OPENQUIL_API CrewMember {
  public:
    explicit CrewMember(size_t place);
    ~CrewMember();
    CrewMember(const CrewMember &) = delete;
    CrewMember &operator=(const CrewMember &) = delete;

  private:
    TimelineTrack *earlier_ = nullptr, *taken_ = nullptr;
    size_t place_;
};

} // namespace devhost
