// SPDX-License-Identifier: MIT
// From Python values to native pointers and back, through the functions that fixture code calls as
// `convert` and `wrap`.

#include "runtime/client_data.h"
#include "tests/runtime/python_fixture.h"

using namespace binding;

using namespace pytest;

namespace {

/// Types of the test's own, each converting to itself.
struct OwnType {
    swig_cast_info itself = {&record, nullptr, nullptr, nullptr};
    swig_type_info record = {"_p_Own", "Own *", nullptr, &itself, nullptr, 0};
} own;

swig_type_info *named(const char *name) {
    return !*name ? nullptr : std::string(name) == "own" ? &own.record : type(name);
}

/// convert(object, type name, flags=0): the address, or the failing code; "new" marks a new object.
/// An empty name asks for any type. Every conversion is made again with an exception pending.
PyObject *convert(PyObject *, PyObject *arguments) {
    PyObject *object;
    const char *name;
    int flags = 0;
    if (!PyArg_ParseTuple(arguments, "Os|i", &object, &name, &flags))
        return nullptr;
    void *pointer = address(0x99);
    const int code = SWIG_Python_ConvertPtrAndOwn(object, &pointer, named(name), flags);
    EXPECT_EQ(pending(), "");
    EXPECT_EQ(pointer == address(0x99), code < 0);
    if (!(flags & kImplicitConversion)) {
        const KeepsEarlierException earlier;
        EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(object, nullptr, named(name), 0), code);
    }
    if (code < 0)
        return PyInt_FromLong(code);
    PyObject *at = PyLong_FromVoidPtr(pointer);
    return code == kNewObject ? Py_BuildValue("(sN)", "new", at) : at;
}

/// wrap(address, flags): the value for a pointer of the own type.
PyObject *wrap(PyObject *, PyObject *arguments) {
    Py_ssize_t at;
    int flags;
    if (!PyArg_ParseTuple(arguments, "ni", &at, &flags))
        return nullptr;
    return SWIG_Python_NewPointerObj(address(static_cast<size_t>(at)), &own.record, flags);
}

/// proxy(class): makes it the class of the own type; None for no class.
PyObject *set_proxy(PyObject *, PyObject *klass) {
    own.record.clientdata = klass == Py_None ? nullptr : SwigPyClientData_New(klass);
    EXPECT_EQ(pending(), "");
    Py_RETURN_NONE;
}

class Conversion : public pytest::Test {
  protected:
    static void SetUpTestSuite() {
        pytest::Test::SetUpTestSuite();
        static PyMethodDef functions[] = {{"convert", convert, METH_VARARGS, nullptr},
                                          {"wrap", wrap, METH_VARARGS, nullptr},
                                          {"proxy", set_proxy, METH_O, nullptr}};
        for (PyMethodDef &function : functions)
            define(function);
        run(R"(
class Classic: pass
class New(object): pass
class Slots(object): __slots__ = 'this', '__weakref__'
def with_this(cls, this):
    o = cls()
    o.this = this
    return o
mesh, base = pointer(0x10, '_p_ZFnMesh'), pointer(0x20, '_p_ZFnBase')
integer, chain = pointer(0x40, '_p_int'), pointer(0x50, '_p_int')
chain.append(mesh)
RELEASE, IMPLICIT = 1, 2
)");
    }
};

} // namespace

TEST_F(Conversion, FindsThePointerBehindEveryKindOfValue) {
    run(R"(
class ClassicWithThis: this = mesh
class NewWithThis(object): this = mesh
class Unowned(object):
    __slots__ = ()
    this = property(lambda self: pointer(0x10, '_p_ZFnMesh'))
live, dead = with_this(New, mesh), weakref.proxy(New())
loop = New(); loop.this = loop
ring = New(); ring.this = with_this(Classic, with_this(Slots, ring))

for value in (mesh, chain, ClassicWithThis(), weakref.proxy(live), with_this(Classic, mesh),
              with_this(New, with_this(Slots, with_this(Classic, mesh)))):
    count = sys.getrefcount(value)
    eq(convert(value, '_p_ZFnBase'), 0x10)
    eq(sys.getrefcount(value), count)
for value in (integer, object(), 5, {'this': mesh}, Classic(), New(), Slots(), Unowned(),
              with_this(New, None), NewWithThis(), loop, ring):
    eq(convert(value, '_p_ZFnBase'), -1)
eq(convert(dead, '_p_ZFnBase'), -1)
eq(convert(None, '_p_ZFnBase'), 0)
for value, name, result in (
        (mesh, '', 0x10), (chain, '', 0x50), (5, '', -1), (base, '_p_ZFnMesh', -1)):
    eq(convert(value, name), result)
)");
}

TEST_F(Conversion, ReleasesOwnershipOfTheMatchOnly) {
    run(R"(
first, second = pointer(1, '_p_int', 1), pointer(2, '_p_ZFnMesh', 1)
third = pointer(3, '_p_ZFnMesh', 1)
first.append(second); second.append(third)
for name, flags, result, owned in (
        ('_p_ZFnBase', 0, 2, [1, 1, 1]), ('_p_char', RELEASE, -1, [1, 1, 1]),
        ('_p_ZFnBase', RELEASE, 2, [1, 0, 1]), ('_p_int', RELEASE, 1, [0, 0, 1])):
    eq((convert(first, name, flags), [p.own() for p in first, second, third]), (result, owned))
third.disown()
)");
}

TEST_F(Conversion, ImplicitlyThroughTheClass) {
    run(R"(
kept, inner = [], []
class Good(object):
    def __init__(self, source):
        # Asked again while the class is at work: no second level.
        inner.append(convert(source, 'own', IMPLICIT))
        self.this = wrap(0x70, 3)
        kept.append(self.this)
class Bad(object):
    def __init__(self, source): raise ValueError(source)
class Other(object):
    def __init__(self, source): self.this = integer
proxy(Good)
eq([convert('7', 'own', flags) for flags in (0, IMPLICIT, IMPLICIT | RELEASE)],
   [-1, ('new', 0x70), ('new', 0x70)])
eq((inner, [p.own() for p in kept]), ([-1, -1], [False, False])) # the caller owns them
for cls in Bad, Other, int, None:
    proxy(cls)
    eq([convert('7', 'own', IMPLICIT) for again in range(2)], [-1, -1])
    eq(convert(kept[0], 'own', IMPLICIT), 0x70) # what converts as it is never reaches the class
)");
}

TEST_F(Conversion, WrapsPointersAsBareOrProxy) {
    run(R"(
class C:
    def __init__(self): raise RuntimeError('initialised')
class N(object):
    def __init__(self): raise RuntimeError('initialised')
class Prepared(object):
    def __new__(cls): return with_this(New, integer)
class Failing(object):
    def __new__(cls): raise ValueError('no instance')
BORROWED, OWNED, NO_PROXY = 0, 1, 2
for cls, flags, is_proxy in ((None, OWNED, False), (N, OWNED | NO_PROXY, False),
                             (N, OWNED, True), (N, BORROWED, True), (C, OWNED, True)):
    proxy(cls)
    eq(wrap(0, flags), None)
    value = wrap(0x70, flags)
    this = value.__dict__.pop('this') if is_proxy else value
    assert isinstance(value, cls if is_proxy else type(mesh))
    eq(sys.getrefcount(this), 2 if is_proxy else 3) # the instance alone kept it
    eq((int(this), this.own(0)), (0x70, bool(flags & OWNED)))
proxy(Prepared)
assert wrap(0x70, BORROWED).this is integer # has a dictionary: left as it is
proxy(Failing)
)");
    EXPECT_TRUE(
        SwigPyObject_Check(Ref(SWIG_Python_NewPointerObj(address(0x70), &own.record, kBorrowed))));
    EXPECT_EQ(pending(), "ValueError: no instance");
}
