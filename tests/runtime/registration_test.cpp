// The module-level half of the proxy protocol, and constants.

#include "python_fixture.h"
#include "runtime/client_data.h"
#include "runtime/registration.h"

#include <vector>

using namespace pytest;

namespace {
class Registration : public pytest::Test {};
} // namespace

TEST_F(Registration, AttachesAProxyClassToItsOwnType) {
    run("class First(object): pass\nclass Later(object): pass\n");
    swig_type_info *layer = type("_p_ZFnRenderLayer");
    for (const char *name : {"First", "Later"}) {
        EXPECT_EQ(Ref(SWIG_RegisterProxy(eval(name + std::string(",")), layer)), Py_None);
        ASSERT_TRUE(layer->clientdata);
        EXPECT_EQ(static_cast<SwigPyClientData *>(layer->clientdata)->klass, eval(name));
        EXPECT_EQ(layer->owndata, 1);
    }
    for (const char *other : {"_p_ZFnBase", "_p_ZFnDependencyNode", "_p_ZFnRenderPass"})
        EXPECT_FALSE(type(other)->clientdata) << other;
    layer->clientdata = nullptr;
    layer->owndata = 0;
}

TEST_F(Registration, GivesAnInstanceItsPointerObjects) {
    run(R"(
class Classic: pass
class New(object): pass
class Slots(object): __slots__ = ()
class Provided(object):
    __slots__ = 'd'
    __dict__ = property(lambda self: self.d)
def init(cls, *pointers):
    o = cls()
    if cls is Provided: o.d = {}
    for p in pointers: assert _r.ZRenderView_swiginit(o, p) is None
    this, found = o.__dict__.get('this'), []
    while this is not None:
        found.append(int(this))
        this = this.next()
    return found
a, b, c = [pointer(i, '_p_int') for i in (1, 2, 3)]
)");
    expect(
        {{"init(New, a)", "[1]"},
         {"init(Classic, a)", "[1]"},
         {"init(Provided, a)", "[1]"},
         {"init(Classic, 5, New(), None)", "[]"},
         {"init(New, a, 5, b)", "[1, 2]"},
         {"init(New, c, None)", "[3]"},
         {"init(Slots, a)", "<AttributeError: 'Slots' object has no attribute '__dict__'>"},
         {"_r.ZRenderView_swiginit(New())", "<TypeError: swiginit expected 2 arguments, got 1>"},
         {"_r.ZRenderView_swigregister()", "<TypeError: swigregister expected 1 arguments, got 0>"},
         {"_r.ZRenderView_swigregister(1, 2)",
          "<TypeError: swigregister expected 1 arguments, got 2>"},
         {"_r.SWIG_PyInstanceMethod_New(5)", "<SystemError: error return without exception set>"}});
}

TEST_F(Registration, DocumentationGetsTheAddressesOfPointerConstants) {
    swig_type_info *int_type = type("_p_int");
    const swig_const_info constants[] = {
        {kPointerConstant, "good", 0, 0, address(0x1f), &int_type},
        {kPackedConstant, "pack", 3, 0, address(0x1f), &int_type},
        {kPointerConstant, "null", 0, 0, nullptr, &int_type},
        {kPointerConstant, "packed_later", 0, 0, address(0x1f), &int_type},
        {kEndOfConstants, nullptr, 0, 0, nullptr, nullptr}};
    const std::pair<const char *, const char *> changed[] = {
        {"swig_ptr: good", "swig_ptr: _1f00000000000000_p_int"},
        {"text swig_ptr: goodness and more", "text swig_ptr: _1f00000000000000_p_int"}};
    // The first constant whose name begins the text counts: "pack" for "packed_later".
    for (const char *same : {"swig_ptr: pack", "swig_ptr: packed_later", "swig_ptr: null",
                             "swig_ptr: goo", "swig_ptr:good", "plain", (const char *)nullptr})
        for (const auto &[before, after] : changed) {
            PyMethodDef methods[] = {{"f", SWIG_PyInstanceMethod_New, METH_O, same},
                                     {"g", SWIG_PyInstanceMethod_New, METH_O, before},
                                     {nullptr, nullptr, 0, before}};
            SWIG_Python_FixMethods(methods, constants);
            EXPECT_EQ(methods[0].ml_doc, same);
            EXPECT_STREQ(methods[1].ml_doc, after);
            EXPECT_EQ(methods[2].ml_doc, before);
        }
}

TEST_F(Registration, ConstantsBecomeObjects) {
    run("class Proxy(object): pass");
    SwigPyClientData *data = SwigPyClientData_New(eval("Proxy"));
    swig_type_info plain = {"_p_plain", nullptr, nullptr, nullptr, nullptr, 0}, wrapped = plain;
    wrapped.clientdata = data;
    swig_type_info *plain_slot = &plain, *wrapped_slot = &wrapped;
    char bytes[] = "\x01\x02\x03";
    const swig_const_info constants[] = {
        {kPointerConstant, "bare", 0, 0, address(0x10), &plain_slot},
        {kPointerConstant, "proxy", 0, 0, address(0x20), &wrapped_slot},
        {kPointerConstant, "null", 0, 0, nullptr, &plain_slot},
        {kPackedConstant, "pack", 3, 0, bytes, &plain_slot},
        {kPackedConstant, "no_pack", 3, 0, nullptr, &plain_slot},
        {1, "number", 5, 0, nullptr, nullptr},
        {kEndOfConstants, nullptr, 0, 0, nullptr, nullptr},
        {kPointerConstant, "beyond", 0, 0, address(0x10), &plain_slot}};
    const Ref dictionary(PyDict_New());
    SWIG_Python_InstallConstants(dictionary, constants);
    EXPECT_EQ(PyDict_Size(dictionary), 5);
    const auto item = [&](const char *name) { return PyDict_GetItemString(dictionary, name); };
    EXPECT_EQ(str(item("bare")), "_1000000000000000_p_plain");
    EXPECT_EQ(pointer_object(item("bare"))->own, 0);
    EXPECT_STREQ(Py_TYPE(item("proxy"))->tp_name, "Proxy");
    EXPECT_EQ(str(item("pack")), "_010203_p_plain");
    EXPECT_TRUE(item("null") == Py_None && item("no_pack") == Py_None);
    for (const char *name : {"bare", "proxy", "pack"})
        EXPECT_EQ(item(name)->ob_refcnt, 1) << name;
    PyObject *value = item("bare");
    Py_INCREF(value);
    EXPECT_EQ(SWIG_Python_SetConstant(Py_None, "name", value), -1); // no dictionary
    EXPECT_EQ(pending().substr(0, 12), "SystemError:");
    EXPECT_EQ(value->ob_refcnt, 1);
}
