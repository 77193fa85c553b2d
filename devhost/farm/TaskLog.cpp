// SPDX-License-Identifier: MIT
#include "devhost/farm/TaskLog.h"

#include <nlohmann/json.hpp>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace quilfarm {

std::string beginEvent(const Task &task, size_t index) {
    char node[256] = "";
    gethostname(node, sizeof node - 1);
    const char *const restarts = std::getenv("SLURM_RESTART_COUNT");
    const nlohmann::json event = {
        {"event", "task"},   {"task", index},
        {"tile", task.tile}, {"frames", devhost::printFrames(task.frames)},
        {"node", node},      {"restarts", restarts ? std::atoi(restarts) : 0}};
    return event.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

namespace {

/// The kind of event that a line is; empty for another line, as scripts print what they like.
std::string kindOf(const nlohmann::json &event) {
    const auto kind = event.is_object() ? event.find("event") : event.end();
    return kind != event.end() && kind->is_string() ? kind->get<std::string>() : "";
}

/// The exit code of an end; none where a script printed something like one.
std::optional<int> codeOf(const nlohmann::json &event) {
    const auto code = event.find("code");
    return code != event.end() && code->is_number_integer() ? std::optional(code->get<int>())
                                                            : std::nullopt;
}

} // namespace

std::optional<TaskLog> readLog(const std::string &file) {
    constexpr std::streamoff kMostRead = 1 << 20;
    constexpr size_t kLines = 5;
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    if (!stream)
        return std::nullopt;
    stream.seekg(std::max<std::streamoff>(stream.tellg() - std::streampos(kMostRead), 0));
    TaskLog log;
    for (std::string line; std::getline(stream, line);) {
        const auto event =
            line.starts_with('{') ? nlohmann::json::parse(line, nullptr, false) : nlohmann::json();
        const std::string kind = kindOf(event);
        if (kind == "task")
            log = {};
        else if (kind == "end")
            log.code = codeOf(event);
        else if (kind.empty() && log.firstLines.size() < kLines)
            log.firstLines.push_back(line);
    }
    return log;
}

} // namespace quilfarm
