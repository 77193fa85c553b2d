// The pointer object: its texts, slots and methods, and what its death does. Then the packed
// object.

#include "python_fixture.h"
#include "runtime/client_data.h"
#include "runtime/packed_object.h"

#include <cstring>
#include <vector>

using namespace pytest;

namespace {

class PointerObject : public pytest::Test {};
class PackedObject : public pytest::Test {};

swig_type_info record(const char *name, const char *readable = nullptr) {
    return {name, readable, nullptr, nullptr, nullptr, 0};
}

Ref make(size_t at, swig_type_info *type, int own = 0) {
    return Ref(SwigPyObject_New(address(at), type, own));
}

} // namespace

TEST_F(PointerObject, HasItsSlotsAndMethodsAndNoOthers) {
    const PyTypeObject *t = SwigPyObject_type();
    EXPECT_STREQ(t->tp_name, "SwigPyObject");
    EXPECT_STREQ(t->tp_doc, "Swig object carries a C/C++ instance pointer");
    EXPECT_EQ(t->tp_flags & (131563 | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_HAVE_GC), 131563);
    EXPECT_FALSE(t->tp_as_sequence || t->tp_as_mapping || t->tp_call || t->tp_iter || t->tp_new);
    PyNumberMethods only{};
    only.nb_int = only.nb_long = t->tp_as_number->nb_int;
    only.nb_oct = t->tp_as_number->nb_oct;
    only.nb_hex = t->tp_as_number->nb_hex;
    EXPECT_EQ(std::memcmp(t->tp_as_number, &only, sizeof(only)), 0);
    const PyMethodDef rows[] = {
        {"disown", nullptr, METH_NOARGS, "releases ownership of the pointer"},
        {"acquire", nullptr, METH_NOARGS, "aquires ownership of the pointer"},
        {"own", nullptr, METH_VARARGS, "returns/sets ownership of the pointer"},
        {"append", nullptr, METH_O, "appends another 'this' object"},
        {"next", nullptr, METH_NOARGS, "returns the next 'this' object"},
        {"__repr__", nullptr, METH_NOARGS, "returns object representation"}};
    for (size_t i = 0; i < std::size(rows); ++i) {
        ASSERT_TRUE(t->tp_methods[i].ml_name);
        EXPECT_STREQ(t->tp_methods[i].ml_name, rows[i].ml_name);
        EXPECT_EQ(t->tp_methods[i].ml_flags, rows[i].ml_flags) << i;
        EXPECT_STREQ(t->tp_methods[i].ml_doc, rows[i].ml_doc);
    }
    EXPECT_FALSE(t->tp_methods[std::size(rows)].ml_name);
}

TEST_F(PointerObject, TextsMethodsAndChains) {
    run(R"(
def shown(p, pretty): return "<Swig Object of type '%s' at 0x%x>" % (pretty, id(p))
for p, text, pretty, number in (
        (pointer(0x10, '_p_ZObject'), '_1000000000000000_p_ZObject', 'ZObject *', 0x10),
        (pointer(0xab, '_p_int'), '_ab00000000000000_p_int', 'ZGLint *', 0xab),
        (pointer(-2, '_p_ZFnMesh'), '_feffffffffffffff_p_ZFnMesh', '_p_ZFnMesh', 2**64 - 2)):
    eq((str(p), repr(p), p.__repr__()), (text, shown(p, pretty), shown(p, pretty)))
    eq((int(p), long(p), oct(p), hex(p)), (number, number, '%o' % number, '%x' % number))

for x, y, order in (1, 2, -1), (2, 1, 1), (7, 7, 0), (1, -1, -1), (-1, 2**63 - 1, 1):
    p, q = pointer(x, '_p_int'), pointer(y, '_p_char')
    eq((cmp(p, q), p == q, p != q), (order, order == 0, order != 0))
p = pointer(5, '_p_int')
eq([p == x for x in (5, None, 'a', object())], [False] * 4)
eq([f(p) for f in (lambda p: p.__lt__(p), lambda p: p.__ge__(p))], [NotImplemented] * 2)

class Untrue:
    def __nonzero__(self): raise ValueError
for before, method, arguments, result, after in (
        (0, 'own', (), False, False), (1, 'own', (), True, True), (1, 'own', (0,), True, False),
        (0, 'own', ('x',), False, True), (1, 'own', (None,), True, False),
        (1, 'disown', (), None, False), (0, 'acquire', (), None, True),
        (1, 'acquire', (), None, True)):
    p = pointer(1, '_p_int', before)
    eq((getattr(p, method)(*arguments), p.own(0)), (result, after))

a, b, c = [pointer(*x) for x in ((1, '_p_int'), (2, '_p_char'), (3, '_p_void'))]
eq((a.next(), a.append(b), b.append(c)), (None, None, None))
assert a.next() is b and b.next() is c
eq(repr(a), shown(a, 'ZGLint *') + shown(b, 'ZGLcharARB *') + shown(c, 'ZGLvoid *'))
eq(str(a), '_0100000000000000_p_int')
counts = sys.getrefcount(b), sys.getrefcount(c)
a.append(c) # takes the place of b, whose reference is not given back
eq((sys.getrefcount(b), sys.getrefcount(c)), (counts[0], counts[1] + 1))
)");
    const Ref a = eval("a");
    EXPECT_EQ(printed(a), repr(a));
    const char loose[] = "<SystemError: error return without exception set>";
    expect({{"a.append(None)", loose},
            {"a.append(type(a))", loose},
            {"a.next() is c", "True"},
            {"a.own(1, 2)", "<TypeError: own expected at most 1 arguments, got 2>"},
            {"a.own(Untrue())", "<ValueError: >"},
            {"a.own()", "False"}});
    const std::string longest(1006, 'n'), too_long(1007, 'n');
    swig_type_info fits = record(longest.c_str()), over = record(too_long.c_str());
    EXPECT_EQ(str(make(0, &fits)), "_0000000000000000" + longest);
    EXPECT_FALSE(Py_TYPE(a)->tp_str(make(0, &over)));
    EXPECT_EQ(pending(), "");
}

TEST_F(PointerObject, ALoopedChainEndsWithAnException) {
    EXPECT_SURVIVES({
        import_module();
        run("p = pointer(1, '_p_int'); p.append(p)\n"
            "q = pointer(2, '_p_int'); r = pointer(3, '_p_int'); q.append(r); r.append(q)\n");
        for (const char *looped : {"repr(p)", "repr(r)", "p.__repr__()"})
            EXPECT_NE(repr(eval(looped)).find("RuntimeError"), std::string::npos) << looped;
        for (const char *looped : {"p", "q"})
            EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(eval(looped), nullptr, type("_p_char"), 0), -1);
    });
}

// Deallocation

namespace {

std::vector<std::string> calls;

/// Notes what a destroy callable is given; one that is bound to Ellipsis raises.
PyObject *note(PyObject *self, PyObject *argument) {
    const SwigPyObject *given = pointer_object(argument);
    calls.push_back(std::to_string(reinterpret_cast<size_t>(given->ptr)) +
                    (given->own ? "o" : "-"));
    EXPECT_FALSE(PyErr_Occurred());
    if (self == Py_Ellipsis) {
        PyErr_SetString(PyExc_ValueError, "inside");
        return nullptr;
    }
    SWIG_Python_ConvertPtrAndOwn(argument, nullptr, nullptr, kReleaseOwnership);
    Py_RETURN_NONE;
}

PyObject *note_tuple(PyObject *self, PyObject *arguments) {
    EXPECT_EQ(PyTuple_GET_SIZE(arguments), 1);
    return note(self, PyTuple_GET_ITEM(arguments, 0));
}

PyMethodDef note_one = {"destroy", note, METH_O, nullptr};
PyMethodDef note_many = {"destroy", note_tuple, METH_VARARGS, nullptr};

} // namespace

TEST_F(PointerObject, DeathOfAnOwnerDestroysTheNativeObjectOnce) {
    for (PyMethodDef *method : {&note_one, &note_many}) {
        SCOPED_TRACE(method == &note_one ? "native function" : "through the interpreter");
        const Ref destroy(PyCFunction_New(method, Py_None));
        const Ref raise(PyCFunction_New(method, Py_Ellipsis));
        const int fresh_argument = method == &note_many;
        SwigPyClientData data{nullptr, nullptr, nullptr, destroy, fresh_argument, 0},
            raising_data{nullptr, nullptr, nullptr, raise, fresh_argument, 0};
        swig_type_info quiet = record("_p_D"), raising = quiet;
        quiet.clientdata = &data;
        raising.clientdata = &raising_data;
        // Called directly, the function is given the dying object itself.
        const std::string mark = fresh_argument ? "-" : "o";
        const Py_ssize_t none_count = Py_None->ob_refcnt;
        calls.clear();
        for (int own : {0, 1, 2, -1})
            make(16, &quiet, own).drop();
        EXPECT_EQ(calls, std::vector{"16" + mark});
        EXPECT_EQ(pending(), "");
        EXPECT_EQ(Py_None->ob_refcnt, none_count) << "the callable's result is released";
        for (swig_type_info *type : {&quiet, &raising}) {
            const KeepsEarlierException earlier;
            make(17, type, 1).drop();
        }
        make(18, &raising, 1).drop();
        EXPECT_EQ(pending(), "ValueError: inside");
        // A whole chain dies with its first object.
        Ref first = make(1, &quiet, 1), second = make(2, &quiet, 1);
        Ref(SwigPyObject_append(first, second)).drop();
        second.drop();
        first.drop();
        EXPECT_EQ(calls, (std::vector{"16" + mark, "17" + mark, "17" + mark, "18" + mark,
                                      "1" + mark, "2" + mark}));
    }
}

TEST_F(PointerObject, ADestroyCallableMayEndOtherOwners) {
    run(R"(
ended, others = [], []
def destroy(p):
    ended.append((int(p), p.own(), p.next()))
    if others: others.pop()
)");
    const Ref destroy = eval("destroy");
    SwigPyClientData data{nullptr, nullptr, nullptr, destroy, 1, 0};
    swig_type_info type = record("_p_D");
    type.clientdata = &data;
    for (size_t at : {3, 2})
        PyList_Append(eval("others"), make(at, &type, 1));
    make(1, &type, 1).drop();
    expect({{"ended", "[(1, False, None), (2, False, None), (3, False, None)]"}});
}

TEST_F(PointerObject, WithoutADestroyCallableTheLeakIsReported) {
    swig_type_info named = record("_p_A", "A *|B *"), plain = record("_p_A"), empty = plain;
    SwigPyClientData without{};
    empty.clientdata = &without;
    const std::pair<swig_type_info *, std::string> rows[] = {
        {&named, "B *"}, {&plain, "_p_A"}, {&empty, "_p_A"}, {nullptr, "unknown"}};
    for (const auto &[type, name] : rows) {
        testing::internal::CaptureStdout();
        for (int own : {0, 1, 2})
            make(0x10, type, own).drop();
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  "swig/python detected a memory leak of type '" + name +
                      "', no destructor found.\n");
    }
}

// Packed objects

static Ref pack(const std::string &bytes) {
    static swig_type_info type = {"_p_m", "int (A::**)()", nullptr, nullptr, nullptr, 0};
    return Ref(SwigPyPacked_New(bytes.data(), bytes.size(), &type));
}

TEST_F(PackedObject, ShowsItsBytesWhileTheyAreFew) {
    std::string nulls;
    for (int i = 0; i < 511; ++i)
        nulls += "00";
    const struct {
        std::string bytes, repr, str;
    } rows[] = {
        {"", "<Swig Packed at __p_m>", "__p_m"},
        {std::string("\x00\x1f\xa0", 3), "<Swig Packed at _001fa0_p_m>", "_001fa0_p_m"},
        {std::string(511, '\0'), "<Swig Packed at _" + nulls + "_p_m>", "_" + nulls + "_p_m"},
        {std::string(512, '\0'), "<Swig Packed _p_m>", "_p_m"},
    };
    for (const auto &row : rows) {
        const Ref object = pack(row.bytes);
        EXPECT_EQ(repr(object), row.repr);
        EXPECT_EQ(str(object), row.str);
        EXPECT_EQ(printed(object), row.repr);
    }
    const PyTypeObject *t = SwigPyPacked_type();
    EXPECT_STREQ(t->tp_name, "SwigPyPacked");
    EXPECT_STREQ(t->tp_doc, "Swig object carries a C/C++ instance pointer");
    EXPECT_EQ(t->tp_flags & (131563 | Py_TPFLAGS_BASETYPE), 131563);
    EXPECT_FALSE(t->tp_methods || t->tp_as_number || t->tp_richcompare || t->tp_new);
    EXPECT_TRUE(SwigPyPacked_Check(pack("a")) && !SwigPyPacked_Check(Py_None));
}

TEST_F(PackedObject, ComparesSizesThenBytesUpToAZero) {
    const struct {
        std::string left, right;
        int order;
    } rows[] = {{"ab", "ab", 0},     {"ab", "ac", -1},
                {"b", "aa", -1},     {"aaa", "bb", 1},
                {"\x80", "\x7f", 1}, {std::string("a\0b", 3), std::string("a\0c", 3), 0},
                {"", "", 0},         {std::string(24, 'x'), std::string(24, 'x'), 0}};
    for (const auto &row : rows) {
        const Ref left = pack(row.left), right = pack(row.right);
        EXPECT_EQ(Py_TYPE(left)->tp_compare(left, right), row.order) << row.left;
        EXPECT_EQ(Py_TYPE(left)->tp_compare(right, left), -row.order) << row.left;
    }
}
