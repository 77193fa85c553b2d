// SPDX-License-Identifier: MIT
#pragma once

// A name for a file that is not finished yet.

#include "host/base/HostApi.h"

#include <atomic>
#include <functional>
#include <string>

namespace devhost {

/// The file under the name goes with the object, or with the process where a signal ends it.
class OPENQUIL_API TemporaryName {
  public:
    TemporaryName() = default;
    ~TemporaryName() { remove(); }
    TemporaryName(const TemporaryName &) = delete;

    /// Has `create` make the file: calls it with names beside `target` until one is not taken, and
    /// returns what it returned; negative, with errno, when it failed.
    int make(const std::string &target, const std::function<int(const char *name)> &create);
    bool exists() const { return !name_.empty(); }
    /// Gives the file its true name; negative, with errno, when that fails.
    int renameTo(const std::string &target);
    void remove();

  private:
    void enlist();
    void unlist();

    std::string name_;
    std::atomic<char *> *entry_ = nullptr; // in the list of what a signal removes
};

/// Removes the files of all temporary names of this process. For handlers of signals that end it.
OPENQUIL_API void removeTemporaryFiles() noexcept;

} // namespace devhost
