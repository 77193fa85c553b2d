// Pixels for the render view.

#include "devhost/core_module/PixelBuffer.h"
#include "devhost/core_module/element_buffer.h"
#include "host/core/ZColorArray.h"
#include "host/core/ZFloatVectorArray.h"
#include "wrappers/rows/wrapper_table.h"

#include <algorithm>

ROWS_BEGIN

static bool check_range(const PixelBuffer &buffer, long start, unsigned int count) {
    const long length = buffer.length();
    if (start >= 0 && start <= length && static_cast<long>(count) <= length - start)
        return true;
    PyErr_SetString(PyExc_IndexError, "pixel index out of range");
    return false;
}

static RV_PIXEL pixel_of(const ZColor &color) {
    return {color.r, color.g, color.b, color.a};
}

static PyObject *pixels_from(PixelBuffer &self, long start) {
    return check_range(self, start, 1) ? borrowed(self.data() + start) : nullptr;
}

static PyObject *color_at(PixelBuffer &self, long index) {
    if (!find_index(index, self.length()))
        return nullptr;
    const RV_PIXEL &pixel = self.data()[index];
    return make_item(ZColor(pixel.r, pixel.g, pixel.b, pixel.a));
}

static PyObject *set_color_at(PixelBuffer &self, long index, ZColor const &color) {
    if (!find_index(index, self.length()))
        return nullptr;
    self.data()[index] = pixel_of(color);
    Py_RETURN_NONE;
}

static void fill(PixelBuffer &self, ZColor const &color) {
    std::fill_n(self.data(), self.length(), pixel_of(color));
}

static PyObject *set_colors(PixelBuffer &self, long start, ZColorArray const &colors) {
    if (!check_range(self, start, colors.length()))
        return nullptr;
    std::transform(colors.begin(), colors.end(), self.data() + start, pixel_of);
    Py_RETURN_NONE;
}

static PyObject *set_opaque(PixelBuffer &self, long start, ZFloatVectorArray const &colors,
                            float alpha) {
    if (!check_range(self, start, colors.length()))
        return nullptr;
    std::transform(colors.begin(), colors.end(), self.data() + start, [=](const ZFloatVector &c) {
        return RV_PIXEL{c.x, c.y, c.z, alpha};
    });
    Py_RETURN_NONE;
}

CONSTRUCTOR_EXTENSION(PixelBuffer, PixelBuffer(unsigned int), new_elements<PixelBuffer>)
EXTENSION(
    PixelBuffer, length, unsigned int() const, +[](PixelBuffer &self) { return self.length(); })
EXTENSION(
    PixelBuffer, __len__, unsigned int() const, +[](PixelBuffer &self) { return self.length(); })
EXTENSION(PixelBuffer, pixels, RV_PIXEL *(long), pixels_from, 0)
EXTENSION(PixelBuffer, __getitem__, ZColor(long) const, color_at)
EXTENSION(PixelBuffer, __setitem__, void(long, ZColor const &), set_color_at)
EXTENSION(PixelBuffer, fill, void(ZColor const &), fill)
EXTENSION_CASE(PixelBuffer, setColors, 1, void(long, ZColorArray const &), set_colors)
EXTENSION_CASE(PixelBuffer, setColors, 2, void(long, ZFloatVectorArray const &, float), set_opaque,
               1)
OVERLOADS(PixelBuffer, setColors, &PixelBuffer_setColors_1, &PixelBuffer_setColors_2)
DESTRUCTOR(PixelBuffer)
PROXY(PixelBuffer)

ROWS_END(pixel_buffer_rows)
