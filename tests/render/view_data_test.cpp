// SPDX-License-Identifier: MIT
// The conversions of render data and shadow data, against pictures worked out by hand.
#include "devhost/raytrace/SoftwareRenderer.h"
#include "host/render/ZRenderCallback.h"
#include "host/render/ZRenderShadowData.h"
#include "tests/test_scene.h"

#include <cmath>
#include <numbers>

namespace {

using ViewData = apptest::SquareScene;

void expectNear(const ZFloatPoint &actual, const ZFloatPoint &expected, float tolerance = 1e-3f) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
    EXPECT_NEAR(actual.w, expected.w, tolerance);
}

/// Both ways for points all over the view.
void expectRoundTrips(const ZRenderData &data) {
    for (float x = -20; x <= 90; x += 11)
        for (float y = -20; y <= 90; y += 11)
            for (const float depth : {0.5f, 3.0f, 40.0f}) {
                ZFloatPoint world, screen;
                data.screenToWorld({x, y, depth}, world);
                data.worldToScreen(world, screen);
                expectNear(screen, {x, y, depth}, 2e-3f);
            }
}

/// Keeps what the callback sees of each light.
struct ShadowKeeper : ZRenderCallback {
    ShadowKeeper() { addCallback(this); }
    bool shadowCastCallback(ZRenderShadowData const &data) override {
        seen.push_back(data);
        const unsigned maps = data.lightType == ZRenderShadowData::kPoint ? 6 : 1;
        depths.emplace_back(data.depthMaps,
                            data.depthMaps + size_t(data.shadowResX) * data.shadowResY * maps);
        return false;
    }
    std::vector<ZRenderShadowData> seen;
    std::vector<std::vector<float>> depths;
};

} // namespace

TEST_F(ViewData, PerspectivePointsLandWhereTheyBelong) {
    devhost::Frame frame;
    ASSERT_TRUE(devhost::renderFrame(frame));
    const ZRenderData &data = frame.data;
    // 90 degrees both ways on a square film: the image is widened to 4:3, so at depth 5 it shows
    // 5 units up and 5 * 4 / 3 to the side.
    EXPECT_NEAR(data.fieldOfView, std::atan(4.0 / 3) * 360 / std::numbers::pi, 1e-3);
    const std::pair<ZFloatPoint, ZFloatPoint> cases[] = {
        {{0, 0, -1}, {32, 24, 5}},
        {{0, 5, -1}, {32, 48, 5}},
        {{5 * 4.0f / 3, 0, -1}, {64, 24, 5}},
        {{2, 2, -1}, {32 + 9.6f, 24 + 9.6f, 5}},
        {{4, 4, -2, 2}, {32 + 9.6f, 24 + 9.6f, 5}},
    };
    for (const auto &[world, screen] : cases) {
        ZFloatPoint result;
        data.worldToScreen(world, result);
        expectNear(result, screen);
    }
    expectRoundTrips(data);
}

TEST_F(ViewData, NarrowAndOrthographicImagesShowTheFilm) {
    const struct {
        unsigned width, height;
        bool orthographic;
        ZFloatPoint world, screen;
    } cases[] = {
        {48, 64, false, {5, 5, -1}, {48, 32 + 24, 5}},     // the width of the film
        {64, 48, true, {2, -1, -1}, {32 + 12, 24 - 6, 5}}, // 8 units high: 6 pixels a unit
    };
    for (const auto &c : cases) {
        build(c.width, c.height, c.orthographic);
        devhost::Frame frame;
        ASSERT_TRUE(devhost::renderFrame(frame));
        EXPECT_EQ(frame.data.perspective, !c.orthographic);
        ZFloatPoint screen;
        frame.data.worldToScreen(c.world, screen);
        expectNear(screen, c.screen);
        expectRoundTrips(frame.data);
        EXPECT_NEAR(frame.depth[size_t(c.height / 2) * c.width + c.width / 2], 5, 1e-4);
    }
}

TEST_F(ViewData, ShadowMapsShowTheSquare) {
    addLight(devhost::Light::kDirectional, 0, 0, 0);
    addLight(devhost::Light::kSpot, 0.5, 0.25, 3);
    addLight(devhost::Light::kPoint, 0.5, 0.25, 3);
    addLight(devhost::Light::kAmbient, 0, 0, 0);
    ShadowKeeper keeper;
    devhost::Frame frame;
    ASSERT_TRUE(devhost::renderFrame(frame));
    ASSERT_EQ(keeper.seen.size(), 3u); // an ambient light casts no shadows
    for (size_t i = 0; i < 3; ++i) {
        const auto &data = keeper.seen[i];
        if (i != 0) {
            expectNear(data.lightPosition, {0.5f, 0.25f, 3});
        }
        // Points of the square: the map's depth there is the point's own.
        for (float x = -1.4f; x < 1.5f; x += 0.7f)
            for (float y = -1.4f; y < 1.5f; y += 0.7f) {
                ZFloatPoint buffer, back;
                data.worldToZbuffer({x, y, -1}, buffer);
                const size_t index = size_t(buffer.y) * data.shadowResX + size_t(buffer.x);
                ASSERT_LT(index, keeper.depths[i].size());
                EXPECT_NEAR(keeper.depths[i][index], buffer.z, 1e-3) << "light " << i;
                data.zbufferToWorld(buffer, back);
                expectNear(back, {x, y, -1});
            }
    }
    // All round a point light, each direction has its own map.
    const auto &point = keeper.seen[2];
    const ZFloatPoint around[] = {{5, 0.5f, 3.2f},  {-5, 0.5f, 3.2f}, {0.6f, 5, 3.2f},
                                  {0.6f, -5, 3.2f}, {0.6f, 0.5f, 9},  {0.6f, 0.5f, -9}};
    for (unsigned face = 0; face < 6; ++face) {
        ZFloatPoint buffer, back;
        point.worldToZbuffer(around[face], buffer);
        EXPECT_EQ(unsigned(buffer.y / point.shadowResY), face);
        point.zbufferToWorld(buffer, back);
        expectNear(back, around[face], 5e-3f);
    }
}
