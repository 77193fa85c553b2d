// SPDX-License-Identifier: MIT
// Edges of the runtime's small functions that no wrapper of this module comes to.

#include "host/base/TpythonObjectWithLock.h"
#include "runtime/arguments.h"
#include "runtime/char_strings.h"
#include "runtime/client_data.h"
#include "runtime/function_pointer.h"
#include "runtime/hex.h"
#include "runtime/packed_object.h"
#include "runtime/registration.h"
#include "runtime/result_codes.h"
#include "runtime/scalars.h"
#include "tests/runtime/python_fixture.h"

using namespace binding;

using namespace pytest;

namespace {
class Edges : public pytest::Test {};
} // namespace

TEST_F(Edges, ArgumentsThatAreNoTuple) {
    PyObject *objects[3];
    EXPECT_EQ(SWIG_Python_UnpackTuple(nullptr, "f", 0, 0, objects), 1);
    const Ref list(PyList_New(0)), one(PyTuple_Pack(1, Py_None));
    const struct {
        PyObject *arguments;
        int min, max;
        const char *message;
    } cases[] = {
        {nullptr, 2, 2, "TypeError: f expected 2 arguments, got none"},
        {nullptr, 0, 2, "TypeError: f expected at least 0 arguments, got none"},
        {list, 0, 1, "SystemError: UnpackTuple() argument list is not a tuple"},
        {one, 2, 3, "TypeError: f expected at least 2 arguments, got 1"},
        {one, 0, 0, "TypeError: f expected 0 arguments, got 1"},
    };
    for (const auto &row : cases) {
        EXPECT_EQ(SWIG_Python_UnpackTuple(row.arguments, "f", row.min, row.max, objects), 0);
        EXPECT_EQ(pending(), row.message);
    }
    EXPECT_EQ(SWIG_Python_UnpackTuple(one, "f", 0, 3, objects), 2);
    EXPECT_EQ(objects[0], Py_None);
    EXPECT_FALSE(objects[1] || objects[2]);
}

TEST_F(Edges, ChecksWithoutAPlaceForTheValue) {
    run("class F(float): pass");
    for (const char *text : {"5", "5L", "5.0", "F('5.0')", "'x'", "None"}) {
        const Ref object = eval(text);
        const bool is_integer = text[0] == '5' && text[1] != '.';
        const bool is_number = text[0] == '5' || text[0] == 'F';
        EXPECT_EQ(SWIG_AsVal_int(object, nullptr) >= 0, is_integer) << text;
        EXPECT_EQ(SWIG_AsVal_long(object, nullptr) >= 0, is_integer) << text;
        EXPECT_EQ(SWIG_AsVal_unsigned_SS_int(object, nullptr) >= 0, is_integer) << text;
        EXPECT_EQ(SWIG_AsVal_double(object, nullptr) >= 0, is_number) << text;
        PyErr_Clear();
    }
    for (const char *text : {"'x'", "pointer(16, '_p_char')"})
        EXPECT_EQ(SWIG_AsCharPtrAndSize(eval(text), nullptr, nullptr), SWIG_OK) << text;
    for (const char *text : {"None", "pointer(16, '_p_int')"})
        EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(eval(text), nullptr, type("_p_int"), 0), SWIG_OK);
    EXPECT_EQ(SWIG_Python_ConvertPtrAndOwn(nullptr, nullptr, type("_p_int"), 0), SWIG_ERROR);
    PyMethodDef names_nothing = {"f", nullptr, METH_NOARGS, "swig_ptr: NULL"};
    EXPECT_EQ(SWIG_Python_ConvertFunctionPtr(Ref(PyCFunction_New(&names_nothing, nullptr)), nullptr,
                                             type("_p_int")),
              SWIG_OK);
}

TEST_F(Edges, ResultCodesHaveTheirExceptions) {
    PyObject *const expected[] = {
        PyExc_RuntimeError, PyExc_IOError,           PyExc_RuntimeError,   PyExc_IndexError,
        PyExc_TypeError,    PyExc_ZeroDivisionError, PyExc_OverflowError,  PyExc_SyntaxError,
        PyExc_ValueError,   PyExc_SystemError,       PyExc_AttributeError, PyExc_MemoryError,
        PyExc_RuntimeError};
    for (int code = -1; code >= -13; --code)
        EXPECT_EQ(SWIG_Python_ErrorType(code), expected[-code - 1]) << code;
}

TEST_F(Edges, FunctionsThatNameAConstantGetItsAddress) {
    swig_type_info type = {"_p_f", nullptr, nullptr, nullptr, nullptr, 0}, *slot = &type;
    const swig_const_info constants[] = {
        {kPackedConstant, "packed", 1, 0, &type, &slot},
        {kPackedConstant, "no pack", 1, 0, nullptr, &slot},
        {kPointerConstant, "null", 0, 0, nullptr, &slot},
        {kPointerConstant, "known", 0, 0, address(0x10), &slot},
        {kEndOfConstants, nullptr, 0, 0, nullptr, nullptr},
    };
    const char *const texts[][2] = {
        {nullptr, nullptr},
        {"plain", "plain"},
        {"swig_ptr: other", "swig_ptr: other"},
        {"swig_ptr: packed", "swig_ptr: packed"},
        {"swig_ptr: null", "swig_ptr: null"},
        {"before swig_ptr: known", "before swig_ptr: _1000000000000000_p_f"},
    };
    PyMethodDef methods[std::size(texts) + 1] = {};
    for (size_t i = 0; i < std::size(texts); ++i)
        methods[i] = {"f", nullptr, METH_NOARGS, texts[i][0]};
    SWIG_Python_FixMethods(methods, constants);
    for (size_t i = 0; i < std::size(texts); ++i)
        EXPECT_STREQ(methods[i].ml_doc, texts[i][1]);
    const Ref dictionary(PyDict_New());
    SWIG_Python_InstallConstants(dictionary, constants);
    EXPECT_EQ(PyDict_GetItemString(dictionary, "no pack"), Py_None);
    EXPECT_EQ(SWIG_Python_SetConstant(dictionary, "no object", nullptr), -1);
    free(const_cast<char *>(methods[std::size(texts) - 1].ml_doc));
}

TEST_F(Edges, DigitsBesideTheDigits) {
    for (const char *text : {"/0", ":0", "`0", "g0", "0/", "0g", "A0"}) {
        char byte;
        EXPECT_FALSE(SWIG_UnpackData(text, &byte, 1)) << text;
    }
}

TEST_F(Edges, PrintedIsShown) {
    run(R"(
import os, tempfile
def printed(o):
    handle, name = tempfile.mkstemp()
    os.close(handle)
    with open(name, 'w') as f: print >>f, o,
    with open(name) as f: text = f.read()
    os.remove(name)
    return text
)");
    const Ref small(SwigPyPacked_New("ab", 2, type("_p_int")));
    const std::string many(600, 'x');
    const Ref large(SwigPyPacked_New(many.data(), many.size(), type("_p_int")));
    const Ref nameless(SwigPyObject_New(address(16), nullptr, 0));
    const Ref printed = eval("printed");
    for (PyObject *object : std::initializer_list<PyObject *>{small, large, nameless}) {
        const Ref text(PyObject_CallFunctionObjArgs(printed, object, nullptr));
        EXPECT_EQ(str(text), repr(object));
    }
    EXPECT_EQ(repr(large), "<Swig Packed _p_int>");
    EXPECT_NE(repr(nameless).find("'unknown'"), std::string::npos);
}

TEST_F(Edges, ModulesWithoutTypesHoldNone) {
    swig_type_info nameless = {};
    for (swig_type_info *first : {static_cast<swig_type_info *>(nullptr), &nameless}) {
        swig_type_info *types[] = {first, nullptr};
        swig_module_info module = {};
        module.types = types;
        module.next = &module;
        for (module.size = 0; module.size < 2; ++module.size)
            EXPECT_FALSE(SWIG_MangledTypeQueryModule(&module, &module, "_p_x")) << module.size;
    }
}

TEST_F(Edges, ObjectsThatOnlyLookRight) {
    run(R"(
import weakref
def looks_like(name): return type(name, (object,), {})()
class Called(object):
    def __call__(self): pass
called = Called()
called.this = pointer(16, '_p_int')
class Number(int): pass
)");
    EXPECT_FALSE(SwigPyObject_Check(eval("looks_like('SwigPyObject')")));
    EXPECT_TRUE(SwigPyPacked_Check(eval("looks_like('SwigPyPacked')")));
    EXPECT_FALSE(SwigPyPacked_Check(eval("looks_like('SwigPy')")));
    EXPECT_TRUE(SwigPyPacked_Check(Ref(SwigPyPacked_New("a", 1, nullptr))));
    void *pointer = nullptr;
    EXPECT_EQ(
        SWIG_Python_ConvertPtrAndOwn(eval("weakref.proxy(called)"), &pointer, type("_p_int"), 0),
        SWIG_OK);
    EXPECT_EQ(pointer, address(16));
    Tstring text;
    EXPECT_TRUE(TpythonObjectWithLock<TpythonLock>(eval("5")).getValue(text));
    TstringArray texts;
    EXPECT_FALSE(TpythonObjectWithLock<TpythonLock>(nullptr).getValue(texts));
    EXPECT_EQ(repr(Ref(SWIG_Python_NewPointerObj(address(16), nullptr, kBorrowed))).find("<Swig "),
              0u);
    // A built-in that wants a tuple cannot be given the dying object itself.
    run("class Varied(object): __swig_destroy__ = max");
    SwigPyClientData *varied = SwigPyClientData_New(eval("Varied"));
    EXPECT_TRUE(varied->delargs);
    EXPECT_FALSE(SwigPyClientData_New(nullptr));
    // Nothing goes wrong in the look-ups but that a class is left without a destructor.
    run("class Refusing(type):\n"
        "    def __getattribute__(cls, name):\n"
        "        if name in type.__getattribute__(cls, 'refused'): raise MemoryError(name)\n"
        "        return type.__getattribute__(cls, name)\n"
        "def refuse(*names): return Refusing('C', (object,),\n"
        "    dict(refused=names, __swig_destroy__=staticmethod(lambda p: None)))");
    for (const auto &[klass, makes, destroys] : {std::tuple{"refuse()", true, true},
                                                 {"refuse('__new__')", false, false},
                                                 {"refuse('__swig_destroy__')", true, false}}) {
        const Ref refusing = eval(klass);
        const SwigPyClientData *refused = SwigPyClientData_New(refusing);
        EXPECT_EQ(pending(), "");
        EXPECT_EQ(
            (std::array{bool(refused->newraw), bool(refused->destroy), bool(refused->delargs)}),
            (std::array{makes, destroys, destroys}))
            << klass;
    }
    // An instance that has a dictionary keeps it.
    run("o = Number(); o.other = 1; _r.ZRenderView_swiginit(o, called.this)");
    expect({{"sorted(o.__dict__)", "['other', 'this']"}});
    // A class whose "__new__" is another built-in's is asked for its instances.
    SwigPyClientData *data = SwigPyClientData_New(eval("Number"));
    EXPECT_EQ(repr(Ref(SWIG_Python_NewShadowInstance(data, eval("pointer(16, '_p_int')")))), "0");
    // So is an abstract one, which has none.
    run("import abc\n"
        "class Abstract(object):\n"
        "    __metaclass__ = abc.ABCMeta\n"
        "    @abc.abstractmethod\n"
        "    def method(self): pass");
    data = SwigPyClientData_New(eval("Abstract"));
    EXPECT_FALSE(SWIG_Python_NewShadowInstance(data, eval("pointer(16, '_p_int')")));
    EXPECT_EQ(pending(),
              "TypeError: Can't instantiate abstract class Abstract with abstract methods method");
}

TEST_F(Edges, AnOwnerWithoutATypeSaysThatItLeaks) {
    testing::internal::CaptureStdout();
    Ref(SwigPyObject_New(address(16), nullptr, 1)).drop();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "swig/python detected a memory leak of type 'unknown', no destructor found.\n");
}
