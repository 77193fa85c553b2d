// SPDX-License-Identifier: MIT
// The calling convention, row shape by row shape, on the recording host: what arrives at the host,
// what comes back, and the texts of failures.

#include "tests/runtime/python_fixture.h"
#include "tests/wrappers/recorder.h"
#include "wrappers/rows/call.h"
#include "wrappers/rows/module_tables.h"

#include <cstdlib>
#include <fstream>

using namespace binding;

const char *pytest::make_module() {
    initialise_module("recording");
    return "recording";
}

using namespace pytest;

namespace {

/// Calls a function, as the interpreter does it, and tells in one line what the host saw, the
/// result and the exception: "chars(null) -> None", "! TypeError: ...".
std::string call(const std::string &name, const std::string &source) {
    calls.clear();
    Ref result(PyObject_Call(eval(name), eval("(lambda *a: a)" + source), nullptr));
    std::string outcome = calls;
    const std::string error = pending();
    if (result)
        outcome += " -> " + repr(result);
    result.drop();
    outcome += error.empty() ? "" : " ! " + error;
    return outcome.substr(outcome[0] == ' ');
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

TEST(Rows, have_the_outcomes_of_the_table) {
    std::ifstream table(CALLS);
    int count = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        const size_t open = line.find('('), tab = line.find('\t');
        std::string expected = line.substr(tab + 1);
        for (size_t at; (at = expected.find("\\n")) != std::string::npos;)
            expected.replace(at, 2, "\n");
        EXPECT_EQ(call(line.substr(0, open), line.substr(open, tab - open)), expected) << line;
        ++count;
    }
    EXPECT_GT(count, 50);
}

TEST(Rows, pass_addresses_and_shared_texts) {
    const Ref item = eval("item");
    EXPECT_EQ(call("Recorder_opaque", "(item)"),
              "opaque(" + shown(static_cast<const void *>(static_cast<PyObject *>(item))) +
                  ") -> None");
    run("assert int(Recorder_opaqueResult(item)) == id(item)\n"
        "assert str(Recorder_opaqueResult(item)).endswith('_p_void')\n"
        "assert not Recorder_opaqueResult(item).own()\n"
        "assert Recorder_verdict(5) is intern('unknown')");
}

TEST(Rows, leave_the_result_of_a_failed_status) {
    const int before = Item::live;
    call("Recorder_itemAndStatus", "('n', 1)");
    EXPECT_EQ(Item::live, before + 1) << "made before the status is looked at, and left";
}

TEST(Failures, native_exceptions_pass_and_locals_go) {
    const Ref arguments = eval("(item, item, 'thrown text')");
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
