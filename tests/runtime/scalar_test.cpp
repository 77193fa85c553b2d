// Numbers and strings in both directions, argument counts, and the exception types of codes.

#include "python_fixture.h"
#include "runtime/arguments.h"
#include "wrappers/argument.h"

#include <cmath>
#include <sys/mman.h>
#include <unistd.h>

using namespace pytest;

namespace {

class Scalars : public pytest::Test {};

/// Reads each expression, with and without an exception pending. What is accepted arrives as the
/// value that the interpreter itself finds.
template <class T>
void expect_code(int code, std::initializer_list<const char *> expressions) {
    for (const char *expression : expressions) {
        SCOPED_TRACE(expression);
        const Ref object = eval(expression);
        ASSERT_TRUE(object) << pending();
        Argument<T> argument;
        EXPECT_EQ(argument.read(object, 1), code);
        EXPECT_EQ(pending(), "");
        if (code == 0) {
            EXPECT_EQ(static_cast<double>(argument.get()), PyFloat_AsDouble(object));
        }
        const KeepsEarlierException earlier;
        EXPECT_EQ(Argument<T>().read(object, 1), code);
    }
}

} // namespace

TEST_F(Scalars, Integers) {
    for (const char *other :
         {"3.0", "'3'", "u'3'", "None", "1j", "type('C', (), {'__int__': lambda s: 3})()"}) {
        expect_code<int>(-5, {other});
        expect_code<unsigned int>(-5, {other});
        expect_code<short>(-5, {other});
        expect_code<unsigned short>(-5, {other});
    }
    expect_code<int>(0, {"0", "-7", "2147483647", "-2147483648", "2147483647L", "-2147483648L",
                         "True", "type('I', (int,), {})(5)", "type('L', (long,), {})(5)"});
    expect_code<int>(-7, {"2147483648", "-2147483649", "2147483648L", "-2147483649L", "sys.maxint",
                          "long(sys.maxint)", "-2**63"});
    expect_code<int>(-5, {"2**63", "-2**63 - 1"});
    expect_code<unsigned int>(0, {"0", "4294967295", "0L", "4294967295L", "False"});
    expect_code<unsigned int>(-7, {"-1", "4294967296", "4294967296L", "2**64 - 1"});
    expect_code<unsigned int>(-5, {"-1L", "2**64", "10**40"});
    expect_code<short>(0, {"32767", "-32768", "32767L", "-32768L"});
    expect_code<short>(-7, {"32768", "-32769", "65536", "2147483648", "-32769L"});
    expect_code<short>(-5, {"10**40"});
    expect_code<unsigned short>(0, {"0", "65535", "65535L"});
    expect_code<unsigned short>(-7, {"-1", "65536", "65536L"});
    expect_code<unsigned short>(-5, {"-1L", "10**40"});
}

TEST_F(Scalars, RealNumbersAndTruth) {
    for (const char *number : {"0.5", "-3", "True", "5L", "type('F', (float,), {})(2.5)"}) {
        expect_code<double>(0, {number});
        expect_code<float>(0, {number});
    }
    for (const char *other : {"10**400", "-10**400", "'1'", "1j", "None",
                              "type('C', (), {'__float__': lambda s: 3.0})()"}) {
        expect_code<double>(-5, {other});
        expect_code<float>(-5, {other});
    }
    expect_code<double>(0, {"2**53 + 1", "2L**53 + 1", "float('inf')", "-1e308"});
    expect_code<float>(0, {"3.4028234663852886e38", "-3.4028234663852886e38"});
    expect_code<float>(-7, {"3.402823466385289e38", "-3.402823466385289e38", "10**39",
                            "float('inf')", "-float('inf')"});
    Argument<float> nan;
    EXPECT_EQ(nan.read(eval("float('nan')"), 1), 0);
    EXPECT_TRUE(std::isnan(nan.get()));
    for (const char *object :
         {"True", "False", "2", "0.0", "''", "'0'", "None", "[]", "object()"}) {
        Argument<bool> truth;
        EXPECT_EQ(truth.read(eval(object), 1), 0);
        EXPECT_EQ(repr(eval("bool(" + std::string(object) + ")")), truth.get() ? "True" : "False");
    }
    run("class Untrue(object):\n    def __nonzero__(self): raise ValueError('no truth')\n");
    EXPECT_EQ(Argument<bool>().read(eval("Untrue()"), 1), -5);
    EXPECT_EQ(pending(), "ValueError: no truth"); // the wrapper's own message replaces it
    for (const char *number : {"5", "5L"})        // the destination is optional
        EXPECT_EQ(SWIG_AsVal_int(eval(number), nullptr) +
                      SWIG_AsVal_unsigned_SS_int(eval(number), nullptr) +
                      SWIG_AsVal_double(eval(number), nullptr),
                  0);
}

TEST_F(Scalars, CharacterStrings) {
    EXPECT_EQ(SWIG_pchar_descriptor(), type("_p_char"));
    char native[] = "native";
    PyDict_SetItemString(scope(), "native", Ref(SwigPyObject_New(native, type("_p_char"), 0)));
    const struct {
        const char *expression;
        int mark, code, mark_after;
        const char *text; // null: a null string
        size_t size;
    } rows[] = {{"'a\\0b'", kOldString, 0, kOldString, "a\0b", 4},
                {"'a\\0b'", kNewString, 0, kNewString, "a\0b", 4},
                {"''", kNewString, 0, kNewString, "", 1},
                {"'abc'", 7, 0, kOldString, "abc", 4},
                {"type('S', (str,), {})('sub')", kOldString, 0, kOldString, "sub", 4},
                {"native", kNewString, 0, kOldString, "native", 7},
                {"None", kNewString, 0, kOldString, nullptr, 0},
                {"u'abc'", kOldString, -5, kOldString, nullptr, 0},
                {"bytearray('abc')", kOldString, -5, kOldString, nullptr, 0},
                {"5", kNewString, -5, kNewString, nullptr, 0},
                {"pointer(1, '_p_int')", kOldString, -5, kOldString, nullptr, 0}};
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.expression) + " " + std::to_string(row.mark));
        const Ref object = eval(row.expression);
        char *text = nullptr, *unmarked = nullptr;
        int mark = row.mark;
        EXPECT_EQ(SWIG_AsCharPtrAndSize(object, &text, &mark), row.code);
        EXPECT_EQ(mark, row.mark_after);
        EXPECT_EQ(SWIG_AsCharPtrAndSize(object, &unmarked, nullptr), row.code);
        EXPECT_EQ(SWIG_AsCharPtrAndSize(object, nullptr, nullptr), row.code);
        EXPECT_EQ(text == unmarked, mark != kNewString || row.code);
        ASSERT_EQ(text != nullptr, row.text != nullptr);
        if (text) {
            EXPECT_EQ(std::string(text, row.size), std::string(row.text, row.size));
            EXPECT_EQ(std::string(unmarked, row.size), std::string(row.text, row.size));
        }
        if (mark == kNewString)
            delete[] text;
        EXPECT_EQ(pending(), "");
    }
    run("del native");
}

TEST_F(Scalars, NativeStringsComeBack) {
    EXPECT_EQ(repr(Ref(SWIG_FromCharPtr(nullptr))), "None");
    EXPECT_EQ(repr(Ref(SWIG_FromCharPtr(""))), "''");
    EXPECT_EQ(repr(Ref(SWIG_FromCharPtr("a\xff"))), "'a\\xff'");
    // A text of 2^31 bytes: one small piece of memory, mapped again and again.
    constexpr size_t kSize = size_t{1} << 31, kPiece = size_t{1} << 23;
    const int file = memfd_create("text", 0);
    ASSERT_EQ(ftruncate(file, kPiece), 0);
    void *whole = mmap(nullptr, kSize + kPiece, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(whole, MAP_FAILED);
    char *text = static_cast<char *>(whole);
    for (size_t at = 0; at < kSize; at += kPiece)
        ASSERT_NE(mmap(text + at, kPiece, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file, 0),
                  MAP_FAILED);
    std::memset(text, 'x', kPiece);
    const Ref object(SWIG_FromCharPtr(text));
    ASSERT_TRUE(SwigPyObject_Check(object));
    EXPECT_EQ(pointer_object(object)->ptr, text);
    EXPECT_EQ(pointer_object(object)->ty, type("_p_char"));
    EXPECT_EQ(pointer_object(object)->own, 0);
    munmap(whole, kSize + kPiece);
    close(file);
}

/// unpack(arguments, min, max): the objects, null as Ellipsis. The string "none" stands for no
/// tuple.
static PyObject *unpack(PyObject *, PyObject *arguments) {
    PyObject *tuple, *objects[4] = {};
    Py_ssize_t min, max;
    if (!PyArg_ParseTuple(arguments, "Onn", &tuple, &min, &max))
        return nullptr;
    tuple = PyString_Check(tuple) ? nullptr : tuple;
    const Py_ssize_t result = SWIG_Python_UnpackTuple(tuple, "f", min, max, objects);
    if (!result)
        return nullptr;
    EXPECT_EQ(result, tuple ? PyTuple_GET_SIZE(tuple) + 1 : 1);
    PyObject *list = PyList_New(0);
    for (Py_ssize_t i = 0; i < max; ++i)
        PyList_Append(list, objects[i] ? objects[i] : Py_Ellipsis);
    return list;
}

TEST_F(Scalars, ArgumentTuplesAreSpread) {
    static PyMethodDef function = {"unpack", unpack, METH_VARARGS, nullptr};
    define(function);
    expect({{"unpack('none', 0, 0)", "[]"},
            {"unpack('none', 0, 1)", "<TypeError: f expected at least 0 arguments, got none>"},
            {"unpack('none', 2, 2)", "<TypeError: f expected 2 arguments, got none>"},
            {"unpack((), 0, 2)", "[Ellipsis, Ellipsis]"},
            {"unpack((1, 2), 2, 2)", "[1, 2]"},
            {"unpack(type('T', (tuple,), {})((1, 2)), 1, 3)", "[1, 2, Ellipsis]"},
            {"unpack((1,), 2, 2)", "<TypeError: f expected 2 arguments, got 1>"},
            {"unpack((1, 2, 3), 2, 2)", "<TypeError: f expected 2 arguments, got 3>"},
            {"unpack((1,), 2, 3)", "<TypeError: f expected at least 2 arguments, got 1>"},
            {"unpack((1, 2, 3, 4), 2, 3)", "<TypeError: f expected at most 3 arguments, got 4>"},
            {"unpack([1], 1, 1)", "<SystemError: UnpackTuple() argument list is not a tuple>"}});
}

TEST_F(Scalars, CodesHaveTheirExceptionTypes) {
    PyObject *const types[] = {PyExc_RuntimeError,  PyExc_IOError,        PyExc_RuntimeError,
                               PyExc_IndexError,    PyExc_TypeError,      PyExc_ZeroDivisionError,
                               PyExc_OverflowError, PyExc_SyntaxError,    PyExc_ValueError,
                               PyExc_SystemError,   PyExc_AttributeError, PyExc_MemoryError};
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(SWIG_Python_ErrorType(-1 - i), types[i]) << -1 - i;
    for (int other : {-13, -100, 0, 1, 512})
        EXPECT_EQ(SWIG_Python_ErrorType(other), PyExc_RuntimeError) << other;
}
