// The hardware renderer: frames with draw procedures, buffers and contexts in OpenGL (skipped where
// there is none), and the default shapes.
#include "devhost/gl/GlContext.h"
#include "devhost/gl/HardwareRendering.h"
#include "host/core/ZImage.h"
#include "host/render/ZDrawProcedureBase.h"
#include "host/render/ZGLFunctionTable.h"
#include "host/render/ZGeometryData.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZHwrCallback.h"
#include "host/render/ZRenderUtil.h"
#include "tests/test_scene.h"

#include <array>
#include <functional>

namespace {

ZHardwareRenderer &renderer() {
    return *ZHardwareRenderer::theRenderer();
}

struct Procedure : ZDrawProcedureBase {
    explicit Procedure(std::function<bool()> draw) : draw(std::move(draw)) {}
    bool execute() override { return draw(); }
    std::function<bool()> draw;
};

struct Recorder : ZHwrCallback {
    void deviceNew() override { calls += "new "; }
    void deviceLost() override { calls += "lost "; }
    void deviceReset() override { calls += "reset "; }
    void deviceDeleted() override { calls += "deleted "; }
    std::string calls;
};

using HardwareRenderer = apptest::SquareScene;

class HardwareBuffers : public apptest::SquareScene {
  protected:
    void SetUp() override {
        SquareScene::SetUp();
        if (!devhost::glContext().available)
            GTEST_SKIP() << devhost::glContext().whyNot;
        devhost::closeHardwareDevice();
    }
    void TearDown() override {
        devhost::closeHardwareDevice();
        SquareScene::TearDown();
    }

    using Pixel = std::array<int, 4>;
    static Pixel pixel(ZImage &image, unsigned x, unsigned y) {
        unsigned width = 0, height = 0;
        image.getSize(width, height);
        const unsigned char *p = image.pixels() + size_t(4) * (y * width + x);
        return {p[0], p[1], p[2], p[3]};
    }
    static void clear(float red, float green, float blue) {
        devhost::glFunctionTable()->glClearColor(red, green, blue, 1);
        devhost::glFunctionTable()->glClear(0x4000); // the colours
    }
};

} // namespace

TEST_F(HardwareRenderer, AFailingProcedureIsReportedAndTheFrameGoesOn) {
    std::string told;
    session().onCallbackError = [&](const char *, const char *what) { told += what; };
    int executed = 0;
    auto later = std::make_unique<Procedure>([&] { return ++executed; });
    Procedure bad([] { return false; }), odd([]() -> bool { throw 7; });
    Procedure deleter([&] { return later.reset(), true; });
    Procedure nested([&] {
        EXPECT_EQ(ZRenderUtil::quilRenderState(), ZRenderUtil::kHardwareRender);
        return devhost::drawHardwareFrame().error();
    });
    Procedure last([&] { return ++executed; });
    for (auto *each : {&bad, &odd, &deleter, later.get(), &nested, &last})
        ASSERT_EQ(renderer().addDrawProcedure("", each, ZHardwareRenderer::kPreExposure),
                  ZHardwareRenderer::kSuccess);
    EXPECT_FALSE(devhost::drawHardwareFrame().error());
    EXPECT_EQ(told, "the draw procedure returned falseunknown exception");
    EXPECT_EQ(executed, 1);
}

TEST_F(HardwareRenderer, DefaultShapesAreCounted) {
    unsigned streams = 0, count = 0, cell = 0, *indices = &cell;
    const auto cube = ZHardwareRenderer::kDefaultCube;
    ZGeometryData *data = renderer().referenceDefaultGeometry(cube, streams, indices, count);
    ASSERT_TRUE(data && indices);
    EXPECT_EQ(std::pair(streams, count), std::pair(3u, 36u));
    EXPECT_EQ(data[2].elementCount(), 24u);
    EXPECT_EQ(renderer().referenceDefaultGeometry(cube, streams, indices, count), data);
    for (const bool error : {false, false, true})
        EXPECT_EQ(renderer().dereferenceGeometry(data, streams).error(), error);
}

TEST_F(HardwareBuffers, ProceduresDrawIntoTheFrame) {
    Procedure green([] { return clear(0, 1, 0), true; });
    Procedure left([] { // turns to a swatch and leaves it current
        unsigned size = 16;
        renderer().makeSwatchContextCurrent("", size, size);
        return clear(1, 0, 0), true;
    });
    renderer().addDrawProcedure("", &green, ZHardwareRenderer::kPreExposure);
    renderer().addDrawProcedure("", &left, ZHardwareRenderer::kPostRendering);
    ASSERT_FALSE(devhost::drawHardwareFrame().error());
    ZImage image;
    ASSERT_FALSE(devhost::readHardwareFrame(image).error());
    EXPECT_EQ(pixel(image, 63, 47), (Pixel{0, 255, 0, 255}));
    renderer().removeDrawProcedure("", &green, ZHardwareRenderer::kPreExposure);
    ASSERT_FALSE(devhost::drawHardwareFrame().error());
    ASSERT_FALSE(devhost::readHardwareFrame(image).error());
    EXPECT_EQ(pixel(image, 0, 0), (Pixel{0, 0, 0, 0})); // cleared between frames
}

TEST_F(HardwareBuffers, SwatchesKeepTheirPixelsAndNest) {
    unsigned width = 0, height = 8;
    ASSERT_FALSE(renderer().makeSwatchContextCurrent("", width, height).error());
    EXPECT_EQ(std::pair(width, height), std::pair(128u, 8u));
    width = 8;
    ASSERT_FALSE(renderer().makeSwatchContextCurrent("OpenGL", width, height).error());
    auto &gl = *devhost::glFunctionTable();
    gl.glEnable(0x0C11); // the scissor
    renderer().drawSwatchBackGroundQuads(ZColor(1, 0.5f, 0, 1), true, 4);
    EXPECT_TRUE(gl.glIsEnabled(0x0C11));
    gl.glDisable(0x0C11);
    ZImage image;
    ASSERT_FALSE(renderer().readSwatchContextPixels("", image).error());
    const Pixel light{255, 128, 0, 255}, dark{128, 64, 0, 255};
    for (unsigned y = 0; y < 8; ++y)
        for (unsigned x = 0; x < 8; ++x)
            for (int i = 0; i < 4; ++i)
                EXPECT_NEAR(pixel(image, x, y)[i], ((x / 2 + y / 2) % 2 ? dark : light)[i], 1);
    for (int i = 0; i < 5; ++i) // more often than made current
        EXPECT_FALSE(renderer().restoreCurrent("").error());
    EXPECT_TRUE(renderer().readSwatchContextPixels("", image).error());
}

TEST_F(HardwareBuffers, TheDeviceIsTold) {
    Recorder recorder;
    ZHwrCallback::addCallback(&recorder);
    ASSERT_FALSE(devhost::drawHardwareFrame().error());
    ASSERT_FALSE(devhost::drawHardwareFrame().error());
    EXPECT_EQ(recorder.calls, "new ");
    session().settings.width = 32;
    ASSERT_FALSE(devhost::drawHardwareFrame().error());
    devhost::closeHardwareDevice();
    EXPECT_EQ(recorder.calls, "new lost reset deleted ");
}
