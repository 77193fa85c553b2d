// SPDX-License-Identifier: MIT
#include "devhost/app/PythonProfile.h"

#include "devhost/util/Timeline.h"

#include <Python.h>
#include <frameobject.h>

#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>

namespace quilhost {
namespace {

using Name = std::optional<devhost::TimelineName>;

/// The names of code objects and of native functions' definitions, by their addresses; none for
/// native functions of others. Used under the interpreter's lock.
std::unordered_map<const void *, Name> &names() {
    static auto *const known = new std::unordered_map<const void *, Name>;
    return *known;
}

Name nameOf(PyCodeObject *code) {
    const auto [place, isNew] = names().try_emplace(code);
    if (isNew) {
        Py_INCREF(code); // another one must not get its address
        const auto file = std::filesystem::path(PyString_AS_STRING(code->co_filename)).filename();
        place->second = devhost::timelineName(
            "python", std::string(PyString_AS_STRING(code->co_name)) + " (" + file.string() + ":" +
                          std::to_string(code->co_firstlineno) + ")");
    }
    return place->second;
}

bool isOurs(const char *module) {
    return !std::strcmp(module, "_OpenQuil") || !std::strcmp(module, "_OpenQuilRender") ||
           !std::strcmp(module, "quilhost");
}

Name nameOf(const PyCFunctionObject *function) {
    const auto [place, isNew] = names().try_emplace(function->m_ml);
    PyObject *const module = function->m_module;
    if (isNew && module && PyString_Check(module) && isOurs(PyString_AS_STRING(module)))
        place->second = devhost::timelineName("native", std::string(PyString_AS_STRING(module)) +
                                                            "." + function->m_ml->ml_name);
    return place->second;
}

int note(PyObject *, PyFrameObject *frame, int event, PyObject *argument) {
    const bool isPython = event == PyTrace_CALL || event == PyTrace_RETURN;
    const bool begins = event == PyTrace_CALL || event == PyTrace_C_CALL;
    if (!isPython && !PyCFunction_Check(argument))
        return 0;
    const Name name = isPython ? nameOf(frame->f_code)
                               : nameOf(reinterpret_cast<const PyCFunctionObject *>(argument));
    if (name)
        begins ? devhost::beginOnTimeline(*name) : devhost::endOnTimeline(*name);
    return 0;
}

} // namespace

void profileThread() {
    if (devhost::timelineRuns)
        PyEval_SetProfile(note, nullptr);
}

} // namespace quilhost
