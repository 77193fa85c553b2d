// SPDX-License-Identifier: MIT
// The hardware renderer: a singleton of the host, which scripts neither make nor delete.

#include "host/base/TapiCast.h"
#include "host/core/ZImage.h"
#include "host/core/ZStringArray.h"
#include "host/render/ZHardwareRenderer.h"
#include "runtime/object_holder.h"
#include "wrappers/rows/call.h"
#include "wrappers/rows/constants.h"

/// The type's name is not usable without its class, so it gets its place here.
template <>
inline constexpr int binding::type_index<ZHardwareRenderer::BufferPixelFormat> =
    binding::k_p_ZHardwareRenderer__BufferPixelFormat;

namespace {

/// A list of names that the host reads and rewrites.
class NameList;

/// A colour that may be left out.
class Background;

} // namespace

namespace binding {

/// As with strings, a failed read raises at once and the call goes on with what was read.
template <>
struct Argument<NameList> {
    PyObject *list = nullptr;
    ZStringArray names;
    int position = 0;

    int read(PyObject *given, int at) {
        list = given;
        position = at;
        const TpythonObjectWithLock<TpythonLock> holder(given);
        if (!holder.getValue(TapiCast::stringArray(names)))
            PyErr_Format(PyExc_TypeError,
                         "Expected a list of Strings or Unicode objects for argument %d", at);
        return SWIG_OK;
    }
    void use_default(double) {}

    /// Makes the list hold the names and nothing else; false with an exception set.
    bool write_back() const {
        if (!PyList_Check(list)) {
            PyErr_Format(PyExc_TypeError, "Argument %d must be a list object", position);
            return false;
        }
        if (!replace_items()) {
            PyErr_Format(PyExc_TypeError, "Unable to modify argument %d to return results",
                         position);
            return false;
        }
        return true;
    }

  private:
    bool replace_items() const {
        const Py_ssize_t old_count = PySequence_Size(list);
        const Py_ssize_t count = names.length();
        if (old_count > count && PySequence_DelSlice(list, count, old_count) < 0)
            return false;
        for (Py_ssize_t i = 0; i < count; ++i) {
            const swig::SwigPtr_PyObject item(text_of(names[static_cast<unsigned>(i)]));
            if (!item || !put(i, item.get(), i < old_count))
                return false;
        }
        return true;
    }

    static PyObject *text_of(const ZString &name) {
        const TpythonLock lock(kPythonLock);
        return PyUnicode_FromString(name.asUTF8());
    }

    bool put(Py_ssize_t i, PyObject *item, bool exists) const {
        if (!exists)
            return PyList_Append(list, item) == 0;
        Py_INCREF(item); // the list takes one over, even where it fails
        return PyList_SetItem(list, i, item) == 0;
    }
};

template <>
struct Argument<Background> : Argument<ZColor const &> {
    const ZColor grey{0.5f, 0.5f, 0.5f, 1.0f};
    void use_default(double) { pointer = const_cast<ZColor *>(&grey); }
};

} // namespace binding

namespace {

using namespace binding;

using CallLocation = ZHardwareRenderer::CallLocation;

} // namespace

#define ROW_LIST "wrappers/hardware/hardware_renderer.def"
#define ROW_TABLE hardware_renderer_rows
#include "wrappers/rows/make_rows.h"

namespace {

PyObject *_wrap_ZHardwareRenderer_getDrawProcedureListNames(PyObject *, PyObject *arguments) {
    return with_arguments<METH_VARARGS, ZHardwareRenderer *, ZString const &, CallLocation,
                          NameList>(
        row_table[at_ZHardwareRenderer_getDrawProcedureListNames], arguments,
        [](Argument<ZHardwareRenderer *> &renderer, Argument<ZString const &> &back_end,
           Argument<CallLocation> &location, Argument<NameList> &list) -> PyObject * {
            const auto code = renderer.get()->getDrawProcedureListNames(back_end.get(),
                                                                        location.get(), list.names);
            return list.write_back() ? PyInt_FromLong(code) : nullptr;
        });
}

PyObject *_wrap_ZHardwareRenderer_drawSwatchBackGroundQuads(PyObject *, PyObject *arguments) {
    return with_arguments<METH_VARARGS, ZHardwareRenderer *, Background, bool, unsigned int>(
        row_table[at_ZHardwareRenderer_drawSwatchBackGroundQuads], arguments,
        [](Argument<ZHardwareRenderer *> &renderer, Argument<Background> &color,
           Argument<bool> &textured, Argument<unsigned int> &repeats) {
            renderer.get()->drawSwatchBackGroundQuads(color.get(), textured.get(), repeats.get());
            Py_RETURN_NONE;
        });
}

} // namespace

CONSTANTS(hardware_renderer_constants, ENUMERATOR(ZHardwareRenderer, kSuccess),
          ENUMERATOR(ZHardwareRenderer, kFailure), ENUMERATOR(ZHardwareRenderer, kItemExists),
          ENUMERATOR(ZHardwareRenderer, kItemNotFound),
          ENUMERATOR(ZHardwareRenderer, kLocationNotFound),
          ENUMERATOR(ZHardwareRenderer, kRGBA_Fix8), ENUMERATOR(ZHardwareRenderer, kRGBA_Float16),
          ENUMERATOR(ZHardwareRenderer, kDepth_Float32),
          ENUMERATOR(ZHardwareRenderer, kPreRendering), ENUMERATOR(ZHardwareRenderer, kPreExposure),
          ENUMERATOR(ZHardwareRenderer, kPostExposure),
          ENUMERATOR(ZHardwareRenderer, kPostRendering),
          ENUMERATOR(ZHardwareRenderer, kDefaultSphere),
          ENUMERATOR(ZHardwareRenderer, kDefaultPlane), ENUMERATOR(ZHardwareRenderer, kDefaultCube))
