// SPDX-License-Identifier: MIT
// The hardware renderer: frames with draw procedures, buffers and contexts in OpenGL (skipped where
// there is none), and the default shapes.
#include "devhost/gl/GlContext.h"
#include "devhost/gl/HardwareRendering.h"
#include "host/core/ZImage.h"
#include "host/render/ZDrawProcedureBase.h"
#include "host/render/ZGLFunctionTable.h"
#include "host/render/ZGeometryData.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZHwTextureManager.h"
#include "host/render/ZHwrCallback.h"
#include "host/render/ZRenderUtil.h"
#include "tests/test_scene.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>

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
            FAIL() << devhost::glContext().whyNot();
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

TEST_F(HardwareBuffers, ExposuresAddUpBetweenTheProcedures) {
    auto &gl = *devhost::glFunctionTable();
    devhost::HardwareView view;
    view.places = {{0.5, 0.5}, {1, 0.25}};
    view.projection(2, 2) = -0.1; // depths of 0 to 10 along -z are 0.5 to 1
    view.view(3, 0) = 7;
    std::string order;
    view.drawMeshes = [&](devhost::ViewportImage &image, const auto &place) {
        order += place[0] == 1 ? "B" : "A";
        image.depth[0] = place[0] == 1 ? 4 : 2;
        std::fill_n(image.rgba.data(), 4, 255); // a white pixel in the corner
    };
    const auto shift = [&](unsigned axis) { // of what is drawn, in pixels of 64 x 48
        double projection[16];
        gl.glGetDoublev(GL_PROJECTION_MATRIX, projection);
        return -projection[12 + axis] * (axis ? 24 : 32);
    };
    Procedure red([&] { return clear(1, 0, 0), order += "r", shift(0) == 0; });
    Procedure blue([&] {
        unsigned exposure = 9;
        renderer().getCurrentExposureNumber("", exposure);
        EXPECT_NEAR(shift(0), exposure ? 0.5 : 0, 1e-6);
        EXPECT_NEAR(shift(1), exposure ? -0.25 : 0, 1e-6);
        if (exposure == 0)
            clear(0, 0, 1);
        return order += "b", true;
    });
    Procedure behind([&] { return order += "p", true; });
    Procedure last([&] { // covers all, 3 away
        double matrix[16];
        gl.glGetDoublev(GL_MODELVIEW_MATRIX, matrix);
        EXPECT_EQ(matrix[12], 7);
        gl.glEnable(GL_DEPTH_TEST);
        gl.glColor4f(0, 1, 0, 1);
        gl.glLoadIdentity();
        gl.glTranslated(0, 0, -3);
        gl.glRectf(-1, -1, 1, 1);
        gl.glDisable(GL_DEPTH_TEST);
        return order += "l", shift(0) == 0;
    });
    const std::pair<Procedure *, ZHardwareRenderer::CallLocation> added[] = {
        {&red, ZHardwareRenderer::kPreRendering},
        {&blue, ZHardwareRenderer::kPreExposure},
        {&behind, ZHardwareRenderer::kPostExposure},
        {&last, ZHardwareRenderer::kPostRendering}};
    for (const auto &[procedure, place] : added)
        renderer().addDrawProcedure("", procedure, place);
    last.setEnabled(false);
    std::vector<int> progress;
    session().progress = [&](const std::string &, int percent) { progress.push_back(percent); };
    devhost::ViewportImage image;
    ASSERT_FALSE(devhost::drawHardwareFrame(view, &image).error());
    session().progress = nullptr;
    EXPECT_EQ(progress, (std::vector{50, 100}));
    EXPECT_EQ(order, "rbApbBp");
    // The mean light of the blue exposure and the red one, which began as all did.
    EXPECT_EQ(std::vector(image.rgba.begin(), image.rgba.begin() + 8),
              (std::vector<unsigned char>{255, 255, 255, 255, 188, 0, 188, 255}));
    EXPECT_NEAR(image.depth[0], 2, 1e-5);
    EXPECT_TRUE(std::isinf(image.depth[1]));
    last.setEnabled(true);
    ASSERT_FALSE(devhost::drawHardwareFrame(view, &image).error());
    EXPECT_EQ(image.rgba[0], 255); // 2 away, before what is 3 away
    EXPECT_EQ(image.rgba[4], 0);
    EXPECT_NEAR(image.depth[1], 3, 1e-5);
    EXPECT_EQ(session().callbackErrors, 0u);
}

TEST_F(HardwareBuffers, BackgroundsFillWhateverIsBound) {
    auto &gl = *devhost::glFunctionTable(); // no device was opened
    ZGLuint framebuffer = 0, textures[3];
    gl.glGenFramebuffersEXT(1, &framebuffer);
    gl.glGenTextures(3, textures);
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer);
    const auto make = [&](GLenum kind, GLenum image, unsigned at) {
        gl.glBindTexture(kind, textures[at]);
        gl.glTexParameteri(kind, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        for (unsigned face = 0; face < (kind == GL_TEXTURE_CUBE_MAP ? 6 : 1); ++face)
            gl.glTexImage2D(kind == image ? image : GL_TEXTURE_CUBE_MAP_POSITIVE_X + face, 0,
                            GL_RGBA8, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
        gl.glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT + at, image,
                                     textures[at], 0);
    };
    make(GL_TEXTURE_2D, GL_TEXTURE_2D, 0);
    make(GL_TEXTURE_RECTANGLE, GL_TEXTURE_RECTANGLE, 1);
    make(GL_TEXTURE_CUBE_MAP, GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, 2);
    gl.glViewport(0, 0, 2, 4);
    for (unsigned at = 0; at < 3; ++at) {
        gl.glDrawBuffer(GL_COLOR_ATTACHMENT0_EXT + at);
        gl.glReadBuffer(GL_COLOR_ATTACHMENT0_EXT + at);
        renderer().drawSwatchBackGroundQuads(ZColor(0, 1, 0, 1));
        for (const int x : {0, 3}) {
            unsigned char p[4] = {};
            gl.glReadPixels(x, 3, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
            EXPECT_EQ(p[1], x == 0 ? 255 : 0) << at << x;
        }
    }
    EXPECT_EQ(gl.glGetError(), 0u);
    gl.glDeleteFramebuffersEXT(1, &framebuffer);
    gl.glDeleteTextures(3, textures);
    renderer().drawSwatchBackGroundQuads(); // nothing is bound
}

TEST_F(HardwareBuffers, SwatchesKeepTheirPixelsAndNest) {
    unsigned width = 0, height = 8;
    ASSERT_FALSE(renderer().makeSwatchContextCurrent("", width, height).error());
    EXPECT_EQ(std::pair(width, height), std::pair(128u, 8u));
    auto &gl = *devhost::glFunctionTable();
    gl.glViewport(1, 2, 3, 4);
    width = 8;
    ASSERT_FALSE(renderer().makeSwatchContextCurrent("OpenGL", width, height).error());
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
    ASSERT_FALSE(renderer().restoreCurrent("").error());
    std::array<int, 4> viewport{};
    gl.glGetIntegerv(GL_VIEWPORT, viewport.data());
    EXPECT_EQ(viewport, (std::array{1, 2, 3, 4}));
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

TEST_F(HardwareBuffers, TheDeviceIsToldWhenTheProcessEnds) {
    struct Last : ZHwrCallback {
        void deviceDeleted() override { std::fputs("deleted at the end", stderr); }
    };
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            ZHwrCallback::addCallback(new Last);
            devhost::drawHardwareFrame();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "deleted at the end");
}

TEST_F(HardwareBuffers, OneThreadAtATimeHasOpenGL) {
    auto &gl = *devhost::glFunctionTable();
    const auto takes = [&](const char *why) {
        const ZStatus status = renderer().makeResourceContextCurrent("");
        const std::string text = status.errorString().asChar();
        EXPECT_EQ(status.error(), *why != 0) << text;
        EXPECT_NE(text.find(why), std::string::npos) << text;
        EXPECT_EQ(gl.glBufferDataARB(GL_ARRAY_BUFFER_ARB, 4, nullptr, GL_STATIC_DRAW_ARB), false);
        EXPECT_EQ(gl.glGetError(), 0x502u) << "no buffer is bound, or no context there";
        EXPECT_EQ(gl.maxTextureSize() > 0, *why == 0);
        gl.glGetError();
        ZImage image;
        EXPECT_EQ(devhost::drawHardwareFrame().error(), *why != 0);
        EXPECT_EQ(devhost::readHardwareFrame(image).error(), *why != 0);
    };
    const auto inAnotherThread = [](auto work) { std::thread(work).join(); };
    takes("");
    takes(""); // twice
    const auto refused = [&] {
        takes("it is in use in another thread");
        renderer().restoreCurrent(""); // that of this thread, which has nothing to undo
    };
    inAnotherThread(refused);
    renderer().restoreCurrent("");
    inAnotherThread(refused);
    renderer().restoreCurrent("");
    inAnotherThread([&] { takes(""); }); // until it ends
    takes("");
    renderer().restoreCurrent("");
    gl.glGetError(); // a call alone does it, too
    gl.glFinish();
    inAnotherThread(refused);
    ASSERT_FALSE(devhost::drawHardwareFrame().error());
    renderer().restoreCurrent("");
    ASSERT_FALSE(devhost::drawHardwareFrame().error()); // which keeps nothing
    inAnotherThread([&] { takes(""); });
}

TEST_F(HardwareBuffers, NothingThatScriptsSetSpoilsWhatTheHostDoes) {
    using Gl = ZGLFunctionTable;
    const auto bindBuffer = [](Gl &gl, GLenum target) {
        ZGLuint buffer = 0;
        gl.glGenBuffersARB(1, &buffer);
        gl.glBindBufferARB(target, buffer);
        gl.glBufferDataARB(target, 65536, nullptr, GL_STATIC_DRAW_ARB);
    };
    const std::pair<const char *, std::function<void(Gl &)>> states[] = {
        {"nothing", [](Gl &) {}},
        {"unpack buffer", [&](Gl &gl) { bindBuffer(gl, GL_PIXEL_UNPACK_BUFFER); }},
        {"pack buffer", [&](Gl &gl) { bindBuffer(gl, GL_PIXEL_PACK_BUFFER); }},
        {"transfer", [](Gl &gl) { gl.glPixelTransferf(GL_RED_BIAS, 1); }},
        {"maps", [](Gl &gl) { gl.glPixelTransferi(GL_MAP_COLOR, 1); }},
        {"unpack store", [](Gl &gl) { gl.glPixelStorei(GL_UNPACK_SKIP_PIXELS, 1); }},
        {"pack store", [](Gl &gl) { gl.glPixelStorei(GL_PACK_SWAP_BYTES, 1); }},
        {"alignment", [](Gl &gl) { gl.glPixelStorei(GL_PACK_ROW_LENGTH, 7); }},
        {"clip plane",
         [](Gl &gl) {
             const double nothing[] = {0, 0, 0, -1};
             gl.glClipPlane(GL_CLIP_PLANE0, nothing);
             gl.glEnable(GL_CLIP_PLANE0);
         }},
        {"discard", [](Gl &gl) { gl.glEnable(GL_RASTERIZER_DISCARD); }},
        {"masks", [](Gl &gl) { gl.glColorMask(false, true, false, true); }},
        {"scissor", [](Gl &gl) { gl.glEnable(GL_SCISSOR_TEST), gl.glScissor(0, 0, 1, 1); }},
        {"no draw buffer", [](Gl &gl) { gl.glDrawBuffer(GL_NONE), gl.glReadBuffer(GL_NONE); }},
        {"clear colour", [](Gl &gl) { gl.glClearColor(1, 1, 1, 1); }},
    };
    Gl &gl = *devhost::glFunctionTable();
    for (const auto &[name, set] : states) {
        SCOPED_TRACE(name);
        unsigned size = 4;
        ASSERT_FALSE(renderer().makeSwatchContextCurrent("", size, size).error());
        gl.glPushAttrib(GL_ALL_ATTRIB_BITS);
        gl.glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
        set(gl);
        renderer().drawSwatchBackGroundQuads(ZColor(1, 0.5f, 0, 1), false);
        ZImage swatch, frame;
        EXPECT_FALSE(renderer().readSwatchContextPixels("", swatch).error());
        const auto pixels = std::make_shared<devhost::Pixels>();
        *pixels = {1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
        ZImageFileInfo::ZHwTextureType type;
        const auto node = devhost::scene().add("file", "image", devhost::Texture{"", pixels});
        EXPECT_FALSE(ZHwTextureManager::glBind(devhost::scene().object(node), type).error());
        EXPECT_FALSE(devhost::drawHardwareFrame().error());
        EXPECT_FALSE(devhost::readHardwareFrame(frame).error());

        gl.glPopClientAttrib();
        gl.glPopAttrib();
        gl.glDisable(GL_RASTERIZER_DISCARD); // in no group
        gl.glBindBufferARB(GL_PIXEL_UNPACK_BUFFER, 0);
        gl.glBindBufferARB(GL_PIXEL_PACK_BUFFER, 0);
        unsigned char texels[8] = {};
        ZHwTextureManager::glBind(devhost::scene().object(node), type);
        gl.glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
        EXPECT_EQ(std::to_array(texels), (std::array<unsigned char, 8>{5, 6, 7, 8, 1, 2, 3, 4}));
        for (const unsigned at : {0, 3})
            EXPECT_EQ(pixel(swatch, at, at), (Pixel{255, 128, 0, 255}));
        EXPECT_EQ(pixel(frame, 63, 47), (Pixel{0, 0, 0, 0}));
        EXPECT_EQ(gl.glGetError(), 0u);
        renderer().restoreCurrent("");
    }
}
