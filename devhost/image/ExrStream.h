// SPDX-License-Identifier: MIT
#pragma once

// How the OpenEXR library writes into files of ours.

#include <OpenEXR/ImfIO.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

namespace devhost {

/// How much all files are compressed, which none of them tells; docs/performance.md has what it was
/// chosen by.
inline constexpr int kExrLevel = 3;

/// Writes to an open file, which may have no name yet; the path is for messages.
class ExrStream : public Imf::OStream {
  public:
    ExrStream(const std::string &path, std::FILE *stream)
        : Imf::OStream(path.c_str()), stream_(stream) {}

    void write(const char bytes[], int count) override {
        if (std::fwrite(bytes, 1, static_cast<std::size_t>(count), stream_) !=
            static_cast<std::size_t>(count))
            throw std::runtime_error(std::strerror(errno));
    }
    uint64_t tellp() override { return static_cast<uint64_t>(ftello(stream_)); }
    void seekp(uint64_t position) override {
        if (fseeko(stream_, static_cast<off_t>(position), SEEK_SET) != 0)
            throw std::runtime_error(std::strerror(errno));
    }

  private:
    std::FILE *stream_;
};

} // namespace devhost
