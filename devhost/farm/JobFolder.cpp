// SPDX-License-Identifier: MIT
#include "devhost/farm/JobFolder.h"

#include "devhost/app/Errors.h"

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace quilfarm {
namespace {

using quilhost::Failure;
using quilhost::kRenderError;
using quilhost::kUsageError;

/// In the job's folder: the working folder and the arguments, a null behind each, as names may have
/// any other byte.
constexpr const char *kSubmission = "submission";

} // namespace

JobFolder JobFolder::make(const std::string &jobs, const std::string &engine,
                          const std::vector<std::string> &arguments) try {
    fs::create_directories(jobs);
    std::string path;
    for (int number = 1; path.empty(); ++number) // another may take a number at the same time
        if (const fs::path next = fs::absolute(jobs) / (engine + "-" + std::to_string(number));
            fs::create_directory(next))
            path = next;
    JobFolder folder(path);
    folder.workingFolder_ = fs::current_path();
    folder.arguments_ = arguments;
    std::ofstream file(fs::path(path) / kSubmission, std::ios::binary);
    file << folder.workingFolder_ << '\0';
    for (const std::string &argument : arguments)
        file << argument << '\0';
    if (!file.flush())
        throw Failure(kRenderError, "cannot write into the job's folder '" + path + "'");
    return folder;
} catch (const fs::filesystem_error &error) {
    throw Failure(kRenderError,
                  "cannot make the job's folder in '" + jobs + "': " + error.code().message());
}

JobFolder JobFolder::find(const std::string &jobs, const std::string &job) {
    JobFolder folder(fs::absolute(jobs) / job);
    std::ifstream file(fs::path(folder.path_) / kSubmission, std::ios::binary);
    if (job.empty() || !file)
        throw Failure(kUsageError, "there is no job '" + job + "' in '" + jobs + "'");
    std::getline(file, folder.workingFolder_, '\0');
    for (std::string argument; std::getline(file, argument, '\0');)
        folder.arguments_.push_back(argument);
    return folder;
}

std::string JobFolder::name() const {
    return fs::path(path_).filename();
}

std::string JobFolder::log(size_t task) const {
    return logFile(path_, task);
}

void JobFolder::link(const std::string &number) const {
    std::error_code ignored; // the folder's own name does as well
    const fs::path link = fs::path(path_).replace_filename(number);
    fs::remove(link, ignored);
    fs::create_directory_symlink(name(), link, ignored);
}

void JobFolder::remove() const {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string logFile(const std::string &folder, size_t task) {
    return fs::path(folder) / (std::to_string(task) + ".log");
}

} // namespace quilfarm
