// SPDX-License-Identifier: MIT
// Images in memory: each format's colours, and files that are damaged or claim too much.
#include "devhost/image/ImageDecoder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

using Bytes = std::vector<unsigned char>;
using namespace std::string_literals;

Bytes bytes(const std::string &text) {
    return {text.begin(), text.end()};
}

Bytes image(const std::string &name) {
    std::ifstream file(IMAGES "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Where the first segment of a kind begins.
unsigned char *marker(Bytes &file, int kind) {
    size_t at = 0;
    while (file.at(at) != 0xff || file.at(at + 1) != kind)
        ++at;
    return &file[at];
}

/// The colour and opacity of the first and the last pixel, or what is wrong.
std::string decoded(const Bytes &file) try {
    const devhost::Pixels pixels = devhost::decodeImage(file);
    std::string text;
    for (const size_t at : {size_t{0}, pixels.rgba.size() - 4})
        for (int channel = 0; channel < 4; ++channel)
            text += std::to_string(pixels.rgba[at + size_t(channel)]) + (channel < 3 ? "," : " ");
    return text;
} catch (const devhost::BadImage &bad) {
    return bad.what();
}

TEST(ImageDecoder, GivesTheColoursOfEachFormat) {
    std::ifstream list(IMAGES "/list.tsv");
    int count = 0;
    for (std::string line, name, pixels; std::getline(list, line);) {
        std::istringstream fields(line);
        std::getline(fields, name, '\t');
        if (std::getline(fields, pixels, '\t')) {
            EXPECT_EQ(decoded(image(name)), pixels + " ") << line;
            ++count;
        }
    }
    EXPECT_EQ(count, 11);
}

TEST(ImageDecoder, RefusesDamagedFiles) {
    const Bytes whole = image("grey.jpg"), grey = image("grey.png");
    for (const Bytes &each : {whole, grey})
        for (size_t size = 0; size < each.size() - 2; ++size) // the last two may be done without
            EXPECT_EQ(decoded({each.begin(), each.begin() + std::ptrdiff_t(size)}).find("255 "),
                      std::string::npos)
                << size;
    // The table that a scan uses is not there: for one kind the standard has tables of its own.
    Bytes renumbered = whole;
    marker(renumbered, 0xc4)[4] = 1;
    EXPECT_EQ(decoded(renumbered), "77,77,77,255 77,77,77,255 ");
    renumbered = whole;
    marker(renumbered, 0xdb)[4] = 1;
    EXPECT_EQ(decoded(renumbered), "Quantization table 0x00 was not defined");
    Bytes changed = grey;
    changed[changed.size() - 14] ^= 1;
    EXPECT_EQ(decoded(changed), "IDAT: CRC error");
}

TEST(ImageDecoder, BelievesOnlyPlausibleSizes) {
    EXPECT_EQ(decoded(image("large.png")), "its size of 8193 x 8192 pixels is not plausible");
    Bytes wide = image("grey.jpg");
    const auto frame = marker(wide, 0xc0);
    frame[5] = frame[7] = 0xff; // the high bytes of height and width
    EXPECT_EQ(decoded(wide), "its size of 65288 x 65288 pixels is not plausible");
    EXPECT_EQ(decoded(bytes("\0\0\2\0\0\0\0\0\0\0\0\0\377\377\377\377\40\0"s)),
              "its size of 65535 x 65535 pixels is not plausible");
    EXPECT_EQ(devhost::mostPixels(1), size_t{8192} * 8192);
    EXPECT_EQ(devhost::mostPixels(5'000'000), 80'000'000u);
    EXPECT_EQ(devhost::mostPixels(~size_t{0}), size_t{16384} * 16384);
}

} // namespace
