// SPDX-License-Identifier: MIT
#include "devhost/gl/GlContext.h"
#include "devhost/session/Viewport.h"
#include "host/core/ZImage.h"
#include "host/core/ZPoint.h"
#include "host/render/ZGLFunctionTable.h"
#include "host/render/ZRenderUtil.h"
#include "host/render/ZRenderingInfo.h"
#include "tests/test_scene.h"

#include <cmath>
#include <functional>

namespace {

using Pixel = std::array<unsigned char, 4>;

/// A renderer whose drawing is a function of the test's.
class Painter : public ZViewportRenderer {
  public:
    explicit Painter(const char *name) : ZViewportRenderer(name) {
        setRenderingOverride(kOverrideAllDrawing);
    }
    ZStatus initialize() override {
        calls += "i";
        return initializes;
    }
    ZStatus uninitialize() override {
        calls += "u";
        return {};
    }
    ZStatus render(ZRenderingInfo const &info) override {
        calls += "r";
        return draw ? draw(info) : ZStatus();
    }
    bool nativelySupports(RenderingAPI api, float version) override {
        return api == supported && version >= 1;
    }
    bool override(RenderingOverride mode) override { return mode != refused; }
    int overrideThenStandardExclusion() override { return exclusion; }

    std::string calls;
    ZStatus initializes;
    RenderingAPI supported = kSoftware;
    RenderingOverride refused = kNoOverride;
    int exclusion = kExcludeNone;
    std::function<ZStatus(ZRenderingInfo const &)> draw;
};

class Viewport : public apptest::SquareScene {
  protected:
    devhost::ViewportImage drawn(unsigned width = 64, unsigned height = 48) {
        devhost::ViewportImage image;
        const ZStatus status = devhost::renderViewport("painter", width, height, 1, image);
        EXPECT_FALSE(status.error()) << status.errorString().asChar();
        image.rgba.resize(size_t(width) * height * 4); // to look at in any case
        image.depth.resize(size_t(width) * height);
        return image;
    }
    static Pixel at(const devhost::ViewportImage &image, unsigned x, unsigned y) {
        Pixel pixel;
        std::copy_n(image.rgba.begin() + (y * image.width + x) * 4, 4, pixel.begin());
        return pixel;
    }
    /// An image of one value all over, and of one depth.
    static ZImage plain(unsigned width, unsigned height, unsigned channels, unsigned char value,
                        float depth) {
        ZImage image;
        image.create(width, height, channels);
        std::fill_n(image.pixels(), size_t(width) * height * channels, value);
        const std::vector<float> depths(size_t(width) * height, depth);
        image.setDepthMap(depths.data(), width, height);
        return image;
    }

    Painter painter{"painter"};
};

const Pixel kNothing{0, 0, 0, 0};

} // namespace

TEST_F(Viewport, RequestTellsCameraAndMatrices) {
    ASSERT_TRUE(painter.registerRenderer());
    painter.draw = [&](ZRenderingInfo const &info) -> ZStatus {
        EXPECT_EQ(info.width(), 64);
        EXPECT_EQ(ZRenderUtil::quilRenderState(), ZRenderUtil::kInteractiveRender);
        EXPECT_TRUE(info.renderTarget().makeTargetCurrent().error()); // not drawn with OpenGL
        // The square's corner, 5 units before the camera: the view is 10 units high there, and
        // 64/48 times as wide.
        const ZPoint corner = ZPoint(2, 2, -1) * info.viewMatrix() * info.projectionMatrix();
        EXPECT_NEAR(corner.w, 5, 1e-9);
        EXPECT_NEAR(corner.x / corner.w, 0.3, 1e-9);
        EXPECT_NEAR(corner.y / corner.w, 0.4, 1e-9);
        const ZPoint far = ZPoint(0, 0, 4 - 10000) * info.viewMatrix() * info.projectionMatrix();
        EXPECT_NEAR(far.z / far.w, 1, 1e-6);
        return {};
    };
    drawn();
    EXPECT_EQ(ZRenderUtil::quilRenderState(), ZRenderUtil::kNotRendering);
    EXPECT_EQ(painter.calls, "ir");
}

TEST_F(Viewport, OverrideDecidesWhoDraws) {
    ASSERT_TRUE(painter.registerRenderer());
    // Far behind the square on the left, before it on the right.
    painter.draw = [](ZRenderingInfo const &info) -> ZStatus {
        const ZRenderTarget &target = info.renderTarget();
        target.writeColorBuffer(plain(32, 48, 3, 200, 100), 0, 0, true);
        return target.writeColorBuffer(plain(32, 48, 3, 100, 1), 32, 0, true);
    };
    const Pixel back{200, 200, 200, 255}, front{100, 100, 100, 255};
    using R = ZViewportRenderer;
    const struct {
        R::RenderingOverride mode, refused;
        int exclusion;
        bool rendererDraws, hostDraws;
    } cases[] = {{R::kOverrideThenUI, R::kNoOverride, 0, true, false},
                 {R::kOverrideThenStandard, R::kNoOverride, R::kExcludeLights, true, true},
                 {R::kOverrideThenStandard, R::kNoOverride, R::kExcludeAll, true, false},
                 {R::kNoOverride, R::kNoOverride, 0, false, true},
                 {R::kOverrideAllDrawing, R::kOverrideAllDrawing, 0, false, true}};
    for (const auto &c : cases) {
        painter.setRenderingOverride(c.mode);
        painter.refused = c.refused;
        painter.exclusion = c.exclusion;
        const auto image = drawn();
        EXPECT_EQ(at(image, 2, 2), c.rendererDraws ? back : kNothing); // beside the square
        const float depth = image.depth[24 * 64 + 28];                 // on the square, left
        EXPECT_FLOAT_EQ(depth, c.hostDraws ? 5 : 100) << c.mode << c.exclusion;
        EXPECT_EQ(at(image, 28, 24) == back, !c.hostDraws);
        EXPECT_EQ(at(image, 36, 24) == front, c.rendererDraws); // nearer than the square
    }
}

TEST_F(Viewport, ImagesAreConvertedAndCutOff) {
    ASSERT_TRUE(painter.registerRenderer());
    for (const auto &[x, y] : {std::pair(3, 2), {-2, -1}, {-100, 0}, {5, 7}}) {
        painter.draw = [&, x = x, y = y](ZRenderingInfo const &info) {
            return info.renderTarget().writeColorBuffer(plain(4, 3, 4, 9, 1), short(x), short(y));
        };
        const auto image = drawn(8, 8);
        for (int row = 0; row < 8; ++row)
            for (int column = 0; column < 8; ++column) {
                const bool inside = column >= x && column < x + 4 && row >= y && row < y + 3;
                const Pixel wanted = inside ? Pixel{9, 9, 9, 9} : kNothing;
                ASSERT_EQ(at(image, unsigned(column), unsigned(row)), wanted) << x << " " << y;
            }
    }
    const float values[] = {0, 0.2f, 0.4f, 2};
    const Pixel wanted[] = {{0, 0, 0, 255}, {0, 0, 0, 51}, {0, 51, 102, 255}, {0, 51, 102, 255}};
    for (unsigned channels = 1; channels <= 4; ++channels)
        for (const bool asBytes : {false, true}) {
            painter.draw = [&](ZRenderingInfo const &info) {
                ZImage image;
                image.setFloatPixels(values, 1, 1, channels);
                if (asBytes)
                    image.convertPixelFormat(ZImage::kByte);
                return info.renderTarget().writeColorBuffer(image);
            };
            EXPECT_EQ(at(drawn(1, 1), 0, 0), wanted[channels - 1]) << channels;
        }
    painter.draw = [&](ZRenderingInfo const &info) {
        ZImage image;
        image.create(4, 4);
        return info.renderTarget().writeColorBuffer(image, 0, 0, true); // no depths
    };
    devhost::ViewportImage image;
    EXPECT_EQ(devhost::renderViewport("painter", 8, 8, 1, image).statusCode(),
              ZStatus::kInvalidParameter);
}

TEST_F(Viewport, RegistrationAndFailures) {
    const auto render = [] {
        devhost::ViewportImage image;
        return devhost::renderViewport("painter", 8, 8, 1, image).statusCode();
    };
    EXPECT_EQ(render(), ZStatus::kNotFound);
    ASSERT_TRUE(painter.registerRenderer());
    EXPECT_TRUE(Painter("painter").registerRenderer().error());
    ASSERT_TRUE(Painter("other").registerRenderer()); // and gone with its end
    EXPECT_EQ(devhost::viewportRenderers(), std::vector<std::string>{"painter"});

    painter.initializes = ZStatus::kLicenseFailure;
    EXPECT_EQ(render(), ZStatus::kLicenseFailure);
    painter.initializes = {};
    painter.supported = ZViewportRenderer::kDirect3D;
    EXPECT_EQ(render(), ZStatus::kFailure);
    painter.supported = ZViewportRenderer::kSoftware;
    painter.draw = [](ZRenderingInfo const &) -> ZStatus { throw std::runtime_error("broken"); };
    EXPECT_EQ(render(), ZStatus::kFailure);
    ASSERT_TRUE(painter.deregisterRenderer());
    EXPECT_EQ(painter.calls, "iiru");

    ASSERT_TRUE(painter.registerRenderer());
    devhost::scene().clear();
    EXPECT_EQ(render(), ZStatus::kNotFound); // no camera
}

TEST_F(Viewport, OpenGLDrawsIntoTheTarget) {
    if (!devhost::glContext().available)
        FAIL() << devhost::glContext().whyNot();
    ASSERT_TRUE(painter.registerRenderer());
    painter.supported = ZViewportRenderer::kOpenGL;
    painter.setRenderingOverride(ZViewportRenderer::kOverrideThenStandard);
    painter.draw = [&](ZRenderingInfo const &info) -> ZStatus {
        if (const ZStatus status = info.renderTarget().makeTargetCurrent(); status.error())
            return status;
        ZGLFunctionTable &gl = *devhost::glFunctionTable();
        gl.glEnable(0xC11); // the scissor
        gl.glScissor(0, 0, 64, 10);
        gl.glClearColor(1, 0, 0, 1);
        gl.glClear(0x4000); // the colours
        gl.glDisable(0xC11);
        EXPECT_EQ(gl.glGetError(), 0u);
        // Pixels and OpenGL mix.
        return info.renderTarget().writeColorBuffer(plain(2, 2, 1, 7, 4), 0, 0, true);
    };
    const auto image = drawn();
    EXPECT_EQ(at(image, 60, 5), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(at(image, 60, 20), kNothing);
    EXPECT_FLOAT_EQ(image.depth[24 * 64 + 28], 5); // the square, drawn by the host
    EXPECT_TRUE(std::isinf(image.depth[20 * 64 + 60]));
    EXPECT_EQ(at(image, 1, 1), (Pixel{7, 7, 7, 255}));
    EXPECT_NEAR(image.depth[64 + 1], 4, 1e-3);
}
