// SPDX-License-Identifier: MIT
#include "devhost/gl/GlContext.h"
#include "devhost/image/ImageIo.h"
#include "host/core/ZPlug.h"
#include "host/render/ZGLFunctionTable.h"
#include "host/render/ZHwTextureManager.h"
#include "host/render/ZRenderProfile.h"
#include "tests/temporary_folder.h"
#include "tests/test_scene.h"

namespace {

class Textures : public apptest::SquareScene {
  protected:
    void SetUp() override {
        SquareScene::SetUp();
        // Two pixels: red at the bottom, green above.
        const unsigned char pixels[] = {255, 0, 0, 255, 0, 255, 0, 255};
        file = folder.file("two.png");
        ASSERT_TRUE(devhost::writePng(file, 1, 2, pixels));
    }
    void TearDown() override { SquareScene::TearDown(); }
    static ZHwTextureFileHandle registered(const std::string &name) {
        ZHwTextureFileHandle handle = -1;
        const ZStatus status = ZHwTextureManager::registerTextureFile(name.c_str(), handle);
        return status.error() ? -int(status.statusCode()) : handle;
    }

    TemporaryFolder folder;
    std::string file;
    ZImageFileInfo::ZHwTextureType type = ZImageFileInfo::kHwTexture3D;
};

} // namespace

TEST_F(Textures, FilesAreCountedUnderTheirHandles) {
    const ZHwTextureFileHandle first = registered(file);
    ASSERT_GT(first, 0);
    EXPECT_EQ(registered(folder.file("./two.png")), first); // the same file
    EXPECT_EQ(registered(folder.file("none.png")), -int(ZStatus::kNotFound));
    EXPECT_EQ(registered(folder.write("broken.png", "no image")), -int(ZStatus::kFailure));

    ZString name;
    ASSERT_TRUE(ZHwTextureManager::deregisterTextureFile(first));
    ASSERT_TRUE(ZHwTextureManager::textureFile(first, name)); // registered once more
    EXPECT_EQ(name, ZString(file.c_str()));
    ASSERT_TRUE(ZHwTextureManager::deregisterTextureFile(first));
    for (const ZHwTextureFileHandle unknown : {first, 0, -1}) {
        EXPECT_TRUE(ZHwTextureManager::textureFile(unknown, name).error());
        EXPECT_TRUE(ZHwTextureManager::deregisterTextureFile(unknown).error());
    }
    EXPECT_NE(registered(file), first);
}

TEST_F(Textures, EveryFormBindsTheImage) {
    auto &scene = devhost::scene();
    const auto texture = scene.add("file", "image", devhost::Texture{file, nullptr});
    devhost::Material material;
    material.texture = texture;
    const auto painted = scene.add("material", "painted", material);
    const auto plug = [&](devhost::NodeId node, const char *attribute) {
        return ZPlug(scene.object(node), attribute);
    };
    using Info = ZImageFileInfo;
    if (!devhost::glContext().available)
        FAIL() << devhost::glContext().whyNot();

    constexpr ZGLenum kTexture2D = 0xDE1, kBinding = 0x8069, kRgba = 0x1908, kByte = 0x1401;
    ZGLFunctionTable &gl = *devhost::glFunctionTable();
    const auto bound = [&](const ZStatus &status) {
        EXPECT_FALSE(status.error()) << status.errorString().asChar();
        ZGLint name = 0;
        gl.glGetIntegerv(kBinding, &name);
        gl.glBindTexture(kTexture2D, 0);
        return ZGLuint(name);
    };
    const ZGLuint name = bound(ZHwTextureManager::glBind(scene.object(texture), type));
    EXPECT_EQ(bound(ZHwTextureManager::glBind(scene.object(painted), type)), name);
    EXPECT_EQ(
        bound(ZHwTextureManager::glBind(plug(painted, "diffuse"), type, Info::kImageTypeNormal)),
        name);
    // Row 0 of OpenGL is the lowest: v runs upwards.
    unsigned char texels[8] = {};
    gl.glBindTexture(kTexture2D, name); // NOLINT(readability-suspicious-call-argument): in order
    gl.glGetTexImage(kTexture2D, 0, kRgba, kByte, texels);
    EXPECT_EQ((std::array{texels[0], texels[1], texels[4], texels[5]}),
              (std::array<unsigned char, 4>{255, 0, 0, 255}));

    // A registered file has a texture of its own, which goes some time after its handle.
    const ZHwTextureFileHandle handle = registered(file);
    const ZGLuint other = bound(ZHwTextureManager::glBind(handle, type));
    EXPECT_NE(other, name);
    ASSERT_TRUE(ZHwTextureManager::deregisterTextureFile(handle));
    bound(ZHwTextureManager::glBind(scene.object(texture), type));
    EXPECT_FALSE(gl.glIsTexture(other));
    EXPECT_TRUE(gl.glIsTexture(name));
}

TEST(RenderProfile, KeepsEachRendererOnce) {
    ZRenderProfile profile;
    for (int i = 0; i < 2; ++i) {
        profile.addRenderer(ZRenderProfile::kQuilSoftware);
        profile.addRenderer("ink", 1.5f);
        profile.addRenderer("ink", 2);
        profile.addRenderer("", 1);
    }
    EXPECT_EQ(profile.numberOfRenderers(), 3u);
    EXPECT_TRUE(profile.hasRenderer(ZRenderProfile::kQuilSoftware));
    EXPECT_FALSE(profile.hasRenderer("ink", 1));
}
