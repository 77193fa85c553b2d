// SPDX-License-Identifier: MIT
// Pixels for the render view.

#include "devhost/core_module/PixelBuffer.h"
#include "devhost/core_module/element_buffer.h"
#include "devhost/core_module/raw_items.h"
#include "host/core/ZColorArray.h"
#include "host/core/ZFloatVectorArray.h"

#include <algorithm>
#include <cstring>

namespace {

using namespace binding;

bool check_range(const PixelBuffer &buffer, long start, long count) {
    const long length = buffer.length();
    if (start >= 0 && count >= 0 && start <= length && count <= length - start)
        return true;
    PyErr_SetString(PyExc_IndexError, "pixel index out of range");
    return false;
}

RV_PIXEL pixel_of(const ZColor &color) {
    return {color.r, color.g, color.b, color.a};
}

PyObject *pixels_from(PixelBuffer &self, long start) {
    return check_range(self, start, 1) ? borrowed(self.data() + start) : nullptr;
}

PyObject *color_at(PixelBuffer &self, long index) {
    if (!find_index(index, self.length()))
        return nullptr;
    const RV_PIXEL &pixel = self.data()[index];
    return make_item(ZColor(pixel.r, pixel.g, pixel.b, pixel.a));
}

PyObject *set_color_at(PixelBuffer &self, long index, ZColor const &color) {
    if (!find_index(index, self.length()))
        return nullptr;
    self.data()[index] = pixel_of(color);
    Py_RETURN_NONE;
}

PyObject *memory(PixelBuffer &self) {
    return Py_BuildValue("(Nlci)", PyLong_FromVoidPtr(self.data()),
                         self.length() * static_cast<long>(sizeof(RV_PIXEL)), 'f', 4);
}

PyObject *write(PixelBuffer &self, long start, PyObject *data) {
    const RawItems raw(data, 'f');
    size_t count;
    if (raw.failed() || (raw && !whole_items(raw.size(), sizeof(RV_PIXEL), count)))
        return nullptr;
    if (!raw)
        return PyErr_Format(PyExc_TypeError, "pixels are bytes, or the memory of floats");
    if (!check_range(self, start, static_cast<long>(count)))
        return nullptr;
    if (count) // the pixels given may be the buffer's own
        std::memmove(self.data() + start, raw.data(), raw.size());
    Py_RETURN_NONE;
}

PyObject *read_bytes(PixelBuffer &self, long start, long count) {
    if (!check_range(self, start, count))
        return nullptr;
    return PyString_FromStringAndSize(reinterpret_cast<const char *>(self.data() + start),
                                      count * static_cast<Py_ssize_t>(sizeof(RV_PIXEL)));
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
