// SPDX-License-Identifier: MIT
// Every wrapper of the function table on a driver that records: each position of each call gets a
// value of its own, extremes included, and what reaches the driver must be what was passed.

#include "devhost/gl/GlDriver.h"
#include "host/render/ZGLFunctionTable.h"
#include "runtime/convert.h"
#include "runtime/module_types.h"
#include "wrappers/rows/module_tables.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <limits>
#include <string>
#include <vector>

using namespace binding;

namespace {

/// Data that scripts pass as typed pointer objects, in place of the host's ZGLvoid; void is the
/// Python object's own address.
class ZGLvoid;

// A value as the driver sees it, in a form that can be compared.

using Seen = std::vector<long double>;

template <class T>
long double seen(T value) {
    if constexpr (std::is_pointer_v<T>)
        return static_cast<long double>(reinterpret_cast<uintptr_t>(value));
    else
        return static_cast<long double>(value);
}

struct Recording {
    const char *member = nullptr;
    Seen arguments;
    int calls = 0;
} recording;

// What the driver answers: values that a wrong conversion would change.

template <class R>
R answer() {
    if constexpr (std::is_same_v<R, unsigned char>)
        return 1;
    else if constexpr (std::is_pointer_v<R>)
        return reinterpret_cast<R>(0x7ffff0001234);
    else if constexpr (std::is_integral_v<R>)
        return std::is_signed_v<R> ? -7 : static_cast<R>(0xfffffff9u);
}

// A driver whose entry points record.

enum Member {
#define GL(since, result, member, ...) k##member,
#include "host/render/gl_functions.def"
};

const char *const memberNames[] = {
#define GL(since, result, member, ...) #member,
#include "host/render/gl_functions.def"
};

template <Member member, class R, class... A>
R record(A... arguments) {
    recording = {memberNames[member], {seen(arguments)...}, recording.calls + 1};
    return answer<R>();
}

template <Member member, class R, class... A>
void makeRecording(R (*&entry)(A...)) {
    entry = record<member, R, A...>;
}

// Arguments: a Python object and what the driver is to see of it.

struct Passed {
    PyObject *object; ///< owned
    long double value;
};

/// 0 gives small values, 1 the largest and 2 the smallest ones, each with its position in it.
constexpr int kRounds = 3;

template <class T>
requires std::is_integral_v<T> Passed pass(int round, int position, std::type_identity<T>) {
    using Limits = std::numeric_limits<T>;
    const T value = static_cast<T>(round == 0   ? 10 + 7 * position
                                   : round == 1 ? Limits::max() - position
                                                : Limits::min() + position);
    PyObject *object = std::is_signed_v<T> ? PyInt_FromLong(static_cast<long>(value))
                                           : PyInt_FromSize_t(static_cast<size_t>(value));
    return {object, seen(value)};
}

template <class T>
requires std::is_floating_point_v<T> Passed pass(int round, int position, std::type_identity<T>) {
    const T largest = std::numeric_limits<T>::max() / static_cast<T>(1 << position);
    const T value = round == 0   ? static_cast<T>(0.1) + static_cast<T>(position)
                    : round == 1 ? largest
                                 : -largest;
    return {PyFloat_FromDouble(value), seen(value)};
}

/// An address that no other position has.
void *addressFor(int round, int position) {
    return reinterpret_cast<void *>(0x7fff00000000 + 0x10000 * round + 0x10 * position);
}

Passed passAddress(void *address, swig_type_info *type) {
    return {SWIG_Python_NewPointerObj(address, type, kBorrowed), seen(address)};
}

template <class T>
Passed pass(int round, int position, std::type_identity<T *>) {
    using Target = std::remove_const_t<T>;
    void *const address = addressFor(round, position);
    if constexpr (std::is_same_v<Target, ZGLvoid>) {
        swig_type_info *const types[] = {type_of<double>(), type_of<unsigned char>(),
                                         type_of<unsigned short>()};
        return round == 0 && position % 2 ? Passed{Py_BuildValue(""), 0}
                                          : passAddress(address, types[round]);
    } else if constexpr (std::is_void_v<Target>) {
        PyObject *object = PyString_FromString("data");
        return {object, seen(object)};
    } else if constexpr (std::is_same_v<T, char const>) {
        if (round != 0)
            return passAddress(address, type_of<char>());
        PyObject *object = PyString_FromFormat("name %d", position);
        return {object, seen(PyString_AS_STRING(object))};
    } else if constexpr (std::is_pointer_v<Target>) {
        using Inner = std::remove_const_t<std::remove_pointer_t<Target>>;
        constexpr bool is_char = std::is_same_v<Inner, char>;
        return passAddress(address, is_char ? type_of<char *>() : type_of<void *>());
    } else {
        return passAddress(address, type_of<Target>());
    }
}

// Results

bool isPointerTo(PyObject *object, swig_type_info *type, long double address) {
    const SwigPyObject *pointer = SWIG_Python_GetSwigThis(object);
    return pointer && pointer->ty == type && !pointer->own && seen(pointer->ptr) == address;
}

template <class R>
bool isAnswer(PyObject *object) {
    if constexpr (std::is_void_v<R>)
        return object == Py_None;
    else if constexpr (std::is_same_v<R, bool>)
        return object == Py_True;
    else if constexpr (std::is_same_v<R, ZGLvoid *>)
        return isPointerTo(object, type_of<void>(), seen(answer<void *>()));
    else if constexpr (std::is_pointer_v<R>)
        return isPointerTo(object, type_of<unsigned char>(), seen(answer<R>()));
    else
        return PyInt_CheckExact(object) && PyInt_AS_LONG(object) == seen(answer<R>());
}

class GlRecording : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        static char home[] = PYTHON2_HOME;
        Py_SetPythonHome(home);
        Py_InitializeEx(0);
        initialise_module("gl");
        functions = PyModule_GetDict(PyImport_AddModule("gl"));
    }
    void SetUp() override {
#define GL(since, result, member, ...) makeRecording<k##member>(devhost::glDriver.member);
#include "host/render/gl_functions.def"
        recording = {};
    }
    void TearDown() override {
        devhost::glDriver.load(devhost::GlFeatures());
    }

    template <class R, class... A>
    void check(const char *member, std::type_identity<R(A...)>) {
        for (int round = 0; round < kRounds; ++round) {
            int position = 0;
            // Braces fix the order of evaluation.
            const std::vector<Passed> passed{pass(round, ++position, std::type_identity<A>())...};
            callAndCompare<R>(member, passed);
        }
    }

  private:
    template <class R>
    void callAndCompare(const char *member, const std::vector<Passed> &passed) {
        static ZGLFunctionTable table;
        const std::string name = std::string("ZGLFunctionTable_") + member;
        PyObject *tuple = PyTuple_New(static_cast<Py_ssize_t>(passed.size()) + 1);
        PyTuple_SET_ITEM(tuple, 0,
                         SWIG_Python_NewPointerObj(&table, type_of<ZGLFunctionTable>(), kBorrowed));
        Seen expected;
        for (size_t i = 0; i < passed.size(); ++i) {
            PyTuple_SET_ITEM(tuple, static_cast<Py_ssize_t>(i) + 1, passed[i].object);
            expected.push_back(passed[i].value);
        }
        PyObject *function = PyDict_GetItemString(functions, name.c_str());
        ASSERT_TRUE(function) << name;
        const int callsBefore = recording.calls;
        PyObject *result = PyObject_CallObject(function, tuple);
        if (!result)
            PyErr_Print();
        ASSERT_TRUE(result) << name;
        EXPECT_TRUE(isAnswer<R>(result)) << name;
        EXPECT_EQ(recording.calls, callsBefore + 1) << name;
        EXPECT_STREQ(recording.member, member);
        EXPECT_EQ(recording.arguments, expected) << name;
        Py_DECREF(result);
        Py_DECREF(tuple);
    }

    static inline PyObject *functions;
};

TEST_F(GlRecording, EveryArgumentReachesItsPlaceInTheDriver) {
#define GL(since, result, member, ...) \
    check(#member, std::type_identity<result(ZGL_TYPES(__VA_ARGS__))>());
#include "host/render/gl_functions.def"
    EXPECT_EQ(recording.calls, kRounds * 736);
}

} // namespace
