// SPDX-License-Identifier: MIT
#include "devhost/app/Errors.h"
#include "devhost/farm/Commands.h"
#include "devhost/farm/Engines.h"
#include "devhost/farm/PictureCheck.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace fs = std::filesystem;

namespace quilfarm {
namespace {

using quilhost::Failure;
using quilhost::kRenderError;
using quilhost::kUsageError;

/// Tasks keep whole pictures, as they may be started more than once. Those of an earlier job are
/// therefore not left there in silence.
void settleEarlierPictures(const Job &job, const EngineOptions &options) {
    if (options.skipExisting)
        return;
    const auto files = presentFiles(job.pictures);
    if (!files.empty() && !options.overwrite)
        throw Failure(kUsageError, std::to_string(files.size()) +
                                       " of the pictures are there, such as '" + files.front() +
                                       "': --skip-existing keeps those that are whole, "
                                       "--overwrite removes them first");
    for (const std::string &file : files) {
        std::error_code error;
        fs::remove(file, error);
        if (error)
            throw Failure(kRenderError, "cannot remove '" + file + "': " + error.message());
    }
}

void print(const std::string &line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

int submitTo(const Job &job, const EngineOptions &options) {
    const auto folder = JobFolder::make(options.farm, options.engine, job.arguments);
    if (options.engine == "local") {
        print(folder.name());
        return runLocally(job, options.atOnce, folder);
    }
    try {
        const std::string number = submitToSlurm(job, options, folder);
        folder.link(number);
        print(number);
    } catch (const Failure &) {
        folder.remove();
        throw;
    }
    return quilhost::kOk;
}

} // namespace

int submit(const Arguments &arguments) {
    CLI::App app("Renders frames in tasks, and prints the job's number. quilfarm submit [options] "
                 "[SCENE|SCRIPT.py] [options of quilhost] [-- script arguments]",
                 "quilfarm submit");
    EngineOptions options;
    addEngineOptions(app, options);
    auto job = readJob(app, arguments);
    if (!job)
        return quilhost::kOk;
    checkJob(*job);
    if (options.dryRun) {
        auto &words = job->arguments; // the tasks are to run
        const auto isThis = [](const std::string &word) { return word.starts_with("--dry-run"); };
        const auto dashes = std::find(words.begin(), words.end(), "--");
        words.erase(std::remove_if(words.begin(), dashes, isThis), dashes);
        const std::string logs = fs::absolute(options.farm) / "dry-run";
        const bool isLocal = options.engine == "local";
        const auto script = isLocal ? localScript(*job, logs) : slurmScript(*job, logs);
        std::fputs(script.c_str(), stdout);
        return quilhost::kOk;
    }
    if (options.engine == "slurm")
        requireSlurm(*job);
    settleEarlierPictures(*job, options);
    return submitTo(*job, options);
}

} // namespace quilfarm
