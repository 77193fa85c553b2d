// SPDX-License-Identifier: MIT
#pragma once

// Where a submitted job is remembered: its command line, and its tasks' logs.

#include <string>
#include <vector>

namespace quilfarm {

class JobFolder {
  public:
    /// Makes a new one, "ENGINE-1" or a later number, in the folder of all jobs, which is made too.
    /// Throws Failure.
    static JobFolder make(const std::string &jobs, const std::string &engine,
                          const std::vector<std::string> &arguments);
    /// The folder of a job by its name or the engine's number. Throws Failure with kUsageError
    /// where there is none.
    static JobFolder find(const std::string &jobs, const std::string &job);

    const std::string &path() const { return path_; }
    std::string name() const;
    std::string log(size_t task) const;
    const std::string &workingFolder() const { return workingFolder_; }
    const std::vector<std::string> &arguments() const { return arguments_; }

    /// Lets find() know the job by the engine's number too.
    void link(const std::string &number) const;
    void remove() const;

  private:
    explicit JobFolder(std::string path) : path_(std::move(path)) {}

    std::string path_; // absolute
    std::string workingFolder_;
    std::vector<std::string> arguments_;
};

/// The log of a task in a folder.
std::string logFile(const std::string &folder, size_t task);

} // namespace quilfarm
