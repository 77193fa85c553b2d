// SPDX-License-Identifier: MIT
#include "devhost/scene/Animation.h"

#include <algorithm>
#include <cmath>

namespace devhost {

namespace {

/// The share of a cubic spline's two values and two tangents at a place between two keys, 0 to 1.
struct Hermite {
    double from, out, to, in;
    explicit Hermite(double t)
        : from(2 * t * t * t - 3 * t * t + 1), out(t * t * t - 2 * t * t + t),
          to(-2 * t * t * t + 3 * t * t), in(t * t * t - t * t) {}
};

std::vector<double> turnedBetween(const float *from, const float *to, double share) {
    double cosine = 0;
    for (int k = 0; k < 4; ++k)
        cosine += double(from[k]) * to[k];
    const double sign = cosine < 0 ? -1 : 1; // the same rotation, the short way
    const double angle = std::acos(std::min(cosine * sign, 1.0));
    const double sine = std::sin(angle);
    const bool apart = sine > 1e-6; // else the straight line is as good, and defined
    const double a = apart ? std::sin((1 - share) * angle) / sine : 1 - share;
    const double b = apart ? std::sin(share * angle) / sine : share;
    std::vector<double> result(4);
    for (int k = 0; k < 4; ++k)
        result[k] = a * from[k] + b * sign * to[k];
    return result;
}

void normalise(std::vector<double> &rotation) {
    double square = 0;
    for (double part : rotation)
        square += part * part;
    if (!(square > 0)) // a spline that runs through nothing
        rotation = {0, 0, 0, square = 1};
    for (double &part : rotation)
        part /= std::sqrt(square);
}

ZVector vector(const std::shared_ptr<const Track> &track, double seconds, const ZVector &rest) {
    if (!track)
        return rest;
    const std::vector<double> value = track->at(seconds);
    return ZVector(value[0], value[1], value[2]);
}

} // namespace

ZMatrix Pose::matrix() const {
    ZMatrix result = rotation.asMatrix();
    const double scales[] = {scale.x, scale.y, scale.z};
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            result.matrix[row][column] *= scales[row];
    result.matrix[3][0] = translation.x;
    result.matrix[3][1] = translation.y;
    result.matrix[3][2] = translation.z;
    return result;
}

std::vector<double> Track::at(double seconds) const {
    const size_t after =
        size_t(std::upper_bound(times.begin(), times.end(), float(seconds)) - times.begin());
    const size_t key = after == 0 ? 0 : after - 1;
    const size_t parts = interpolation == kCubicSpline ? 3 : 1;
    const auto value = [&](size_t index, size_t part) {
        return &values[(index * parts + part) * width];
    };
    const size_t middle = parts / 2;
    const float *from = value(key, middle);
    std::vector<double> result(from, from + width);
    if (after != 0 && after != times.size() && interpolation != kStep) {
        const double duration = double(times[after]) - times[key];
        const double share = (seconds - times[key]) / duration;
        const float *to = value(after, middle);
        if (interpolation == kCubicSpline) {
            const Hermite weight(share);
            const float *out = value(key, 2), *in = value(after, 0);
            for (unsigned k = 0; k < width; ++k)
                result[k] = weight.from * from[k] + weight.to * to[k] +
                            duration * (weight.out * out[k] + weight.in * in[k]);
        } else if (isRotation) {
            result = turnedBetween(from, to, share);
        } else {
            for (unsigned k = 0; k < width; ++k)
                result[k] += share * (double(to[k]) - from[k]);
        }
    }
    if (isRotation)
        normalise(result);
    return result;
}

Pose Movement::at(double seconds) const {
    Pose result = rest;
    result.translation = vector(translation, seconds, rest.translation);
    result.scale = vector(scale, seconds, rest.scale);
    if (rotation) {
        const std::vector<double> value = rotation->at(seconds);
        result.rotation = ZQuaternion(value[0], value[1], value[2], value[3]);
    }
    return result;
}

} // namespace devhost
