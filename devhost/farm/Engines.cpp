// SPDX-License-Identifier: MIT
#include "devhost/farm/Engines.h"

#include <CLI/CLI.hpp>

namespace quilfarm {

void addFarmOption(CLI::App &app, std::string &farm) {
    app.add_option("--farm", farm, "The folder of jobs and their logs (default " + farm + ")");
}

void addEngineOptions(CLI::App &app, EngineOptions &options) {
    app.add_option("--engine", options.engine,
                   "slurm: an array job; local: this machine, until all is done (default slurm)")
        ->check(CLI::IsMember({"slurm", "local"}));
    addFarmOption(app, options.farm);
    app.add_option("--jobs", options.atOnce, "Tasks that the engine local runs at once (default 1)")
        ->check(CLI::Range(1u, 1024u));
    app.add_option("--sbatch", options.sbatch,
                   "A further option of sbatch, such as --partition=night")
        ->allow_extra_args(false);
    app.add_flag("--dry-run", options.dryRun, "Print what would be run, and submit nothing");
    auto *const skip = app.add_flag("--skip-existing", options.skipExisting,
                                    "Keep pictures that are there and whole");
    app.add_flag("--overwrite", options.overwrite, "Remove pictures that are there first")
        ->excludes(skip);
}

std::vector<std::string> taskArguments(const Job &job, const std::string &logs) {
    std::vector<std::string> words = {"--logs", logs};
    words.insert(words.end(), job.arguments.begin(), job.arguments.end());
    return words;
}

} // namespace quilfarm
