// SPDX-License-Identifier: MIT
#pragma once

// Lattice noise from a fixed table, the same on every machine.

namespace devhost {

inline constexpr unsigned kNoiseSide = 32;
inline constexpr unsigned kNoiseSize = kNoiseSide * kNoiseSide * kNoiseSide;

/// A value from 0 to below 1; indices beyond the table start over.
float noiseValue(unsigned index);
/// Smooth noise of three coordinates, the table read `offset` positions further on.
float noise(float x, float y, float z, unsigned offset = 0);
/// Blends noise at the whole times around t, each step reading `stride` positions further on.
float noiseOverTime(float x, float y, float z, float t, unsigned stride);

} // namespace devhost
