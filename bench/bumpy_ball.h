// SPDX-License-Identifier: MIT
#pragma once

// What the benchmarks of the ray tracer trace, and how they take the time.

#include "devhost/scene/SceneGraph.h"

#include <sys/resource.h>

#include <cmath>
#include <functional>
#include <memory>
#include <numbers>

namespace bench {

inline constexpr unsigned kRings = 300, kSegments = 600;

/// A ball with bumps that shadow each other.
inline std::shared_ptr<const devhost::Mesh> ball() {
    auto mesh = std::make_shared<devhost::Mesh>();
    for (unsigned ring = 0; ring <= kRings; ++ring)
        for (unsigned segment = 0; segment < kSegments; ++segment) {
            const double down = ring * std::numbers::pi / kRings;
            const double round = segment * 2 * std::numbers::pi / kSegments;
            const double size = 1 + 0.1 * std::sin(12 * down) * std::sin(12 * round);
            const float unit[] = {float(std::sin(down) * std::cos(round)), float(std::cos(down)),
                                  float(std::sin(down) * std::sin(round))};
            for (const float each : unit) {
                mesh->positions.push_back(each * float(size));
                mesh->normals.push_back(each);
            }
        }
    for (unsigned ring = 0; ring < kRings; ++ring)
        for (unsigned segment = 0; segment < kSegments; ++segment) {
            const unsigned a = ring * kSegments + segment;
            const unsigned b = ring * kSegments + (segment + 1) % kSegments;
            mesh->triangles.insert(mesh->triangles.end(), {a, b, b + kSegments});
            mesh->triangles.insert(mesh->triangles.end(), {a, b + kSegments, a + kSegments});
        }
    mesh->materials.assign(mesh->triangleCount(), devhost::kNoNode);
    return mesh;
}

inline double cpuSeconds() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return double(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
           1e-6 * double(used.ru_utime.tv_usec + used.ru_stime.tv_usec);
}

inline double seconds(const std::function<void()> &work) {
    const double start = cpuSeconds();
    work();
    return cpuSeconds() - start;
}

} // namespace bench
