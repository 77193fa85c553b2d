// SPDX-License-Identifier: MIT
#include "tests/runtime/python_fixture.h"

#include "runtime/director.h"

#include <cstdlib>

namespace pytest {

void start_python() {
    if (Py_IsInitialized())
        return;
    // The interpreter takes its file-system encoding from the locale.
    setenv("LC_ALL", "C.UTF-8", 1);
    Py_NoSiteFlag = 1;
    static char home[] = PYTHON2_HOME;
    Py_SetPythonHome(home);
    Py_InitializeEx(0);
    PyEval_InitThreads();
}

static PyObject *make_pointer(PyObject *, PyObject *arguments) {
    Py_ssize_t at;
    const char *name;
    int own = 0;
    if (!PyArg_ParseTuple(arguments, "ns|i", &at, &name, &own))
        return nullptr;
    return SwigPyObject_New(address(static_cast<size_t>(at)), type(name), own);
}

static PyObject *capture_count(PyObject *, PyObject *) {
    return PyInt_FromLong(getLockCaptureCount());
}

PyObject *scope() {
    static PyObject *const dictionary = [] {
        PyObject *result = PyDict_New();
        PyDict_SetItemString(result, "__builtins__", PyEval_GetBuiltins());
        PyDict_SetItemString(result, "__name__", Ref(PyString_FromString("tests")));
        return result;
    }();
    return dictionary;
}

void import_module() {
    start_python();
    static const bool imported = [] {
        const std::string name = make_module();
        static PyMethodDef functions[] = {{"pointer", make_pointer, METH_VARARGS, nullptr},
                                          {"captured", capture_count, METH_NOARGS, nullptr}};
        for (PyMethodDef &function : functions)
            define(function);
        run(("import sys, weakref, " + name + R"( as _r
def eq(a, b): assert a == b, '%r is not %r' % (a, b)
)")
                .c_str());
        return true;
    }();
    ASSERT_TRUE(imported);
}

void define(PyMethodDef &function) {
    PyDict_SetItemString(scope(), function.ml_name, Ref(PyCFunction_New(&function, nullptr)));
}

void run(const char *code) {
    const Ref result(PyRun_String(code, Py_file_input, scope(), scope()));
    if (!result)
        ADD_FAILURE() << "raised " << pending() << " in\n" << code;
}

Ref eval(const std::string &expression) {
    return Ref(PyRun_String(expression.c_str(), Py_eval_input, scope(), scope()));
}

void expect(std::initializer_list<std::pair<std::string, std::string>> rows) {
    for (const auto &[expression, result] : rows)
        EXPECT_EQ(repr(eval(expression)), result) << expression;
}

std::string pending() {
    if (!PyErr_Occurred())
        return "";
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    const Ref owned_type(type), owned_value(value), owned_traceback(traceback);
    const std::string name = reinterpret_cast<PyTypeObject *>(type)->tp_name;
    return name.substr(name.rfind('.') + 1) + ": " + str(owned_value);
}

static std::string text_of(const Ref &text) {
    if (!text)
        return PyErr_Occurred() ? "<" + pending() + ">" : "<null>";
    return {PyString_AsString(text), static_cast<size_t>(PyString_Size(text))};
}

std::string str(PyObject *object) {
    return text_of(Ref(object ? PyObject_Str(object) : nullptr));
}

std::string repr(PyObject *object) {
    return text_of(Ref(object ? PyObject_Repr(object) : nullptr));
}

swig_type_info *type(const char *mangled) {
    swig_type_info *found = SWIG_MangledTypeQueryModule(&swig_module, &swig_module, mangled);
    EXPECT_TRUE(found) << mangled;
    return found;
}

void Test::TearDown() {
    EXPECT_EQ(pending(), "") << "left behind by the test";
    EXPECT_EQ(getLockCaptureCount(), 0);
    EXPECT_FALSE(pythonMainThreadIsLocked);
}

} // namespace pytest

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    // Children start anew instead of inheriting an interpreter that other tests have used.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    return RUN_ALL_TESTS();
}
