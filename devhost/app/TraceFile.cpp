// SPDX-License-Identifier: MIT
#include "devhost/app/TraceFile.h"

#include "devhost/util/AtomicFile.h"
#include "devhost/util/Terminal.h"
#include "devhost/util/Timeline.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <vector>

namespace quilhost {
namespace {

using devhost::TimelineEvent;

/// A text as JSON, between its quotation marks.
std::string quoted(const std::string &text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

/// The part of an event that tells its name, made once for each.
class NameFields {
  public:
    const std::string &of(devhost::TimelineName name) {
        if (fields_.size() <= name)
            fields_.resize(name + 1);
        if (fields_[name].empty()) {
            const auto &label = devhost::timelineLabel(name);
            fields_[name] =
                ",\"cat\":" + quoted(label.category) + ",\"name\":" + quoted(label.text);
        }
        return fields_[name];
    }

  private:
    std::vector<std::string> fields_;
};

void writeThread(std::FILE *stream, const std::string &name, size_t thread) {
    std::fprintf(
        stream,
        "%s{\"ph\":\"M\",\"pid\":1,\"tid\":%zu,\"name\":\"thread_name\",\"args\":{\"name\":%s}}",
        thread == 1 ? "" : ",\n", thread, quoted(name).c_str());
}

void writeEvent(std::FILE *stream, const TimelineEvent &event, size_t thread, NameFields &names) {
    constexpr const char *kPhases[] = {"B", "E", "i"};
    std::fprintf(
        stream, ",\n{\"ph\":\"%s\",\"pid\":1,\"tid\":%zu,\"ts\":%" PRIu64 ".%03" PRIu64 "%s%s}",
        kPhases[event.kind], thread, event.nanoseconds / 1000, event.nanoseconds % 1000,
        names.of(event.name).c_str(), event.kind == TimelineEvent::kMark ? ",\"s\":\"g\"" : "");
}

/// What all threads spent under one name.
struct Row {
    devhost::TimelineName name = 0;
    uint64_t calls = 0, total = 0, own = 0;
};

std::vector<Row> rows() {
    std::vector<Row> result;
    for (const auto &track : devhost::timelineTracks())
        for (size_t name = 0; name < track.totals.size(); ++name) {
            if (result.size() <= name)
                result.resize(name + 1);
            const auto &part = track.totals[name];
            Row &row = result[name];
            row = {static_cast<devhost::TimelineName>(name), row.calls + part.calls,
                   row.total + part.total, row.own + part.own};
        }
    std::erase_if(result, [](const Row &row) { return row.calls == 0; });
    std::stable_sort(result.begin(), result.end(),
                     [](const Row &a, const Row &b) { return a.own > b.own; });
    return result;
}

} // namespace

ZStatus writeTrace(const std::string &file) {
    devhost::AtomicFile target(file);
    std::FILE *const stream = target.stream();
    if (!stream)
        return target.status();
    NameFields names;
    std::fputs("{\"displayTimeUnit\":\"ms\",\"traceEvents\":[\n", stream);
    size_t thread = 0;
    for (const auto &track : devhost::timelineTracks())
        writeThread(stream, track.thread, ++thread);
    thread = 0;
    for (const auto &track : devhost::timelineTracks()) {
        ++thread;
        for (const TimelineEvent &event : track.events)
            writeEvent(stream, event, thread, names);
    }
    std::fputs("\n]}\n", stream);
    return target.commit();
}

std::string statsTable() {
    constexpr size_t kMostRows = 50;
    std::string table = "     calls   total s     own s  function\n";
    auto shown = rows();
    const size_t more = shown.size() - std::min(shown.size(), kMostRows);
    shown.resize(shown.size() - more);
    for (const Row &row : shown) {
        char numbers[64];
        std::snprintf(numbers, sizeof numbers, "%10" PRIu64 " %9.3f %9.3f  ", row.calls,
                      double(row.total) * 1e-9, double(row.own) * 1e-9);
        const auto &label = devhost::timelineLabel(row.name);
        table += numbers + label.category + " " + devhost::harmless(label.text) + "\n";
    }
    return more ? table + "and " + std::to_string(more) + " more\n" : table;
}

} // namespace quilhost
