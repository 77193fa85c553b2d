// SPDX-License-Identifier: MIT
// Swatches: how the host works on one, and the host's own generator.
#include "devhost/api/render/Swatches.h"
#include "tests/scene_files.h"

#include <cstring>
#include <stdexcept>

using namespace devhost;

namespace {

/// Takes three steps, unless a test wants something else.
struct Stepping : ZSwatchRenderBase {
    static inline int steps, alive;
    static inline void (*onStep)();

    Stepping(ZObject swatchNode, ZObject node, int resolution)
        : ZSwatchRenderBase(swatchNode, node, resolution) {
        ++alive;
    }
    ~Stepping() override { --alive; }
    bool doIteration() override {
        std::memset(image().pixels(), ++steps + renderQuality(), 4);
        if (onStep)
            onStep();
        return steps == 3;
    }
    static ZStatus render(ZImage &image, void (*action)()) {
        steps = alive = 0;
        onStep = action;
        return renderSwatch("stepping", ZObject(), 1, image, 20);
    }
};

TEST(SwatchTest, HostStepsUntilTheSwatchIsFinishedOrStopped) {
    ASSERT_TRUE(ZSwatchRenderRegister::registerSwatchRender(
        "stepping", [](ZObject swatchNode, ZObject node, int resolution) -> ZSwatchRenderBase * {
            return new Stepping(swatchNode, node, resolution);
        }));
    ZImage image;
    ASSERT_TRUE(Stepping::render(image, nullptr));
    EXPECT_EQ(image.pixels()[0], 23);
    const auto cancel = [] { ZSwatchRenderBase::cancelCurrentSwatchRender(); };
    EXPECT_EQ(Stepping::render(image, cancel).statusCode(), ZStatus::kFailure);
    EXPECT_EQ(Stepping::steps, 1);
    const auto fail = [] { throw std::runtime_error("out of paint"); };
    EXPECT_NE(std::strstr(Stepping::render(image, fail).errorString().asChar(), "out of paint"),
              nullptr);
    ZSwatchRenderBase::enableSwatchRender(false);
    EXPECT_EQ(Stepping::render(image, nullptr).statusCode(), ZStatus::kFailure);
    ZSwatchRenderBase::enableSwatchRender(true);
    EXPECT_TRUE(Stepping::render(image, nullptr)); // what was cancelled does not last
    EXPECT_EQ(Stepping::alive, 0);
    EXPECT_TRUE(ZSwatchRenderRegister::unregisterSwatchRender("stepping"));
}

TEST(SwatchTest, MaterialBallShowsTheMaterialAlone) {
    Material glow;
    glow.diffuse = ZVector(0, 0, 0);
    glow.emission = ZVector(1, 0.6, 0.2);
    scene().clear();
    const ZObject material = scene().object(scene().add("material", "glow", glow));
    const auto pixels = std::make_shared<Pixels>(Pixels{1, 1, {0, 0, 0, 255}});
    const ZObject texture = scene().object(scene().add("file", "black", Texture{"", pixels}));

    ZImage image;
    ASSERT_TRUE(renderSwatch(kMaterialBall, material, 9, image));
    // The sRGB codes of 1, 0.6 and 0.2; no light of the studio changes them.
    const unsigned char glowing[] = {255, 203, 124, 255};
    const unsigned char *centre = image.pixels() + 4 * (4 * 9 + 4);
    EXPECT_EQ(std::memcmp(centre, glowing, 4), 0);
    EXPECT_NE(std::memcmp(image.pixels(), glowing, 4), 0);
    ASSERT_TRUE(renderSwatch(kMaterialBall, texture, 9, image));
    const unsigned char black[] = {0, 0, 0, 255};
    EXPECT_EQ(std::memcmp(image.pixels() + 4 * (4 * 9 + 4), black, 4), 0);

    // Two of the floor's squares meet at x = 1: on row 12, where z is 0.5 and the floor 5.95 away,
    // that is between the columns 235 and 236.
    ASSERT_TRUE(renderSwatch(kMaterialBall, material, 256, image, 0));
    const auto grey = [&](int column) { return image.pixels()[4 * (12 * 256 + column)]; };
    EXPECT_LT(grey(237), grey(234) / 2 + 20) << "70 beside 150, as the lamps light them";
    EXPECT_NEAR(grey(234), grey(228), 8);
    EXPECT_NEAR(grey(237), grey(244), 8);

    const auto ofQuality = [&](int quality) {
        EXPECT_TRUE(renderSwatch(kMaterialBall, material, 9, image, quality));
        return std::vector(image.pixels(), image.pixels() + 4 * 9 * 9);
    };
    EXPECT_EQ(ofQuality(-1), ofQuality(0));
    EXPECT_NE(ofQuality(0), ofQuality(1));
    EXPECT_NE(ofQuality(2), ofQuality(3));
    EXPECT_EQ(ofQuality(3), ofQuality(9));

    std::unique_ptr<ZSwatchRenderBase> steps, threads;
    ASSERT_TRUE(beginSwatch(kMaterialBall, material, 50, steps));
    ASSERT_TRUE(beginSwatch(kMaterialBall, material, 50, threads));
    int count = 1;
    for (; !steps->doIteration(); ++count)
        steps->image().release();       // a script may do that to a picture it was given
    EXPECT_EQ(count, 4);                // four samples a pixel at the quality 1
    threads->cancelParallelRendering(); // before the start
    EXPECT_FALSE(threads->renderParallel());
    EXPECT_TRUE(threads->renderParallel());
    EXPECT_EQ(std::memcmp(steps->image().pixels(), threads->image().pixels(), 4 * 50 * 50), 0);
    scene().clear();
}

} // namespace
