// SPDX-License-Identifier: MIT
// The renderers' helpers: noise, textures, file names, light queries, shading samples, session.
#include "devhost/session/RenderSession.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZDoubleArray.h"
#include "host/core/ZFloatArray.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPointArray.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZImage.h"
#include "host/core/ZSelectionList.h"
#include "host/core/ZStringArray.h"
#include "host/core/ZVectorArray.h"
#include "host/render/ZRenderUtil.h"
#include "tests/scene_files.h"

#include <chrono>
#include <cmath>
#include <filesystem>
#include <numbers>

using namespace devhost;

namespace {

TEST(NoiseTest, TableAndNoiseAreTheSameOnEveryMachine) {
    // Worked out by a second implementation, in exact integers and double precision.
    EXPECT_EQ(ZRenderUtil::valueInNoiseTable(0), 0.24341213703155518f);
    EXPECT_EQ(ZRenderUtil::valueInNoiseTable(32767), 0.43271374702453613f);
    EXPECT_NEAR(ZRenderUtil::noise3(3.25f, -7.5f, 100.125f), 0.1581334819784388, 1e-6);
    EXPECT_NEAR(ZRenderUtil::noise4(1.5f, 2.25f, 3.75f, 4.5f, 101), 0.5305408984568203, 1e-6);
}

TEST(NoiseTest, NoisesAgreeWithTheTableAndEachOther) {
    const unsigned side = ZRenderUtil::noiseTableCubeSide();
    const float s = float(side);
    EXPECT_EQ(ZRenderUtil::noise3(3, 4, 5),
              ZRenderUtil::valueInNoiseTable(3 + side * (4 + side * 5)));
    EXPECT_EQ(ZRenderUtil::noise3(-1, 0, 0), ZRenderUtil::valueInNoiseTable(side - 1));
    EXPECT_EQ(ZRenderUtil::noise3(0.5f + s, 0.25f - s, 9), ZRenderUtil::noise3(0.5f, 0.25f, 9));
    EXPECT_EQ(ZRenderUtil::noise2(INFINITY, NAN), ZRenderUtil::valueInNoiseTable(0));
}

/// A scene in the test's folder with a material whose texture is a picture of 2 by 2 pixels: below
/// red and green, above blue and half-clear white.
class UtilTest : public SceneTest {
  protected:
    UtilTest() {
        std::filesystem::create_directory(folder / "tex");
        const unsigned char pixels[] = {255, 0, 0,   255, 0,   255, 0,   255,
                                        0,   0, 255, 255, 255, 255, 255, 128};
        ZImage image;
        EXPECT_TRUE(image.setPixels(pixels, 2, 2));
        EXPECT_TRUE(image.writeToFile((folder / "tex" / "four.png").c_str()));
        write("paint.mtl", "newmtl paint\nKd 1 0.5 1\nd 0.75\nmap_Kd tex/four.png\n"
                           "newmtl plain\nKd 0.1 0.2 0.3\nmap_Kd gone.png\n");
        load("scene.obj", "mtllib paint.mtl\nv -1 0 -1\nv -1 0 1\nv 1 0 -1\nvn 0 1 0\n"
                          "usemtl paint\nf 1//1 2//1 3//1\nusemtl plain\nf 1//1 2//1 3//1\n");
    }
    std::string file(const char *name) const { return (folder / name).string(); }

    ZStatus status;
};

TEST_F(UtilTest, TexturesGiveExactPixelCentresAndRepeat) {
    // Clockwise from below left, then the same far outside, then halfway between red and green.
    ZDoubleArray u, v, alphas;
    const double places[][2] = {{0.25, 0.25}, {0.75, 0.25},  {0.25, 0.75},
                                {0.75, 0.75}, {-9.75, 7.25}, {0.5, 0.25}};
    const ZVector wanted[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}, {1, 0, 0}, {0.5, 0.5, 0}};
    for (const auto &place : places) {
        u.append(place[0]);
        v.append(place[1]);
    }
    for (const char *name : {"four", "paint"}) {
        ZVectorArray colors;
        ASSERT_TRUE(ZRenderUtil::eval2dTexture(object(name), u, v, &colors, &alphas));
        ASSERT_EQ(colors.length(), 6u);
        for (unsigned at = 0; at < 6; ++at)
            EXPECT_TRUE(near(colors[at], wanted[at], 1e-12)) << name << at;
        EXPECT_EQ(alphas[3], 128 / 255.0);
    }
    v.append(0);
    const auto code = [&](const ZObject &object) {
        return ZRenderUtil::eval2dTexture(object, u, v, nullptr, nullptr).statusCode();
    };
    EXPECT_EQ(code(object("four")), ZStatus::kInvalidParameter) << "more v than u";
    v.remove(6);
    EXPECT_EQ(code(object("headlight")), ZStatus::kInvalidParameter);
    EXPECT_EQ(code(object("gone")), ZStatus::kNotFound);
    write("gone.png", "no picture");
    EXPECT_EQ(code(object("gone")), ZStatus::kFailure);
    scene().setAttribute(scene().find("four"), "fileTextureName", "absent.png");
    EXPECT_EQ(code(object("four")), ZStatus::kNotFound) << "the old picture is forgotten";
}

TEST_F(UtilTest, FileNamesAreResolvedAgainstTheScenesFolder) {
    const std::pair<std::string, std::string> relative[] = {
        {file("tex/four.png"), "tex/four.png"},
        {"/elsewhere/a.png", "/elsewhere/a.png"},
        {file("") + "x/../../b", file("") + "x/../../b"},
        {"tex/four.png", "tex/four.png"},
        {"", ""}};
    for (const auto &[given, wanted] : relative)
        EXPECT_EQ(ZRenderUtil::relativeFileName(given.c_str(), &status).asChar(), wanted) << given;
    EXPECT_TRUE(status);

    write("run.0007.png", "x");
    write("run.07.tif4", "x");
    write("tile_1001.0003.exr", "x");
    std::filesystem::create_directory(folder / "take7");
    write("take7/plain.png", "x");
    struct Case {
        const char *name;
        bool frame;
        const char *number, *tile, *wanted;
    };
    const Case cases[] = {
        {"tex/four.png", true, "12", nullptr, "tex/four.png"},       // no place for a frame
        {"take7/plain.png", true, "12", nullptr, "take7/plain.png"}, // nor in a folder's name
        {"run.####.png", true, "0007", nullptr, "run.0007.png"},
        {"run.0001.png", true, "0007", nullptr, "run.0007.png"},
        {"run.0001.png", false, "0007", nullptr, nullptr},
        {"run.1.tif4", true, "07", nullptr, "run.07.tif4"},
        {"tile_<UDIM>.#.exr", true, "0003", "1001", "tile_1001.0003.exr"},
        {"tex", false, "", nullptr, nullptr}, // a folder
    };
    for (const Case &each : cases) {
        const ZString got = each.tile
                                ? ZRenderUtil::exactFileTextureName(each.name, each.frame,
                                                                    each.number, each.tile, &status)
                                : ZRenderUtil::exactFileTextureName(each.name, each.frame,
                                                                    ZString(each.number), &status);
        EXPECT_EQ(status.statusCode(), each.wanted ? ZStatus::kSuccess : ZStatus::kNotFound);
        EXPECT_EQ(got.asChar(), each.wanted ? file(each.wanted) : "") << each.name;
    }

    scene().setAttribute(scene().find("persp"), "imageName", "run.0007.png");
    EXPECT_EQ(ZRenderUtil::exactImagePlaneFileName(object("persp"), &status).asChar(),
              file("run.0007.png"));
}

TEST_F(UtilTest, LayeredPicturesAreConverted) {
    EXPECT_EQ(ZRenderUtil::convertPsdFile(object("four"), false, &status).asChar(),
              file("tex/four.png"));
    // The smallest such file: header, three empty sections, one raw pixel of three channels.
    const std::string header("8BPS\0\1\0\0\0\0\0\0\0\3\0\0\0\1\0\0\0\1\0\x8\0\3", 26);
    const auto picture = [&](const char *rgb) {
        return header + std::string(12, '\0') + std::string(2, '\0') + std::string(rgb, 3);
    };
    scene().setAttribute(scene().find("four"), "fileTextureName", "art.psd");
    for (const char *rgb : {"\x10\x20\x30", "\x11\x20\x30"}) {
        write("art.psd", picture(rgb));
        const ZString name = ZRenderUtil::convertPsdFile(object("four"), true, &status);
        EXPECT_EQ(name.asChar(), file("art.png"));
        ZImage image;
        ASSERT_TRUE(image.readFromFile(name));
        EXPECT_EQ(image.pixels()[0], rgb[0]);
    }
    // Unless it is always to be converted, only where the source is newer than the result.
    namespace fs = std::filesystem;
    write("art.psd", picture("\x12\x20\x30"));
    const auto written = fs::last_write_time(file("art.png"));
    for (const auto &[later, red] : {std::pair(-1, 0x11), {1, 0x12}}) {
        fs::last_write_time(file("art.psd"), written + std::chrono::hours(later));
        ZImage image;
        ASSERT_TRUE(
            image.readFromFile(ZRenderUtil::convertPsdFile(object("four"), false, &status)));
        EXPECT_EQ(image.pixels()[0], red);
    }
    write("art.psd", "8BPS damaged");
    ZRenderUtil::convertPsdFile(object("four"), true, &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kFailure);
}

TEST_F(UtilTest, ShadingNetworksAreSampledByName) {
    ZFloatArray u, v;
    ZFloatPointArray points;
    for (int at = 0; at < 4; ++at) {
        u.append(0.25f + float(at % 2) * 0.5f);
        v.append(at < 2 ? 0.25f : 1.25f);
        points.append(ZFloatPoint(float(at) * 0.3f, 5, 0));
    }
    ZFloatMatrix camera;
    camera.matrix[3][1] = -5;
    ZFloatVectorArray colors, clear;
    const auto sample = [&](const char *name, ZFloatPointArray *at, ZFloatArray *us) {
        return ZRenderUtil::sampleShadingNetwork(name, 4, false, false, camera, at, us, &v, nullptr,
                                                 nullptr, nullptr, nullptr, nullptr, colors, clear);
    };
    ASSERT_TRUE(sample("four", nullptr, &u));
    EXPECT_TRUE(near(clear[0], ZVector(0, 0, 0)));
    ASSERT_TRUE(sample("paint", nullptr, &u)) << "not lit: the colour times the texture";
    EXPECT_TRUE(near(colors[1], ZVector(0, 0.5, 0)));
    EXPECT_TRUE(near(clear[1], ZVector(0.25, 0.25, 0.25)));
    ASSERT_TRUE(sample("checker", nullptr, &u));
    EXPECT_TRUE(near(colors[0], ZVector(1, 1, 1)));
    EXPECT_TRUE(near(colors[2], ZVector(0, 0, 0))) << "one square further up";
    ASSERT_TRUE(sample("noise", &points, nullptr));
    EXPECT_EQ(colors[2].x, ZRenderUtil::noise3(0.6f, 5, 0));

    EXPECT_EQ(sample("noise", nullptr, &u).statusCode(), ZStatus::kInvalidParameter);
    u.remove(3);
    EXPECT_EQ(sample("checker", nullptr, &u).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(colors.length(), 4u) << "untouched by failures";
}

TEST_F(UtilTest, LightQueriesFollowTheirFormulas) {
    const ZFloatVector up(0, 2, 0), tilted(3, 4, 0), down(0, -1, 0), at(0, 0, 0);
    EXPECT_FLOAT_EQ(ZRenderUtil::diffuseReflectance(nullptr, tilted, at, up, false), 0.8f);
    EXPECT_FLOAT_EQ(ZRenderUtil::diffuseReflectance(this, tilted, at, down, true), 0.8f);
    EXPECT_EQ(ZRenderUtil::diffuseReflectance(nullptr, tilted, at, down, false), 0);
    EXPECT_FLOAT_EQ(ZRenderUtil::hemisphereCoverage(nullptr, tilted, at, down, true), 0.9f);
    // Light from above, looking along +x: halfway between up and -x.
    EXPECT_TRUE(near(ZRenderUtil::maximumSpecularReflection(nullptr, up, at, up, {1, 0, 0}),
                     ZVector(-1, 1, 0).normal()));

    Light light;
    light.kind = Light::kPoint;
    light.decay = 2;
    for (const NodeId each : scene().lights())
        scene().remove(each);
    const NodeId lamp = scene().add("light", "lamp", light);
    scene().edit(lamp)->local[3][1] = 4;
    // The scene's triangle spans x + z < 0 at height 0.
    const ZFloatVector below(-0.5f, -4, -0.5f);
    const float open = ZRenderUtil::lightAttenuation(nullptr, below, up, false, &status);
    EXPECT_NEAR(open, 1 / 64.5, 1e-6);
    EXPECT_EQ(ZRenderUtil::lightAttenuation(nullptr, below, up, true, &status), 0) << "in shadow";
    EXPECT_NEAR(ZRenderUtil::lightAttenuation(nullptr, {2, 0, 0}, up, true, &status), 0.05, 1e-6);
    EXPECT_TRUE(status);

    scene().remove(lamp);
    ZRenderUtil::lightAttenuation(nullptr, at, up, false, &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kNotFound);
    ZRenderUtil::hemisphereCoverage(nullptr, up, at, {NAN, 0, 0}, false, &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kInvalidParameter);
}

TEST_F(UtilTest, ProgressReachesTheSessionInBounds) {
    RenderSession &session = renderSession();
    ZRenderUtil::sendRenderProgressInfo("nobody listens", 5);
    std::vector<int> heard;
    session.progress = [&](const std::string &, int percent) { heard.push_back(percent); };
    for (const int percent : {40, 140, -1})
        ZRenderUtil::sendRenderProgressInfo("a.png", percent);
    session.progress = nullptr;
    EXPECT_EQ(heard, (std::vector<int>{40, 100, 0}));
}

} // namespace
