// SPDX-License-Identifier: MIT
#pragma once

// What runs the tasks of a job: Slurm, or this machine.

#include "devhost/farm/Job.h"
#include "devhost/farm/JobFolder.h"

#include <optional>
#include <string>
#include <vector>

namespace quilfarm {

struct EngineOptions {
    std::string engine = "slurm";
    /// The folder where jobs are remembered.
    std::string farm = "quilfarm.jobs";
    /// Tasks that this machine runs at once.
    unsigned atOnce = 1;
    /// Further options of sbatch.
    std::vector<std::string> sbatch;
    bool dryRun = false;
    /// What becomes of pictures that are there already.
    bool skipExisting = false, overwrite = false;
};

void addFarmOption(CLI::App &app, std::string &farm);
void addEngineOptions(CLI::App &app, EngineOptions &options);

/// What the command `task` is given beside the task's index.
std::vector<std::string> taskArguments(const Job &job, const std::string &logs);

/// Throws Failure with kUsageError where Slurm is not installed, or takes no array of so many
/// tasks.
void requireSlurm(const Job &job);
/// The script of an array job with a task for each index.
std::string slurmScript(const Job &job, const std::string &logs);
/// Submits it and returns Slurm's number. Throws Failure.
std::string submitToSlurm(const Job &job, const EngineOptions &options, const JobFolder &folder);
/// What Slurm says of a job's tasks, such as "98 PENDING, 2 RUNNING"; empty where it knows nothing.
std::string slurmStates(const std::string &number);

/// The commands that this machine would run, a line each.
std::string localScript(const Job &job, const std::string &logs);
/// Runs all tasks, and returns 0 or the exit code of the first that failed.
int runLocally(const Job &job, unsigned atOnce, const JobFolder &folder);

} // namespace quilfarm
