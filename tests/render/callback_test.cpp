// SPDX-License-Identifier: MIT
#include "devhost/raytrace/SoftwareRenderer.h"
#include "devhost/session/RenderCallbacks.h"
#include "host/render/ZRenderCallback.h"
#include "tests/test_scene.h"

#include <functional>
#include <stdexcept>

namespace {

std::string calls;

/// Writes its name and the point at which it is called.
struct Recorder : ZRenderCallback {
    explicit Recorder(char name) : name(name) {}
    bool shadowCastCallback(ZRenderShadowData const &) override { return record('s'); }
    bool renderCallback(ZRenderData const &data) override {
        if (onRender)
            onRender(data);
        return record('r');
    }
    bool postProcessCallback(ZRenderData const &) override { return record('p'); }
    bool record(char point) {
        calls += {name, point, ' '};
        return true;
    }
    char name;
    std::function<void(const ZRenderData &)> onRender;
};

class Callbacks : public apptest::SquareScene {
  protected:
    void SetUp() override {
        SquareScene::SetUp();
        calls.clear();
    }
    static ZStatus render() { return devhost::renderFrame(frame()); }
    static devhost::Frame &frame() {
        static devhost::Frame result;
        return result;
    }
};

} // namespace

TEST_F(Callbacks, AreCalledByNumberThenByRegistrationAtTheThreePoints) {
    addLight(devhost::Light::kPoint, 0, 0, 2);
    Recorder a('a'), b('b'), c('c'), d('d');
    ZRenderCallback::addCallback(&a, 5);
    ZRenderCallback::addCallback(&b, -1);
    ZRenderCallback::addCallback(&c, 5);
    ZRenderCallback::addCallback(&d, 5);
    ZRenderCallback::addCallback(&a, 5); // again: now behind the others
    ZRenderCallback::removeCallback(&d);
    ASSERT_TRUE(render());
    EXPECT_EQ(calls, "bs cs as br cr ar bp cp ap ");
}

TEST_F(Callbacks, ADeletedOrRemovedCallbackIsNotCalled) {
    auto later = std::make_unique<Recorder>('b');
    Recorder first('a');
    first.onRender = [&](const ZRenderData &) { later.reset(); };
    ZRenderCallback::addCallback(&first, 0);
    ZRenderCallback::addCallback(later.get(), 1);
    ASSERT_TRUE(render());
    EXPECT_EQ(calls, "ar ap ");
}

TEST_F(Callbacks, AnExceptionEndsItsCallbackOnly) {
    Recorder throwing('a'), odd('b'), fine('c');
    throwing.onRender = [](const ZRenderData &) { throw std::runtime_error("broken"); };
    odd.onRender = [](const ZRenderData &) { throw 7; };
    for (auto *each : {&throwing, &odd, &fine})
        ZRenderCallback::addCallback(each);
    std::string told;
    session().onCallbackError = [&](const char *callback, const char *what) {
        told += std::string(callback) + ": " + what + "\n";
    };
    ASSERT_TRUE(render());
    EXPECT_EQ(calls, "cr ap bp cp ");
    EXPECT_EQ(session().callbackErrors, 2u);
    EXPECT_EQ(told, "renderCallback: broken\nrenderCallback: unknown exception\n");
}

TEST_F(Callbacks, ChangedPixelsBecomeTheLightOfTheirBytesAndOthersKeepTheirs) {
    glow(ZVector(3, 0.5, 0.001)); // sRGB codes 255, 188 and 3
    ASSERT_TRUE(render());
    const std::vector<float> before = frame().pixels;
    const size_t centre = 24 * 64 + 32;
    EXPECT_EQ(before[centre * 4], 3);

    Recorder painter('a'), looker('b');
    painter.onRender = [&](const ZRenderData &data) {
        unsigned char *pixel = data.rgbaArr + centre * 4;
        EXPECT_EQ(std::vector(pixel, pixel + 4), (std::vector<unsigned char>{255, 188, 3, 255}));
        std::copy_n(std::array<unsigned char, 4>{188, 0, 255, 51}.begin(), 4, data.rgbaArr);
        data.rgbaArr[7] = 51; // the opacity of a black pixel alone
        data.depthArr[0] = 3;
        // What a callback does to its record is its own.
        auto &record = const_cast<ZRenderData &>(data);
        record.xsize = record.ysize = 2000;
        record.rgbaArr = nullptr;
        record.depthArr = nullptr;
    };
    looker.onRender = [](const ZRenderData &data) {
        EXPECT_EQ(data.xsize, 64);
        EXPECT_EQ(data.ysize, 48);
        EXPECT_EQ(data.rgbaArr[0], 188);
        EXPECT_EQ(data.depthArr[0], 3);
    };
    ZRenderCallback::addCallback(&painter);
    ZRenderCallback::addCallback(&looker);
    ASSERT_TRUE(render());
    // The code 188 is 0.5029 of light; all of it times the opacity 51 / 255.
    const float painted[] = {0.10058f, 0, 0.2f, 0.2f, 0, 0, 0, 0.2f};
    for (size_t at = 0; at < before.size(); ++at)
        if (at < 8)
            EXPECT_NEAR(frame().pixels[at], painted[at], 1e-5);
        else
            ASSERT_EQ(frame().pixels[at], before[at]) << at;
    EXPECT_EQ(frame().depth[0], 3);
}

TEST_F(Callbacks, ACancelledRenderFails) {
    Recorder stopper('a');
    stopper.onRender = [](const ZRenderData &) { session().cancelled = true; };
    ZRenderCallback::addCallback(&stopper);
    EXPECT_TRUE(render().error());
    calls.clear();
    EXPECT_TRUE(render().error());
    EXPECT_EQ(calls, ""); // it stopped before the image was there
}

TEST_F(Callbacks, ASceneWithoutACameraCannotBeRendered) {
    devhost::scene().clear();
    EXPECT_EQ(render().statusCode(), ZStatus::kNotFound);
}
