// SPDX-License-Identifier: MIT
// The calling convention, row shape by row shape, on the recording host: what arrives at the host,
// what comes back, and the texts of failures.

#include "tests/runtime/python_fixture.h"
#include "tests/wrappers/recorder.h"
#include "wrappers/rows/call.h"
#include "wrappers/rows/module_tables.h"

#include <cstdlib>

using namespace binding;

const char *pytest::make_module() {
    initialise_module("recording");
    return "recording";
}

using namespace pytest;

namespace {

Ref tuple(const std::string &source) {
    return eval("(" + source + (source.empty() ? ")" : ",)"));
}

/// Calls a function, as the interpreter does it, and tells in one line what the host saw, the
/// result and the exception: "chars(null) -> None", "! TypeError: ...".
std::string call(const std::string &name, const std::string &source) {
    calls.clear();
    Ref result(PyObject_Call(eval(name), tuple(source), nullptr));
    std::string outcome = calls;
    const std::string error = pending();
    if (result)
        outcome += " -> " + repr(result);
    result.drop();
    return outcome + (error.empty() ? "" : " ! " + error);
}

struct Case {
    const char *function, *arguments, *outcome;
};

template <size_t count>
void check(const Case (&cases)[count]) {
    for (const Case &c : cases)
        EXPECT_EQ(call(c.function, c.arguments), c.outcome)
            << c.function << "(" << c.arguments << ")";
}

class Interpreter : public testing::Environment {
  public:
    void SetUp() override {
        import_module();
        run("from recording import *");
        static ZString title("title");
        PyDict_SetItemString(scope(), "z",
                             Ref(SWIG_Python_NewPointerObj(&title, type_of<ZString>(), kBorrowed)));
        run("class Item(object):\n"
            "    __swig_destroy__ = delete_Item\n"
            "    def __init__(self, number): Item_swiginit(self, new_Item(number))\n"
            "    def __repr__(self):\n"
            "        owner = 'owned' if self.this.own() else 'borrowed'\n"
            "        return 'Item %d %s' % (Item_number_get(self), owner)\n"
            "Item_swigregister(Item)\n"
            "class Odd(object):\n" // neither a truth value nor a text
            "    def __nonzero__(self): raise KeyError('truth')\n"
            "    def __unicode__(self): raise KeyError('text')\n"
            "    __repr__ = __str__ = __unicode__\n"
            "odd, item, rec = Odd(), Item(4), new_Recorder(8)\n");
        if (testing::Test::HasFatalFailure())
            std::exit(EXIT_FAILURE); // else all tests would count as skipped
    }
};

[[maybe_unused]] const auto *const environment = testing::AddGlobalTestEnvironment(new Interpreter);

#define IN(name, position, type) "in method '" name "', argument " #position " of type '" type "'"
#define BAD(name, position, type) " ! TypeError: " IN(name, position, type)
#define TOO_LARGE(name, position, type) " ! OverflowError: " IN(name, position, type)
#define NO_REFERENCE(name, position, type) \
    " ! ValueError: invalid null reference " IN(name, position, type)
#define NO_TEXT(position) \
    " ! TypeError: Expected a String or Unicode object for argument " #position

// What each type refuses is tested on the rows of the module itself.
TEST(Arguments, of_each_type) {
    check({
        {"Recorder_chars", "'a\\0b'", "chars(\"a\") -> None"},
        {"Recorder_chars", "None", "chars(null) -> None"},
        {"Recorder_aReference", "item", "aReference(Item 4) -> None"},
        {"Recorder_aValue", "item", "aValue(Item 5) -> None"},
        {"Recorder_aValue", "item", "aValue(Item 5) -> None"}, // a copy was changed
        {"Recorder_opaque", "None", "opaque(null) -> None"},
        {"Recorder_everything",
         "-2147483648, 4294967295, -32768, 65535L, -3.4028234663852886e38, 1e39, [], 88, '99', "
         "'ten', Item(11), Item(12), Item(13), None",
         "everything(-2147483648, 4294967295, -32768, 65535, -3.4028234663852886e+38f, "
         "9.9999999999999994e+38, false, 88, '99', \"ten\", &Item 11, Item 12, Item 13, null) -> "
         "None"},
        {"Recorder_everything", "1, 1, 1, 1, -1e39, 1, 1, 1, '', '', None, item, item, None",
         TOO_LARGE("Recorder_everything", 5, "float")},
        // Of several bad arguments the first is told; a string is none.
        {"Recorder_everything", "1, 1, 1, 1, 1, 1, 1, 1, None, 3, rec, None, None, odd",
         BAD("Recorder_everything", 10, "char const *")},
    });
    const Ref item = eval("item");
    EXPECT_EQ(call("Recorder_opaque", "item"),
              "opaque(" + shown(static_cast<const void *>(static_cast<PyObject *>(item))) +
                  ") -> None");
}

TEST(Arguments, absent) {
    check({
        {"Recorder_absent", "1", "absent(1, true, 9, -7, '', null) -> None"},
        {"Recorder_absent", "1, 0, 2", "absent(1, false, 2, -7, '', null) -> None"},
        {"Recorder_absent", "1, 0, 2, 3, 'e', Item(6)",
         "absent(1, false, 2, 3, 'e', &Item 6) -> None"},
    });
}

TEST(Arguments, strings) {
    check({
        {"Recorder_aString", "'plain'", "aString('plain') -> None"},
        {"Recorder_aString", "u'\\xe9\\U0001F600'", "aString('\xc3\xa9\xf0\x9f\x98\x80') -> None"},
        {"Recorder_aString", "5", "aString('5') -> None"},
        {"Recorder_aString", "None", "aString('') -> None" NO_TEXT(1)},
        {"Recorder_aString", "odd", "aString('') -> None" NO_TEXT(1)},
        {"Recorder_twoStrings", "'a', 'b', 3", "twoStrings('a', 'b', 3) -> None"},
        {"Recorder_twoStrings", "None, odd, 3", "twoStrings('', '', 3) -> None" NO_TEXT(2)},
        {"Recorder_twoStrings", "None, 'b', 2**31", TOO_LARGE("Recorder_twoStrings", 3, "int")},
        {"Recorder_itemAndStatus", "None, 0", "itemAndStatus('', 0) -> Item 0 owned" NO_TEXT(1)},
    });
}

TEST(Results, of_each_type) {
    check({
        {"Recorder_unsignedResult", "", " -> 4294967295"}, // no long
        {"Recorder_stringResult", "", " -> u'a\\xe9\\U0001f600'"},
        {"Recorder_charsResult", "1", " -> 'bytes \\xc3\\xa9'"},
        {"Recorder_charsResult", "0", " -> None"},
        {"Recorder_valueResult", "", " -> Item 5 owned"},
        {"Recorder_pointerResult", "1", " -> Item 77 borrowed"},
        {"Recorder_pointerResult", "0", " -> None"},
        {"Recorder_referenceResult", "", " -> Item 77 borrowed"},
        {"Recorder_opaqueResult", "None", " -> None"},
    });
    run("assert int(Recorder_opaqueResult(item)) == id(item)\n"
        "assert str(Recorder_opaqueResult(item)).endswith('_p_void')\n"
        "assert not Recorder_opaqueResult(item).own()\n");
}

TEST(Statuses, returned_and_hidden) {
    check({
        {"Recorder_verdict", "0", " -> None"},
        {"Recorder_verdict", "5", " -> 'unknown'"},
        {"Recorder_verdict", "1", " ! RuntimeError: (kFailure): text of the verdict"},
        {"Recorder_stringAndStatus", "0", " -> u'made'"},
        {"Recorder_stringAndStatus", "1", " ! RuntimeError: (kFailure): text of the verdict"},
        // The host's verdict replaces the complaint about the string.
        {"Recorder_itemAndStatus", "None, 5",
         "itemAndStatus('', 5) ! RuntimeError: (kUnknownParameter): text of the verdict"},
    });
    run("assert Recorder_verdict(5) is intern('unknown')");
    const int before = Item::live;
    call("Recorder_itemAndStatus", "'n', 1");
    EXPECT_EQ(Item::live, before + 1) << "made before the status is looked at, and left";
}

#define NO_CONSTRUCTOR                                                                       \
    " ! NotImplementedError: Wrong number or type of arguments for overloaded function "     \
    "'new_Recorder'.\n  Possible C/C++ prototypes are:\n    Recorder()\n    Recorder(int)\n" \
    "    Recorder(Item const &,ZStatus *)\n"

TEST(Overloads, by_count_and_by_probe) {
    check({
        {"Recorder_byFirst", "Item(1), 2", "byFirst Item(Item 1, 2, true) -> None"},
        {"Recorder_byFirst", "z, 2, 0", "byFirst ZString('title', 2, false) -> None"},
        {"Recorder_byFirst", "rec, 2, 1", "byFirst Recorder(2, true) -> None"},
        // Arguments alike in all candidates are not probed but reported by the one chosen.
        {"Recorder_byFirst", "Item(1), 'x'", BAD("Recorder_byFirst", 2, "int")},
        {"Recorder_byFirst", "z, 2, odd", BAD("Recorder_byFirst", 3, "bool const")},
        // None passes the probe of a pointer, and then is no reference.
        {"Recorder_byFirst", "None, 2", NO_REFERENCE("Recorder_byFirst", 1, "Item const &")},
        {"Recorder_byFirst", "5, 2", BAD("Recorder_byFirst", 1, "Recorder &")},
        {"new_Recorder", "1, 2", NO_CONSTRUCTOR},
        {"new_Recorder", "None", NO_REFERENCE("new_Recorder", 1, "Item const &")},
        {"new_Recorder", "Item(-1)", "Recorder(Item -1) ! RuntimeError: (kFailure): no such item"},
    });
}

TEST(Objects, methods_constructors_and_destructors) {
    check({
        {"Recorder_plain", "rec, 3", "plain(3) -> 1"},
        {"Recorder_constant", "rec", " -> 1"},
        {"Recorder_withDefault", "rec, Item(2)", "withDefault(Item 2, true) -> None"},
        {"delete_Recorder", "None", " -> None"},
        {"delete_Recorder", "new_Recorder()", "Recorder()~Recorder() -> None"},
        {"delete_Recorder", "new_Recorder(3)", "Recorder(3)~Recorder() -> None"},
        {"delete_Recorder", "new_Recorder(Item(9))", "Recorder(Item 9)~Recorder() -> None"},
    });
}

TEST(Failures, native_exceptions_pass_and_locals_go) {
    const Ref arguments = tuple("item, item, 'thrown text'");
    const int before = Item::live;
    const auto native = PyCFunction_GET_FUNCTION(static_cast<PyObject *>(eval("Recorder_throws")));
    try {
        native(nullptr, arguments);
        FAIL() << "nothing was thrown";
    } catch (const std::string &text) {
        EXPECT_EQ(text, "thrown text");
    }
    EXPECT_EQ(Item::live, before);
    EXPECT_FALSE(PyErr_Occurred());
}

} // namespace
