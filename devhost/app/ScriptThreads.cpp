// SPDX-License-Identifier: MIT
#include "devhost/app/ScriptThreads.h"

#include "devhost/app/PythonProfile.h"
#include "devhost/app/Reference.h"
#include "devhost/process/CrashReport.h"

namespace quilhost {
namespace {

/// What such a thread runs. `function` is the script's.
PyObject *run(PyObject *function, PyObject *arguments, PyObject *keywords) {
    const devhost::AlternateStack crashReportsFit;
    profileThread();
    return PyObject_Call(function, arguments, keywords);
}

PyMethodDef runDefinition = {"run", reinterpret_cast<PyCFunction>(reinterpret_cast<void *>(run)),
                             METH_VARARGS | METH_KEYWORDS, nullptr};

/// thread.start_new_thread(function, arguments[, keywords]); `original` is the interpreter's own,
/// which also says what is wrong with the arguments.
PyObject *start(PyObject *original, PyObject *arguments) {
    PyObject *const function =
        PyTuple_GET_SIZE(arguments) > 0 ? PyTuple_GET_ITEM(arguments, 0) : nullptr;
    if (!function || !PyCallable_Check(function))
        return PyObject_CallObject(original, arguments);
    const Reference rest(PyTuple_GetSlice(arguments, 1, PyTuple_GET_SIZE(arguments)));
    const Reference first(Py_BuildValue("(N)", PyCFunction_New(&runDefinition, function)));
    const Reference all(rest && first ? PySequence_Concat(first.get(), rest.get()) : nullptr);
    return all ? PyObject_CallObject(original, all.get()) : nullptr;
}

PyMethodDef startDefinition = {"start_new_thread", start, METH_VARARGS,
                               "start_new_thread(function, args[, kwargs])\n\nStarts a thread."};

} // namespace

void watchScriptThreads() {
    const Reference threads(PyImport_ImportModule("thread"));
    const Reference original(threads ? PyObject_GetAttrString(threads.get(), "start_new_thread")
                                     : nullptr);
    const Reference watching(original ? PyCFunction_New(&startDefinition, original.get())
                                      : nullptr);
    for (const char *name : {"start_new_thread", "start_new"})
        if (watching)
            PyObject_SetAttrString(threads.get(), name, watching.get());
    PyErr_Clear(); // an interpreter without threads starts none
}

} // namespace quilhost
