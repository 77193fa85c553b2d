// SPDX-License-Identifier: MIT
// Rays against shapes whose hits can be worked out by hand.
#include "devhost/raytrace/RayTracer.h"
#include "devhost/raytrace/Shading.h"
#include "devhost/session/Parallel.h"
#include "devhost/session/RenderSession.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZIntArray.h"
#include "host/render/ZRenderUtil.h"
#include "tests/scene_files.h"

#include <cmath>
#include <numbers>
#include <random>

using namespace devhost;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

class RayTest : public SceneTest {
  protected:
    ~RayTest() override { renderSession().threads = 0; }

    /// A square at height y from -size to size, facing up.
    void addFloor(const std::string &name, float y, float size, const Material &material) {
        Mesh mesh;
        mesh.positions = {-size, y, -size, -size, y, size, size, y, size, size, y, -size};
        mesh.normals = {0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0};
        mesh.triangles = {0, 1, 2, 0, 2, 3};
        const NodeId id = scene().add("material", name + "Paint", material);
        mesh.materials = {id, id};
        scene().add("mesh", name, std::make_shared<const Mesh>(mesh));
    }
    void addLight(const Light &light, const ZVector &position) {
        const NodeId id = scene().add("light", "lamp", light);
        for (int k = 0; k < 3; ++k)
            scene().edit(id)->local[3][k] = position[unsigned(k)];
    }
};

TEST_F(RayTest, TriangleHitsGiveDistanceNormalsAndWeights) {
    load("one.obj", "v 0 0 -4\nv 2 0 -4\nv 0 2 -4\nvt 0 0\nvt 1 0\nvt 0 1\n"
                    "vn 0 0 1\nvn 1 0 0\nf 1/1/1 2/2/2 3/3/1\n");
    Hit hit;
    ASSERT_TRUE(rayTracer().intersect({0.5f, 0.25f, 1}, {0, 0, -10}, hit));
    EXPECT_FLOAT_EQ(hit.distance, 5);
    // Weights 0.625, 0.25 and 0.125 of the three corners.
    EXPECT_NEAR(hit.u, 0.25, 1e-6);
    EXPECT_NEAR(hit.v, 0.125, 1e-6);
    EXPECT_TRUE(near(hit.normal, ZVector(0.25, 0, 0.75).normal()));
    EXPECT_NEAR(rayTracer().where(hit).uv[1], 0.125, 1e-6);
    EXPECT_EQ(hit.triangle, 0);

    for (const RaySpan beside : {RaySpan{0, 4.9f}, {5.1f}}) {
        EXPECT_FALSE(rayTracer().intersect({0.5f, 0.25f, 1}, {0, 0, -1}, hit, beside));
        EXPECT_FALSE(rayTracer().occluded({0.5f, 0.25f, 1}, {0, 0, -1}, beside));
    }
    EXPECT_TRUE(rayTracer().occluded({0.5f, 0.25f, -9}, {0, 0, 1}, {0, 6}));
    // What the ray library does not take.
    for (const float odd : {1e30f, kInfinity, NAN}) {
        EXPECT_FALSE(rayTracer().intersect({0.5f, 0.25f, odd}, {0, 0, -1}, hit)) << odd;
        EXPECT_FALSE(rayTracer().occluded({0.5f, 0.25f, -9}, {0, odd, 1}, {0, 100 - odd})) << odd;
    }
}

/// Where a ray enters the box from -1 to 1 in x and z and -2 to 2 in y; infinite if it misses.
float boxDistance(const ZFloatVector &origin, const ZFloatVector &direction) {
    float enter = 0, leave = kInfinity;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const float half = axis == 1 ? 2 : 1;
        float low = (-half - origin[axis]) / direction[axis];
        float high = (half - origin[axis]) / direction[axis];
        if (low > high)
            std::swap(low, high);
        enter = std::max(enter, low);
        leave = std::min(leave, high);
    }
    if (enter <= leave)
        return enter;
    return kInfinity;
}

TEST_F(RayTest, RandomRaysHitAStretchedAndMirroredCubeWhereTheyShould) {
    load("cube.obj", kCubeObj);
    scene().edit(scene().find("cube"))->local[0][0] = -1;
    scene().edit(scene().find("cube"))->local[1][1] = 2;
    std::mt19937 random(7);
    std::uniform_real_distribution<float> number(-1, 1);
    int hits = 0;
    for (int at = 0; at < 2000; ++at) {
        const ZFloatVector origin =
            ZFloatVector(number(random), number(random), number(random)).normal() * 6;
        const ZFloatVector aim(2 * number(random), 3 * number(random), 2 * number(random));
        const ZFloatVector direction = (aim - origin).normal();
        const float wanted = boxDistance(origin, direction);
        Hit hit;
        if (wanted == kInfinity) {
            EXPECT_FALSE(rayTracer().intersect(origin, direction, hit));
            continue;
        }
        ++hits;
        ASSERT_TRUE(rayTracer().intersect(origin, direction, hit));
        EXPECT_NEAR(hit.distance, wanted, 1e-4);
        EXPECT_LT(hit.normal * direction, 0) << "outwards, whatever the mirroring does";
    }
    EXPECT_GT(hits, 500);
}

TEST_F(RayTest, TracerFollowsTheScene) {
    load("cube.obj", kCubeObj);
    Hit hit;
    const ZFloatVector eye(0, 0, 5), ahead(0, 0, -1);
    ASSERT_TRUE(rayTracer().intersect(eye, ahead, hit));
    EXPECT_FLOAT_EQ(hit.distance, 4);
    scene().edit(scene().find("cube"))->local[3][2] = -3;
    ASSERT_TRUE(rayTracer().intersect(eye, ahead, hit));
    EXPECT_FLOAT_EQ(hit.distance, 7);
    scene().edit(scene().find("cube"))->visible = false;
    EXPECT_FALSE(rayTracer().intersect(eye, ahead, hit));
    newScene();
    EXPECT_FALSE(rayTracer().intersect(eye, ahead, hit)) << "an empty scene";
}

TEST_F(RayTest, NormalsStayUprightOnStretchedSlopes) {
    load("slope.obj", "v -1 1 -1\nv -1 1 1\nv 1 -1 0\nf 1 2 3\n");
    scene().edit(scene().meshes().at(0))->local[1][1] = 2;
    Hit hit;
    ASSERT_TRUE(rayTracer().intersect({0, 5, 0}, {0, -1, 0}, hit));
    EXPECT_TRUE(near(hit.normal, ZVector(2, 1, 0).normal()));
}

TEST_F(RayTest, ManyRaysGiveWhatSingleRaysGive) {
    load("cube.obj", kCubeObj);
    const unsigned count = 3001;
    ZFloatVectorArray origins(1, ZFloatVector(0, 0, 1e19f)), directions(1, ZFloatVector(0, 0, -1));
    for (unsigned at = 0; at < count - 1; ++at) { // the first one comes from too far away
        const unsigned column = at % 60, row = at / 60;
        origins.append(ZFloatVector(-2 + 4 * float(column) / 59, -2 + 4 * float(row) / 49, 5));
        directions.append(ZFloatVector(0.1f, 0, -1));
    }
    for (unsigned threads : {1u, 5u}) {
        renderSession().threads = threads;
        ZFloatVectorArray points, colors, firstPoints;
        ZIntArray indices;
        ASSERT_TRUE(ZRenderUtil::raytrace(origins, directions, this, nullptr, 2, points, colors));
        ASSERT_TRUE(ZRenderUtil::raytraceFirstGeometryIntersections(origins, directions, nullptr,
                                                                    this, firstPoints, indices));
        unsigned hits = 0;
        for (unsigned at = 0; at < count; ++at) {
            ZFloatVector point, color;
            ASSERT_TRUE(ZRenderUtil::raytrace(origins[at], directions[at], nullptr, nullptr, 2,
                                              point, color));
            ASSERT_TRUE(points[at] == point && colors[at] == color);
            if (point == ZFloatVector())
                continue;
            ASSERT_LT(hits, indices.length());
            EXPECT_EQ(indices[hits], int(at));
            EXPECT_TRUE(firstPoints[hits++] == point);
        }
        EXPECT_EQ(hits, indices.length());
        EXPECT_GT(hits, 0u);
    }
}

TEST_F(RayTest, BadRaysAreRefused) {
    load("cube.obj", kCubeObj);
    const ZFloatVector eye(0, 0, 5), ahead(0, 0, -1), zero, endless(kInfinity, 0, 0);
    ZFloatVector point(1, 2, 3), color(4, 5, 6);
    const std::tuple<ZFloatVector, ZFloatVector, short> cases[] = {
        {eye, zero, 1}, {eye, endless, 1}, {endless, ahead, 1}, {eye, ahead, -1}};
    for (const auto &[from, along, depth] : cases)
        EXPECT_EQ(
            ZRenderUtil::raytrace(from, along, nullptr, nullptr, depth, point, color).statusCode(),
            ZStatus::kInvalidParameter);
    EXPECT_TRUE(point == ZFloatVector(1, 2, 3)) << "untouched";

    ZFloatVectorArray one(1, eye), two(2, ahead), bad(1, zero), points(3), colors(3);
    for (const ZFloatVectorArray *directions : {&two, &bad})
        EXPECT_EQ(ZRenderUtil::raytrace(one, *directions, nullptr, nullptr, 1, points, colors)
                      .statusCode(),
                  ZStatus::kInvalidParameter);
}

TEST_F(RayTest, LightsShadeByAngleDistanceConeAndShadow) {
    scene().clear();
    Material paint;
    paint.diffuse = ZVector(0.5, 1, 0.25);
    addFloor("floor", 0, 10, paint);
    Light light;
    light.kind = Light::kPoint;
    light.color = ZVector(1, 0.5, 1);
    light.intensity = 8 * std::numbers::pi;
    light.decay = 2;
    addLight(light, ZVector(0, 2, 0));

    ZFloatVector point, color;
    const auto seen = [&](float x, bool shadows = true) {
        EXPECT_TRUE(ZRenderUtil::raytrace({x, 0.5f, 0}, {0, -1, 0}, nullptr, nullptr, 0, point,
                                          color, shadows));
        EXPECT_TRUE(near(point, ZVector(x, 0, 0)));
        return ZVector(color);
    };
    const ZVector full(0.5, 0.5, 0.25); // paint times light
    // Straight below: 8 pi / pi / 2^2. Two aside: 8 / (2 sqrt 2)^2, times the cosine of 45 degrees.
    EXPECT_TRUE(near(seen(0), full * 2));
    EXPECT_TRUE(near(seen(2), full * std::sqrt(0.5)));
    addFloor("roof", 1, 0.1f, paint);
    EXPECT_TRUE(near(seen(0), ZVector()));
    EXPECT_TRUE(near(seen(0, false), full * 2));

    // As a spot light straight down that fades from atan(1/2) to atan(1).
    Light &spot = std::get<Light>(scene().edit(scene().find("lamp"))->payload);
    spot.kind = Light::kSpot;
    spot.decay = 0;
    spot.intensity = std::numbers::pi;
    spot.innerCone = std::atan(0.5);
    spot.outerCone = std::atan(1.0);
    ZMatrix &matrix = scene().edit(scene().find("lamp"))->local;
    matrix[2][1] = matrix[1][2] = 1; // -Z turned to -Y
    matrix[1][1] = matrix[2][2] = 0;
    EXPECT_TRUE(near(seen(0, false), full));
    EXPECT_TRUE(near(seen(2.01f), ZVector()));
    const double angle = std::atan(0.75), fade = std::atan(1.0) - std::atan(0.5);
    EXPECT_TRUE(near(seen(1.5f), full * (std::cos(angle) * (std::atan(1.0) - angle) / fade)));
}

TEST_F(RayTest, MirrorsAndGlassShowWhatLiesBehindUpToTheDepth) {
    scene().clear();
    Material mirror, glow, glass;
    mirror.diffuse = glow.diffuse = glass.diffuse = ZVector();
    mirror.reflectivity = ZVector(0.5, 0.5, 0.5);
    glow.emission = ZVector(1, 0.5, 0.25);
    glass.opacity = 0.25;
    glass.emission = ZVector(0.4, 0.4, 0.4);
    addFloor("mirror", 0, 10, mirror);
    addFloor("glow", 3, 0.5, glow);
    addFloor("glass", -1, 20, glass);
    addFloor("below", -2, 20, glow);
    addFloor("mirror2", 20, 10, mirror);

    ZFloatVector point, color;
    const auto seen = [&](const ZFloatVector &from, const ZFloatVector &along, short depth) {
        EXPECT_TRUE(ZRenderUtil::raytrace(from, along, nullptr, nullptr, depth, point, color));
        return ZVector(color);
    };
    // Down by 1 and 2 along, then up by 3 and 6 along: x = -8 + 2 + 6 = 0.
    EXPECT_TRUE(near(seen({-8, 1, 0}, {2, -1, 0}, 1), {0.5, 0.25, 0.125}));
    EXPECT_TRUE(near(seen({-8, 1, 0}, {2, -1, 0}, 0), {0, 0, 0}));
    EXPECT_TRUE(near(seen({15, 0, 0}, {0, -1, 0}, 0), {0.4, 0.4, 0.4})) << "opaque at depth 0";
    EXPECT_TRUE(near(seen({15, 0, 0}, {0, -1, 0}, 1), {0.85, 0.475, 0.2875}));
    seen({5, 1, 0}, {0, -1, 0}, 32767); // between two mirrors a ray ends all the same
}

TEST(ParallelTest, FailuresComeBack) {
    const auto fail = [](size_t begin, size_t) {
        if (begin == 50)
            throw std::runtime_error("no");
    };
    EXPECT_THROW(forBlocks(100, 1, fail), std::runtime_error);
}

} // namespace
