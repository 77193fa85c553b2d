#pragma once

// A file that appears under its name only when it has been written whole.

#include "host/core/ZStatus.h"

#include <cstdio>
#include <string>

namespace devhost {

/// Writes to a temporary name in the target's folder. commit() renames it over the target; without
/// a commit the temporary is removed and an older file stays as it was.
class AtomicFile {
  public:
    explicit AtomicFile(const std::string &path);
    ~AtomicFile();
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    /// The open temporary, or null when it could not be made; status() then says why.
    std::FILE *stream() const { return stream_; }
    const ZStatus &status() const { return status_; }

    /// Finishes the writing and gives the file its name.
    ZStatus commit();

  private:
    void fail(const char *action);
    void discard();

    std::string target_;
    std::string temporary_;
    std::FILE *stream_ = nullptr;
    ZStatus status_;
};

} // namespace devhost
