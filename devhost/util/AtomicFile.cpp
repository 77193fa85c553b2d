// SPDX-License-Identifier: MIT
// A file that appears under its name only when it has been written whole.
#include "devhost/util/AtomicFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

namespace fs = std::filesystem;

namespace devhost {
namespace {

constexpr mode_t kMode = 0666; // less what the user's mask takes away

/// Where a chain of links ends, whether or not there is a file; the path itself where it is none.
std::string linkTarget(const std::string &path) {
    constexpr int kMostLinks = 40; // as the system's own limit
    fs::path result = path;
    std::error_code none;
    for (int links = 0; links < kMostLinks && fs::is_symlink(result, none); ++links)
        result = result.parent_path() / fs::read_symlink(result, none);
    return result;
}

/// The way to an open file that has no name.
std::string descriptorPath(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

/// Opens a file without a name in the folder; negative where that, or naming it later, cannot be.
int openNameless(const fs::path &folder) {
    const int descriptor =
        ::open(folder.empty() ? "." : folder.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, kMode);
    if (descriptor >= 0 && access(descriptorPath(descriptor).c_str(), F_OK) == 0)
        return descriptor;
    if (descriptor >= 0)
        close(descriptor);
    return -1;
}

} // namespace

AtomicFile::AtomicFile(const std::string &path, Kind kind) : target_(linkTarget(path)) {
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(target_, ignored)) &&
        !fs::is_regular_file(target_, ignored)) {
        status_ =
            ZStatus(ZStatus::kFailure,
                    ("cannot write '" + target_ + "': it exists and is no regular file").c_str());
        return;
    }
    const int descriptor = open(kind);
    stream_ = descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
    if (stream_)
        return;
    fail("create");
    if (descriptor >= 0)
        ::close(descriptor);
}

int AtomicFile::open(Kind kind) {
    const int nameless = kind == kNamed ? -1 : openNameless(fs::path(target_).parent_path());
    if (nameless >= 0)
        return nameless;
    return temporary_.make(target_, [](const char *name) {
        return ::open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    });
}

AtomicFile::~AtomicFile() {
    close();
}

ZStatus AtomicFile::commit() {
    if (!stream_)
        return status_;
    if (!finish())
        fail("write");
    else if (temporary_.renameTo(target_) < 0)
        fail("name");
    close();
    return status_;
}

/// Brings everything into the file, under a temporary name, and closes it.
bool AtomicFile::finish() {
    bool isDone = !std::ferror(stream_) && std::fflush(stream_) == 0;
    if (isDone && !temporary_.exists()) {
        const std::string path = descriptorPath(fileno(stream_));
        isDone = temporary_.make(target_, [&](const char *name) {
            return linkat(AT_FDCWD, path.c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW);
        }) >= 0;
    }
    return isDone && std::fclose(std::exchange(stream_, nullptr)) == 0;
}

void AtomicFile::fail(const char *action) {
    status_ = ZStatus(
        ZStatus::kFailure,
        (std::string("cannot ") + action + " '" + target_ + "': " + std::strerror(errno)).c_str());
}

void AtomicFile::close() {
    if (stream_)
        std::fclose(std::exchange(stream_, nullptr));
}

} // namespace devhost
