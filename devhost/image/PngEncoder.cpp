// SPDX-License-Identifier: MIT
// PNG files by libpng. docs/performance.md has what the filter and the level were chosen by.
#include "devhost/image/PngEncoder.h"

#include <png.h>

#include <csetjmp>

namespace devhost {
namespace {

constexpr int kFilter = PNG_FILTER_UP;
constexpr int kLevel = 4;

/// One file being written. The library leaves its functions by a jump when something is wrong, over
/// frames that have nothing to destroy.
class PngWriting {
  public:
    PngWriting()
        : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, this, fail, ignore)),
          info_(png_ ? png_create_info_struct(png_) : nullptr) {}
    ~PngWriting() { png_destroy_write_struct(&png_, &info_); }
    PngWriting(const PngWriting &) = delete;

    const char *write(std::FILE *stream, std::size_t width, std::size_t height,
                      const unsigned char *rgba) {
        if (!info_)
            return "there is not enough memory";
        if (setjmp(png_jmpbuf(png_)))
            return message_;
        png_init_io(png_, stream);
        png_set_IHDR(png_, info_, png_uint_32(width), png_uint_32(height), 8, PNG_COLOR_TYPE_RGBA,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_set_sRGB(png_, info_, PNG_sRGB_INTENT_PERCEPTUAL);
        png_set_filter(png_, PNG_FILTER_TYPE_BASE, kFilter);
        png_set_compression_level(png_, kLevel);
        png_write_info(png_, info_);
        for (std::size_t row = height; row-- > 0;)
            png_write_row(png_, rgba + 4 * width * row);
        png_write_end(png_, info_);
        return "";
    }

  private:
    static void fail(png_structp png, const char *message) {
        auto *const self = static_cast<PngWriting *>(png_get_error_ptr(png));
        std::snprintf(self->message_, sizeof self->message_, "%s", message);
        png_longjmp(png, 1);
    }
    static void ignore(png_structp, const char *) {}

    char message_[128] = "";
    png_structp png_;
    png_infop info_;
};

} // namespace

std::string encodePng(std::FILE *stream, std::size_t width, std::size_t height,
                      const unsigned char *rgba) {
    return PngWriting().write(stream, width, height, rgba);
}

} // namespace devhost
