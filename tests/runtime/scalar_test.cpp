// SPDX-License-Identifier: MIT
// Numbers and strings in both directions.

#include "tests/runtime/python_fixture.h"
#include "wrappers/rows/argument.h"

#include <cmath>
#include <fstream>
#include <map>
#include <vector>

using namespace binding;

using namespace pytest;

namespace {

class Scalars : public pytest::Test {};

/// Reads an expression, with and without an exception pending. What is accepted arrives as the
/// value that the interpreter itself finds.
template <class T>
void expect_code(const std::string &expression, int code) {
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

const std::map<std::string, void (*)(const std::string &, int)> kTypes = {
    {"int", expect_code<int>},       {"unsigned int", expect_code<unsigned int>},
    {"short", expect_code<short>},   {"unsigned short", expect_code<unsigned short>},
    {"double", expect_code<double>}, {"float", expect_code<float>}};

} // namespace

static std::vector<std::string> parts(const std::string &text) {
    std::vector<std::string> result;
    for (size_t begin = 0, end = 0; end != std::string::npos; begin = end + 3) {
        end = text.find(" | ", begin);
        result.push_back(text.substr(begin, end - begin));
    }
    return result;
}

TEST_F(Scalars, NumbersHaveTheCodesOfTheTable) {
    std::ifstream table(SCALARS);
    int count = 0;
    for (std::string line; std::getline(table, line);) {
        if (line[0] == '#')
            continue;
        const size_t code = line.find('\t'), expressions = line.find('\t', code + 1);
        for (const std::string &type : parts(line.substr(0, code)))
            for (const std::string &expression : parts(line.substr(expressions + 1))) {
                SCOPED_TRACE(testing::Message() << type << ": " << expression);
                kTypes.at(type)(expression, std::stoi(line.substr(code)));
                ++count;
            }
    }
    EXPECT_GT(count, 70);
}

TEST_F(Scalars, NoNumberAndFailingTruth) {
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
