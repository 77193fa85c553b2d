// SPDX-License-Identifier: MIT
#include "devhost/app/RenderJob.h"
#include "devhost/session/RenderSession.h"
#include "host/core/ZStatus.h"
#include "tests/temporary_folder.h"
#include "tests/test_scene.h"

using Settings = ZCommonRenderSettingsData;
namespace fs = std::filesystem;

namespace {

class ImageNames : public apptest::SquareScene {
  protected:
    void SetUp() override {
        SquareScene::SetUp();
        session().imagesFolder = folder_.string();
    }
    void TearDown() override {
        session().imagesFolder = ".";
        SquareScene::TearDown();
    }

    static std::string relative(const Settings &settings, double frame, const char *format = "",
                                const char *tokens = "") {
        return settings
            .getImageName(Settings::kRelativePath, frame, "", "", format, ZObject::kNullObj,
                          ZString(tokens), false)
            .asChar();
    }

    TemporaryFolder files_;
    const fs::path &folder_ = files_.path;
};

} // namespace

TEST_F(ImageNames, FollowTheNamingScheme) {
    const char *const expected[] = {"pic.png",     "pic.0007.png", "pic_0007.png",
                                    "pic0007.png", "pic.png.0007", "x07-pic.tga"};
    Settings settings;
    settings.name = "pic";
    settings.namePattern = "x##-<Name>.tga";
    for (unsigned scheme = 0; scheme < std::size(expected); ++scheme) {
        settings.namingScheme = scheme;
        EXPECT_EQ(relative(settings, 7), expected[scheme]);
        EXPECT_EQ(settings.isAnimated(), scheme != 0) << scheme;
    }
    for (const char *pattern : {"a%02d.b%d.c", "a$F2.b$F.c", "a##.b#.c"}) {
        settings.namePattern = pattern;
        EXPECT_EQ(relative(settings, 7), "a07.b7.c") << pattern;
    }
}

TEST_F(ImageNames, NumberFramesWithPaddingAndRenumbering) {
    Settings settings;
    settings.name = "p";
    settings.namingScheme = 1;
    settings.framePadding = 3;
    const std::pair<double, const char *> plain[] = {
        {5, "p.005.png"},       {-5, "p.-005.png"},      {12345, "p.12345.png"},
        {2.5, "p.002.5.png"},   {2.9999, "p.003.png"},   {0, "p.000.png"},
        {-0.0004, "p.000.png"}, {-0.9996, "p.-001.png"}, {-0.25, "p.-000.25.png"}};
    for (const auto &[frame, name] : plain)
        EXPECT_EQ(relative(settings, frame), name);

    settings.renumberFrames = true;
    settings.frameStart = ZTime(10);
    settings.frameBy = 2;
    settings.renumberStart = 100;
    settings.renumberBy = 5;
    EXPECT_EQ(relative(settings, 10), "p.100.png");
    EXPECT_EQ(relative(settings, 14), "p.110.png");
}

TEST_F(ImageNames, ReplaceTokens) {
    devhost::scene().setFileName("/scenes/the house.obj");
    Settings settings;
    EXPECT_EQ(relative(settings, 1), "the house.png");
    settings.name = "<RenderLayer>/<Camera>/<RenderPass>/<Scene>-<Version>-<Other>";
    settings.setPassName("a/b");
    settings.setFieldName("odd");
    EXPECT_EQ(relative(settings, 1, "exr", "Version=v2"), "cam/a_b/the house-v2-<Other>_odd.exr");
    EXPECT_EQ(relative(settings, 1, "", "RenderPass=shadow; Version=../x"),
              "cam/shadow/the house-.._x-<Other>_odd.png");
    // Given names come before the current ones.
    EXPECT_STREQ(settings
                     .getImageName(Settings::kRelativePath, 1, "/a/barn.gltf", "|top|eye", "png",
                                   devhost::scene().object(devhost::scene().find("square")), false)
                     .asChar(),
                 "square/eye/a_b/barn-<Version>-<Other>_odd.png");
}

TEST_F(ImageNames, TakeTheExtensionFromTheFormat) {
    Settings settings;
    settings.name = "p";
    settings.imageFormat = 1;
    EXPECT_EQ(relative(settings, 1), "p.exr");
    settings.useCustomExt = true;
    settings.customExt = "TIFF";
    EXPECT_EQ(relative(settings, 1), "p.TIFF");
}

TEST_F(ImageNames, FullPathsMakeTheirFolders) {
    Settings settings;
    settings.name = "deep/er/p";
    const auto path = [&](Settings::ZpathType type, bool create, ZStatus *status = nullptr) {
        return std::string(
            settings.getImageName(type, 1, "", "", "", ZObject::kNullObj, create, status).asChar());
    };
    EXPECT_EQ(path(Settings::kFullPathImage, false), folder_ / "deep/er/p.png");
    EXPECT_EQ(path(Settings::kFullPathTmp, true), folder_ / "tmp/deep/er/p.png");
    EXPECT_TRUE(fs::is_directory(folder_ / "tmp/deep/er"));

    ZStatus status;
    for (const char *name : {"../p", "a/../../p", "<Version>/p"}) {
        settings.name = name;
        EXPECT_STREQ(settings
                         .getImageName(Settings::kFullPathImage, 1, "", "", "", ZObject::kNullObj,
                                       ZString("Version=.."), true, &status)
                         .asChar(),
                     "");
        EXPECT_EQ(status.statusCode(), ZStatus::kInvalidParameter) << name;
    }
    settings.name = "a/../deep/p"; // that stays inside
    EXPECT_EQ(path(Settings::kFullPathImage, false), folder_ / "deep/p.png");

    std::ofstream(folder_ / "deep") << "in the way";
    EXPECT_EQ(path(Settings::kFullPathImage, true, &status), "");
    EXPECT_EQ(status.statusCode(), ZStatus::kFailure);
}

TEST_F(ImageNames, FramesAreSkippedOnlyWhenTheirFileIsThere) {
    Settings settings;
    settings.name = "p";
    settings.namingScheme = 1;
    std::ofstream(folder_ / "p.0002.png") << "done";
    const auto should = [&](double frame) {
        return settings.shouldRenderFrameAtTime(Settings::kFullPathImage, frame, "", "", "",
                                                ZObject::kNullObj, "");
    };
    EXPECT_TRUE(should(2));
    settings.skipExistingFrames = true;
    EXPECT_FALSE(should(2));
    EXPECT_TRUE(should(3));
}

TEST_F(ImageNames, TheOutputOptionIsUnderstood) {
    const std::pair<const char *, const char *> cases[] = {
        {"out.png", "out.png"},       {"out.####.png", "out.0012.png"},
        {"out_##.exr", "out_12.exr"}, {"out###.PNG", "out012.PNG"},
        {"a#b##.png", "a12b12.png"},  {"<Camera>.##.png", "cam.12.png"},
    };
    for (const auto &[output, name] : cases) {
        quilhost::Options options;
        options.frames = {12, 14, 16};
        options.output = std::string("somewhere/") + output;
        Settings settings;
        quilhost::fillSettings(options, settings);
        EXPECT_EQ(relative(settings, 12), name);
        EXPECT_EQ(settings.frameEnd.value(), 16);
        EXPECT_EQ(settings.frameBy, 2);
    }
}
