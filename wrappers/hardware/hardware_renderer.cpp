// The hardware renderer: a singleton of the host, which scripts neither make nor delete.

#include "host/base/TapiCast.h"
#include "host/core/ZImage.h"
#include "host/core/ZStringArray.h"
#include "host/render/ZHardwareRenderer.h"
#include "runtime/object_holder.h"
#include "wrappers/rows/wrapper_table.h"

/// The type's name is not usable without its class, so it gets its place here.
template <>
inline constexpr int type_index<ZHardwareRenderer::BufferPixelFormat> =
    k_p_ZHardwareRenderer__BufferPixelFormat;

namespace {

/// A list of names that the host reads and rewrites.
class NameList;

/// A colour that may be left out.
class Background;

} // namespace

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

ROWS_BEGIN

using CallLocation = ZHardwareRenderer::CallLocation;

STATIC(ZHardwareRenderer, theRenderer, ZHardwareRenderer *())
METHOD(ZHardwareRenderer, backEndString, ZString() const)
METHOD(ZHardwareRenderer, addDrawProcedure,
       ZHardwareRenderer::DrawProcedureReturnCode(ZString const &, ZDrawProcedureBase *,
                                                  ZHardwareRenderer::CallLocation))
METHOD(ZHardwareRenderer, removeDrawProcedure,
       ZHardwareRenderer::DrawProcedureReturnCode(ZString const &, ZDrawProcedureBase *,
                                                  ZHardwareRenderer::CallLocation))
METHOD(ZHardwareRenderer, insertDrawProcedure,
       ZHardwareRenderer::DrawProcedureReturnCode(ZString const &, ZDrawProcedureBase *,
                                                  ZHardwareRenderer::CallLocation, unsigned int,
                                                  bool),
       false)
METHOD(ZHardwareRenderer, getDrawProcedureCount,
       ZHardwareRenderer::DrawProcedureReturnCode(ZString const &, ZHardwareRenderer::CallLocation,
                                                  unsigned int &) const)

DESCRIBE_METHOD(ZHardwareRenderer, getDrawProcedureListNames,
                ZHardwareRenderer::DrawProcedureReturnCode(ZString const &,
                                                           ZHardwareRenderer::CallLocation,
                                                           NameList) const)
PyObject *_wrap_ZHardwareRenderer_getDrawProcedureListNames(PyObject *, PyObject *arguments) {
    return with_arguments<METH_VARARGS, ZHardwareRenderer *, ZString const &, CallLocation,
                          NameList>(
        ZHardwareRenderer_getDrawProcedureListNames, arguments,
        [](Argument<ZHardwareRenderer *> &renderer, Argument<ZString const &> &back_end,
           Argument<CallLocation> &location, Argument<NameList> &list) -> PyObject * {
            const auto code = renderer.get()->getDrawProcedureListNames(back_end.get(),
                                                                        location.get(), list.names);
            return list.write_back() ? PyInt_FromLong(code) : nullptr;
        });
}
ROW(ZHardwareRenderer_getDrawProcedureListNames)

METHOD(ZHardwareRenderer, findDrawProcedure,
       ZDrawProcedureBase *(ZString const &, ZHardwareRenderer::CallLocation, ZString const &)
           const)
METHOD(ZHardwareRenderer, makeResourceContextCurrent, ZStatus(ZString const &))
METHOD(ZHardwareRenderer, getBufferSize,
       ZStatus(ZString const &, unsigned int &, unsigned int &) const)
METHOD(ZHardwareRenderer, getColorBufferPixelFormat,
       ZStatus(ZString const &, ZHardwareRenderer::BufferPixelFormat &) const)
METHOD(ZHardwareRenderer, getDepthBufferPixelFormat,
       ZStatus(ZString const &, ZHardwareRenderer::BufferPixelFormat &) const)
METHOD(ZHardwareRenderer, getCurrentExposureNumber, ZStatus(ZString const &, unsigned int &) const)
METHOD(ZHardwareRenderer, getTotalExposureCount, ZStatus(ZString const &, unsigned int &) const)
METHOD(ZHardwareRenderer, restoreCurrent, ZStatus(ZString const &) const)
METHOD(ZHardwareRenderer, makeSwatchContextCurrent,
       ZStatus(ZString const &, unsigned int &, unsigned int &))
METHOD(ZHardwareRenderer, readSwatchContextPixels, ZStatus(ZString const &, ZImage &))
METHOD(ZHardwareRenderer, referenceDefaultGeometry,
       ZGeometryData *(ZHardwareRenderer::GeometricShape, unsigned int &, unsigned int *&,
                       unsigned int &))
METHOD(ZHardwareRenderer, dereferenceGeometry, ZStatus(ZGeometryData *, unsigned int))
METHOD(ZHardwareRenderer, getSwatchOrthoCameraSetting,
       void(double &, double &, double &, double &, double &, double &) const)
METHOD(ZHardwareRenderer, getSwatchPerspectiveCameraSetting,
       void(double &, double &, double &, double &, double &, double &) const)
METHOD(ZHardwareRenderer, getSwatchPerspectiveCameraTranslation,
       void(float &, float &, float &, float &) const)
METHOD(ZHardwareRenderer, getSwatchLightDirection, void(float &, float &, float &, float &) const)

DESCRIBE_METHOD(ZHardwareRenderer, drawSwatchBackGroundQuads,
                void(ZColor const &, bool, unsigned int) const, 0, false, 8)
PyObject *_wrap_ZHardwareRenderer_drawSwatchBackGroundQuads(PyObject *, PyObject *arguments) {
    return with_arguments<METH_VARARGS, ZHardwareRenderer *, Background, bool, unsigned int>(
        ZHardwareRenderer_drawSwatchBackGroundQuads, arguments,
        [](Argument<ZHardwareRenderer *> &renderer, Argument<Background> &color,
           Argument<bool> &textured, Argument<unsigned int> &repeats) {
            renderer.get()->drawSwatchBackGroundQuads(color.get(), textured.get(), repeats.get());
            Py_RETURN_NONE;
        });
}
ROW(ZHardwareRenderer_drawSwatchBackGroundQuads)

METHOD(ZHardwareRenderer, glFunctionTable, ZGLFunctionTable *() const)
REGISTRATION(ZHardwareRenderer)

ROWS_END(hardware_renderer_rows)

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
