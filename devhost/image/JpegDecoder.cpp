// SPDX-License-Identifier: MIT
// JPEG files by libjpeg-turbo.
#include "devhost/image/ImageDecoder.h"

#include <jerror.h>
#include <jpeglib.h>

#include <csetjmp>
#include <cstdio> // the library's header needs it

namespace devhost {
namespace {

/// What the library only warns of, but leaves parts of the image grey.
bool isDamage(int warning) {
    return warning == JWRN_JPEG_EOF || warning == JWRN_HIT_MARKER || warning == JWRN_HUFF_BAD_CODE;
}

/// One file being read. The library leaves its functions by a jump when something is wrong, over
/// frames that have nothing to destroy.
class JpegReading {
  public:
    explicit JpegReading(ImageBytes file) {
        info_.err = jpeg_std_error(&errors_);
        errors_.error_exit = fail;
        errors_.emit_message = warn;
        info_.client_data = this;
        attempt([this, file] {
            jpeg_create_decompress(&info_);
            jpeg_mem_src(&info_, file.data(), file.size());
            jpeg_read_header(&info_, true);
            const bool isForPrint =
                info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK;
            info_.out_color_space = isForPrint ? JCS_CMYK : JCS_EXT_RGBA;
        });
    }
    ~JpegReading() { jpeg_destroy_decompress(&info_); }
    JpegReading(const JpegReading &) = delete;

    size_t width() const { return info_.image_width; }
    size_t height() const { return info_.image_height; }

    void readPixels(Pixels &pixels) {
        attempt([this, &pixels] {
            jpeg_start_decompress(&info_);
            while (info_.output_scanline < info_.output_height) {
                JSAMPROW row = &pixels.rgba[size_t(4) * info_.output_scanline * pixels.width];
                jpeg_read_scanlines(&info_, &row, 1);
                if (info_.out_color_space == JCS_CMYK)
                    toRgba(row, pixels.width);
            }
            jpeg_finish_decompress(&info_);
        });
    }

  private:
    template <class Step>
    void attempt(const Step &step) {
        if (setjmp(failed_)) {
            jpeg_destroy_decompress(&info_);
            throw BadImage(message_);
        }
        step();
    }

    /// Programs that leave their mark write the inks the other way round.
    void toRgba(unsigned char *row, size_t width) const {
        const int turn = info_.saw_Adobe_marker ? 0 : 255;
        for (unsigned char *pixel = row; pixel != row + 4 * width; pixel += 4) {
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<unsigned char>(
                    ((pixel[channel] ^ turn) * (pixel[3] ^ turn) + 127) / 255);
            pixel[3] = 255;
        }
    }

    static void fail(j_common_ptr info) {
        auto *const self = static_cast<JpegReading *>(info->client_data);
        info->err->format_message(info, self->message_);
        std::longjmp(self->failed_, 1);
    }
    static void warn(j_common_ptr info, int level) {
        if (level < 0 && isDamage(info->err->msg_code))
            fail(info);
    }

    jpeg_decompress_struct info_ = {};
    jpeg_error_mgr errors_ = {};
    std::jmp_buf failed_;
    char message_[JMSG_LENGTH_MAX] = "";
};

} // namespace

Pixels decodeJpeg(ImageBytes file) {
    JpegReading reading(file);
    Pixels pixels = makePixels(reading.width(), reading.height(), file);
    reading.readPixels(pixels);
    return pixels;
}

} // namespace devhost
