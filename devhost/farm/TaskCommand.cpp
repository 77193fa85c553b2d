// SPDX-License-Identifier: MIT
// One task: what the engines start.
#include "devhost/app/Errors.h"
#include "devhost/app/Progress.h"
#include "devhost/farm/Commands.h"
#include "devhost/farm/Engines.h"
#include "devhost/farm/Processes.h"
#include "devhost/farm/TaskLog.h"

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quilfarm {
namespace {

using quilhost::Failure;
using quilhost::kRenderError;

/// All that is told from here on goes behind what earlier starts of the task told.
void openLog(const std::string &file, const std::string &firstLine) {
    const int log = open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (log < 0 || write(log, firstLine.data(), firstLine.size()) != ssize_t(firstLine.size()))
        throw Failure(kRenderError, "cannot write the log '" + file + "': " + std::strerror(errno));
    dup2(log, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
}

/// Becomes quilhost. What the job's submission has checked, and is wrong now, is no mistake of the
/// command line.
[[noreturn]] void becomeHost(const Job &job, const Task &task) try {
    checkJob(job);
    Words words = job.hostArguments(task);
    words.insert(words.begin(), programBeside("quilhost"));
    become(words);
    throw Failure(kRenderError, "cannot start '" + words.front() + "': " + std::strerror(errno));
} catch (const Failure &failure) {
    quilhost::tellEnd("json", kRenderError, failure.what()); // as quilhost itself would
    throw Failure(kRenderError, failure.what());
}

} // namespace

int task(const Arguments &arguments) {
    CLI::App app("Renders one task of a job; engines call it", "quilfarm task");
    EngineOptions options;
    addEngineOptions(app, options);
    size_t index = 0;
    std::string logs;
    app.add_option("--index", index, "The task, counted from 0")->required();
    app.add_option("--logs", logs, "The folder of the job's logs")->required();
    const auto job = readJob(app, arguments);
    if (!job)
        return quilhost::kOk;
    if (index >= job->taskCount())
        throw Failure(quilhost::kUsageError,
                      "the job has only " + std::to_string(job->taskCount()) + " tasks");
    const Task task = job->task(index);
    openLog(logFile(logs, index), beginEvent(task, index));
    becomeHost(*job, task);
}

} // namespace quilfarm
