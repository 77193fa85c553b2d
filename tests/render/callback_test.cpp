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

TEST_F(Callbacks, SeeTheImageAndMayChangeItInPlace) {
    Recorder painter('a');
    painter.onRender = [](const ZRenderData &data) {
        EXPECT_EQ(data.rgbaArr[(24 * 64 + 32) * 4 + 3], 255);
        EXPECT_EQ(data.rgbaArr[3], 0);
        data.rgbaArr[0] = 200;
        data.depthArr[0] = 3;
    };
    ZRenderCallback::addCallback(&painter);
    ASSERT_TRUE(render());
    EXPECT_EQ(frame().rgba[0], 200);
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
