// SPDX-License-Identifier: MIT
// The noise table and its interpolation.
#include "devhost/raytrace/NoiseTable.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace devhost {

namespace {

constexpr uint64_t kSeed = 0x71756c6c6e6f6973ull;

/// The splitmix64 generator: integers only, so that every machine makes the same table.
float randomValue(uint64_t index) {
    uint64_t bits = kSeed + (index + 1) * 0x9e3779b97f4a7c15ull;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9ull;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebull;
    bits ^= bits >> 31;
    return float(bits >> 40) / 16777216.0f;
}

const float *table() {
    static const std::vector<float> values = [] {
        std::vector<float> made(kNoiseSize);
        for (unsigned index = 0; index < kNoiseSize; ++index)
            made[index] = randomValue(index);
        return made;
    }();
    return values.data();
}

/// A coordinate as a lattice place within one period, and how far it lies past that place.
struct Place {
    unsigned low = 0;
    float past = 0;
};

Place placeOf(float coordinate, unsigned period) {
    if (!std::isfinite(coordinate))
        return {};
    const float whole = std::floor(coordinate);
    float wrapped = std::fmod(whole, float(period));
    if (wrapped < 0)
        wrapped += float(period);
    return {unsigned(wrapped), coordinate - whole};
}

/// Weight of the upper neighbour, with zero slope at both ends.
float smooth(float past) {
    return past * past * (3 - 2 * past);
}

float blend(float low, float high, float weight) {
    return low + (high - low) * weight;
}

} // namespace

float noiseValue(unsigned index) {
    return table()[index % kNoiseSize];
}

float noise(float x, float y, float z, unsigned offset) {
    const Place at[3] = {placeOf(x, kNoiseSide), placeOf(y, kNoiseSide), placeOf(z, kNoiseSide)};
    const float *values = table();
    const auto corner = [&](unsigned dx, unsigned dy, unsigned dz) {
        const unsigned i = (at[0].low + dx) % kNoiseSide;
        const unsigned j = (at[1].low + dy) % kNoiseSide;
        const unsigned k = (at[2].low + dz) % kNoiseSide;
        return values[(i + kNoiseSide * (j + kNoiseSide * k) + offset) % kNoiseSize];
    };
    const float wx = smooth(at[0].past), wy = smooth(at[1].past), wz = smooth(at[2].past);
    float layers[2];
    for (unsigned dz = 0; dz < 2; ++dz)
        layers[dz] = blend(blend(corner(0, 0, dz), corner(1, 0, dz), wx),
                           blend(corner(0, 1, dz), corner(1, 1, dz), wx), wy);
    return blend(layers[0], layers[1], wz);
}

float noiseOverTime(float x, float y, float z, float t, unsigned stride) {
    const Place time = placeOf(t, kNoiseSize);
    const float before = noise(x, y, z, time.low * (stride % kNoiseSize) % kNoiseSize);
    const float after = noise(x, y, z, (time.low + 1) * (stride % kNoiseSize) % kNoiseSize);
    return blend(before, after, smooth(time.past));
}

} // namespace devhost
