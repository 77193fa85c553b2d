// SPDX-License-Identifier: MIT
#pragma once

// What the tasks leave in their logs: JSON events, a line each, and whatever else is told.

#include "devhost/farm/Job.h"

#include <optional>
#include <string>
#include <vector>

namespace quilfarm {

/// The line with which a task begins, again where it is started again.
std::string beginEvent(const Task &task, size_t index);

struct TaskLog {
    /// The exit code; none where the task has not come to its end, or was killed.
    std::optional<int> code;
    /// The first lines of the last start that are no events.
    std::vector<std::string> firstLines;
};

/// Reads a log from the last start of its task on; empty without a log.
std::optional<TaskLog> readLog(const std::string &file);

} // namespace quilfarm
