// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace devhost {

/// Writes a PNG file of 4 bytes for each pixel, whose rows come from the bottom up. Returns what is
/// wrong, or an empty text.
std::string encodePng(std::FILE *stream, std::size_t width, std::size_t height,
                      const unsigned char *rgba);

} // namespace devhost
