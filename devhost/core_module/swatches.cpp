// SPDX-License-Identifier: MIT
// Swatches for scripts: what the host does with the generators that are registered, and the typed
// pointers of their creators, which scripts can register under further names.

#include "devhost/api/render/Swatches.h"

#include "wrappers/rows/call.h"

using namespace binding;

/// The development host's swatches; static functions only.
struct Swatches {
    static ZStringArray generators() { return devhost::swatchGenerators(); }

    static ZSwatchRenderCreatorFnPtr creator(ZString const &generator, ZStatus *status) {
        ZSwatchRenderCreatorFnPtr found = nullptr;
        *status = devhost::findSwatchGenerator(generator, found);
        return found;
    }

    /// The swatch is the caller's, so that it cannot be a plain pointer result.
    static PyObject *begin(ZString const &generator, ZObject const &node, int resolution) {
        std::unique_ptr<ZSwatchRenderBase> swatch;
        if (const ZStatus status = devhost::beginSwatch(generator, node, resolution, swatch);
            !status)
            return raise_status(status);
        PyObject *result =
            SWIG_Python_NewPointerObj(swatch.get(), type_of<ZSwatchRenderBase>(), kOwned);
        if (result)
            static_cast<void>(swatch.release()); // the pointer object owns it now
        return result;
    }

    static ZStatus render(ZString const &generator, ZObject const &node, int resolution,
                          ZImage &image, int quality) {
        return devhost::renderSwatch(generator, node, resolution, image, quality);
    }
};

#define ROW_LIST "devhost/core_module/swatches.def"
#define ROW_TABLE swatch_rows
#include "wrappers/rows/make_rows.h"
