// SPDX-License-Identifier: MIT
#pragma once

// A file that appears under its name only when it has been written whole.

#include "devhost/util/TemporaryName.h"
#include "host/base/HostApi.h"
#include "host/core/ZStatus.h"

#include <cstdio>
#include <string>

namespace devhost {

/// Writes into the target's folder: to a file without a name where the file system has such, which
/// nothing can leave behind, else to one with a temporary name. commit() puts it in the target's
/// place; without a commit it goes and an older file stays as it was. Where the target is a link,
/// what it leads to is written, be it there yet or not.
class OPENQUIL_API AtomicFile {
  public:
    enum Kind { kNamelessIfPossible, kNamed };

    explicit AtomicFile(const std::string &path, Kind kind = kNamelessIfPossible);
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    /// The open file, or null when it could not be made; status() then says why.
    std::FILE *stream() const { return stream_; }
    const ZStatus &status() const { return status_; }

    /// Finishes the writing and gives the file its name.
    ZStatus commit();

  private:
    int open(Kind kind);
    bool finish();
    void fail(const char *action);
    void close();

    std::string target_;
    TemporaryName temporary_; // none as long as the file has no name
    std::FILE *stream_ = nullptr;
    ZStatus status_;
};

} // namespace devhost
