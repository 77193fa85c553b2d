// SPDX-License-Identifier: MIT
// A name for a file that is not finished yet.
#include "devhost/util/TemporaryName.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace devhost {
namespace {

/// Whoever takes a text out owns it, be it the signal handler. Names beyond the room are left when
/// a signal ends the process.
std::atomic<char *> listed[64];

/// Short, so that a target of the greatest length has one too. Neither a process's id nor its time
/// would do: processes of several machines and containers share folders.
std::string randomName() {
    unsigned long long number;
    if (getentropy(&number, sizeof number) != 0)
        number = std::chrono::steady_clock::now().time_since_epoch().count() ^
                 static_cast<unsigned long long>(getpid()) << 40;
    char name[32];
    std::snprintf(name, sizeof name, ".quil-%016llx.tmp", number);
    return name;
}

} // namespace

int TemporaryName::make(const std::string &target,
                        const std::function<int(const char *name)> &create) {
    constexpr int kMostTries = 100;
    for (int tries = 1;; ++tries) {
        name_ = std::filesystem::path(target).replace_filename(randomName());
        enlist(); // first: a signal may come as soon as there is a file
        const int result = create(name_.c_str());
        if (result >= 0)
            return result;
        const int error = errno;
        unlist();
        name_.clear();
        errno = error;
        if (error != EEXIST || tries == kMostTries)
            return result;
    }
}

int TemporaryName::renameTo(const std::string &target) {
    const int result = std::rename(name_.c_str(), target.c_str());
    if (result >= 0) {
        unlist();
        name_.clear();
    }
    return result;
}

void TemporaryName::remove() {
    if (!exists())
        return;
    unlink(name_.c_str());
    unlist();
    name_.clear();
}

void TemporaryName::enlist() {
    char *const text = strdup(name_.c_str());
    for (auto &entry : listed) {
        char *none = nullptr;
        if (text && entry.compare_exchange_strong(none, text)) {
            entry_ = &entry;
            return;
        }
    }
    std::free(text);
}

void TemporaryName::unlist() {
    if (entry_)
        std::free(entry_->exchange(nullptr));
    entry_ = nullptr;
}

void removeTemporaryFiles() noexcept {
    for (auto &entry : listed)
        if (const char *name = entry.exchange(nullptr))
            unlink(name);
}

} // namespace devhost
