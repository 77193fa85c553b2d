// SPDX-License-Identifier: MIT
// Images: formats, orientation against the libraries' own readers, and writes that fail.
#include "devhost/image/ImageIo.h"
#include "devhost/image/PictureFile.h"
#include "host/core/ZImage.h"
#include "tests/temporary_folder.h"

#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfInputFile.h>
#include <gtest/gtest.h>
#include <png.h>
#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <cstring>
#include <limits>

namespace fs = std::filesystem;

namespace {

class Images : public testing::Test {
  protected:
    std::string path(const std::string &name) const { return folder_.file(name); }
    std::size_t fileCount() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.path), {}));
    }
    static ZString text(const std::string &s) { return ZString(s.c_str()); }

    TemporaryFolder folder_;
};

/// Pixels that all differ and do not compress.
std::vector<unsigned char> noise(std::size_t count) {
    std::vector<unsigned char> bytes(count);
    unsigned state = 12345;
    for (auto &byte : bytes)
        byte = static_cast<unsigned char>((state = state * 1664525u + 1013904223u) >> 24);
    return bytes;
}

std::string contents(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST_F(Images, PngKeepsBytesAndHasTheTopRowFirst) {
    const auto pixels = noise(5 * 3 * 4);
    ZImage image;
    ASSERT_TRUE(image.setPixels(pixels.data(), 5, 3));
    ASSERT_TRUE(image.writeToFile(text(path("a.png"))));

    png_image file{};
    file.version = PNG_IMAGE_VERSION;
    ASSERT_TRUE(png_image_begin_read_from_file(&file, path("a.png").c_str()));
    file.format = PNG_FORMAT_RGBA;
    std::vector<unsigned char> topDown(PNG_IMAGE_SIZE(file));
    ASSERT_TRUE(png_image_finish_read(&file, nullptr, topDown.data(), 0, nullptr));
    ASSERT_EQ(topDown.size(), pixels.size());
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(std::memcmp(&topDown[row * 20], &pixels[(2 - row) * 20], 20), 0) << row;

    ZImage read;
    ASSERT_TRUE(read.readFromFile(text(path("a.png"))));
    EXPECT_EQ(std::memcmp(read.pixels(), pixels.data(), pixels.size()), 0);
    ASSERT_TRUE(read.readFromFile(text(path("a.png")), ZImage::kFloat));
    EXPECT_EQ(read.floatPixels()[7], static_cast<float>(pixels[7]) / 255.0f);
}

TEST_F(Images, ExrKeepsFloatsAndNamedLayers) {
    const std::vector<float> rgba = {-1.5f, 2e6f, 0.25f, 1, 1, 2, 3, 0, 5, 6, 7, 1, 8, 9, 10, 0.5f};
    const std::vector<float> depth = {1, 2, 3, 4};
    ASSERT_TRUE(devhost::writeExr(path("a.exr"), 2, 2,
                                  {{"", {"R", "G", "B", "A"}, rgba.data()},
                                   {"depth", {"Z"}, depth.data()},
                                   {"diffuse", {"R", "G", "B", "A"}, rgba.data()}}));
    Imf::InputFile file(path("a.exr").c_str());
    float topDown[4] = {};
    Imf::FrameBuffer frame;
    frame.insert("depth.Z",
                 Imf::Slice(Imf::FLOAT, reinterpret_cast<char *>(topDown), 4, 2 * sizeof(float)));
    file.setFrameBuffer(frame);
    file.readPixels(0, 1);
    EXPECT_EQ(std::vector<float>(topDown, topDown + 4), (std::vector<float>{3, 4, 1, 2}));

    ZImage image;
    ASSERT_TRUE(image.readFromFile(text(path("a.exr"))));
    ASSERT_EQ(image.pixelType(), ZImage::kFloat);
    EXPECT_EQ(std::vector<float>(image.floatPixels(), image.floatPixels() + 16), rgba);
    unsigned width = 0, height = 0;
    std::vector<float> layer;
    ASSERT_TRUE(devhost::readExr(path("a.exr"), width, height, layer, "diffuse"));
    EXPECT_EQ(layer, rgba);
    EXPECT_EQ(devhost::readExr(path("a.exr"), width, height, layer, "specular").statusCode(),
              ZStatus::kNotFound);
}

TEST_F(Images, FewerChannelsAreGreyAndOpaque) {
    const unsigned char from[] = {10, 20, 30, 40};
    const std::vector<unsigned char> written[] = {
        {10, 10, 10, 255}, {10, 10, 10, 20}, {10, 20, 30, 255}, {10, 20, 30, 40}};
    for (unsigned channels = 1; channels <= 4; ++channels) {
        ZImage image;
        ASSERT_TRUE(image.create(1, 1, channels));
        std::copy_n(from, channels, image.pixels());
        ASSERT_TRUE(image.writeToFile(text(path("a.png")), "png"));
        unsigned width = 0, height = 0;
        std::vector<unsigned char> bytes;
        ASSERT_TRUE(devhost::readPng(path("a.png"), width, height, bytes));
        EXPECT_EQ(bytes, written[channels - 1]) << channels;
    }
}

TEST(ToByte, ClampsAndRounds) {
    const float infinity = std::numeric_limits<float>::infinity();
    const std::pair<float, int> cases[] = {
        {-1, 0},         {2, 255},       {0.5f, 128},         {std::nanf(""), 0},
        {infinity, 255}, {-infinity, 0}, {254.4f / 255, 254}, {254.6f / 255, 255}};
    for (const auto &[value, byte] : cases)
        EXPECT_EQ(devhost::toByte(value), byte) << value;
}

/// Runs a write while no file may grow past the limit, which stands in for a full disk.
template <class Write>
ZStatus withFileSizeLimit(std::size_t limit, Write write) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit small = old;
    small.rlim_cur = limit;
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const ZStatus status = write();
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &old), 0);
    return status;
}

TEST_F(Images, FailedWritesLeaveTheFolderAsItWas) {
    for (const char *format : {"png", "exr"}) {
        ZImage image;
        ASSERT_TRUE(image.setPixels(noise(256 * 256 * 4).data(), 256, 256));
        const std::string old = path(std::string("old.") + format), fresh = path("new");
        ASSERT_TRUE(image.writeToFile(text(old), format));
        const std::string before = contents(old);
        const std::size_t files = fileCount();
        for (const std::size_t limit : {before.size() / 2, before.size() - 1})
            for (const std::string &target : {old, fresh}) {
                const ZStatus status = withFileSizeLimit(
                    limit, [&] { return image.writeToFile(text(target), format); });
                EXPECT_EQ(status.statusCode(), ZStatus::kFailure) << target << limit;
                EXPECT_GE(status.errorString().indexW(text(target)), 0);
                EXPECT_EQ(contents(old), before);
                EXPECT_EQ(fileCount(), files);
            }
        EXPECT_EQ(image.writeToFile(text(path("no/folder")), format).statusCode(),
                  ZStatus::kFailure);
    }
}

TEST_F(Images, UnreadableFilesLeaveTheImageAsItWas) {
    ZImage image;
    ASSERT_TRUE(image.setPixels(noise(64 * 64 * 4).data(), 64, 64));
    ASSERT_TRUE(image.writeToFile(text(path("a.png"))));
    ASSERT_TRUE(image.writeToFile(text(path("a.exr")), "exr"));
    for (const char *name : {"a.png", "a.exr"}) {
        const std::string whole = contents(path(name));
        for (const std::size_t length : {whole.size() / 2, std::size_t{12}, std::size_t{0}}) {
            std::ofstream(path("cut"), std::ios::binary) << whole.substr(0, length);
            ZImage kept;
            ASSERT_TRUE(kept.create(2, 1));
            EXPECT_EQ(kept.readFromFile(text(path("cut"))).statusCode(), ZStatus::kFailure)
                << name << " " << length;
            unsigned width = 0, height = 0;
            kept.getSize(width, height);
            EXPECT_EQ(width, 2u);
        }
    }
    EXPECT_EQ(image.readFromFile(text(path("none"))).statusCode(), ZStatus::kNotFound);
    EXPECT_EQ(image.readFromFile(text(folder_.path.string())).statusCode(), ZStatus::kFailure);
}

TEST_F(Images, ResizeAveragesInterpolatesAndKeepsProportions) {
    const float steps[] = {0, 1, 2, 3, 4, 5, 6, 7};
    ZImage image;
    ASSERT_TRUE(image.setFloatPixels(steps, 8, 1, 1));
    ASSERT_TRUE(image.resize(16, 1, false));
    EXPECT_FLOAT_EQ(image.floatPixels()[0], 0.0f);
    EXPECT_FLOAT_EQ(image.floatPixels()[7], 3.25f); // between the pixels 3 and 4

    ASSERT_TRUE(image.setFloatPixels(steps, 8, 1, 1));
    ASSERT_TRUE(image.resize(4, 1, false));
    EXPECT_NEAR(image.floatPixels()[1], 2.5f, 1e-6);
    ASSERT_TRUE(image.create(400, 200));
    std::fill_n(image.pixels(), 400 * 200 * 4, 200);
    ASSERT_TRUE(image.resize(100, 100));
    unsigned width = 0, height = 0;
    image.getSize(width, height);
    EXPECT_EQ(width, 100u);
    EXPECT_EQ(height, 50u);
    EXPECT_EQ(image.pixels()[100 * 50 * 4 - 1], 200);
    EXPECT_EQ(image.resize(0, 5).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(image.create(2, 2, 5).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(image.create(~0u, ~0u).statusCode(), ZStatus::kInsufficientMemory);
}

TEST_F(Images, AFileIsWholeOnlyWithAllItsBytes) {
    // 40 rows are three blocks of an EXR file; its long text makes its header long.
    const auto bytes = noise(7 * 40 * 4);
    const auto floats = devhost::toFloats(bytes.data(), bytes.size());
    const devhost::ImageLayer pixels{"", {"R", "G", "B", "A"}, floats.data(), true};
    ASSERT_FALSE(devhost::writePng(path("a.png"), 7, 40, bytes.data()).error());
    ASSERT_FALSE(
        devhost::writeExr(path("a.exr"), 7, 40, {pixels}, {90, 50, 3, 5, 1, {}, {}}).error());
    ASSERT_FALSE(devhost::writeExr(path("long.exr"), 7, 40, {pixels},
                                   {0, 0, 0, 0, 1, {}, {{"text", std::string(3000, 'x')}}})
                     .error());
    for (const auto &[name, width, height] :
         {std::tuple("a.png", 7u, 40u), {"a.exr", 90u, 50u}, {"long.exr", 7u, 40u}}) {
        const auto whole = devhost::inspectPicture(path(name));
        EXPECT_EQ(std::tuple(whole.damage, whole.width, whole.height),
                  std::tuple("", width, height));
        const std::string file = contents(path(name));
        folder_.write("other", file + "x");
        EXPECT_NE(devhost::inspectPicture(path("other")).damage, "") << name;
        for (size_t length = file.size(); length-- > 0;) {
            fs::resize_file(path("other"), length);
            EXPECT_NE(devhost::inspectPicture(path("other")).damage, "") << name << " " << length;
        }
    }
    // A block that begins near the end of all numbers; the table ends where the first one begins.
    std::string lost = contents(path("a.exr"));
    size_t table = 0;
    for (uint64_t first = 0; first != table + 24;)
        std::memcpy(&first, &lost.at(++table), sizeof first);
    folder_.write("other", lost.replace(table, 8, "\xfa" + std::string(7, '\xff')));
    EXPECT_EQ(devhost::inspectPicture(path("other")).damage, "its end is missing");
    EXPECT_EQ(devhost::inspectPicture(folder_.path).damage, "it is no regular file");
    EXPECT_EQ(devhost::inspectPicture(path("none")).damage, "No such file or directory");
}

} // namespace
