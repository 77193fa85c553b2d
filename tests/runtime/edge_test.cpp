// Edges of the runtime's small functions that no wrapper of this module comes to.

#include "python_fixture.h"
#include "runtime/arguments.h"
#include "runtime/char_strings.h"
#include "runtime/packed_object.h"
#include "runtime/registration.h"
#include "runtime/result_codes.h"
#include "runtime/scalars.h"

using namespace pytest;

namespace {
class Edges : public pytest::Test {};
} // namespace

TEST_F(Edges, ResultCodesChooseExceptions) {
    PyObject *const types[] = {PyExc_RuntimeError,      PyExc_RuntimeError,  PyExc_IOError,
                               PyExc_RuntimeError,      PyExc_IndexError,    PyExc_TypeError,
                               PyExc_ZeroDivisionError, PyExc_OverflowError, PyExc_SyntaxError,
                               PyExc_ValueError,        PyExc_SystemError,   PyExc_AttributeError,
                               PyExc_MemoryError,       PyExc_RuntimeError};
    for (int code = 0; code < 14; ++code)
        EXPECT_EQ(SWIG_Python_ErrorType(-code), types[code]) << code;
}

TEST_F(Edges, ArgumentsThatAreNoTuple) {
    PyObject *objects[3];
    EXPECT_EQ(SWIG_Python_UnpackTuple(nullptr, "f", 0, 0, objects), 1);
    const Ref list(PyList_New(0)), one(PyTuple_Pack(1, Py_None));
    const struct {
        PyObject *arguments;
        int min, max;
        const char *message;
    } cases[] = {
        {nullptr, 2, 2, "TypeError: f expected 2 arguments, got none"},
        {nullptr, 0, 2, "TypeError: f expected at least 0 arguments, got none"},
        {list, 0, 1, "SystemError: UnpackTuple() argument list is not a tuple"},
        {one, 2, 3, "TypeError: f expected at least 2 arguments, got 1"},
        {one, 0, 0, "TypeError: f expected 0 arguments, got 1"},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(SWIG_Python_UnpackTuple(row.arguments, "f", row.min, row.max, objects), 0);
        EXPECT_EQ(pending(), row.message);
    }
    EXPECT_EQ(SWIG_Python_UnpackTuple(one, "f", 0, 3, objects), 2);
    EXPECT_EQ(objects[0], Py_None);
    EXPECT_FALSE(objects[1] || objects[2]);
}

TEST_F(Edges, ChecksWithoutAPlaceForTheValue) {
    for (const char *text : {"5", "5L", "5.0", "'x'", "None"}) {
        const Ref object = eval(text);
        const bool is_integer = text[0] == '5' && text[1] != '.', is_number = text[0] == '5';
        EXPECT_EQ(SWIG_AsVal_int(object, nullptr) >= 0, is_integer) << text;
        EXPECT_EQ(SWIG_AsVal_long(object, nullptr) >= 0, is_integer) << text;
        EXPECT_EQ(SWIG_AsVal_unsigned_SS_int(object, nullptr) >= 0, is_integer) << text;
        EXPECT_EQ(SWIG_AsVal_double(object, nullptr) >= 0, is_number) << text;
        PyErr_Clear();
    }
    EXPECT_EQ(SWIG_AsCharPtrAndSize(eval("pointer(16, '_p_char')"), nullptr, nullptr), SWIG_OK);
}

TEST_F(Edges, FunctionsThatNameAConstantGetItsAddress) {
    swig_type_info type = {"_p_f", nullptr, nullptr, nullptr, nullptr, 0}, *slot = &type;
    const swig_const_info constants[] = {
        {kPackedConstant, "packed", 1, 0, &type, &slot},
        {kPointerConstant, "null", 0, 0, nullptr, &slot},
        {kPointerConstant, "known", 0, 0, address(0x10), &slot},
        {kEndOfConstants, nullptr, 0, 0, nullptr, nullptr},
    };
    const char *const texts[][2] = {
        {nullptr, nullptr},
        {"plain", "plain"},
        {"swig_ptr: other", "swig_ptr: other"},
        {"swig_ptr: packed", "swig_ptr: packed"},
        {"swig_ptr: null", "swig_ptr: null"},
        {"before swig_ptr: known", "before swig_ptr: _1000000000000000_p_f"},
    };
    PyMethodDef methods[std::size(texts) + 1] = {};
    for (size_t i = 0; i < std::size(texts); ++i)
        methods[i] = {"f", nullptr, METH_NOARGS, texts[i][0]};
    SWIG_Python_FixMethods(methods, constants);
    for (size_t i = 0; i < std::size(texts); ++i)
        EXPECT_STREQ(methods[i].ml_doc, texts[i][1]);
    free(const_cast<char *>(methods[std::size(texts) - 1].ml_doc));
}

TEST_F(Edges, PacksAreOrderedBySizeThenBytes) {
    const auto pack = [](const char *bytes) {
        return Ref(SwigPyPacked_New(bytes, std::char_traits<char>::length(bytes), type("_p_int")));
    };
    const Ref a = pack("a"), b = pack("b"), ab = pack("ab");
    const struct {
        PyObject *left, *right;
        int order;
    } cases[] = {{a, b, -1}, {b, a, 1}, {a, ab, -1}, {ab, b, 1}, {a, a, 0}};
    for (const auto &row : cases)
        EXPECT_EQ(PyObject_Compare(row.left, row.right), row.order);
}
