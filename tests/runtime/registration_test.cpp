// SPDX-License-Identifier: MIT
// The module-level half of the proxy protocol, and constants.

#include "runtime/client_data.h"
#include "runtime/registration.h"
#include "tests/runtime/python_fixture.h"

using namespace binding;

using namespace pytest;

namespace {
class Registration : public pytest::Test {};
} // namespace

TEST_F(Registration, GivesAnInstanceItsPointerObjects) {
    run(R"(
class Classic: pass
class New(object): pass
class Slots(object): __slots__ = ()
def init(cls, *pointers):
    o = cls()
    for p in pointers: assert _r.ZRenderView_swiginit(o, p) is None
    this, found = o.__dict__.get('this'), []
    while this is not None:
        found.append(int(this))
        this = this.next()
    return found
a, b = [pointer(i, '_p_int') for i in (1, 2)]
)");
    expect({{"init(New, a, 5, b)", "[1, 2]"},
            {"init(Classic, b)", "[2]"},
            {"init(Classic, 5, New(), None)", "[]"},
            {"init(Slots, a)", "<AttributeError: 'Slots' object has no attribute '__dict__'>"}});
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
        {1, "number", 5, 0, nullptr, nullptr},
        {kEndOfConstants, nullptr, 0, 0, nullptr, nullptr},
        {kPointerConstant, "beyond", 0, 0, address(0x10), &plain_slot}};
    const Ref dictionary(PyDict_New());
    SWIG_Python_InstallConstants(dictionary, constants);
    EXPECT_EQ(PyDict_Size(dictionary), 4);
    const auto item = [&](const char *name) { return PyDict_GetItemString(dictionary, name); };
    EXPECT_EQ(str(item("bare")), "_1000000000000000_p_plain");
    EXPECT_EQ(pointer_object(item("bare"))->own, 0);
    EXPECT_STREQ(Py_TYPE(item("proxy"))->tp_name, "Proxy");
    EXPECT_EQ(str(item("pack")), "_010203_p_plain");
    EXPECT_EQ(item("null"), Py_None);
}
