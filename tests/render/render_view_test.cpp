// SPDX-License-Identifier: MIT
#include "devhost/api/render/Picture.h"
#include "devhost/image/ImageIo.h"
#include "host/render/ZRenderView.h"
#include "tests/temporary_folder.h"
#include "tests/test_scene.h"

#include <numeric>

namespace {

class RenderView : public apptest::SquareScene {
  protected:
    void TearDown() override {
        devhost::abandonView();
        SquareScene::TearDown();
    }
    /// A block whose pixels tell their place in the picture.
    static std::vector<RV_PIXEL> block(unsigned left, unsigned right, unsigned bottom,
                                       unsigned top) {
        std::vector<RV_PIXEL> pixels;
        for (unsigned y = bottom; y <= top; ++y)
            for (unsigned x = left; x <= right; ++x) {
                RV_PIXEL &pixel = pixels.emplace_back();
                pixel.r = float(x);
                pixel.g = float(y);
            }
        return pixels;
    }
    static ZStatus send(unsigned left, unsigned right, unsigned bottom, unsigned top,
                        bool isHdr = false) {
        auto pixels = block(left, right, bottom, top);
        return ZRenderView::updatePixels(left, right, bottom, top, pixels.data(), isHdr);
    }

    TemporaryFolder folder_;
};

} // namespace

TEST_F(RenderView, TilesOfAnySizeMakeUpThePicture) {
    constexpr unsigned width = 37, height = 23;
    for (const unsigned size : {1u, 5u, 16u, 64u}) {
        ASSERT_TRUE(ZRenderView::startRender(width, height));
        // From the top right down, the borders cut off.
        for (int y = int((height - 1) / size * size); y >= 0; y -= int(size))
            for (int x = int((width - 1) / size * size); x >= 0; x -= int(size))
                ASSERT_TRUE(send(unsigned(x), std::min(x + size, width) - 1, unsigned(y),
                                 std::min(y + size, height) - 1));
        ASSERT_TRUE(ZRenderView::endRender());
        const auto &picture = devhost::viewPicture();
        ASSERT_EQ(picture.pixels.size(), size_t(width) * height);
        for (unsigned y = 0; y < height; ++y)
            for (unsigned x = 0; x < width; ++x) {
                ASSERT_EQ(picture.pixels[y * width + x].r, float(x)) << size;
                ASSERT_EQ(picture.pixels[y * width + x].g, float(y)) << size;
            }
    }
}

TEST_F(RenderView, RegionsKeepWhatIsOutside) {
    ASSERT_TRUE(ZRenderView::startRender(8, 8));
    ASSERT_TRUE(send(0, 7, 0, 7));
    ASSERT_TRUE(ZRenderView::endRender());
    ASSERT_TRUE(ZRenderView::startRegionRender(8, 8, 2, 4, 3, 6));
    const auto &pixels = devhost::viewPicture().pixels;
    for (unsigned y = 0; y < 8; ++y)
        for (unsigned x = 0; x < 8; ++x) {
            const bool inside = x >= 2 && x <= 4 && y >= 3 && y <= 6;
            EXPECT_EQ(pixels[y * 8 + x].r, inside ? 0.0f : float(x));
        }
    EXPECT_TRUE(send(2, 2, 3, 6));
    EXPECT_TRUE(send(1, 2, 3, 6).error()); // reaches out of the region
    ASSERT_TRUE(ZRenderView::endRender());
}

TEST_F(RenderView, FeedbackTellsHowMuchOfTheRegionWasSent) {
    std::vector<int> heard;
    devhost::renderSession().progress = [&](const std::string &, int percent) {
        heard.push_back(percent);
    };
    ASSERT_TRUE(ZRenderView::startRegionRender(8, 8, 2, 4, 3, 6, false, true)); // 12 pixels
    EXPECT_TRUE(send(2, 2, 3, 5));
    EXPECT_TRUE(send(3, 3, 3, 5));
    EXPECT_TRUE(send(2, 4, 3, 6)); // some once more
    devhost::renderSession().progress = nullptr;
    EXPECT_EQ(heard, (std::vector{25, 50, 100}));
    ASSERT_TRUE(ZRenderView::endRender());
}

TEST_F(RenderView, InconsistentCallsFail) {
    using Status = ZStatus::ZStatusCode;
    const auto code = [](const ZStatus &status) { return status.statusCode(); };
    RV_PIXEL pixels[64];
    EXPECT_EQ(code(ZRenderView::updatePixels(0, 1, 0, 1, pixels)), Status::kFailure);
    EXPECT_EQ(code(ZRenderView::endRender()), Status::kFailure);
    for (const auto &[width, height] :
         {std::pair(0u, 4u), {4u, 0u}, {16385u, 4u}, {4u, 4294967295u}})
        EXPECT_EQ(code(ZRenderView::startRender(width, height)), Status::kInvalidParameter);
    const unsigned badRegions[][4] = {{3, 2, 0, 1}, {0, 1, 3, 2}, {0, 8, 0, 1}, {0, 1, 0, 8}};
    for (const auto &r : badRegions)
        EXPECT_EQ(code(ZRenderView::startRegionRender(8, 8, r[0], r[1], r[2], r[3])),
                  Status::kInvalidParameter);

    ASSERT_TRUE(ZRenderView::startRender(8, 8));
    EXPECT_EQ(code(ZRenderView::startRender(8, 8)), Status::kFailure);
    for (const auto &r : badRegions) {
        EXPECT_EQ(code(ZRenderView::updatePixels(r[0], r[1], r[2], r[3], pixels)),
                  Status::kInvalidParameter);
    }
    EXPECT_EQ(code(ZRenderView::updatePixels(0, 7, 0, 7, nullptr)), Status::kInvalidParameter);
    std::vector<float> values(128);
    RV_AOV layers[2];
    for (RV_AOV &layer : layers) {
        layer.name = &layer == layers ? "z" : "n";
        layer.numberOfChannels = 1;
        layer.pPixels = values.data();
    }
    const auto sent = [&] {
        return code(ZRenderView::updatePixels(0, 7, 0, 7, pixels, false, 2, layers));
    };
    EXPECT_EQ(sent(), Status::kSuccess);
    void (*const mistakes[])(RV_AOV &) = {
        [](RV_AOV &a) { a.name = ""; },
        [](RV_AOV &a) { a.name = "z"; },
        [](RV_AOV &a) { a.pPixels = nullptr; },
        [](RV_AOV &a) { a.numberOfChannels = 2; },
    };
    for (const auto &mistake : mistakes) {
        const RV_AOV good = layers[1];
        mistake(layers[1]);
        EXPECT_EQ(sent(), Status::kInvalidParameter);
        layers[1] = good;
    }
    EXPECT_EQ(code(send(0, 7, 0, 7, true)), Status::kInvalidParameter); // not linear so far
    EXPECT_TRUE(ZRenderView::endRender());
    EXPECT_EQ(code(send(0, 7, 0, 7)), Status::kFailure);
}

TEST_F(RenderView, PngFilesHoldClampedColoursAndTheOpacity) {
    RV_PIXEL pixels[2];
    pixels[0] = {-1.0f, 0.5f, 2.0f, 0.25f};
    pixels[1] = {1.0f, 0.0f, 0.2f, 1.0f};
    // 188 and 124 are the sRGB codes of 0.5 and 0.2 in linear light.
    const std::pair<bool, std::vector<unsigned char>> cases[] = {
        {false, {0, 128, 255, 64, 255, 0, 51, 255}}, {true, {0, 188, 255, 64, 255, 0, 124, 255}}};
    for (const auto &[isHdr, expected] : cases) {
        session().outputFile = folder_.file("view.png");
        ASSERT_TRUE(ZRenderView::startRender(1, 2));
        ASSERT_TRUE(ZRenderView::updatePixels(0, 0, 0, 1, pixels, isHdr));
        ASSERT_TRUE(ZRenderView::endRender());
        unsigned width, height;
        std::vector<unsigned char> bytes;
        ASSERT_TRUE(devhost::readPng(session().outputFile, width, height, bytes));
        EXPECT_EQ(width, 1u);
        EXPECT_EQ(bytes, expected);
    }
}

TEST_F(RenderView, ExrFilesHoldLightTimesOpacityAndTheExtraLayers) {
    std::vector<RV_PIXEL> pixels(4, {-1.0f, 2.5f, 1e5f, 0.5f});
    session().exrFloats = true;
    std::vector<float> normals(12);
    std::iota(normals.begin(), normals.end(), 0.0f);
    RV_AOV layer;
    layer.name = "normals";
    layer.numberOfChannels = 3;
    layer.pPixels = normals.data();
    session().outputFile = folder_.file("view.EXR");
    ASSERT_TRUE(ZRenderView::startRender(4, 2));
    // The right half only; the left one stays clear.
    ASSERT_TRUE(ZRenderView::updatePixels(2, 3, 0, 1, pixels.data(), true, 1, &layer));
    ASSERT_TRUE(ZRenderView::endRender());
    unsigned width, height;
    std::vector<float> rgba, aov;
    ASSERT_TRUE(devhost::readExr(session().outputFile, width, height, rgba));
    ASSERT_TRUE(devhost::readExr(session().outputFile, width, height, aov, "normals"));
    ASSERT_EQ(rgba.size(), 32u);
    EXPECT_EQ((std::vector<float>(rgba.begin() + 4, rgba.begin() + 12)),
              (std::vector<float>{0, 0, 0, 0, -0.5f, 1.25f, 5e4f, 0.5f}));
    for (unsigned channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(aov[(0 * 4 + 3) * 4 + channel], normals[1 * 3 + channel]);
        EXPECT_EQ(aov[(1 * 4 + 2) * 4 + channel], normals[2 * 3 + channel]);
    }
    // Without the flag they are sRGB codes: 0.5 is 0.21404 of light.
    RV_PIXEL half{0.5f, 1.0f, 0.0f, 0.5f};
    ASSERT_TRUE(ZRenderView::startRender(1, 1));
    ASSERT_TRUE(ZRenderView::updatePixels(0, 0, 0, 0, &half));
    ASSERT_TRUE(ZRenderView::endRender());
    ASSERT_TRUE(devhost::readExr(session().outputFile, width, height, rgba));
    EXPECT_NEAR(rgba[0], 0.10702, 1e-5);
    EXPECT_EQ(rgba[1], 0.5f);
}

TEST_F(RenderView, APictureThatCannotBeWrittenIsAFailure) {
    for (const char *name : {"missing/view.png", "view.jpg"}) {
        session().outputFile = folder_.file(name);
        ASSERT_TRUE(ZRenderView::startRender(1, 1));
        EXPECT_TRUE(ZRenderView::endRender().error());
        EXPECT_FALSE(session().outputError.empty());
        EXPECT_FALSE(devhost::viewIsOpen());
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path));
}
