// SPDX-License-Identifier: MIT
// A program that runs a Python script in which calls can be made to run out of memory: the module
// is compiled in, and its runtime's functions can be called from the script.

#include "devhost/session/RenderSession.h"
#include "runtime/char_strings.h"
#include "runtime/convert.h"
#include "runtime/object_holder.h"
#include "runtime/packed_object.h"
#include "tests/across/faults/allocator.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

using namespace binding;

extern "C" void init_OpenQuilRender();

namespace {

using Ref = swig::SwigPtr_PyObject;

swig_type_info *type_named(const char *mangled) {
    return SWIG_MangledTypeQueryModule(&swig_module, &swig_module, mangled);
}

/// call(function, arguments, nth, persistent) -> (result or None, had a result, exception type or
/// None, left by a native exception, allocations seen). A nth of 0 lets none fail. Built-ins are
/// entered without the interpreter's own check of the result.
PyObject *call(PyObject *, PyObject *arguments) {
    PyObject *function, *given;
    long nth;
    int persistent;
    if (!PyArg_ParseTuple(arguments, "OO!li", &function, &PyTuple_Type, &given, &nth, &persistent))
        return nullptr;
    PyObject *result = nullptr, *type, *value, *traceback;
    bool is_thrown = false;
    allocator::fail_at(nth, persistent);
    try {
        result = PyCFunction_Check(function) ? PyCFunction_Call(function, given, nullptr)
                                             : PyObject_Call(function, given, nullptr);
    } catch (const std::exception &) {
        is_thrown = true;
    }
    const long seen = allocator::disarm();
    PyErr_Fetch(&type, &value, &traceback);
    Py_XDECREF(traceback);
    const Ref owned_result(result), owned_type(type), owned_value(value);
    return Py_BuildValue("OOOOl", result ? result : Py_None, result ? Py_True : Py_False,
                         type ? type : Py_None, is_thrown ? Py_True : Py_False, seen);
}

PyObject *live(PyObject *, PyObject *) {
    return PyInt_FromLong(allocator::live());
}

PyObject *type_query(PyObject *, PyObject *name) {
    swig_type_info *type = SWIG_TypeQuery(PyString_AS_STRING(name));
    return PyBool_FromLong(type != nullptr);
}

/// pointer(address, mangled type, flags): a pointer object, or its proxy.
PyObject *pointer(PyObject *, PyObject *arguments) {
    Py_ssize_t address;
    const char *name;
    int flags;
    if (!PyArg_ParseTuple(arguments, "nsi", &address, &name, &flags))
        return nullptr;
    return SWIG_Python_NewPointerObj(reinterpret_cast<void *>(address), type_named(name), flags);
}

PyObject *packed(PyObject *, PyObject *bytes) {
    return SwigPyPacked_New(PyString_AS_STRING(bytes),
                            static_cast<size_t>(PyString_GET_SIZE(bytes)), type_named("_p_float"));
}

/// convert(object, mangled type, flags) -> result code.
PyObject *convert(PyObject *, PyObject *arguments) {
    PyObject *object = PyTuple_GET_ITEM(arguments, 0);
    void *found;
    const int code = SWIG_Python_ConvertPtrAndOwn(
        object, &found, type_named(PyString_AS_STRING(PyTuple_GET_ITEM(arguments, 1))),
        static_cast<int>(PyInt_AS_LONG(PyTuple_GET_ITEM(arguments, 2))));
    return PyInt_FromLong(code);
}

/// A fresh copy of a text -> result code.
PyObject *copy_chars(PyObject *, PyObject *object) {
    char *text = nullptr;
    int mark = kNewString;
    const int code = SWIG_AsCharPtrAndSize(object, &text, &mark);
    if (code >= 0 && mark == kNewString)
        delete[] text;
    return PyInt_FromLong(code);
}

PyObject *from_chars(PyObject *, PyObject *object) {
    return SWIG_FromCharPtr(PyString_AS_STRING(object));
}

/// Whether the interpreter takes each of its blocks from the allocator that can fail.
bool has_no_pools() {
    const long before = allocator::live();
    void *const block = PyObject_Malloc(1);
    const bool is_seen = allocator::live() == before + 1;
    PyObject_Free(block);
    return is_seen;
}

std::FILE *nowhere;

/// Prints as a print statement to a file does.
PyObject *print_object(PyObject *, PyObject *object) {

    if (PyObject_Print(object, nowhere, 0))
        return nullptr;
    Py_RETURN_NONE;
}

PyMethodDef functions[] = {{"call", call, METH_VARARGS, nullptr},
                           {"live", live, METH_NOARGS, nullptr},
                           {"type_query", type_query, METH_O, nullptr},
                           {"pointer", pointer, METH_VARARGS, nullptr},
                           {"packed", packed, METH_O, nullptr},
                           {"convert", convert, METH_VARARGS, nullptr},
                           {"copy_chars", copy_chars, METH_O, nullptr},
                           {"from_chars", from_chars, METH_O, nullptr},
                           {"print_object", print_object, METH_O, nullptr},
                           {nullptr, nullptr, 0, nullptr}};

} // namespace

int main(int argc, char **argv) {
    setenv("LC_ALL", "C.UTF-8", 1);
    Py_NoSiteFlag = 1;
    static char home[] = PYTHON2_HOME, module[] = "_OpenQuilRender";
    Py_SetPythonHome(home);
    PyImport_AppendInittab(module, init_OpenQuilRender);
    Py_InitializeEx(0);
    PyEval_InitThreads();
    if (!has_no_pools()) {
        std::fputs("the interpreter has memory of its own: its allocations cannot fail\n", stderr);
        return 1;
    }
    nowhere = std::fopen("/dev/null", "w");
    devhost::renderSession().useGl = false;
    Py_InitModule("fault_host", functions);
    PySys_SetArgvEx(argc - 1, argv + 1, 1);
    std::FILE *script = argc > 1 ? std::fopen(argv[1], "r") : nullptr;
    const int status = script ? PyRun_SimpleFileEx(script, argv[1], 1) : 1;
    Py_Finalize();
    return status ? 1 : 0;
}
