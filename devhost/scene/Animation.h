// SPDX-License-Identifier: MIT
#pragma once

// Values over time: what moves the nodes of a scene.

#include "host/core/ZMatrix.h"
#include "host/core/ZQuaternion.h"
#include "host/core/ZVector.h"

#include <array>
#include <memory>
#include <vector>

namespace devhost {

/// Where a node stands in its parent's space.
struct Pose {
    ZVector translation;
    ZQuaternion rotation; // of length one
    ZVector scale = ZVector(1, 1, 1);

    /// Scaled, then turned, then moved.
    ZMatrix matrix() const;
};

/// Keys, and how the values between them come about. Before the first key its value holds, behind
/// the last one its own.
struct Track {
    enum Interpolation { kStep, kLinear, kCubicSpline };
    Interpolation interpolation = kLinear;
    /// The values are rotations (x, y, z, w), which turn the short way at an even pace.
    bool isRotation = false;
    unsigned width = 3;       // numbers in a value
    std::vector<float> times; // seconds, ascending
    /// One value for each key; with a cubic spline three: the tangent that comes in, the value, and
    /// the tangent that goes out.
    std::vector<float> values;

    std::vector<double> at(double seconds) const;
};

/// What moves one node; each track may be null.
struct Movement {
    Pose rest; // what is not animated
    std::shared_ptr<const Track> translation, rotation, scale;

    Pose at(double seconds) const;
};

} // namespace devhost
