// SPDX-License-Identifier: MIT
#include "devhost/app/Errors.h"
#include "devhost/farm/Engines.h"
#include "devhost/farm/Processes.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

namespace quilfarm {
namespace {

using quilhost::Failure;
using quilhost::kRenderError;
using quilhost::kUsageError;

/// How many tasks an array may have, as the cluster is set up; 0 where it does not say.
size_t largestArray() {
    std::istringstream lines(run({"scontrol", "show", "config"}).output);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("MaxArraySize"))
            return std::strtoul(line.c_str() + line.find('=') + 1, nullptr, 10);
    return 0;
}

/// What Slurm shows of a job's name: letters, digits and little else.
std::string slurmName(const Job &job) {
    const std::string &file = job.scene.empty() ? job.script : job.scene;
    std::string name = std::filesystem::path(file).stem();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return "quil-" + name;
}

} // namespace

void requireSlurm(const Job &job) {
    if (!isInstalled("sbatch"))
        throw Failure(kUsageError,
                      "the engine slurm is not installed: there is no sbatch (on Debian: "
                      "apt-get install slurm-wlm munge)");
    const size_t most = largestArray(), tasks = job.taskCount();
    if (!most || tasks <= most - 1)
        return;
    const size_t chunks = std::max<size_t>((most - 1) / job.pictures.tileCount(), 1);
    throw Failure(kUsageError,
                  std::to_string(tasks) +
                      " tasks are more than this cluster takes in an "
                      "array (MaxArraySize " +
                      std::to_string(most) + "): use --chunk " +
                      std::to_string((job.pictures.frames.size() + chunks - 1) / chunks) +
                      " or more");
}

std::string slurmScript(const Job &job, const std::string &logs) {
    const unsigned threads = job.readHostOptions(job.task(0)).threads;
    const std::string folder = shellWord(std::filesystem::current_path());
    // Each task opens its own log: Slurm would take marks in the names for its own.
    return "#!/bin/sh\n"
           "#SBATCH --job-name=" +
           slurmName(job) +
           "\n"
           "#SBATCH --array=0-" +
           std::to_string(job.taskCount() - 1) +
           "\n"
           "#SBATCH --requeue\n"
           "#SBATCH --output=/dev/null\n" +
           (threads ? "#SBATCH --cpus-per-task=" + std::to_string(threads) + "\n" : "") + "cd -- " +
           folder +
           " || exit 3\n"
           "exec " +
           shellLine({ownProgram(), "task"}) + " --index \"$SLURM_ARRAY_TASK_ID\" " +
           shellLine(taskArguments(job, logs)) + "\n";
}

std::string submitToSlurm(const Job &job, const EngineOptions &options, const JobFolder &folder) {
    Words words = {"sbatch", "--parsable"};
    words.insert(words.end(), options.sbatch.begin(), options.sbatch.end());
    const Ended sbatch = run(words, slurmScript(job, folder.path()));
    if (sbatch.code != 0)
        throw Failure(kRenderError,
                      "sbatch failed: " + sbatch.errors.substr(0, sbatch.errors.find('\n')));
    return sbatch.output.substr(0, sbatch.output.find_first_of(";\n"));
}

std::string slurmStates(const std::string &number) {
    if (number.find_first_not_of("0123456789") != std::string::npos || !isInstalled("squeue"))
        return {};
    std::map<std::string, size_t> counts;
    std::istringstream lines(
        run({"squeue", "--noheader", "--array", "--jobs", number, "--format=%T"}).output);
    for (std::string state; lines >> state;)
        ++counts[state];
    std::string text;
    for (const auto &[state, count] : counts)
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + state;
    return text;
}

} // namespace quilfarm
