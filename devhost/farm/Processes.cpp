// SPDX-License-Identifier: MIT
#include "devhost/farm/Processes.h"

#include "devhost/app/Errors.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace quilfarm {
namespace {

using quilhost::Failure;
using quilhost::kRenderError;

std::vector<char *> pointersTo(Words &words) {
    std::vector<char *> pointers;
    for (std::string &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// A file in memory that stands for a stream of a program.
class MemoryFile {
  public:
    explicit MemoryFile(const std::string &contents = "")
        : descriptor_(memfd_create("stream", MFD_CLOEXEC)) {
        if (descriptor_ < 0 ||
            write(descriptor_, contents.data(), contents.size()) != ssize_t(contents.size()))
            throw Failure(kRenderError, std::string("no memory for a stream: ") + strerror(errno));
        lseek(descriptor_, 0, SEEK_SET);
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile &) = delete;

    int descriptor() const { return descriptor_; }
    std::string contents() const {
        std::string text(static_cast<size_t>(lseek(descriptor_, 0, SEEK_END)), '\0');
        const ssize_t got = pread(descriptor_, text.data(), text.size(), 0);
        text.resize(got < 0 ? 0 : static_cast<size_t>(got));
        return text;
    }

  private:
    int descriptor_;
};

/// Starts a program with the files as its first streams, as many as there are.
pid_t spawn(Words words, const std::vector<int> &streams) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (size_t i = 0; i < streams.size(); ++i)
        posix_spawn_file_actions_adddup2(&actions, streams[i], static_cast<int>(i));
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int error = posix_spawnp(&child, words.front().c_str(), &actions, &attributes,
                                   pointersTo(words).data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error)
        throw Failure(kRenderError,
                      "cannot start '" + words.front() + "': " + std::strerror(error));
    return child;
}

} // namespace

std::string shellWord(const std::string &word) {
    std::string result = "'";
    for (const char c : word)
        result += c == '\'' ? "'\\''" : std::string(1, c);
    return result + "'";
}

std::string shellLine(const Words &words) {
    std::string line;
    for (const std::string &word : words)
        line += (line.empty() ? "" : " ") + shellWord(word);
    return line;
}

std::string ownProgram() {
    return fs::read_symlink("/proc/self/exe");
}

std::string programBeside(const std::string &name) {
    return fs::path(ownProgram()).replace_filename(name);
}

bool isInstalled(const std::string &program) {
    const char *const path = std::getenv("PATH");
    std::istringstream folders(path ? path : "/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access(folder.append("/").append(program).c_str(), X_OK) == 0)
            return true;
    return false;
}

pid_t start(const Words &words) {
    return spawn(words, {});
}

void become(const Words &words) {
    Words copy = words;
    execv(copy.front().c_str(), pointersTo(copy).data());
}

Ended run(const Words &words, const std::string &input) {
    const MemoryFile in(input), out, err;
    const pid_t child = spawn(words, {in.descriptor(), out.descriptor(), err.descriptor()});
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    return {exitCode(status), out.contents(), err.contents()};
}

int exitCode(int waitStatus) {
    return WIFSIGNALED(waitStatus) ? 128 + WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

} // namespace quilfarm
