// SPDX-License-Identifier: MIT
#include "devhost/app/Script.h"

#include "devhost/app/Errors.h"
#include "devhost/app/HostRender.h"
#include "devhost/app/Interrupt.h"
#include "devhost/app/ObjectCensus.h"
#include "devhost/app/ProgramModule.h"
#include "devhost/app/PythonProfile.h"
#include "devhost/app/Reference.h"
#include "devhost/app/ScriptThreads.h"
#include "devhost/app/StandardStreams.h"
#include "devhost/process/InterpreterGate.h"
#include "devhost/process/ReportedExceptions.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Terminal.h"
#include "host/base/TpythonInterpreter.h"
#include "host/base/TpythonLock.h"

#include <Python.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace quilhost {
namespace {

/// build/python, beside the folder of this executable.
std::string modulesFolder() {
    const auto executable = std::filesystem::read_symlink("/proc/self/exe");
    return (executable.parent_path().parent_path() / "python").string();
}

PyObject *mainNamespace() {
    return PyModule_GetDict(PyImport_AddModule("__main__"));
}

/// The argument of SystemExit as the process's exit code, as the interpreter itself reads it.
int exitCodeOf(PyObject *value) {
    Reference attribute;
    if (value && PyExceptionInstance_Check(value)) {
        attribute.reset(PyObject_GetAttrString(value, "code"));
        PyErr_Clear();
        value = attribute.get();
    }
    if (!value || value == Py_None)
        return 0;
    if (PyInt_Check(value) || PyLong_Check(value)) {
        const long code = PyInt_AsLong(value);
        PyErr_Clear();
        return static_cast<int>(code & 0xff);
    }
    PyObject *const standardError = PySys_GetObject(const_cast<char *>("stderr"));
    if (standardError) {
        PyFile_WriteObject(value, standardError, Py_PRINT_RAW);
        PyFile_WriteString("\n", standardError);
    }
    PyErr_Clear();
    return kScriptError;
}

/// Turns the result of a call, or the exception pending instead of it, into the end that it means.
/// A native function may leave an exception beside its result, which nothing has met since; nor has
/// the interpreter met a signal that came at the very end.
ScriptEnd endOf(const Reference &result) {
    if (result && !PyErr_Occurred() && PyErr_CheckSignals() == 0)
        return {};
    if (PyErr_ExceptionMatches(PyExc_SystemExit)) {
        PyObject *type, *value, *traceback;
        PyErr_Fetch(&type, &value, &traceback);
        PyErr_NormalizeException(&type, &value, &traceback);
        const Reference heldType(type), heldValue(value), heldTraceback(traceback);
        const int code = exitCodeOf(value);
        return {code ? ScriptEnd::kExited : ScriptEnd::kDone, code};
    }
    const bool interrupted = PyErr_ExceptionMatches(PyExc_KeyboardInterrupt);
    PyErr_Print();
    return interrupted ? ScriptEnd{ScriptEnd::kInterrupted, kInterrupted}
                       : ScriptEnd{ScriptEnd::kFailed, kScriptError};
}

void reportPendingException() {
    if (!TpythonInterpreter::fsInterpreter)
        TpythonInterpreter::fsInterpreter = new TpythonInterpreter;
    TpythonInterpreter::fsInterpreter->catchAndReportException();
}

/// Called on the render's thread, which gave the interpreter lock away.
void reportCallbackError(const char *callback, const char *what) {
    const TpythonLock lock(kPythonLock);
    if (devhost::runsInterpreter() && PyErr_Occurred())
        reportPendingException();
    else
        devhost::tell(std::string(callback) + " failed: " + what);
}

/// Scripts delete their callbacks under the interpreter lock, on any thread, and when the
/// interpreter ends.
void guardCallback(const std::function<void()> &call) {
    const TpythonLock lock(kPythonLock);
    if (!devhost::runsInterpreter())
        return;
    call();
    if (PyErr_Occurred()) // left beside the callback's result
        reportPendingException();
}

void setArguments(const Options &options) {
    std::vector<std::string> arguments{
        options.hasExpression || options.hasTests() ? "-c" : options.pythonFile};
    arguments.insert(arguments.end(), options.scriptArguments.begin(),
                     options.scriptArguments.end());
    std::vector<char *> pointers;
    pointers.reserve(arguments.size());
    for (auto &argument : arguments)
        pointers.push_back(argument.data());
    // This puts the script's folder first on the search path.
    PySys_SetArgvEx(static_cast<int>(pointers.size()), pointers.data(), 1);
}

/// The handler of SIGTERM as scripts see it: `finally` clauses and functions at exit run.
PyObject *endByTermination(PyObject *, PyObject *) {
    stopEverything(SIGTERM);
    devhost::expectExits();
    const Reference code(PyInt_FromLong(kTerminated));
    PyErr_SetObject(PyExc_SystemExit, code.get());
    return nullptr;
}

PyMethodDef terminationDefinition = {"end_by_termination", endByTermination, METH_VARARGS,
                                     "Ends the script and the program, orderly."};

/// Unless whoever started the program ignores the signal. Scripts may handle it themselves.
void handleTermination() {
    const Reference module(PyImport_ImportModule("signal"));
    const Reference found(module
                              ? PyObject_CallMethod(module.get(), const_cast<char *>("getsignal"),
                                                    const_cast<char *>("i"), SIGTERM)
                              : nullptr);
    if (found && PyInt_Check(found.get()) && PyInt_AS_LONG(found.get()) == long(SIG_DFL))
        Reference(PyObject_CallMethod(module.get(), const_cast<char *>("signal"),
                                      const_cast<char *>("iN"), SIGTERM,
                                      PyCFunction_New(&terminationDefinition, nullptr)));
    PyErr_Clear();
}

PyObject *listOf(const std::vector<std::string> &texts) {
    PyObject *const list = PyList_New(0);
    for (const std::string &text : texts)
        PyList_Append(list, Reference(PyString_FromString(text.c_str())).get());
    return list;
}

ScriptEnd runTests(const Options &options) {
    const Reference runner(PyImport_ImportModule("quilhost_testing"));
    const Reference code(
        runner ? PyObject_CallMethod(runner.get(), const_cast<char *>("run"),
                                     const_cast<char *>("NNiss"), listOf(options.tests),
                                     listOf(options.testPatterns), options.failFast,
                                     options.junit.c_str(), options.scene.c_str())
               : nullptr);
    if (!code)
        return endOf(code);
    return PyInt_AsLong(code.get()) == 0 ? ScriptEnd{}
                                         : ScriptEnd{ScriptEnd::kFailed, kScriptError};
}

/// Classes outlive the interpreter: those of a script because nobody collects them any more,
/// registered proxy classes because the modules keep them. What they hold is let go here, as the
/// script's last functions have run.
constexpr const char *kEndScript = R"(
import atexit, gc, sys
try:
    atexit._run_exitfuncs()
except:
    pass  # they were told; the interpreter goes on as well
script = vars(sys.modules['__main__'])
script.update((name, None) for name in script.keys() if name != '__builtins__')
for module in filter(None, map(sys.modules.get, ('OpenQuil', 'OpenQuilRender'))):
    for proxy in [value for value in vars(module).values() if isinstance(value, type)]:
        vars(proxy).get('_registered', {}).clear()
        for member in vars(proxy).values():
            function = getattr(member, '__func__', member)
            if any(hasattr(value, 'this') for value in getattr(function, 'func_defaults', 0) or ()):
                function.func_defaults = None
gc.collect()
)";

void endScript() {
    const Reference names(PyDict_New());
    PyDict_SetItemString(names.get(), "__builtins__", PyEval_GetBuiltins());
    if (!Reference(PyRun_String(kEndScript, Py_file_input, names.get(), names.get())))
        PyErr_Print();
}

} // namespace

Script::Script(const Options &options) : options_(options) {
    // The interpreter keeps these pointers.
    static char home[] = QUILHOST_PYTHON_HOME;
    static char program[] = QUILHOST_PYTHON_PROGRAM;
    Py_SetPythonHome(home);
    Py_SetProgramName(program);
    {
        const InterruptHandover handover;
        Py_InitializeEx(1);
        handleTermination();
    }
    setUpStandardStreams();
    PyEval_InitThreads();
    addProgramModule();
    watchScriptThreads();
    setArguments(options);
    const std::string folder = modulesFolder();
    const Reference path(PyString_FromStringAndSize(folder.data(), Py_ssize_t(folder.size())));
    PyList_Insert(PySys_GetObject(const_cast<char *>("path")), 1, path.get());
    if (options.leakCheck)
        startObjectCensus();
    profileThread();
    devhost::renderSession().onCallbackError = reportCallbackError;
    devhost::renderSession().callbackGuard = guardCallback;
}

Script::~Script() {
    // An interrupt that has done its work must not reach the functions that run at exit.
    PyErr_CheckSignals();
    PyErr_Clear();
    if (options_.leakCheck)
        endScript();
    devhost::endInterpreter();
    endRenders();
    devhost::renderSession().onCallbackError = nullptr;
    devhost::renderSession().callbackGuard = nullptr;
}

ScriptEnd Script::run() {
    PyObject *const names = mainNamespace();
    if (options_.hasTests())
        return runTests(options_);
    if (options_.hasExpression)
        return endOf(Reference(
            PyRun_String(options_.pythonExpression.c_str(), Py_file_input, names, names)));
    const std::string &file = options_.pythonFile;
    if (file == kStandardInput)
        return endOf(Reference(PyRun_File(stdin, "<stdin>", Py_file_input, names, names)));
    std::FILE *const stream = std::fopen(file.c_str(), "rb");
    if (!stream)
        throw Failure(kUsageError, "cannot read script '" + file + "': " + std::strerror(errno));
    const Reference name(PyString_FromString(file.c_str()));
    PyDict_SetItemString(names, "__file__", name.get());
    return endOf(Reference(PyRun_FileEx(stream, file.c_str(), Py_file_input, names, names, 1)));
}

bool Script::definesRender() const {
    PyObject *const function = PyDict_GetItemString(mainNamespace(), "render");
    return function && PyFunction_Check(function);
}

ScriptEnd Script::render(int frame) {
    PyObject *const function = PyDict_GetItemString(mainNamespace(), "render");
    Py_INCREF(function);
    const Reference held(function);
    return endOf(Reference(PyObject_CallFunction(function, const_cast<char *>("i"), frame)));
}

bool Script::wasInterrupted() {
    return devhost::interruptReported();
}
unsigned Script::reportedErrors() {
    return devhost::reportedExceptions();
}

NativeSection::NativeSection() : state_(PyEval_SaveThread()) {}
NativeSection::~NativeSection() {
    PyEval_RestoreThread(state_);
}

} // namespace quilhost
