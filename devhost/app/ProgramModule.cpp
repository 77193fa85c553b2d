// SPDX-License-Identifier: MIT
#include "devhost/app/ProgramModule.h"

#include "devhost/api/render/Picture.h"
#include "devhost/app/HostRender.h"
#include "devhost/app/ObjectCensus.h"
#include "devhost/app/Reference.h"
#include "devhost/process/ReportedExceptions.h"
#include "devhost/session/RenderSession.h"

#include <utility>

namespace quilhost {
namespace {

PyObject *liveObjects(PyObject *, PyObject *) {
    Reference result(PyDict_New());
    for (const auto &[name, count] : objectCensus()) {
        const Reference key(PyString_FromStringAndSize(name.data(), Py_ssize_t(name.size())));
        const Reference value(PyInt_FromLong(count));
        if (!result || !key || !value || PyDict_SetItem(result.get(), key.get(), value.get()) < 0)
            return nullptr;
    }
    return result.release();
}

PyObject *isEnding(PyObject *, PyObject *) {
    return PyBool_FromLong(devhost::renderSession().cancelled);
}

/// Another size of the image as long as it lives.
class SizeScope {
  public:
    SizeScope(unsigned width, unsigned height) {
        auto &settings = devhost::renderSession().settings;
        settings.width = width ? width : settings.width;
        settings.height = height ? height : settings.height;
        settings.deviceAspectRatio = settings.pixelAspectRatio *
                                     static_cast<float>(settings.width) /
                                     static_cast<float>(settings.height);
    }
    ~SizeScope() { devhost::renderSession().settings = earlier_; }
    SizeScope(const SizeScope &) = delete;
    SizeScope &operator=(const SizeScope &) = delete;

  private:
    ZCommonRenderSettingsData earlier_ = devhost::renderSession().settings;
};

/// The errors of callbacks so far, those of scripts and native ones.
unsigned callbackErrors() {
    return devhost::reportedExceptions() + devhost::renderSession().callbackErrors;
}

PyObject *render(PyObject *, PyObject *arguments, PyObject *keywords) {
    constexpr const char *kNames[] = {"file", "width", "height", nullptr};
    constexpr unsigned kLargest = 16384; // as on the command line
    char *given = nullptr;
    unsigned width = 0, height = 0;
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "et|II:render",
                                     const_cast<char **>(kNames), "utf-8", &given, &width, &height))
        return nullptr;
    const std::string file = given;
    PyMem_Free(given);
    if (!devhost::isPictureFileName(file) || width > kLargest || height > kLargest) {
        PyErr_SetString(PyExc_ValueError, "the file ends in .png or .exr, and the size is at most "
                                          "16384 x 16384");
        return nullptr;
    }
    if (devhost::renderSession().state != ZRenderUtil::kNotRendering) {
        PyErr_SetString(PyExc_RuntimeError, "a render is going on");
        return nullptr;
    }
    const unsigned errors = callbackErrors();
    const SizeScope size(width, height);
    const devhost::RenderStateScope rendering(ZRenderUtil::kBatchRender);
    const ZStatus status = renderInterruptibly(file, true);
    if (PyErr_Occurred() || PyErr_CheckSignals() < 0)
        return nullptr;
    if (status.error())
        return PyErr_Format(PyExc_RuntimeError, "%s", status.errorString().asChar());
    if (callbackErrors() != errors)
        return PyErr_Format(PyExc_RuntimeError, "a render callback failed");
    Py_RETURN_NONE;
}

PyMethodDef functions[] = {
    {"live_objects", liveObjects, METH_NOARGS,
     "live_objects() -> dict\n\n"
     "The number of live host objects by class; counted with --leak-check only."},
    {"is_ending", isEnding, METH_NOARGS,
     "is_ending() -> bool\n\nTrue once the program was told to end."},
    {"render", reinterpret_cast<PyCFunction>(reinterpret_cast<void *>(render)),
     METH_VARARGS | METH_KEYWORDS,
     "render(file, width=0, height=0)\n\n"
     "Renders the scene with the registered render callbacks and writes it to a .png or .exr "
     "file.\n"
     "The size is in pixels; 0 is what the settings say. Raises ValueError for another kind of\n"
     "file or too large a size, and RuntimeError when the scene cannot be rendered or written, "
     "when\n"
     "a callback fails, or while another render is going on."},
    {nullptr, nullptr, 0, nullptr}};

} // namespace

void addProgramModule() {
    Py_InitModule3("quilhost", functions, "What scripts can ask of the program quilhost.");
}

} // namespace quilhost
