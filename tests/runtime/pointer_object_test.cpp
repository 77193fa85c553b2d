// SPDX-License-Identifier: MIT
// The pointer object: its texts, slots and methods, and what its death does. Then the packed
// object.

#include "runtime/client_data.h"
#include "runtime/packed_object.h"
#include "tests/runtime/python_fixture.h"

#include <malloc.h>

#include <vector>

using namespace binding;

using namespace pytest;

namespace {

class PointerObject : public pytest::Test {};
class PackedObject : public pytest::Test {};

swig_type_info record(const char *name) {
    return {name, nullptr, nullptr, nullptr, nullptr, 0};
}

Ref make(size_t at, swig_type_info *type, int own = 0) {
    return Ref(SwigPyObject_New(address(at), type, own));
}

/// Type objects that nobody can derive from or make instances of.
void expect_plain(const PyTypeObject *type, const char *name) {
    EXPECT_STREQ(type->tp_name, name);
    EXPECT_STREQ(type->tp_doc, "Swig object carries a C/C++ instance pointer");
    EXPECT_EQ(type->tp_flags & (131563 | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_HAVE_GC), 131563);
    EXPECT_FALSE(type->tp_as_sequence || type->tp_as_mapping || type->tp_call || type->tp_new);
}

} // namespace

TEST_F(PointerObject, TextsMethodsAndChains) {
    expect_plain(SwigPyObject_type(), "SwigPyObject");
    run(R"(
def shown(p, pretty): return "<Swig Object of type '%s' at 0x%x>" % (pretty, id(p))
for p, text, pretty, number in (
        (pointer(0x10, '_p_ZObject'), '_1000000000000000_p_ZObject', 'ZObject *', 0x10),
        (pointer(0xab, '_p_int'), '_ab00000000000000_p_int', 'ZGLint *', 0xab),
        (pointer(-2, '_p_ZFnMesh'), '_feffffffffffffff_p_ZFnMesh', '_p_ZFnMesh', 2**64 - 2)):
    eq((str(p), repr(p), p.__repr__()), (text, shown(p, pretty), shown(p, pretty)))
    eq((int(p), long(p), oct(p), hex(p)), (number, number, '%o' % number, '%x' % number))

for x, y, order in (1, 2, -1), (7, 7, 0), (-1, 2**63 - 1, 1):
    p, q = pointer(x, '_p_int'), pointer(y, '_p_char')
    eq((cmp(p, q), p == q, p != q), (order, order == 0, order != 0))
eq([p == x for x in (5, None, 'a', object())], [False] * 4)
eq(p.__lt__(p), NotImplemented)

class Untrue:
    def __nonzero__(self): raise ValueError
for before, method, arguments, result, after in (
        (0, 'own', (), False, False), (1, 'own', (0,), True, False),
        (0, 'own', ('x',), False, True), (1, 'disown', (), None, False),
        (0, 'acquire', (), None, True)):
    p = pointer(1, '_p_int', before)
    eq((getattr(p, method)(*arguments), p.own(0)), (result, after))

a, b, c = [pointer(*x) for x in ((1, '_p_int'), (2, '_p_char'), (3, '_p_void'))]
eq((a.next(), a.append(b), b.append(c)), (None, None, None))
assert a.next() is b and b.next() is c
eq(repr(a), shown(a, 'ZGLint *') + shown(b, 'ZGLcharARB *') + shown(c, 'ZGLvoid *'))
counts = sys.getrefcount(b), sys.getrefcount(c)
a.append(c) # takes the place of b, whose reference is not given back
eq((sys.getrefcount(b), sys.getrefcount(c)), (counts[0], counts[1] + 1))
)");
    expect({{"a.append(None)", "<SystemError: error return without exception set>"},
            {"a.next() is c", "True"},
            {"a.own(1, 2)", "<TypeError: own expected at most 1 arguments, got 2>"},
            {"a.own(Untrue())", "<ValueError: >"},
            {"a.own()", "False"}});
    const std::string longest(1006, 'n'), too_long(1007, 'n');
    swig_type_info fits = record(longest.c_str()), over = record(too_long.c_str());
    EXPECT_EQ(str(make(0, &fits)), "_0000000000000000" + longest);
    EXPECT_FALSE(SwigPyObject_type()->tp_str(make(0, &over)));
}

TEST_F(PointerObject, ALoopedChainEndsWithAnException) {
    EXPECT_SURVIVES({
        import_module();
        run("p = pointer(1, '_p_int'); p.append(p)\n"
            "q = pointer(2, '_p_int'); r = pointer(3, '_p_int'); q.append(r); r.append(q)\n");
        for (const char *looped : {"p", "q"}) {
            EXPECT_NE(repr(eval(looped)).find("RuntimeError"), std::string::npos) << looped;
            EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(eval(looped), nullptr, type("_p_char"), 0), -1);
        }
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

TEST_F(PointerObject, DestroyMayKeepTheObject) {
    run("saved = []");
    const Ref destroy = eval("saved.append");
    SwigPyClientData data{nullptr, nullptr, nullptr, destroy, 0, 0};
    swig_type_info kept = record("_p_D");
    kept.clientdata = &data;
    make(0x10, &kept, 1).drop();
    expect({{"len(saved), int(saved[0]), saved[0].own()", "(1, 16, False)"}});
    run("del saved[:]"); // which does not bring it back
    expect({{"saved", "[]"}});
}

TEST_F(PointerObject, AChainMayBeLongerThanTheStackIsDeep) {
    EXPECT_SURVIVES({
        import_module();
        const Ref destroy(PyCFunction_New(&note_one, Py_None));
        SwigPyClientData data{nullptr, nullptr, nullptr, destroy, 0, 0};
        swig_type_info chained = record("_p_D");
        chained.clientdata = &data;
        Ref first = make(0, &chained, 1), kept;
        for (size_t i = 1; i < 300000; ++i) {
            Ref before = make(i, &chained, 1);
            Ref(SwigPyObject_append(before, first)).drop();
            if (i == 1000) {
                Py_INCREF(before);
                kept = Ref(static_cast<PyObject *>(before));
            }
            first = std::move(before);
        }
        calls.clear();
        first.drop();
        EXPECT_EQ(calls.size(), 300000u - 1001) << "what is referenced stays";
        EXPECT_EQ(kept.count(), 1);
        kept.drop();
        EXPECT_EQ(calls.size(), 300000u);
    });
}

// Packed objects

static Ref pack(const std::string &bytes) {
    static swig_type_info type = record("_p_m");
    return Ref(SwigPyPacked_New(bytes.data(), bytes.size(), &type));
}

TEST_F(PackedObject, GivesItsMemoryBack) {
    const auto cycles = [] {
        for (int i = 0; i < 2000; ++i)
            pack(std::string(600, 'x'));
        return mallinfo2().uordblks;
    };
    const size_t before = cycles();
    EXPECT_LT(cycles(), before + 2000);
}

TEST_F(PackedObject, ShowsItsBytesWhileTheyAreFewAndComparesThem) {
    expect_plain(SwigPyPacked_type(), "SwigPyPacked");
    const Ref few = pack(std::string("\x00\x1f\xa0", 3));
    EXPECT_EQ(repr(few), "<Swig Packed at _001fa0_p_m>");
    EXPECT_EQ(str(few), "_001fa0_p_m");
    EXPECT_EQ(str(pack(std::string(511, '\0'))), "_" + std::string(1022, '0') + "_p_m");
    EXPECT_EQ(repr(pack(std::string(512, '\0'))), "<Swig Packed _p_m>");
    const cmpfunc compare = SwigPyPacked_type()->tp_compare;
    EXPECT_EQ(compare(pack("b"), pack("aa")), -1) << "sizes first";
    EXPECT_EQ(compare(pack("aa"), pack("b")), 1);
    EXPECT_EQ(compare(pack("\x80\x7f"), pack("\x7f\x80")), 1);
    EXPECT_EQ(compare(pack("\x7f\x80"), pack("\x80\x7f")), -1);
    EXPECT_EQ(compare(pack("same at first, b"), pack("same at first, a")), 1);
    EXPECT_EQ(compare(pack(std::string("a\0b", 3)), pack(std::string("a\0c", 3))), 0);
}
