// SPDX-License-Identifier: MIT
// PNG files by libpng.
#include "devhost/image/ImageDecoder.h"

#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <cstring>

namespace devhost {
namespace {

/// One file being read. The library leaves its functions by a jump when something is wrong, over
/// frames that have nothing to destroy.
class PngReading {
  public:
    explicit PngReading(ImageBytes file)
        : rest_(file), png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, this, fail, ignore)),
          info_(png_ ? png_create_info_struct(png_) : nullptr) {
        if (!info_) {
            png_destroy_read_struct(&png_, nullptr, nullptr);
            throw std::bad_alloc();
        }
        png_set_read_fn(png_, this, read);
    }
    ~PngReading() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngReading(const PngReading &) = delete;

    void readHeader() {
        attempt([this] {
            png_read_info(png_, info_);
            png_set_expand(png_); // palettes, fewer bits, a transparent colour
            png_set_strip_16(png_);
            png_set_gray_to_rgb(png_);
            png_set_add_alpha(png_, 255, PNG_FILLER_AFTER);
            png_set_interlace_handling(png_);
            png_read_update_info(png_, info_);
        });
    }
    size_t width() const { return png_get_image_width(png_, info_); }
    size_t height() const { return png_get_image_height(png_, info_); }

    void readPixels(Pixels &pixels) {
        std::vector<png_bytep> rows(pixels.height);
        for (size_t y = 0; y < rows.size(); ++y)
            rows[y] = &pixels.rgba[4 * y * pixels.width];
        attempt([this, first = rows.data()] {
            png_read_image(png_, first);
            png_read_end(png_, nullptr);
        });
    }

  private:
    template <class Step>
    void attempt(const Step &step) {
        if (setjmp(png_jmpbuf(png_)))
            throw BadImage(message_);
        step();
    }

    static void fail(png_structp png, const char *message) {
        auto *const self = static_cast<PngReading *>(png_get_error_ptr(png));
        std::snprintf(self->message_, sizeof self->message_, "%s", message);
        png_longjmp(png, 1);
    }
    static void ignore(png_structp, const char *) {}
    static void read(png_structp png, png_bytep target, size_t count) {
        ImageBytes &rest = static_cast<PngReading *>(png_get_io_ptr(png))->rest_;
        if (count > rest.size())
            png_error(png, "it ends too early");
        std::memcpy(target, rest.data(), count);
        rest = rest.subspan(count);
    }

    ImageBytes rest_;
    char message_[128] = "";
    png_structp png_;
    png_infop info_;
};

} // namespace

Pixels decodePng(ImageBytes file) {
    PngReading reading(file);
    reading.readHeader();
    Pixels pixels = makePixels(reading.width(), reading.height(), file);
    reading.readPixels(pixels);
    return pixels;
}

} // namespace devhost
