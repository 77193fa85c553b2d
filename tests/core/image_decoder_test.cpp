// SPDX-License-Identifier: MIT
// Images in memory: each format's colours, and files that are damaged or claim too much.
#include "devhost/image/ImageDecoder.h"

#include <gtest/gtest.h>
#include <jpeglib.h>
#include <zlib.h>

#include <cstdio> // the library's header needs it
#include <cstdlib>

namespace {

using Bytes = std::vector<unsigned char>;
using namespace std::string_literals;

Bytes bytes(const std::string &text) {
    return {text.begin(), text.end()};
}

std::string bigEndian(size_t number) {
    return {char(number >> 24), char(number >> 16), char(number >> 8), char(number)};
}

std::string chunk(const std::string &typeAndData) {
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef *>(typeAndData.data()), unsigned(typeAndData.size()));
    return bigEndian(typeAndData.size() - 4) + typeAndData + bigEndian(sum);
}

/// A PNG file. `format` is bits and colour type, `rows` begins each row with its filter.
Bytes png(size_t width, size_t height, const std::string &format, const std::string &rows,
          const std::string &chunks = "") {
    char packed[256];
    uLongf size = sizeof packed;
    compress(reinterpret_cast<Bytef *>(packed), &size, reinterpret_cast<const Bytef *>(rows.data()),
             rows.size());
    return bytes("\x89PNG\r\n\x1a\n" +
                 chunk("IHDR" + bigEndian(width) + bigEndian(height) + format + "\0\0\0"s) +
                 chunks + chunk("IDAT" + std::string(packed, size)) + chunk("IEND"));
}

/// A JPEG file of 8 x 8 pixels of one colour.
Bytes jpeg(J_COLOR_SPACE space, Bytes colour) {
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char *memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &memory, &size);
    info.image_width = info.image_height = 8;
    info.input_components = int(colour.size());
    info.in_color_space = space;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 100, true);
    jpeg_start_compress(&info, true);
    Bytes row;
    for (int i = 0; i < 8; ++i)
        row.insert(row.end(), colour.begin(), colour.end());
    for (JSAMPROW first = row.data(); info.next_scanline < 8;)
        jpeg_write_scanlines(&info, &first, 1);
    jpeg_finish_compress(&info);
    Bytes result(memory, memory + size);
    jpeg_destroy_compress(&info);
    std::free(memory);
    return result;
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
    const std::string bmpHeader = "BM"s + std::string(8, 0) +
                                  "\66\0\0\0\50\0\0\0\1\0\0\0\2\0\0\0"s + "\1\0\30\0"s +
                                  std::string(24, 0);
    const std::string psdHeader = "8BPS\0\1\0\0\0\0\0\0\0\3\0\0\0\1\0\0\0\1\0\10\0\3"s;
    const struct {
        const char *what;
        Bytes file;
        const char *expected;
    } cases[] = {
        {"grey PNG", png(2, 1, "\10\0"s, "\0\7\200"s), "7,7,7,255 128,128,128,255 "},
        {"PNG of one bit, its gamma told", png(2, 1, "\1\0"s, "\0\100"s, chunk("gAMA\0\0\1\0"s)),
         "0,0,0,255 255,255,255,255 "},
        {"PNG of 16 bits: the high bytes", png(1, 1, "\20\6"s, "\0\1\377\2\377\3\0\4\0"s),
         "1,2,3,4 1,2,3,4 "},
        {"PNG with a palette and its opacities",
         png(2, 1, "\10\3"s, "\0\0\1"s, chunk("PLTE\1\2\3\4\5\6"s) + chunk("tRNS\11"s)),
         "1,2,3,9 4,5,6,255 "},
        {"PNG with a gamma", png(1, 1, "\10\2"s, "\0\100\100\100"s, chunk("gAMA\0\1\206\240"s)),
         "64,64,64,255 64,64,64,255 "},
        {"grey JPEG", jpeg(JCS_GRAYSCALE, {77}), "77,77,77,255 77,77,77,255 "},
        {"JPEG", jpeg(JCS_RGB, {128, 128, 128}), "128,128,128,255 128,128,128,255 "},
        {"JPEG for print", jpeg(JCS_CMYK, {200, 100, 50, 255}), "200,100,50,255 200,100,50,255 "},
        {"BMP, from the bottom up", bytes(bmpHeader + "\1\2\3\0\4\5\6\0"s), "6,5,4,255 3,2,1,255 "},
        {"TGA", bytes("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\40\0\3\2\1\4"s), "1,2,3,4 1,2,3,4 "},
        {"PSD", bytes(psdHeader + std::string(12, 0) + "\0\0\1\2\3"s), "1,2,3,255 1,2,3,255 "},
    };
    for (const auto &[what, file, expected] : cases)
        EXPECT_EQ(decoded(file), expected) << what;
}

TEST(ImageDecoder, RefusesDamagedFiles) {
    const Bytes whole = jpeg(JCS_GRAYSCALE, {77}), image = png(1, 1, "\10\0"s, "\0\7"s);
    for (const Bytes &each : {whole, image})
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
    Bytes changed = image;
    changed[changed.size() - 14] ^= 1;
    EXPECT_EQ(decoded(changed), "IDAT: CRC error");
}

TEST(ImageDecoder, BelievesOnlyPlausibleSizes) {
    EXPECT_EQ(decoded(png(8193, 8192, "\1\0"s, "")),
              "its size of 8193 x 8192 pixels is not plausible");
    Bytes wide = jpeg(JCS_GRAYSCALE, {77});
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
