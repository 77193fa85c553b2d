// SPDX-License-Identifier: MIT
#pragma once

// A text that a signal handler may compose and write: no memory is asked for, no lock taken, and
// what does not fit is left out.

#include "host/base/HostApi.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace devhost {

class OPENQUIL_API SafeText {
  public:
    /// Control characters become question marks, so that foreign names do not steer a terminal.
    SafeText &operator<<(std::string_view text);
    SafeText &operator<<(long long number);
    /// As 0x and sixteen digits.
    SafeText &address(uintptr_t value);
    /// Writes what there is as one line, and starts anew.
    void writeLine(int descriptor);

    std::string_view text() const { return {buffer_, size_}; }

  private:
    static constexpr size_t kRoom = 1000;
    char buffer_[kRoom + 1]; // and the end of the line
    size_t size_ = 0;
};

} // namespace devhost
