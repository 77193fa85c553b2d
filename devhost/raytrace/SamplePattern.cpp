// SPDX-License-Identifier: MIT
#include "devhost/raytrace/SamplePattern.h"

#include <numbers>
#include <numeric>

namespace devhost {

std::vector<PixelSample> samplePattern(unsigned count) {
    // The lattice of the golden ratio without its origin.
    const unsigned long long size = count + 1ull;
    auto step = static_cast<unsigned long long>(double(size) / std::numbers::phi + 0.5);
    while (std::gcd(step, size) != 1)
        ++step;
    std::vector<PixelSample> samples;
    samples.reserve(count);
    for (unsigned long long column = 1; column < size; ++column)
        samples.push_back(
            {(double(column) - 0.5) / count, (double(column * step % size) - 0.5) / count});
    return samples;
}

} // namespace devhost
