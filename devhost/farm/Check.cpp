// SPDX-License-Identifier: MIT
// Which pictures are there: of a job, or by their name.
#include "devhost/app/Errors.h"
#include "devhost/farm/Commands.h"
#include "devhost/farm/Engines.h"
#include "devhost/farm/PictureCheck.h"
#include "devhost/farm/TaskLog.h"
#include "devhost/util/Terminal.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <set>

namespace quilfarm {
namespace {

/// Prints what a check found, or only what is to be rendered again; returns the exit code.
int tell(const PictureCheck &check, const Pictures &pictures, bool list) {
    for (const auto &text :
         {list ? devhost::printFrames(check.unfinished(pictures)) : check.summary(),
          list ? "" : check.firstDamage})
        if (!text.empty())
            std::printf("%s\n", devhost::harmless(text).c_str());
    return check.isWhole() ? quilhost::kOk : quilhost::kRenderError;
}

void addListOption(CLI::App &app, bool &list) {
    app.add_flag("--list", list,
                 "Print the frames that are not whole, as --frames takes them, only");
}

/// The tasks that have a frame to render still, in order.
std::set<size_t> unfinishedTasks(const Job &job, const PictureCheck &check) {
    const auto frames = check.unfinished(job.pictures);
    const std::set<int> unfinished(frames.begin(), frames.end());
    const unsigned tiles = job.pictures.tileCount();
    std::set<size_t> tasks;
    for (size_t i = 0; i < job.pictures.frames.size(); ++i)
        for (unsigned tile = 0; tile < tiles && unfinished.count(job.pictures.frames[i]); ++tile)
            tasks.insert(i / job.chunk * tiles + tile);
    return tasks;
}

/// Tells which of the tasks failed, and shows the beginnings of the first ones' logs.
void tellFailures(const Job &job, const JobFolder &folder, const std::set<size_t> &tasks) {
    constexpr size_t kMostShown = 3;
    size_t failed = 0;
    for (const size_t task : tasks) {
        const auto log = readLog(folder.log(task));
        if (!log || !log->code || *log->code == quilhost::kOk || ++failed > kMostShown)
            continue;
        std::printf("task %zu (frames %s) ended with exit code %d; %s begins:\n", task,
                    devhost::printFrames(job.task(task).frames).c_str(), *log->code,
                    devhost::harmless(folder.log(task)).c_str());
        for (const std::string &line : log->firstLines)
            std::printf("    %s\n", devhost::harmless(line).c_str());
    }
    if (failed > kMostShown)
        std::printf("%zu more tasks failed\n", failed - kMostShown);
}

} // namespace

int check(const Arguments &arguments) {
    CLI::App app("Tells which pictures are there and whole; exit code 3 unless all are",
                 "quilfarm check");
    Pictures pictures;
    std::vector<unsigned> resolution;
    bool list = false;
    addPictureOptions(app, pictures);
    app.add_option("--resolution", resolution, "The width and height that they are to have")
        ->expected(2)
        ->allow_extra_args(false);
    addListOption(app, list);
    if (!parse(app, arguments))
        return quilhost::kOk;
    checkPictures(pictures);
    return tell(checkFiles(pictures, resolution), pictures, list);
}

int status(const Arguments &arguments) {
    CLI::App app("Tells how far a job is; exit code 3 unless all its pictures are there and whole",
                 "quilfarm status");
    std::string number, farm = EngineOptions().farm;
    bool list = false;
    app.add_option("job", number, "What submit printed")->required();
    addFarmOption(app, farm);
    addListOption(app, list);
    if (!parse(app, arguments))
        return quilhost::kOk;

    const auto folder = JobFolder::find(farm, number);
    std::filesystem::current_path(folder.workingFolder());
    CLI::App submitted;
    EngineOptions ignored;
    addEngineOptions(submitted, ignored);
    const auto job = readJob(submitted, folder.arguments());
    const PictureCheck found = checkFiles(job->pictures);
    const int code = tell(found, job->pictures, list);
    if (list)
        return code;
    if (const std::string states = slurmStates(number); !states.empty())
        std::printf("Slurm's tasks: %s\n", states.c_str());
    tellFailures(*job, folder, unfinishedTasks(*job, found));
    return code;
}

} // namespace quilfarm
