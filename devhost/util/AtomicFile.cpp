// A file that appears under its name only when it has been written whole.
#include "devhost/util/AtomicFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

namespace fs = std::filesystem;

namespace devhost {
namespace {

/// A short name, so that a target name of the greatest length has a temporary too.
std::string temporaryName() {
    static std::atomic<unsigned> count{0};
    return ".quil-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".tmp";
}

} // namespace

AtomicFile::AtomicFile(const std::string &path) : target_(path) {
    std::error_code ignored;
    // A link stays a link: what it leads to is replaced.
    if (fs::is_symlink(path, ignored))
        if (const fs::path resolved = fs::weakly_canonical(path, ignored); !resolved.empty())
            target_ = resolved;
    if (fs::exists(target_, ignored) && !fs::is_regular_file(target_, ignored)) {
        status_ =
            ZStatus(ZStatus::kFailure,
                    ("cannot write '" + target_ + "': it exists and is no regular file").c_str());
        return;
    }
    temporary_ = fs::path(target_).replace_filename(temporaryName());
    const int descriptor = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        fail("create");
        temporary_.clear();
        return;
    }
    stream_ = fdopen(descriptor, "wb");
    if (!stream_) {
        fail("create");
        close(descriptor);
    }
}

AtomicFile::~AtomicFile() {
    discard();
}

ZStatus AtomicFile::commit() {
    if (!stream_)
        return status_;
    const bool failedBefore = std::ferror(stream_);
    if (std::fclose(std::exchange(stream_, nullptr)) != 0 || failedBefore)
        fail("write");
    if (!status_.error() && std::rename(temporary_.c_str(), target_.c_str()) != 0)
        fail("name");
    if (status_.error())
        discard();
    else
        temporary_.clear();
    return status_;
}

void AtomicFile::fail(const char *action) {
    status_ = ZStatus(
        ZStatus::kFailure,
        (std::string("cannot ") + action + " '" + target_ + "': " + std::strerror(errno)).c_str());
}

void AtomicFile::discard() {
    if (stream_)
        std::fclose(std::exchange(stream_, nullptr));
    if (!temporary_.empty())
        unlink(temporary_.c_str());
    temporary_.clear();
}

} // namespace devhost
