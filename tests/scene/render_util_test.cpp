// The renderers' helpers: noise, textures, file names, light queries, shading samples, session.
#include "host/render/ZRenderUtil.h"

#include <chrono>
#include <cmath>

#include "devhost/render/RenderSession.h"
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
#include "tests/scene/scene_files.h"

using namespace devhost;

namespace {

TEST(NoiseTest, TableAndNoiseAreTheSameOnEveryMachine) {
    // Worked out by a second implementation, in exact integers and double precision.
    EXPECT_EQ(ZRenderUtil::valueInNoiseTable(0), 0.24341213703155518f);
    EXPECT_EQ(ZRenderUtil::valueInNoiseTable(1024), 0.816932201385498f);
    EXPECT_EQ(ZRenderUtil::valueInNoiseTable(32767), 0.43271374702453613f);
    EXPECT_NEAR(ZRenderUtil::noise1(0.5f), 0.1585710048675537, 1e-6);
    EXPECT_NEAR(ZRenderUtil::noise3(3.25f, -7.5f, 100.125f), 0.1581334819784388, 1e-6);
    EXPECT_NEAR(ZRenderUtil::noise3(-0.75f, 31.5f, -33.25f), 0.559176362818107, 1e-6);
    EXPECT_NEAR(ZRenderUtil::noise4(1.5f, 2.25f, 3.75f, 4.5f, 101), 0.5305408984568203, 1e-6);
    EXPECT_NEAR(ZRenderUtil::noise4(1.5f, 2.25f, 3.75f, -2.25f, 7), 0.3566151557442936, 1e-6);
}

TEST(NoiseTest, NoisesAgreeWithTheTableAndEachOther) {
    const unsigned side = ZRenderUtil::noiseTableCubeSide(), size = ZRenderUtil::noiseTableSize();
    ASSERT_EQ(size, side * side * side);
    double sum = 0;
    for (unsigned at = 0; at < size; ++at) {
        const float value = ZRenderUtil::valueInNoiseTable(at);
        ASSERT_TRUE(value >= 0 && value < 1) << at;
        sum += value;
    }
    EXPECT_NEAR(sum / size, 0.5, 0.01);
    EXPECT_EQ(ZRenderUtil::valueInNoiseTable(size + 5), ZRenderUtil::valueInNoiseTable(5));
    const float s = float(side);
    EXPECT_EQ(ZRenderUtil::noise3(3, 4, 5),
              ZRenderUtil::valueInNoiseTable(3 + side * (4 + side * 5)));
    EXPECT_EQ(ZRenderUtil::noise3(-1, 0, 0), ZRenderUtil::valueInNoiseTable(side - 1));
    EXPECT_EQ(ZRenderUtil::noise3(0.5f + s, 0.25f - s, 9), ZRenderUtil::noise3(0.5f, 0.25f, 9));
    EXPECT_EQ(ZRenderUtil::noise2(1.5f, 2.5f), ZRenderUtil::noise3(1.5f, 2.5f, 0));
    EXPECT_EQ(ZRenderUtil::noise1(1.5f), ZRenderUtil::noise3(1.5f, 0, 0));
    EXPECT_EQ(ZRenderUtil::noise4(1.5f, 2, 3, 0, 77), ZRenderUtil::noise3(1.5f, 2, 3));
    EXPECT_EQ(ZRenderUtil::noise4(0, 0, 0, 2, 77), ZRenderUtil::valueInNoiseTable(154));
    EXPECT_EQ(ZRenderUtil::noise2(INFINITY, NAN), ZRenderUtil::valueInNoiseTable(0));
    EXPECT_LE(ZRenderUtil::noise3(3e38f, -3e38f, 1e-38f), 1);
    for (float x = 0.9f; x < 1.1f; x += 0.001f) // no step where two cells meet
        EXPECT_NEAR(ZRenderUtil::noise2(x, 0.3f), ZRenderUtil::noise2(x + 0.001f, 0.3f), 0.003);
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
    static ZObject find(const char *name) { return scene().object(scene().find(name)); }
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
        ASSERT_TRUE(ZRenderUtil::eval2dTexture(find(name), u, v, &colors, &alphas));
        ASSERT_EQ(colors.length(), 6u);
        for (unsigned at = 0; at < 6; ++at)
            EXPECT_TRUE(near(colors[at], wanted[at], 1e-12)) << name << at;
        EXPECT_EQ(alphas[0], 1);
        EXPECT_EQ(alphas[3], 128 / 255.0);
    }
    EXPECT_TRUE(ZRenderUtil::eval2dTexture(find("four"), u, v, nullptr, nullptr));
    v.append(0);
    const auto code = [&](const ZObject &object) {
        return ZRenderUtil::eval2dTexture(object, u, v, nullptr, nullptr).statusCode();
    };
    EXPECT_EQ(code(find("four")), ZStatus::kInvalidParameter) << "more v than u";
    v.remove(6);
    EXPECT_EQ(code(find("headlight")), ZStatus::kInvalidParameter);
    EXPECT_EQ(code(ZObject()), ZStatus::kInvalidParameter);
    EXPECT_EQ(code(find("gone")), ZStatus::kNotFound);
    write("gone.png", "no picture");
    EXPECT_EQ(code(find("gone")), ZStatus::kFailure);
    scene().setAttribute(scene().find("four"), "fileTextureName", ZString("absent.png"));
    EXPECT_EQ(code(find("four")), ZStatus::kNotFound) << "the old picture is forgotten";
}

TEST_F(UtilTest, FileNamesAreResolvedAgainstTheScenesFolder) {
    const std::pair<std::string, std::string> relative[] = {
        {file("tex/four.png"), "tex/four.png"},
        {file("./tex/../a.obj"), "a.obj"},
        {"/elsewhere/a.png", "/elsewhere/a.png"},
        {file("") + "x/../../b", file("") + "x/../../b"},
        {"tex/four.png", "tex/four.png"},
        {"5", "5"},
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
        {"tex/four.png", false, "12", nullptr, "tex/four.png"},
        {"tex/four.png", true, "12", nullptr, "tex/four.png"},       // no place for a frame
        {"take7/plain.png", true, "12", nullptr, "take7/plain.png"}, // nor in a folder's name
        {"run.####.png", true, "0007", nullptr, "run.0007.png"},
        {"run.0001.png", true, "0007", nullptr, "run.0007.png"},
        {"run.0001.png", false, "0007", nullptr, nullptr},
        {"run.1.tif4", true, "07", nullptr, "run.07.tif4"},
        {"tile_<UDIM>.#.exr", true, "0003", "1001", "tile_1001.0003.exr"},
        {"tile_<UDIM>.#.exr", true, "0003", "1002", nullptr},
        {"tex", false, "", nullptr, nullptr}, // a folder
        {"", false, "", nullptr, nullptr},
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

    EXPECT_EQ(ZRenderUtil::exactFileTextureName(find("four"), &status).asChar(),
              file("tex/four.png"));
    ZRenderUtil::exactFileTextureName(find("gone"), &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kNotFound);
    ZRenderUtil::exactFileTextureName(find("paint"), &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kInvalidParameter);

    ZRenderUtil::exactImagePlaneFileName(find("persp"), &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kNotFound) << "no background yet";
    scene().setAttribute(scene().find("persp"), "imageName", ZString("run.0007.png"));
    EXPECT_EQ(ZRenderUtil::exactImagePlaneFileName(find("persp"), &status).asChar(),
              file("run.0007.png"));
    ZRenderUtil::exactImagePlaneFileName(find("four"), &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kInvalidParameter);
}

TEST_F(UtilTest, LayeredPicturesAreConverted) {
    EXPECT_EQ(ZRenderUtil::convertPsdFile(find("four"), false, &status).asChar(),
              file("tex/four.png"));
    // The smallest such file: header, three empty sections, one raw pixel of three channels.
    const std::string header("8BPS\0\1\0\0\0\0\0\0\0\3\0\0\0\1\0\0\0\1\0\x8\0\3", 26);
    const auto picture = [&](const char *rgb) {
        return header + std::string(12, '\0') + std::string(2, '\0') + std::string(rgb, 3);
    };
    write("art.psd", picture("\x10\x20\x30"));
    scene().setAttribute(scene().find("four"), "fileTextureName", ZString("art.psd"));
    const auto red = [&](bool always) {
        const ZString name = ZRenderUtil::convertPsdFile(find("four"), always, &status);
        EXPECT_EQ(name.asChar(), file("art.png"));
        ZImage image;
        EXPECT_TRUE(image.readFromFile(name));
        return image.pixels() ? int(image.pixels()[0]) : -1;
    };
    EXPECT_EQ(red(false), 0x10);
    EXPECT_TRUE(status);
    const auto setAge = [&](std::chrono::hours hours) {
        std::filesystem::last_write_time(
            folder / "art.psd", std::filesystem::last_write_time(folder / "art.png") - hours);
    };
    write("art.psd", picture("\x40\x20\x30"));
    setAge(std::chrono::hours(1));
    EXPECT_EQ(red(false), 0x10) << "older than its conversion";
    EXPECT_EQ(red(true), 0x40);
    write("art.psd", picture("\x60\x20\x30"));
    setAge(std::chrono::hours(-1));
    EXPECT_EQ(red(false), 0x60) << "newer than its conversion";
    write("art.psd", "8BPS damaged");
    ZRenderUtil::convertPsdFile(find("four"), true, &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kFailure);
    std::filesystem::remove(folder / "art.psd");
    ZRenderUtil::convertPsdFile(find("four"), false, &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kNotFound);
}

TEST_F(UtilTest, ShadingNetworksAreSampledByName) {
    ZFloatArray u, v;
    ZFloatPointArray points;
    ZFloatVectorArray normals(4, ZFloatVector(0, 1, 0));
    for (int at = 0; at < 4; ++at) {
        u.append(0.25f + float(at % 2) * 0.5f);
        v.append(0.25f + float(at / 2));
        points.append(ZFloatPoint(float(at) * 0.3f, 5, 0));
    }
    ZFloatMatrix camera;
    camera.matrix[3][1] = -5;
    ZFloatVectorArray colors, clear;
    bool shadows = false;
    const auto sample = [&](const char *name, ZFloatPointArray *at, ZFloatArray *us,
                            ZFloatVectorArray *ns) {
        return ZRenderUtil::sampleShadingNetwork(name, 4, shadows, false, camera, at, us, &v, ns,
                                                 nullptr, nullptr, nullptr, nullptr, colors, clear);
    };
    ASSERT_TRUE(sample("four", nullptr, &u, nullptr));
    EXPECT_TRUE(near(colors[0], ZVector(1, 0, 0)));
    EXPECT_TRUE(near(colors[1], ZVector(0, 1, 0)));
    EXPECT_TRUE(near(clear[0], ZVector(0, 0, 0)));
    ASSERT_TRUE(sample("paint", nullptr, &u, nullptr)) << "not lit: the colour times the texture";
    EXPECT_TRUE(near(colors[1], ZVector(0, 0.5, 0)));
    EXPECT_TRUE(near(clear[1], ZVector(0.25, 0.25, 0.25)));
    ASSERT_TRUE(sample("plain", nullptr, nullptr, nullptr)) << "its picture is missing";
    EXPECT_TRUE(near(colors[3], ZVector(0.1, 0.2, 0.3)));
    ASSERT_TRUE(sample("checker", nullptr, &u, nullptr));
    EXPECT_TRUE(near(colors[0], ZVector(1, 1, 1)));
    EXPECT_TRUE(near(colors[2], ZVector(0, 0, 0))) << "one square further up";
    ASSERT_TRUE(sample("noise", &points, nullptr, nullptr));
    EXPECT_EQ(colors[2].x, ZRenderUtil::noise3(0.6f, 5, 0));

    // Lit from straight above, and from the side at 60 degrees.
    newScene();
    scene().clear();
    Light light;
    const NodeId lamp = scene().add("light", "lamp", light);
    Material matte;
    matte.diffuse = ZVector(0.5, 0.25, 1);
    scene().add("material", "matte", matte);
    const auto shineAlong = [&](const ZVector &way) {
        for (unsigned k = 0; k < 3; ++k)
            scene().edit(lamp)->local[2][k] = -way[k];
    };
    points.clear();
    points.append(ZFloatPoint(0, 0, 0));
    points.setLength(4);
    shineAlong(ZVector(0, -1, 0));
    camera.matrix[3][1] = 5; // the camera is above the points
    for (unsigned at = 0; at < 4; ++at)
        points[at] = ZFloatPoint(float(at), -5, 0);
    ASSERT_TRUE(sample("matte", &points, nullptr, &normals));
    EXPECT_TRUE(near(colors[2], matte.diffuse));
    shineAlong(ZVector(std::sqrt(0.75), -0.5, 0));
    ASSERT_TRUE(sample("matte", &points, nullptr, &normals));
    EXPECT_TRUE(near(colors[2], matte.diffuse * 0.5));
    Mesh wall; // to the left of the points, where the light comes from
    wall.positions = {-1, -9, -9, -1, 9, -9, -1, 0, 9};
    wall.normals = {1, 0, 0, 1, 0, 0, 1, 0, 0};
    wall.triangles = {0, 1, 2};
    wall.materials = {kNoNode};
    scene().add("mesh", "wall", std::make_shared<const Mesh>(wall));
    shadows = true;
    ASSERT_TRUE(sample("matte", &points, nullptr, &normals));
    EXPECT_TRUE(near(colors[2], ZVector(0, 0, 0)));

    EXPECT_EQ(sample("lamp", &points, &u, &normals).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(sample("nothing", &points, &u, &normals).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(sample("checker", nullptr, nullptr, nullptr).statusCode(),
              ZStatus::kInvalidParameter);
    EXPECT_EQ(sample("noise", nullptr, &u, nullptr).statusCode(), ZStatus::kInvalidParameter);
    u.remove(3);
    EXPECT_EQ(sample("checker", nullptr, &u, nullptr).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(colors.length(), 4u) << "untouched by failures";
    EXPECT_EQ(ZRenderUtil::sampleShadingNetwork("noise", -1, false, false, camera, &points, &u, &v,
                                                nullptr, nullptr, nullptr, nullptr, nullptr, colors,
                                                clear)
                  .statusCode(),
              ZStatus::kInvalidParameter);
}

TEST_F(UtilTest, LightQueriesFollowTheirFormulas) {
    const ZFloatVector up(0, 2, 0), tilted(3, 4, 0), down(0, -1, 0), at(0, 0, 0), zero;
    EXPECT_FLOAT_EQ(ZRenderUtil::diffuseReflectance(nullptr, tilted, at, up, false), 0.8f);
    EXPECT_FLOAT_EQ(ZRenderUtil::diffuseReflectance(this, tilted, at, down, false), 0);
    EXPECT_FLOAT_EQ(ZRenderUtil::diffuseReflectance(this, tilted, at, down, true), 0.8f);
    EXPECT_FLOAT_EQ(ZRenderUtil::hemisphereCoverage(nullptr, tilted, at, up, false), 0.9f);
    EXPECT_FLOAT_EQ(ZRenderUtil::hemisphereCoverage(nullptr, tilted, at, down, false), 0.1f);
    EXPECT_FLOAT_EQ(ZRenderUtil::hemisphereCoverage(nullptr, tilted, at, down, true), 0.9f);
    // Light from above, looking along +x: halfway between up and -x.
    EXPECT_TRUE(near(ZRenderUtil::maximumSpecularReflection(nullptr, up, at, up, {1, 0, 0}),
                     ZVector(-1, 1, 0).normal()));
    EXPECT_TRUE(
        near(ZRenderUtil::maximumSpecularReflection(nullptr, up, at, tilted, up), ZVector(3, 4, 0)))
        << "light and view cancel out";

    Light light;
    light.kind = Light::kPoint;
    light.decay = 2;
    scene().remove(scene().find("headlight"));
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
    const auto refused = [&] {
        const bool result = status.statusCode() == ZStatus::kInvalidParameter;
        status.clear();
        return result;
    };
    ZRenderUtil::lightAttenuation(nullptr, at, zero, false, &status);
    EXPECT_TRUE(refused());
    ZRenderUtil::diffuseReflectance(nullptr, zero, at, up, false, &status);
    EXPECT_TRUE(refused());
    ZRenderUtil::hemisphereCoverage(nullptr, up, at, {NAN, 0, 0}, false, &status);
    EXPECT_TRUE(refused());
    ZRenderUtil::maximumSpecularReflection(nullptr, up, at, up, zero, &status);
    EXPECT_TRUE(refused());
}

TEST_F(UtilTest, SessionReachesScriptsThroughTheUtilities) {
    RenderSession &session = renderSession();
    EXPECT_EQ(ZRenderUtil::quilRenderState(), ZRenderUtil::kNotRendering);
    EXPECT_EQ(ZRenderUtil::renderPass(), ZRenderUtil::kAll);
    EXPECT_FALSE(ZRenderUtil::generatingIprFile());
    session.state = ZRenderUtil::kIprRender;
    session.pass = ZRenderUtil::kSpecularOnly;
    session.generatingIprFile = true;
    EXPECT_EQ(int(ZRenderUtil::quilRenderState()), 3);
    EXPECT_EQ(int(ZRenderUtil::renderPass()), 5);
    EXPECT_TRUE(ZRenderUtil::generatingIprFile());
    session.state = ZRenderUtil::kNotRendering;
    session.pass = ZRenderUtil::kAll;
    session.generatingIprFile = false;

    ZRenderUtil::sendRenderProgressInfo("nobody listens", 5);
    std::vector<std::pair<std::string, int>> heard;
    session.progress = [&](const std::string &text, int percent) {
        heard.emplace_back(text, percent);
    };
    ZRenderUtil::sendRenderProgressInfo("a.png", 40);
    ZRenderUtil::sendRenderProgressInfo("b.png", 140);
    ZRenderUtil::sendRenderProgressInfo("c.png", -1);
    session.progress = nullptr;
    EXPECT_EQ(heard, (std::vector<std::pair<std::string, int>>{
                         {"a.png", 40}, {"b.png", 100}, {"c.png", 0}}));

    const unsigned width = session.settings.width;
    session.settings.width = 77;
    ZCommonRenderSettingsData settings;
    ZRenderUtil::getCommonRenderSettings(settings);
    EXPECT_EQ(settings.width, 77u);
    session.settings.width = width;

    ZDagPath path;
    ASSERT_TRUE(ZDagPath::getAPathTo(scene().object(scene().meshes().at(0)), path));
    EXPECT_TRUE(ZRenderUtil::inCurrentRenderLayer(path, &status));
    ZSelectionList list;
    EXPECT_TRUE(ZRenderUtil::renderObjectItem(this, list));
    EXPECT_TRUE(list.length() == 1 && list.hasItem(path));
    scene().edit(scene().meshes().at(0))->visible = false;
    EXPECT_FALSE(ZRenderUtil::inCurrentRenderLayer(path, &status));
    EXPECT_TRUE(status);
    EXPECT_EQ(ZRenderUtil::renderObjectItem(nullptr, list).statusCode(), ZStatus::kNotFound);
    ZRenderUtil::inCurrentRenderLayer(ZDagPath(), &status);
    EXPECT_EQ(status.statusCode(), ZStatus::kInvalidParameter);
    EXPECT_STREQ(ZRenderUtil::mainBeautyPassName().asChar(), "beauty");
    EXPECT_STREQ(ZRenderUtil::mainBeautyPassCustomTokenString().asChar(), "");
    EXPECT_STREQ(ZRenderUtil::className(), "ZRenderUtil");
}

} // namespace
