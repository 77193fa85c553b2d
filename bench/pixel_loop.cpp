// SPDX-License-Identifier: MIT
// CPU seconds for the pixels of a picture, beside a loop that is written by hand for the ray
// library and this picture: the same samples and shadow rays, in packets, with nothing but
// lambertian shading. The least of nine runs each; both make the same picture, which is looked at.
#include "bench/bumpy_ball.h"
#include "devhost/raytrace/CameraView.h"
#include "devhost/raytrace/SamplePattern.h"
#include "devhost/raytrace/Shading.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "devhost/session/RenderSession.h"

#include <embree3/rtcore.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <optional>
#include <vector>

namespace {

using namespace devhost;
using bench::ball, bench::seconds;

constexpr unsigned kWidth = 640, kHeight = 480, kSamples = 4, kPacket = 16;

class HandWritten {
  public:
    HandWritten() : mesh_(*scene().node(scene().meshes().at(0))->mesh()) {
        RTCGeometry geometry = rtcNewGeometry(device_, RTC_GEOMETRY_TYPE_TRIANGLE);
        auto *points = static_cast<float *>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), mesh_.vertexCount()));
        std::copy(mesh_.positions.begin(), mesh_.positions.end(), points);
        auto *corners = static_cast<unsigned *>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(unsigned), mesh_.triangleCount()));
        std::copy(mesh_.triangles.begin(), mesh_.triangles.end(), corners);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(scene_, geometry);
        rtcReleaseGeometry(geometry);
        rtcSetSceneFlags(scene_, RTC_SCENE_FLAG_ROBUST);
        rtcCommitScene(scene_);
        static_cast<void>(findCameraView(kWidth, kHeight, 1, view_));
    }
    HandWritten(const HandWritten &) = delete;

    std::vector<float> render() const {
        std::vector<float> picture(size_t(4) * kWidth * kHeight);
        const auto samples = samplePattern(kSamples);
        constexpr unsigned pixels = kPacket / kSamples;
        for (unsigned y = 0; y < kHeight; ++y)
            for (unsigned x = 0; x < kWidth; x += pixels)
                renderPacket(x, y, samples, &picture[size_t(4) * (y * kWidth + x)]);
        for (float &value : picture)
            value /= kSamples;
        return picture;
    }

  private:
    void renderPacket(unsigned x, unsigned y, const std::vector<PixelSample> &samples,
                      float *rgba) const {
        const auto &frame = view_->rays.frame;
        const ZFloatVector eye(frame.eye), ahead(frame.forward);
        const ZFloatVector right(frame.right * view_->rays.halfWidth);
        const ZFloatVector up(frame.up * view_->rays.halfHeight);
        alignas(64) RTCRayHit16 packet;
        alignas(64) int active[kPacket];
        for (unsigned i = 0; i < kPacket; ++i) {
            const PixelSample &sample = samples[i % kSamples];
            const unsigned column = x + i / kSamples;
            const float across = (float(column) + float(sample.right)) * (2.0f / kWidth) - 1;
            const float height = (float(y) + float(sample.up)) * (2.0f / kHeight) - 1;
            setRay(packet.ray, i, eye, ahead + right * across + up * height, view_->clip().to);
            packet.hit.geomID[i] = RTC_INVALID_GEOMETRY_ID;
            active[i] = -1;
        }
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        context.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
        rtcIntersect16(active, scene_, &context, &packet);
        shade(packet, rgba);
    }

    void shade(const RTCRayHit16 &packet, float *rgba) const {
        ZFloatVector points[kPacket], normals[kPacket];
        bool isHit[kPacket];
        unsigned hits = 0;
        for (unsigned i = 0; i < kPacket; ++i) {
            isHit[i] = packet.hit.geomID[i] != RTC_INVALID_GEOMETRY_ID;
            if (!isHit[i])
                continue;
            ++hits;
            const ZFloatVector way(packet.ray.dir_x[i], packet.ray.dir_y[i], packet.ray.dir_z[i]);
            points[i] =
                ZFloatVector(packet.ray.org_x[i], packet.ray.org_y[i], packet.ray.org_z[i]) +
                way * packet.ray.tfar[i];
            normals[i] = normalAt(packet.hit.primID[i], packet.hit.u[i], packet.hit.v[i]);
            if (ZFloatVector(packet.hit.Ng_x[i], packet.hit.Ng_y[i], packet.hit.Ng_z[i]) * way *
                    (ZFloatVector(packet.hit.Ng_x[i], packet.hit.Ng_y[i], packet.hit.Ng_z[i]) *
                     normals[i]) >
                0)
                normals[i] = -normals[i];
            rgba[4 * (i / kSamples) + 3] += 1;
        }
        for (const WorldLight &light : lights_)
            if (hits > 0)
                addLight(light, points, normals, isHit, rgba);
    }

    void addLight(const WorldLight &light, const ZFloatVector *points, const ZFloatVector *normals,
                  const bool *isHit, float *rgba) const {
        alignas(64) RTCRay16 packet;
        alignas(64) int active[kPacket];
        const ZFloatVector way = -light.direction;
        bool any = false;
        for (unsigned i = 0; i < kPacket; ++i) {
            active[i] = isHit[i] && way * normals[i] > 0 ? -1 : 0;
            any = any || active[i];
            setRay(packet, i, points[i] + normals[i] * 1e-4f, way,
                   std::numeric_limits<float>::infinity());
        }
        if (!any)
            return;
        if (light.castsShadows) {
            RTCIntersectContext context;
            rtcInitIntersectContext(&context);
            rtcOccluded16(active, scene_, &context, &packet);
        }
        for (unsigned i = 0; i < kPacket; ++i)
            if (active[i] && packet.tfar[i] >= 0)
                for (unsigned channel = 0; channel < 3; ++channel)
                    rgba[4 * (i / kSamples) + channel] +=
                        0.5f * way * normals[i] * float(light.light.intensity / std::numbers::pi);
    }

    template <class Packet>
    static void setRay(Packet &packet, unsigned i, const ZFloatVector &origin,
                       const ZFloatVector &way, float far) {
        packet.org_x[i] = origin.x;
        packet.org_y[i] = origin.y;
        packet.org_z[i] = origin.z;
        packet.dir_x[i] = way.x;
        packet.dir_y[i] = way.y;
        packet.dir_z[i] = way.z;
        packet.tnear[i] = 0;
        packet.tfar[i] = far;
        packet.time[i] = 0;
        packet.mask[i] = ~0u;
        packet.flags[i] = 0;
    }

    ZFloatVector normalAt(unsigned triangle, float u, float v) const {
        const float weights[] = {1 - u - v, u, v};
        ZFloatVector sum;
        for (unsigned k = 0; k < 3; ++k) {
            const float *normal = &mesh_.normals[size_t(3) * mesh_.triangles[3 * triangle + k]];
            sum += ZFloatVector(normal[0], normal[1], normal[2]) * weights[k];
        }
        return sum / sum.length();
    }

    const Mesh &mesh_;
    RTCDevice device_ = rtcNewDevice("threads=1");
    RTCScene scene_ = rtcNewScene(device_);
    std::optional<CameraView> view_;
    std::vector<WorldLight> lights_ = worldLights(scene());
};

} // namespace

int main() {
    auto &session = renderSession();
    session.threads = 1;
    session.samples = kSamples;
    session.settings.width = kWidth;
    session.settings.height = kHeight;
    scene().clear();
    scene().add("mesh", "ball", ball());
    scene().addDefaults();
    Frame frame;
    if (renderFrame(frame, false).error()) // makes the ray structure
        return 1;
    const HandWritten written;
    std::vector<float> picture;
    double host = 1e9, hand = 1e9, difference = 0;
    for (int run = 0; run < 9; ++run) { // in turn: the machine may be busy for a while
        host = std::min(host, seconds([&] { static_cast<void>(renderFrame(frame, false)); }));
        hand = std::min(hand, seconds([&] { picture = written.render(); }));
    }
    for (size_t i = 0; i < picture.size(); ++i)
        difference += std::abs(picture[i] - frame.pixels[i]) / double(picture.size());
    std::printf("\n%-34s%9s%9s%10s\n", "pixels, CPU seconds", "host", "by hand", "/ by hand");
    std::printf("%-34s%9.3f%9.3f%10.2f\n", "640 x 480 of 4 samples", host, hand, host / hand);
    if (difference > 1e-3) {
        std::printf("the pictures differ by %g on average\n", difference);
        return 1;
    }
}
