// The calling convention, row shape by row shape, on the recording host: what arrives at the host,
// what comes back, the texts of failures, and the reference counts of everything passed.

#include "tests/wrappers/recorder.h"
#include "wrappers/call.h"
#include "wrappers/module_tables.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <vector>

namespace {

PyObject *names; // what expressions of the tests can refer to

void run(const char *statements) {
    PyObject *result = PyRun_String(statements, Py_file_input, names, names);
    if (!result)
        PyErr_Print();
    ASSERT_TRUE(result);
    Py_DECREF(result);
}

PyObject *evaluate(const std::string &expression) {
    PyObject *result = PyRun_String(expression.c_str(), Py_eval_input, names, names);
    if (!result) {
        ADD_FAILURE() << expression;
        PyErr_Print();
    }
    return result;
}

std::string text_of(PyObject *object, PyObject *(*conversion)(PyObject *)) {
    PyObject *text = object ? conversion(object) : nullptr;
    const std::string result = text ? PyString_AsString(text) : "no text";
    Py_XDECREF(text);
    return result;
}

/// " ! Type: text" of a pending exception, which is cleared.
std::string take_error() {
    if (!PyErr_Occurred())
        return "";
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    const std::string type_name = text_of(PyObject_GetAttrString(type, "__name__"), PyObject_Str);
    const std::string result = " ! " + type_name + ": " + text_of(value, PyObject_Str);
    for (PyObject *object : {type, value, traceback})
        Py_XDECREF(object);
    return result;
}

/// Arguments as a tuple that alone holds its items' references, as far as the items are new.
struct Arguments {
    PyObject *tuple;
    std::vector<Py_ssize_t> counts;

    explicit Arguments(const std::string &source)
        : tuple(evaluate("(" + source + (source.empty() ? ")" : ",)"))) {
        counts = current_counts();
    }
    ~Arguments() { Py_XDECREF(tuple); }
    std::vector<Py_ssize_t> current_counts() const {
        std::vector<Py_ssize_t> result;
        if (PyTuple_GET_SIZE(tuple)) // the empty one is shared
            result.push_back(Py_REFCNT(tuple));
        for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(tuple); ++i)
            if (PyTuple_GET_ITEM(tuple, i) != Py_None) // exceptions hold and drop it as well
                result.push_back(Py_REFCNT(PyTuple_GET_ITEM(tuple, i)));
        return result;
    }
};

PyObject *function(const std::string &name) {
    PyObject *result = PyDict_GetItemString(names, name.c_str());
    EXPECT_TRUE(result) << name;
    return result;
}

/// Calls a function, as the interpreter does it, and tells in one line what the host saw, the
/// result and the exception: "anInt(5) -> None", "! TypeError: ...". The references of all
/// arguments must be as before.
std::string call(const std::string &name, const std::string &source) {
    calls.clear();
    const Arguments arguments(source);
    PyObject *result = PyObject_Call(function(name), arguments.tuple, nullptr);
    std::string outcome = calls;
    const std::string error = take_error();
    if (result)
        outcome += " -> " + text_of(result, PyObject_Repr);
    Py_XDECREF(result);
    EXPECT_EQ(arguments.counts, arguments.current_counts()) << name << "(" << source << ")";
    return outcome + error;
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

void add_pointer(const char *name, void *pointer, swig_type_info *type, int flags) {
    PyObject *object = SWIG_Python_NewPointerObj(pointer, type, flags);
    PyDict_SetItemString(names, name, object);
    Py_DECREF(object);
}

class Interpreter : public testing::Environment {
  public:
    void SetUp() override {
        static char home[] = PYTHON2_HOME;
        Py_SetPythonHome(home);
        Py_InitializeEx(0);
        initialise_module("recording");
        PyObject *module = PyImport_AddModule("recording");
        names = PyDict_Copy(PyModule_GetDict(module));
        PyDict_SetItemString(names, "__builtins__", PyEval_GetBuiltins());
        static ZString title("title");
        static float samples[4];
        add_pointer("z", &title, type_of<ZString>(), kBorrowed);
        add_pointer("samples", samples, type_of<float>(), kOwned);
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
            "class Real(float): pass\n"
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

TEST(Arguments, of_each_type) {
    check({
        {"Recorder_anInt", "-2147483648", "anInt(-2147483648) -> None"},
        {"Recorder_anInt", "2147483648", TOO_LARGE("Recorder_anInt", 1, "int")},
        {"Recorder_anUnsigned", "4294967295", "anUnsigned(4294967295) -> None"},
        {"Recorder_anUnsigned", "-1", TOO_LARGE("Recorder_anUnsigned", 1, "unsigned int")},
        {"Recorder_aShort", "-32768", "aShort(-32768) -> None"},
        {"Recorder_aShort", "32768", TOO_LARGE("Recorder_aShort", 1, "short const")},
        {"Recorder_aShort", "-32769", TOO_LARGE("Recorder_aShort", 1, "short const")},
        {"Recorder_anUnsignedShort", "65535L", "anUnsignedShort(65535) -> None"},
        {"Recorder_anUnsignedShort", "65536",
         TOO_LARGE("Recorder_anUnsignedShort", 1, "unsigned short")},
        {"Recorder_anUnsignedShort", "-1",
         TOO_LARGE("Recorder_anUnsignedShort", 1, "unsigned short")},
        {"Recorder_anUnsignedShort", "2**70", BAD("Recorder_anUnsignedShort", 1, "unsigned short")},
        {"Recorder_aFloat", "-3.4028234663852886e38", "aFloat(-3.4028234663852886e+38f) -> None"},
        {"Recorder_aFloat", "2", "aFloat(2f) -> None"},
        {"Recorder_aFloat", "1e39", TOO_LARGE("Recorder_aFloat", 1, "float")},
        {"Recorder_aFloat", "-1e39", TOO_LARGE("Recorder_aFloat", 1, "float")},
        {"Recorder_aDouble", "1e39", "aDouble(9.9999999999999994e+38) -> None"},
        {"Recorder_aBool", "[]", "aBool(false) -> None"},
        {"Recorder_aBool", "'no'", "aBool(true) -> None"},
        {"Recorder_aBool", "odd", BAD("Recorder_aBool", 1, "bool")},
        {"Recorder_aBoolReference", "2", "aBoolReference(true) -> None"},
        {"Recorder_aBoolReference", "odd", BAD("Recorder_aBoolReference", 1, "bool const &")},
        {"Recorder_aKind", "12345", "aKind(12345) -> None"},
        {"Recorder_aKind", "2**31", TOO_LARGE("Recorder_aKind", 1, "Recorder::Kind")},
        {"Recorder_chars", "'a\\0b'", "chars(\"a\") -> None"},
        {"Recorder_chars", "None", "chars(null) -> None"},
        {"Recorder_chars", "u'a'", BAD("Recorder_chars", 1, "char const *")},
        {"Recorder_aPointer", "item", "aPointer(&Item 4) -> None"},
        {"Recorder_aPointer", "None", "aPointer(null) -> None"},
        {"Recorder_aPointer", "rec", BAD("Recorder_aPointer", 1, "Item const *")},
        {"Recorder_aReference", "item", "aReference(Item 4) -> None"},
        {"Recorder_aReference", "None", NO_REFERENCE("Recorder_aReference", 1, "Item &")},
        {"Recorder_aReference", "5", BAD("Recorder_aReference", 1, "Item &")},
        {"Recorder_aValue", "item", "aValue(Item 5) -> None"},
        {"Recorder_aValue", "item", "aValue(Item 5) -> None"}, // a copy was changed
        {"Recorder_aValue", "None", NO_REFERENCE("Recorder_aValue", 1, "Item const")},
        {"Recorder_opaque", "None", "opaque(null) -> None"},
    });
    PyObject *item = PyDict_GetItemString(names, "item");
    EXPECT_EQ(call("Recorder_opaque", "item"),
              "opaque(" + shown(static_cast<const void *>(item)) + ") -> None");
}

constexpr char every_value[] = "-11, 4000000000, -33, 60000, 5.5, -6.6, 7, 88, '99', 'ten', "
                               "Item(11), Item(12), Item(13), None";

TEST(Arguments, each_in_its_place) {
    EXPECT_EQ(call("Recorder_everything", every_value),
              "everything(-11, 4000000000, -33, 60000, 5.5f, -6.5999999999999996, true, 88, '99', "
              "\"ten\", &Item 11, Item 12, Item 13, null) -> None");

    // One after the other is bad while all behind it are bad too: the first failure counts.
    const struct {
        const char *value, *error, *type;
    } bad[] = {
        {"'x'", "TypeError: ", "int"},
        {"-1", "OverflowError: ", "unsigned int"},
        {"40000", "OverflowError: ", "short const"},
        {"-1", "OverflowError: ", "unsigned short"},
        {"1e300", "OverflowError: ", "float"},
        {"None", "TypeError: ", "double"},
        {"odd", "TypeError: ", "bool"},
        {"2**40", "OverflowError: ", "Recorder::Kind"},
        {nullptr, nullptr, nullptr}, // a string: the call goes on
        {"3", "TypeError: ", "char const *"},
        {"rec", "TypeError: ", "Item *"},
        {"None", "ValueError: invalid null reference ", "Item const &"},
        {"None", "ValueError: invalid null reference ", "Item const"},
    };
    const std::string good[] = {"1", "1", "1",   "1",    "1",    "1",   "1",
                                "1", "1", "'1'", "None", "item", "item"};
    for (size_t i = 0; i < std::size(bad); ++i) {
        if (!bad[i].value)
            continue;
        std::string source;
        for (size_t j = 0; j < std::size(bad); ++j)
            source += (j < i || !bad[j].value ? good[j] : bad[j].value) + ", ";
        EXPECT_EQ(call("Recorder_everything", source + "odd"),
                  std::string(" ! ") + bad[i].error + "in method 'Recorder_everything', argument " +
                      std::to_string(i + 1) + " of type '" + bad[i].type + "'");
    }
}

TEST(Arguments, absent_and_miscounted) {
    check({
        {"Recorder_absent", "1", "absent(1, true, 9, -7, '', null) -> None"},
        {"Recorder_absent", "1, 0, 2", "absent(1, false, 2, -7, '', null) -> None"},
        {"Recorder_absent", "1, 0, 2, 3, 'e', Item(6)",
         "absent(1, false, 2, 3, 'e', &Item 6) -> None"},
        {"Recorder_absent", "",
         " ! TypeError: Recorder_absent expected at least 1 arguments, got 0"},
        {"Recorder_absent", "1, 2, 3, 4, 5, 6, 7",
         " ! TypeError: Recorder_absent expected at most 6 arguments, got 7"},
        {"Recorder_absentOnly", "", "absentOnly(-3) -> None"},
        {"Recorder_absentOnly", "3", "absentOnly(3) -> None"},
        {"Recorder_absentOnly", "1, 2",
         " ! TypeError: Recorder_absentOnly expected at most 1 arguments, got 2"},
        {"Recorder_twoStrings", "1, 2",
         " ! TypeError: Recorder_twoStrings expected 3 arguments, got 2"},
        {"Recorder_twoStrings", "1, 2, 3, 4",
         " ! TypeError: Recorder_twoStrings expected 3 arguments, got 4"},
        {"Recorder_plain", "rec", " ! TypeError: Recorder_plain expected 2 arguments, got 1"},
        {"Recorder_large_set", "rec",
         " ! TypeError: Recorder_large_set expected 2 arguments, got 1"},
        {"Item_swigregister", "1, 2", " ! TypeError: swigregister expected 1 arguments, got 2"},
        {"Item_swiginit", "1", " ! TypeError: swiginit expected 2 arguments, got 1"},
    });
}

// As the interpreter never calls them, but other native code may.
TEST(Arguments, received_without_the_interpreter) {
    const auto direct = [](const char *name, PyObject *arguments) {
        calls.clear();
        PyObject *result = PyCFunction_GET_FUNCTION(function(name))(nullptr, arguments);
        const std::string outcome = calls + (result ? " -> " + text_of(result, PyObject_Repr) : "");
        Py_XDECREF(result);
        return outcome + take_error();
    };
    const Arguments one("1"), none("");
    EXPECT_EQ(direct("Recorder_anInt", nullptr), "");
    EXPECT_EQ(direct("Recorder_nothing", nullptr), "nothing() -> None");
    EXPECT_EQ(direct("Recorder_nothing", none.tuple), "nothing() -> None");
    EXPECT_EQ(direct("Recorder_nothing", one.tuple),
              " ! TypeError: Recorder_nothing expected 0 arguments, got 1");
    EXPECT_EQ(direct("Recorder_nothing", Py_None),
              " ! SystemError: UnpackTuple() argument list is not a tuple");
    EXPECT_EQ(direct("Recorder_plain", Py_None),
              " ! SystemError: UnpackTuple() argument list is not a tuple");
    EXPECT_EQ(direct("Recorder_absent", nullptr),
              " ! TypeError: Recorder_absent expected at least 1 arguments, got none");
}

TEST(Arguments, strings) {
    check({
        {"Recorder_aString", "'plain'", "aString('plain') -> None"},
        {"Recorder_aString", "u'\\xe9\\U0001F600'", "aString('\xc3\xa9\xf0\x9f\x98\x80') -> None"},
        {"Recorder_aString", "5", "aString('5') -> None"},
        {"Recorder_aString", "None", "aString('') -> None" NO_TEXT(1)},
        {"Recorder_aString", "odd", "aString('') -> None" NO_TEXT(1)},
        {"Recorder_aStringReference", "None", "aStringReference('') -> None" NO_TEXT(1)},
        {"Recorder_aStringValue", "'v'", "aStringValue('v') -> None"},
        {"Recorder_twoStrings", "'a', 'b', 3", "twoStrings('a', 'b', 3) -> None"},
        {"Recorder_twoStrings", "None, 'b', 3", "twoStrings('', 'b', 3) -> None" NO_TEXT(1)},
        {"Recorder_twoStrings", "'a', None, 3", "twoStrings('a', '', 3) -> None" NO_TEXT(2)},
        {"Recorder_twoStrings", "None, odd, 3", "twoStrings('', '', 3) -> None" NO_TEXT(2)},
        {"Recorder_twoStrings", "None, 'b', 2**31", TOO_LARGE("Recorder_twoStrings", 3, "int")},
        {"Recorder_itemAndStatus", "None, 0", "itemAndStatus('', 0) -> Item 0 owned" NO_TEXT(1)},
    });
}

TEST(Results, of_each_type) {
    check({
        {"Recorder_boolResult", "256", " -> True"},
        {"Recorder_boolResult", "0", " -> False"},
        {"Recorder_intResult", "", " -> -2147483648"},
        {"Recorder_shortResult", "", " -> -32768"},
        {"Recorder_kindResult", "", " -> -2"},
        {"Recorder_unsignedResult", "", " -> 4294967295"}, // no long
        {"Recorder_unsignedShortResult", "", " -> 65535"},
        {"Recorder_floatResult", "", " -> 0.10000000149011612"},
        {"Recorder_doubleResult", "", " -> 0.1"},
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

TEST(Results, owned_copies_live_as_long_as_their_proxy) {
    const int before = Item::live;
    PyObject *copy = evaluate("Recorder_valueResult()");
    EXPECT_EQ(Item::live, before + 1);
    Py_DECREF(copy);
    EXPECT_EQ(Item::live, before);
    EXPECT_EQ(call("Recorder_referenceResult", ""), " -> Item 77 borrowed");
    EXPECT_EQ(Item::live, before);
}

TEST(Statuses, returned_and_hidden) {
    check({
        {"Recorder_verdict", "0", " -> None"},
        {"Recorder_verdict", "5", " -> 'unknown'"},
        {"Recorder_verdict", "1", " ! RuntimeError: (kFailure): text of the verdict"},
        {"Recorder_verdict", "3", " ! RuntimeError: (kInvalidParameter): text of the verdict"},
        {"Recorder_stringAndStatus", "0", " -> u'made'"},
        {"Recorder_stringAndStatus", "1", " ! RuntimeError: (kFailure): text of the verdict"},
        {"Recorder_itemAndStatus", "'n', 0", "itemAndStatus('n', 0) -> Item 0 owned"},
        // The host's verdict replaces the complaint about the string.
        {"Recorder_itemAndStatus", "None, 5",
         "itemAndStatus('', 5) ! RuntimeError: (kUnknownParameter): text of the verdict"},
    });
    run("assert Recorder_verdict(5) is intern('unknown')");
    const int before = Item::live;
    call("Recorder_itemAndStatus", "'n', 1");
    EXPECT_EQ(Item::live, before + 1) << "made before the status is looked at, and left";
}

#define NO_COUNT                                                                         \
    " ! NotImplementedError: Wrong number or type of arguments for overloaded function " \
    "'Recorder_byCount'.\n  Possible C/C++ prototypes are:\n    byCount(int)\n"          \
    "    byCount(int,int)\n    Recorder::byCount(int,int,Item const &,ZStatus *)\n"
#define NO_LAST                                                                          \
    " ! NotImplementedError: Wrong number or type of arguments for overloaded function " \
    "'Recorder_byLast'.\n  Possible C/C++ prototypes are:\n"                             \
    "    byLast(Recorder const *,double,bool const)\n"                                   \
    "    byLast(Recorder const *,double,ZString const &,bool const)\n"
#define NO_CONSTRUCTOR                                                                       \
    " ! NotImplementedError: Wrong number or type of arguments for overloaded function "     \
    "'new_Recorder'.\n  Possible C/C++ prototypes are:\n    Recorder()\n    Recorder(int)\n" \
    "    Recorder(Item const &,ZStatus *)\n"

TEST(Overloads, by_count_and_by_probe) {
    check({
        {"Recorder_byCount", "1", "byCount(1) -> None"},
        {"Recorder_byCount", "1, 2", "byCount(1, 2) -> None"},
        {"Recorder_byCount", "1, 2, Item(3)", "byCount(1, 2, Item 3) -> None"},
        {"Recorder_byCount", "1, 'x'", BAD("Recorder_byCount", 2, "int")},
        {"Recorder_byCount", "", NO_COUNT},
        {"Recorder_byCount", "1, 2, 3, 4", NO_COUNT},
        {"Recorder_byFirst", "Item(1), 2", "byFirst Item(Item 1, 2, true) -> None"},
        {"Recorder_byFirst", "z, 2, 0", "byFirst ZString('title', 2, false) -> None"},
        {"Recorder_byFirst", "rec, 2, 1", "byFirst Recorder(2, true) -> None"},
        // Arguments alike in all candidates are not probed but reported by the one chosen.
        {"Recorder_byFirst", "Item(1), 'x'", BAD("Recorder_byFirst", 2, "int")},
        {"Recorder_byFirst", "z, 2, odd", BAD("Recorder_byFirst", 3, "bool const")},
        // None passes the probe of a pointer, and then is no reference.
        {"Recorder_byFirst", "None, 2", NO_REFERENCE("Recorder_byFirst", 1, "Item const &")},
        {"Recorder_byFirst", "5, 2", BAD("Recorder_byFirst", 1, "Recorder &")},
        {"Recorder_byLast", "rec, 1", "byLast bool(1, true) -> None"},
        {"Recorder_byLast", "rec, 1, False", "byLast bool(1, false) -> None"},
        {"Recorder_byLast", "rec, 1, 0L", "byLast bool(1, false) -> None"},
        {"Recorder_byLast", "rec, 1, Real(2)", "byLast bool(1, true) -> None"},
        {"Recorder_byLast", "rec, 1, 's'", "byLast string(1, 's', true) -> None"},
        {"Recorder_byLast", "rec, 1, None", "byLast string(1, '', true) -> None" NO_TEXT(3)},
        {"Recorder_byLast", "rec, 1, 's', 0", "byLast string(1, 's', false) -> None"},
        {"Recorder_byLast", "rec, 'x', 's'", BAD("Recorder_byLast", 2, "double")},
        {"Recorder_byLast", "item, 1, 's'", BAD("Recorder_byLast", 1, "Recorder const *")},
        {"Recorder_byLast", "rec", NO_LAST},
        {"Recorder_byLast", "rec, 1, 2, 3, 4", NO_LAST},
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
        {"Recorder_withDefault", "rec, None",
         NO_REFERENCE("Recorder_withDefault", 2, "Item const &")},
        {"Recorder_plain", "item, 3", BAD("Recorder_plain", 1, "Recorder *")},
        {"Recorder_plain", "rec, 'x'", BAD("Recorder_plain", 2, "int")},
        {"Recorder_constant", "item", BAD("Recorder_constant", 1, "Recorder const *")},
        {"delete_Recorder", "None", " -> None"},
        {"delete_Recorder", "item", BAD("delete_Recorder", 1, "Recorder *")},
        {"delete_Recorder", "new_Recorder()", "Recorder()~Recorder() -> None"},
        {"delete_Recorder", "new_Recorder(3)", "Recorder(3)~Recorder() -> None"},
        {"delete_Recorder", "new_Recorder(Item(9))", "Recorder(Item 9)~Recorder() -> None"},
    });
    run("made = new_Item(6)\n" // bare although the class registered
        "assert type(made).__name__ == 'SwigPyObject' and made.own()\n"
        "assert delete_Item(made) is None and not made.own()\n");
}

TEST(Objects, members) {
    check({
        {"Recorder_flag_set", "rec, [1]", " -> None"},
        {"Recorder_flag_get", "rec", " -> True"},
        {"Recorder_small_set", "rec, 65535", " -> None"},
        {"Recorder_small_set", "rec, 65536", TOO_LARGE("Recorder_small_set", 2, "unsigned short")},
        {"Recorder_small_get", "rec", " -> 65535"},
        {"Recorder_large_set", "rec, 4294967295", " -> None"},
        {"Recorder_large_get", "rec", " -> 4294967295"},
        {"Recorder_level_set", "rec, 0.5", " -> None"},
        {"Recorder_level_set", "rec, 1e39", TOO_LARGE("Recorder_level_set", 2, "float")},
        {"Recorder_level_get", "rec", " -> 0.5"},
        {"Recorder_kind_set", "rec, -2", " -> None"},
        {"Recorder_kind_set", "rec, 1.0", BAD("Recorder_kind_set", 2, "Recorder::Kind")},
        {"Recorder_kind_get", "rec", " -> -2"},
        {"Recorder_item_get", "rec", " -> Item 1 borrowed"},
        {"Recorder_item_set", "rec, Item(21)", " -> None"},
        {"Recorder_item_get", "rec", " -> Item 21 borrowed"},
        {"Recorder_item_set", "rec, 5", BAD("Recorder_item_set", 2, "Item *")},
        {"Recorder_title_set", "rec, 'text'", BAD("Recorder_title_set", 2, "ZString *")},
        {"Recorder_title_set", "rec, z", " -> None"},
        {"Recorder_samples_set", "rec, item", BAD("Recorder_samples_set", 2, "float *")},
        {"Recorder_large_set", "item, 5", BAD("Recorder_large_set", 1, "Recorder *")},
        {"Recorder_large_get", "item", BAD("Recorder_large_get", 1, "Recorder *")},
        // Without an object nothing is stored, but the value is looked at.
        {"Recorder_large_set", "None, 5", " -> None"},
        {"Recorder_item_set", "None, item", " -> None"},
        {"Recorder_data_set", "None, item", " -> None"},
        {"Recorder_large_set", "None, 'x'", BAD("Recorder_large_set", 2, "unsigned int")},
        {"Recorder_samples_get", "rec", " -> None"},
    });
    run("inside = Recorder_item_get(rec)\n"
        "Item_number_set(inside, 22)\n"
        "assert Item_number_get(Recorder_item_get(rec)) == 22\n"
        "title = Recorder_title_get(rec)\n"
        "assert int(title) != int(z) and not title.own()\n"
        "assert samples.own()\n"
        "Recorder_samples_set(rec, samples)\n"
        "assert not samples.own()\n"
        "assert Recorder_samples_get(rec) == samples\n"
        "assert not Recorder_samples_get(rec).own()\n"
        "Recorder_samples_set(rec, None)\n"
        "assert Recorder_samples_get(rec) is None\n"
        "Recorder_data_set(rec, item)\n"
        "assert int(Recorder_data_get(rec)) == id(item)\n"
        "Recorder_data_set(rec, None)\n"
        "assert Recorder_data_get(rec) is None\n");
    void *title;
    ASSERT_EQ(SWIG_Python_ConvertPtrAndOwn(PyDict_GetItemString(names, "title"), &title,
                                           type_of<ZString>(), 0),
              SWIG_OK);
    EXPECT_STREQ(static_cast<ZString *>(title)->asChar(), "title");
}

TEST(Failures, native_exceptions_pass_and_locals_go) {
    const Arguments arguments("item, item, 'thrown text'");
    const int before = Item::live;
    const auto native = PyCFunction_GET_FUNCTION(function("Recorder_throws"));
    try {
        native(nullptr, arguments.tuple);
        FAIL() << "nothing was thrown";
    } catch (const std::string &text) {
        EXPECT_EQ(text, "thrown text");
    }
    EXPECT_EQ(Item::live, before);
    EXPECT_EQ(arguments.counts, arguments.current_counts());
    EXPECT_FALSE(PyErr_Occurred());
}

TEST(Table, flags_and_constants) {
    const std::pair<const char *, int> flags[] = {
        {"Recorder_nothing", METH_NOARGS},
        {"Recorder_anInt", METH_O},
        {"Recorder_stringAndStatus", METH_O},
        {"Recorder_absentOnly", METH_VARARGS},
        {"Recorder_twoStrings", METH_VARARGS},
        {"Recorder_constant", METH_O},
        {"Recorder_plain", METH_VARARGS},
        {"Recorder_byCount", METH_VARARGS},
        {"new_Item", METH_O},
        {"new_Recorder", METH_VARARGS},
        {"delete_Item", METH_O},
        {"Item_number_get", METH_O},
        {"Item_number_set", METH_VARARGS},
        {"Item_swigregister", METH_VARARGS},
        {"Item_swiginit", METH_VARARGS},
        {"SWIG_PyInstanceMethod_New", METH_O},
    };
    for (const auto &[name, flag] : flags)
        EXPECT_EQ(PyCFunction_GET_FLAGS(function(name)), flag) << name;
    run("assert (Recorder_kNone, Recorder_kLow, Recorder_kHigh) == (0, -2, 2000000000)\n"
        "assert type(Recorder_kLow) is int\n"
        "assert Recorder_anInt.__doc__ is None\n");
}

} // namespace

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
