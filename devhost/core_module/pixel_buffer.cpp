// SPDX-License-Identifier: MIT
// Pixels for the render view.

#include "devhost/core_module/PixelBuffer.h"
#include "devhost/core_module/element_buffer.h"
#include "devhost/core_module/item_memory.h"
#include "host/core/ZColorArray.h"
#include "host/core/ZFloatVectorArray.h"

#include <algorithm>

namespace binding {

template <>
struct Components<RV_PIXEL> {
    static constexpr float RV_PIXEL::*members[] = {&RV_PIXEL::r, &RV_PIXEL::g, &RV_PIXEL::b,
                                                   &RV_PIXEL::a};
    static constexpr int minimum = 3;
};

} // namespace binding

static RV_PIXEL pixel_of(const ZColor &color) {
    return {color.r, color.g, color.b, color.a};
}

/// A pixel is whatever is a colour.
static binding::ReadResult read_item(PyObject *object, RV_PIXEL &pixel) {
    ZColor color;
    const binding::ReadResult result = binding::read_item(object, color);
    pixel = pixel_of(color);
    return result;
}

namespace {

using namespace binding;

constexpr char kOutOfRange[] = "pixel index out of range";

bool check_range(const PixelBuffer &buffer, long start, long count) {
    const long length = buffer.length();
    if (start >= 0 && count >= 0 && start <= length && count <= length - start)
        return true;
    PyErr_SetString(PyExc_IndexError, kOutOfRange);
    return false;
}

PyObject *pixels_from(PixelBuffer &self, long start) {
    return check_range(self, start, 1) ? borrowed(self.data() + start) : nullptr;
}

bool find_position(PixelBuffer &self, PyObject *key, long &index) {
    return read_index(key, index, kOutOfRange) && find_index(index, self.length());
}

/// The colour at an index, or the pixels of a slice as read() returns them.
PyObject *subscript(PixelBuffer &self, PyObject *key) {
    Slice slice;
    if (PySlice_Check(key))
        return read_slice(
                   key, [&] { return self.length(); }, slice)
                   ? read_many(self.data() + slice.start, slice.count, slice.step)
                   : nullptr;
    long index;
    if (!find_position(self, key, index))
        return nullptr;
    const RV_PIXEL &pixel = self.data()[index];
    return make_item(ZColor(pixel.r, pixel.g, pixel.b, pixel.a));
}

PyObject *set_slice(PixelBuffer &self, PyObject *key, PyObject *value) {
    GivenItems<RV_PIXEL> given(value);
    if (given.failed())
        return nullptr;
    const std::vector<RV_PIXEL> pixels = given.take();
    Slice slice;
    return read_slice(
               key, [&] { return self.length(); }, slice)
               ? write_many(self.data(), slice, pixels)
               : nullptr;
}

PyObject *set_subscript(PixelBuffer &self, PyObject *key, PyObject *value) {
    if (PySlice_Check(key))
        return set_slice(self, key, value);
    RV_PIXEL pixel;
    long index;
    if (const ReadResult result = read_item(value, pixel); result.failed())
        raise_value(result, "in method 'PixelBuffer___setitem__', argument 3 of type "
                            "'ZColor const &'");
    else if (find_position(self, key, index)) {
        self.data()[index] = pixel;
        Py_RETURN_NONE;
    }
    return nullptr;
}

PyObject *memory(PixelBuffer &self) {
    return tell_memory(self.data(), self.length());
}

PyObject *read(PixelBuffer &self, long start, long count) {
    return check_range(self, start, count) ? read_many(self.data() + start, count, 1) : nullptr;
}

PyObject *read_bytes(PixelBuffer &self, long start, long count) {
    return check_range(self, start, count) ? bytes_of(self.data() + start, count) : nullptr;
}

PyObject *write(PixelBuffer &self, long start, PyObject *data) {
    GivenItems<RV_PIXEL> pixels(data);
    if (pixels.failed() || !check_range(self, start, static_cast<long>(pixels.count())))
        return nullptr;
    pixels.store(self.data() + start);
    Py_RETURN_NONE;
}

void fill(PixelBuffer &self, ZColor const &color) {
    std::fill_n(self.data(), self.length(), pixel_of(color));
}

PyObject *set_colors(PixelBuffer &self, long start, ZColorArray const &colors) {
    if (!check_range(self, start, colors.length()))
        return nullptr;
    std::transform(colors.data(), colors.data() + colors.length(), self.data() + start, pixel_of);
    Py_RETURN_NONE;
}

PyObject *set_opaque(PixelBuffer &self, long start, ZFloatVectorArray const &colors, float alpha) {
    if (!check_range(self, start, colors.length()))
        return nullptr;
    std::transform(colors.data(), colors.data() + colors.length(), self.data() + start,
                   [=](const ZFloatVector &c) {
                       return RV_PIXEL{c.x, c.y, c.z, alpha};
                   });
    Py_RETURN_NONE;
}

} // namespace

#define ROW_LIST "devhost/core_module/pixel_buffer.def"
#define ROW_TABLE pixel_buffer_rows
#include "wrappers/rows/make_rows.h"
