// SPDX-License-Identifier: MIT
// Linear light: from textures and lights over pixels to files, with values worked out by hand.
#include "devhost/api/render/Picture.h"
#include "devhost/image/ImageIo.h"
#include "devhost/image/Srgb.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "host/core/ZFloatMatrix.h"
#include "host/core/ZFloatPointArray.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZPlug.h"
#include "host/render/ZRenderUtil.h"
#include "tests/temporary_folder.h"
#include "tests/test_scene.h"

#include <Imath/ImathBox.h>
#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfFloatAttribute.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfInputFile.h>
#include <OpenEXR/ImfStringAttribute.h>

#include <numbers>

using namespace devhost;
using std::numbers::pi;

namespace {

class LightTest : public apptest::SquareScene {
  protected:
    /// The pixel at a place in the whole image.
    std::array<float, 4> pixel(unsigned x, unsigned y) {
        const ZStatus status = renderFrame(frame);
        EXPECT_TRUE(status) << status.errorString().asChar();
        std::array<float, 4> result{};
        const size_t index = (y - frame.data.bottom) * frame.data.xsize + x - frame.data.left;
        if (4 * index + 3 < frame.pixels.size())
            std::copy_n(&frame.pixels[4 * index], 4, result.begin());
        return result;
    }
    std::array<float, 4> centre() { return pixel(32, 24); }
    std::vector<unsigned char> writtenPng() {
        unsigned width, height;
        std::vector<unsigned char> bytes;
        EXPECT_TRUE(writeFrame(frame, folder.file("a.png")));
        EXPECT_TRUE(readPng(folder.file("a.png"), width, height, bytes));
        return bytes;
    }
    static ZPlug plug(const char *node, const char *attribute) {
        return ZPlug(scene().object(scene().find(node)), attribute);
    }
    static Material matte(double grey) {
        Material material;
        material.diffuse = ZVector(grey, grey, grey);
        return material;
    }

    Frame frame;
    TemporaryFolder folder;
};

} // namespace

TEST_F(LightTest, ATextureOf188ShowsAsTheFactorHalf) {
    addLight(Light::kDirectional, 0, 0, 0);
    plug("lamp", "intensity").setDouble(pi);
    Material textured = matte(1);
    const Pixels grey{1, 1, {188, 188, 188, 255}};
    textured.texture = scene().add("file", "grey", Texture{"", std::make_shared<Pixels>(grey)});
    const std::pair<Material, float> cases[] = {{matte(0.5), 0.5f}, {textured, 0.50289f}};
    for (const auto &[material, light] : cases) {
        paint(material);
        EXPECT_NEAR(centre()[0], light, 1e-5);
        EXPECT_EQ(writtenPng()[(24 * 64 + 32) * 4], 188);
    }
}

TEST_F(LightTest, LightsAreInTheirUnitsAndBacksAreLitAsBacks) {
    // The square is at z = -1, seen from z = 4. Half its light comes back, over pi.
    const struct {
        Light::Kind kind;
        double z, intensity, expected;
        bool turned;
    } cases[] = {
        {Light::kDirectional, 0, 3, 3 * 0.5 / pi, false}, // 3 lux
        {Light::kPoint, 1, 20, 20 / 4.0 * 0.5 / pi, false},
        {Light::kAmbient, 0, 3, 3 * 0.5 / pi, false},
        {Light::kPoint, -3, 20, 0, false},                 // behind it
        {Light::kPoint, 1, 20, 20 / 4.0 * 0.5 / pi, true}, // the same with its back to the camera
        {Light::kPoint, -3, 20, 0, true},
    };
    for (const auto &c : cases) {
        build(64, 48, false);
        paint(matte(0.5));
        // A half turn about the vertical line through its middle, which stays in place.
        const double half[4][4] = {{-1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, -1, 0}, {0, 0, -2, 1}};
        if (c.turned)
            scene().edit(scene().find("square"))->local = ZMatrix(half);
        addLight(c.kind, 0, 0, c.z);
        plug("lamp", "intensity").setDouble(c.intensity);
        plug("lamp", "decay").setInt(2);
        // The pixel lies half a pixel beside the axis: 0.104 off at the distance 2 or more.
        EXPECT_NEAR(centre()[1], c.expected, 0.011 * c.expected) << c.kind << c.z;
    }
}

TEST_F(LightTest, EdgePixelsScaleWithTheirOpacity) {
    // The square ends 9.6 pixels from the middle: 0.6 into column 41.
    glow(ZVector(0.8, 4, 0));
    const std::pair<unsigned, float> cases[] = {{1, 1.0f}, {4, 0.5f}, {16, 0.625f}};
    for (const auto &[samples, opacity] : cases) {
        session().samples = samples;
        const std::array<float, 4> wanted{0.8f * opacity, 4 * opacity, 0, opacity};
        for (int channel = 0; channel < 4; ++channel)
            EXPECT_NEAR(pixel(41, 24)[channel], wanted[channel], 1e-6) << samples;
    }
    // 231 is the sRGB code of 0.8, whatever the opacity.
    const auto bytes = writtenPng();
    EXPECT_EQ(std::vector(&bytes[(24 * 64 + 41) * 4], &bytes[(24 * 64 + 42) * 4]),
              (std::vector<unsigned char>{231, 255, 0, 159}));
}

TEST_F(LightTest, WhatIsSeenThroughLetsTheBackgroundShow) {
    glow(ZVector(2, 1, 0), 0.25);
    EXPECT_EQ(centre(), (std::array<float, 4>{0.5, 0.25, 0, 0.25}));
    // A second one behind it: 0.25 + 0.75 * 0.25 of each.
    const Node square = *scene().node(scene().find("square"));
    place(scene().add("mesh", "behind", square.payload), 0, 0, -1);
    EXPECT_EQ(centre(), (std::array<float, 4>{0.875, 0.4375, 0, 0.4375}));
}

TEST_F(LightTest, DepthsReachThroughHoles) {
    const Node plain = *scene().node(scene().find("square"));
    Material holes;
    holes.alpha = Material::kMasked;
    holes.opacity = 0.25; // below the cut at 0.5, so that nothing is left
    paint(holes);
    const Node open = *scene().node(scene().find("square"));
    place(scene().add("mesh", "behind", open.payload), 0, 0, -1);
    place(scene().add("mesh", "last", plain.payload), 0, 0, -2);
    EXPECT_TRUE(renderFrame(frame, true));
    EXPECT_NEAR(frame.depth.at(24 * 64 + 32), 7, 1e-5);
}

TEST_F(LightTest, ExposureMultipliesAllLight) {
    Material material = matte(0.5);
    material.emission = ZVector(0.1, 0.1, 0.1);
    paint(material);
    addLight(Light::kDirectional, 0, 0, 0);
    plug("lamp", "intensity").setDouble(pi);
    for (const auto &[stops, factor] : {std::pair(0.0f, 1.0f), {2, 4}, {-1, 0.5f}}) {
        session().exposure = stops;
        EXPECT_NEAR(centre()[0], 0.6 * factor, 1e-5);
        EXPECT_EQ(centre()[3], 1);
        ZFloatVector point, color;
        ZRenderUtil::raytrace({0, 0, 4}, {0, 0, -1}, nullptr, nullptr, 1, point, color);
        EXPECT_NEAR(color.x, 0.6 * factor, 1e-5) << "scripts get what is rendered";
    }
    material.unlit = true;
    paint(material);
    EXPECT_NEAR(centre()[0], 0.25, 1e-5) << "its colour, at -1 stops";
}

TEST_F(LightTest, ShadingFunctionsMultiplyToWhatIsRendered) {
    // A lamp at (3, 0, 3) lights the middle of the square through a pane of opacity 0.25.
    const double length = 5, cosine = 0.8;
    paint(matte(0.5));
    addLight(Light::kPoint, 3, 0, 3);
    std::get<Light>(scene().edit(scene().find("lamp"))->payload).decay = 2;
    plug("lamp", "intensity").setDouble(100);
    Material glass;
    glass.opacity = 0.25;
    Mesh pane = *scene().node(scene().find("square"))->mesh();
    pane.materials.assign(2, scene().add("material", "glass", glass));
    place(scene().add("mesh", "pane", std::make_shared<const Mesh>(pane)), 3, 0, 2);

    const ZFloatVector middle(0, 0, -1), normal(0, 0, 1), towards(3, 0, 4);
    ZFloatVector point, seen;
    ASSERT_TRUE(ZRenderUtil::raytrace({0, 0, 0}, {0, 0, -1}, nullptr, nullptr, 0, point, seen));
    const double expected = 100 * 0.5 / pi * cosine / (length * length) * 0.75;
    EXPECT_NEAR(seen.x, expected, 1e-4);
    const float arrives = ZRenderUtil::lightAttenuation(nullptr, middle, normal, true);
    EXPECT_NEAR(arrives, 0.75 / 25, 1e-6);
    const float scattered =
        ZRenderUtil::diffuseReflectance(nullptr, towards, middle, normal, false);
    EXPECT_NEAR(100 * 0.5 / pi * arrives * scattered, expected, 1e-4);
    ZFloatMatrix camera;
    ZFloatPointArray points(1, ZFloatPoint(0, 0, -1));
    ZFloatVectorArray normals(1, normal), colors, clear;
    ASSERT_TRUE(ZRenderUtil::sampleShadingNetwork("paint", 1, true, false, camera, &points, nullptr,
                                                  nullptr, &normals, nullptr, nullptr, nullptr,
                                                  nullptr, colors, clear));
    EXPECT_NEAR(colors[0].x, expected, 1e-4);
}

TEST_F(LightTest, ExrFilesHoldLightWindowsAndWhatTheyShow) {
    glow(ZVector(96000, 0.1, 3), 0.5);
    session().region = PixelRegion{30, 45, 20, 43};
    session().frame = 12;
    session().exposure = -1;
    session().settings.pixelAspectRatio = 2;
    pixel(32, 24);
    const std::string file = folder.file("a.exr");
    const std::tuple<bool, Imf::PixelType, float, float> cases[] = {
        {false, Imf::HALF, 24000, 0.02499f}, // the half nearest to 0.025
        {true, Imf::FLOAT, 24000, 0.025f}};
    for (const auto &[floats, type, red, green] : cases) {
        session().exrFloats = floats;
        ASSERT_TRUE(writeFrame(frame, file));
        Imf::InputFile read(file.c_str());
        const Imf::Header &header = read.header();
        EXPECT_EQ(header.channels()["R"].type, type);
        EXPECT_EQ(header.channels()["Z"].type, Imf::FLOAT);
        // Rows count from the top there: 48 - 1 - 43 to 48 - 1 - 20.
        EXPECT_EQ(header.dataWindow(), Imath::Box2i({30, 4}, {45, 27}));
        EXPECT_EQ(header.displayWindow(), Imath::Box2i({0, 0}, {63, 47}));
        EXPECT_EQ(header.pixelAspectRatio(), 2);
        EXPECT_EQ(header.typedAttribute<Imf::FloatAttribute>("frame").value(), 12);
        EXPECT_EQ(header.typedAttribute<Imf::FloatAttribute>("exposure").value(), -1);
        EXPECT_EQ(header.typedAttribute<Imf::StringAttribute>("camera").value(), "|cam");
        EXPECT_EQ(header.typedAttribute<Imf::StringAttribute>("renderer").value(),
                  "OpenQuilRender " OPENQUIL_VERSION " software");
        unsigned width, height;
        std::vector<float> rgba;
        ASSERT_TRUE(readExr(file, width, height, rgba));
        ASSERT_EQ(rgba.size(), size_t(16 * 24 * 4));
        EXPECT_EQ(rgba[0], red);
        EXPECT_NEAR(rgba[1], green, 1e-5);
        EXPECT_EQ(rgba[3], 0.5f);
    }
    session().exposure = 4; // beyond what halves hold
    session().exrFloats = false;
    pixel(32, 24);
    ASSERT_TRUE(writeFrame(frame, file));
    unsigned width, height;
    std::vector<float> rgba;
    ASSERT_TRUE(readExr(file, width, height, rgba));
    EXPECT_EQ(rgba[0], 65504);
}

TEST_F(LightTest, ARegionIsThatPartOfThePicture) {
    glow(ZVector(1, 0.5, 0.25));
    pixel(0, 0);
    const std::vector<float> whole = frame.pixels, depth = frame.depth;
    const std::vector<unsigned char> bytes = writtenPng();
    session().region = PixelRegion{40, 47, 10, 40};
    pixel(40, 10);
    ASSERT_EQ(frame.pixels.size(), size_t(8 * 31 * 4));
    const ZRenderData &data = frame.data;
    EXPECT_EQ(std::vector<unsigned>({data.left, data.right, data.bottom, data.top, data.xsize,
                                     data.ysize, data.resX, data.resY}),
              (std::vector<unsigned>{40, 47, 10, 40, 8, 31, 64, 48}));
    const std::vector<unsigned char> part = writtenPng();
    ASSERT_EQ(part.size(), bytes.size());
    for (unsigned y = 0; y < 48; ++y)
        for (unsigned x = 0; x < 64; ++x) {
            const size_t there = y * 64 + x;
            const bool inside = x >= 40 && x <= 47 && y >= 10 && y <= 40;
            ASSERT_EQ(part[4 * there + 3], inside ? bytes[4 * there + 3] : 0);
            if (!inside)
                continue;
            const size_t here = (y - 10) * 8 + x - 40;
            ASSERT_EQ(frame.pixels[4 * here], whole[4 * there]);
            ASSERT_EQ(frame.depth[here], depth[there]);
        }
    session().region = PixelRegion{40, 64, 10, 40};
    EXPECT_EQ(renderFrame(frame).statusCode(), ZStatus::kInvalidParameter);
}

TEST_F(LightTest, CameraPlugsDecideWhatIsSeen) {
    glow(ZVector(1, 1, 1));
    EXPECT_NEAR(plug("cam", "verticalFieldOfView").asDouble(), 90, 1e-9);
    plug("cam", "filmAspect").setDouble(2);
    EXPECT_NEAR(plug("cam", "horizontalFieldOfView").asDouble(), 126.8699, 1e-4); // atan(2)
    plug("cam", "horizontalFieldOfView").setDouble(90);
    EXPECT_NEAR(plug("cam", "verticalFieldOfView").asDouble(), 53.1301, 1e-4); // atan(1/2)
    // 10 units wide at the distance 5: the square is 4 / 10 of the width.
    EXPECT_EQ(pixel(32 - 12, 24)[3], 1);
    EXPECT_EQ(pixel(32 - 14, 24)[3], 0);
    const struct {
        const char *name;
        double value;
        bool seen;
    } cases[] = {{"nearClip", 5.01, false}, {"nearClip", 4.99, true}, {"farClip", 4.995, false},
                 {"farClip", 5.01, true},   {"farClip", 0, true},     {"nearClip", -1, true}};
    for (const auto &[name, value, seen] : cases) {
        plug("cam", name).setDouble(value);
        // In the corner of the square as in the middle: planes, not balls.
        for (const unsigned x : {32u, 21u})
            EXPECT_EQ(pixel(x, 24)[3], seen) << name << value;
        EXPECT_EQ(frame.depth[24 * 64 + 32] < 6, seen);
    }
}
