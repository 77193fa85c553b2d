// SPDX-License-Identifier: MIT
// The function sets of render layers, render passes and image sources.

#include "host/core/ZPlug.h"
#include "host/render/ZFnImageSource.h"
#include "host/render/ZFnRenderLayer.h"
#include "host/render/ZFnRenderPass.h"

#include <new>

#define ROW_LIST "wrappers/render/layers.def"
#define ROW_TABLE layer_rows
#include "wrappers/rows/make_rows.h"

namespace {

// An enumeration that crosses as a pointer object to a copy of the value, as the interface has it:
// to scripts it is a buffer of one item.
PyObject *_wrap_ZFnRenderPass_frameBufferType(PyObject *, PyObject *argument) {
    return with_arguments<METH_O, ZFnRenderPass *, ZStatus *>(
        row_table[at_ZFnRenderPass_frameBufferType], argument,
        [](Argument<ZFnRenderPass *> &self, Argument<ZStatus *> &status) {
            auto *copy = new (std::nothrow)
                ZPxRenderPassImpl::PassTypeBit(self.get()->frameBufferType(status.get()));
            if (!copy)
                return PyErr_NoMemory();
            PyObject *object = SWIG_Python_NewPointerObj(
                copy, type_of<OpaqueType<k_p_ZPxRenderPassImpl__PassTypeBit>>(), kOwned);
            if (!object)
                delete copy;
            return object;
        });
}

} // namespace
