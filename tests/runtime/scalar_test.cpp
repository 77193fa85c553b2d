// SPDX-License-Identifier: MIT
// Numbers and strings in both directions.

#include "tests/runtime/python_fixture.h"
#include "wrappers/rows/argument.h"

#include <cmath>

using namespace binding;

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
    for (const char *other : {"3.0", "'3'", "type('C', (), {'__int__': lambda s: 3})()"}) {
        expect_code<int>(-5, {other});
        expect_code<unsigned int>(-5, {other});
    }
    expect_code<int>(0, {"2147483647", "-2147483648", "2147483647L", "-2147483648L", "True",
                         "type('L', (long,), {})(5)"});
    expect_code<int>(-7, {"2147483648", "-2147483649", "2147483648L", "-2147483649L", "-2**63"});
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

TEST_F(Scalars, RealNumbersAndFailingTruth) {
    for (const char *number : {"0.5", "-3", "True", "5L"}) {
        expect_code<double>(0, {number});
        expect_code<float>(0, {number});
    }
    for (const char *other :
         {"10**400", "'1'", "None", "type('C', (), {'__float__': lambda s: 3.0})()"}) {
        expect_code<double>(-5, {other});
        expect_code<float>(-5, {other});
    }
    expect_code<double>(0, {"2L**53 + 1", "float('inf')", "-1e308"});
    expect_code<float>(0, {"3.4028234663852886e38", "-3.4028234663852886e38"});
    expect_code<float>(-7, {"3.402823466385289e38", "-3.402823466385289e38", "-float('inf')"});
    Argument<float> nan;
    EXPECT_EQ(nan.read(eval("float('nan')"), 1), 0);
    EXPECT_TRUE(std::isnan(nan.get()));
    run("class Untrue(object):\n    def __nonzero__(self): raise ValueError('no truth')\n");
    EXPECT_EQ(Argument<bool>().read(eval("Untrue()"), 1), -5);
    EXPECT_EQ(pending(), ""); // the wrapper has a message of its own
}

TEST_F(Scalars, CharacterStrings) {
    char native[] = "native";
    PyDict_SetItemString(scope(), "native", Ref(SwigPyObject_New(native, type("_p_char"), 0)));
    const struct {
        const char *expression;
        int mark, code, mark_after;
        std::string text; // empty: a null string
    } rows[] = {{"'a\\0b'", kOldString, 0, kOldString, {"a\0b\0", 4}},
                {"'a\\0b'", kNewString, 0, kNewString, {"a\0b\0", 4}},
                {"native", kNewString, 0, kOldString, {"native\0", 7}},
                {"None", kNewString, 0, kOldString, ""},
                {"u'abc'", kOldString, -5, kOldString, ""},
                {"5", kNewString, -5, kNewString, ""},
                {"pointer(1, '_p_int')", kOldString, -5, kOldString, ""}};
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.expression) + " " + std::to_string(row.mark));
        const Ref object = eval(row.expression);
        char *text = nullptr;
        int mark = row.mark;
        EXPECT_EQ(SWIG_AsCharPtrAndSize(object, &text, &mark), row.code);
        EXPECT_EQ(mark, row.mark_after);
        ASSERT_EQ(text == nullptr, row.text.empty());
        if (text) {
            EXPECT_EQ(std::string(text, row.text.size()), row.text);
        }
        if (mark == kNewString)
            delete[] text;
    }
    run("del native");
    EXPECT_EQ(repr(Ref(SWIG_FromCharPtr(nullptr))), "None");
    EXPECT_EQ(repr(Ref(SWIG_FromCharPtr("a\xff"))), "'a\\xff'");
}
