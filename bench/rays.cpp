// SPDX-License-Identifier: MIT
// Rays of the script interface, a million a CPU second, beside the ray library called directly: one
// by one, in packets of sixteen and in streams; with camera rays, which lie close together, and
// with random ones. The best of nine runs each, on one thread; all find the same number of hits.
#include "bench/bumpy_ball.h"
#include "devhost/session/RenderSession.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZIntArray.h"
#include "host/core/ZStatus.h"
#include "host/render/ZRenderUtil.h"

#include <embree3/rtcore.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using namespace devhost;

constexpr unsigned kWidth = 640, kHeight = 480, kCount = kWidth * kHeight, kPacket = 16;

struct Rays {
    const char *name;
    bool isCoherent;
    ZFloatVectorArray origins, directions;
};

Rays cameraRays() {
    Rays rays{"camera", true, ZFloatVectorArray(kCount, ZFloatVector(0, 0, 3)),
              ZFloatVectorArray(kCount)};
    for (unsigned i = 0; i < kCount; ++i) {
        const unsigned column = i % kWidth, row = i / kWidth;
        rays.directions[i] = ZFloatVector((float(column) - kWidth / 2.0f) / kWidth,
                                          (float(row) - kHeight / 2.0f) / kWidth, -1);
    }
    return rays;
}

Rays randomRays() {
    Rays rays{"random", false, ZFloatVectorArray(kCount), ZFloatVectorArray(kCount)};
    std::mt19937 numbers(1);
    std::normal_distribution<float> normal;
    for (unsigned i = 0; i < kCount; ++i) {
        const ZFloatVector from(normal(numbers), normal(numbers), normal(numbers));
        const ZFloatVector to(normal(numbers), normal(numbers), normal(numbers));
        rays.origins[i] = from.normal() * 3;
        rays.directions[i] = to * 0.3f - rays.origins[i];
    }
    return rays;
}

/// The library's own scene of the same ball.
class Library {
  public:
    Library() {
        const auto mesh = bench::ball();
        RTCGeometry geometry = rtcNewGeometry(device_, RTC_GEOMETRY_TYPE_TRIANGLE);
        auto *points = static_cast<float *>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), mesh->vertexCount()));
        std::copy(mesh->positions.begin(), mesh->positions.end(), points);
        auto *corners = static_cast<unsigned *>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(unsigned), mesh->triangleCount()));
        std::copy(mesh->triangles.begin(), mesh->triangles.end(), corners);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(scene_, geometry);
        rtcReleaseGeometry(geometry);
        rtcSetSceneFlags(scene_, RTC_SCENE_FLAG_ROBUST);
        rtcCommitScene(scene_);
    }

    unsigned single(const Rays &rays) const {
        unsigned hits = 0;
        for (unsigned i = 0; i < kCount; ++i) {
            RTCRayHit query = queryOf(rays, i);
            RTCIntersectContext context = contextOf(rays);
            rtcIntersect1(scene_, &context, &query);
            hits += query.hit.geomID != RTC_INVALID_GEOMETRY_ID;
        }
        return hits;
    }

    unsigned stream(const Rays &rays) const {
        constexpr unsigned kTogether = 256;
        std::vector<RTCRayHit> queries(kTogether);
        unsigned hits = 0;
        for (unsigned from = 0; from < kCount; from += kTogether) {
            for (unsigned i = 0; i < kTogether; ++i)
                queries[i] = queryOf(rays, from + i);
            RTCIntersectContext context = contextOf(rays);
            rtcIntersect1M(scene_, &context, queries.data(), kTogether, sizeof(RTCRayHit));
            for (const RTCRayHit &query : queries)
                hits += query.hit.geomID != RTC_INVALID_GEOMETRY_ID;
        }
        return hits;
    }

    /// Packets with so many rays.
    unsigned packets(const Rays &rays, unsigned together) const {
        alignas(64) RTCRayHit16 packet;
        alignas(64) int active[kPacket] = {};
        unsigned hits = 0;
        for (unsigned from = 0; from < kCount; from += together) {
            for (unsigned i = 0; i < kPacket; ++i) {
                const unsigned at = from + std::min(i, together - 1);
                setRay(packet.ray, i, rays.origins[at], rays.directions[at]);
                packet.hit.geomID[i] = RTC_INVALID_GEOMETRY_ID;
                active[i] = i < together ? -1 : 0;
            }
            RTCIntersectContext context = contextOf(rays);
            rtcIntersect16(active, scene_, &context, &packet);
            for (unsigned i = 0; i < together; ++i)
                hits += packet.hit.geomID[i] != RTC_INVALID_GEOMETRY_ID;
        }
        return hits;
    }

  private:
    static RTCIntersectContext contextOf(const Rays &rays) {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        if (rays.isCoherent)
            context.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
        return context;
    }

    static RTCRayHit queryOf(const Rays &rays, unsigned at) {
        RTCRayHit query;
        const ZFloatVector &from = rays.origins[at], &way = rays.directions[at];
        query.ray = {from.x, from.y, from.z, 0, way.x, way.y, way.z, 0, kFar, ~0u, 0, 0};
        query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        return query;
    }

    static void setRay(RTCRay16 &packet, unsigned i, const ZFloatVector &from,
                       const ZFloatVector &way) {
        packet.org_x[i] = from.x;
        packet.org_y[i] = from.y;
        packet.org_z[i] = from.z;
        packet.dir_x[i] = way.x;
        packet.dir_y[i] = way.y;
        packet.dir_z[i] = way.z;
        packet.tnear[i] = packet.time[i] = 0;
        packet.tfar[i] = kFar;
        packet.mask[i] = ~0u;
        packet.flags[i] = 0;
    }

    static constexpr float kFar = std::numeric_limits<float>::infinity();
    RTCDevice device_ = rtcNewDevice("threads=1");
    RTCScene scene_ = rtcNewScene(device_);
};

unsigned intersections(const Rays &rays) {
    ZFloatVectorArray points;
    ZIntArray indices;
    static_cast<void>(ZRenderUtil::raytraceFirstGeometryIntersections(
        rays.origins, rays.directions, nullptr, nullptr, points, indices));
    return indices.length();
}

unsigned colors(const Rays &rays) {
    ZFloatVectorArray points, colors;
    static_cast<void>(ZRenderUtil::raytrace(rays.origins, rays.directions, nullptr, nullptr, 1,
                                            points, colors, false));
    const ZFloatVector nothing;
    unsigned hits = 0;
    for (unsigned i = 0; i < points.length(); ++i)
        hits += !(points[i] == nothing);
    return hits;
}

} // namespace

int main() {
    renderSession().threads = 1;
    scene().clear();
    scene().add("mesh", "ball", bench::ball());
    scene().addDefaults();
    const Library library;
    using Work = unsigned (*)(const Library &, const Rays &);
    const std::pair<const char *, Work> works[] = {
        {"library, packets of 16",
         [](const Library &of, const Rays &rays) { return of.packets(rays, kPacket); }},
        {"library, packets of 1",
         [](const Library &of, const Rays &rays) { return of.packets(rays, 1); }},
        {"library, streams", [](const Library &of, const Rays &rays) { return of.stream(rays); }},
        {"library, one by one",
         [](const Library &of, const Rays &rays) { return of.single(rays); }},
        {"raytraceFirstGeometryIntersections",
         [](const Library &, const Rays &rays) { return intersections(rays); }},
        {"raytrace, without shadows",
         [](const Library &, const Rays &rays) { return colors(rays); }}};
    constexpr size_t kWorks = std::size(works);
    std::printf("\n%-38s%10s%11s\n", "rays, millions a CPU second", "rate", "/ packets");
    for (const Rays &rays : {cameraRays(), randomRays()}) {
        double least[kWorks];
        unsigned hits[kWorks];
        std::fill_n(least, kWorks, 1e9);
        for (int run = 0; run < 9; ++run) // in turn: the machine may be busy for a while
            for (size_t i = 0; i < kWorks; ++i)
                least[i] = std::min(
                    least[i], bench::seconds([&] { hits[i] = works[i].second(library, rays); }));
        for (size_t i = 0; i < kWorks; ++i) {
            std::printf("%s: %-30s%10.2f%11.2f\n", rays.name, works[i].first,
                        1e-6 * kCount / least[i], least[0] / least[i]);
            if (std::max(hits[i], hits[0]) - std::min(hits[i], hits[0]) > 3) {
                std::printf("%u hits, not %u\n", hits[i], hits[0]);
                return 1;
            }
        }
    }
}
