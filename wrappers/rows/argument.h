// SPDX-License-Identifier: MIT
#pragma once

// How one Python argument becomes a parameter of each declared type. An Argument<T> is a local of
// the wrapper: it reads the Python object, keeps what the host call needs, and gives it back as T.

#include "host/base/TpythonObjectWithLock.h"
#include "host/core/ZStatus.h"
#include "host/core/ZString.h"
#include "runtime/char_strings.h"
#include "runtime/convert.h"
#include "runtime/function_pointer.h"
#include "runtime/module_types.h"
#include "runtime/scalars.h"
#include "wrappers/rows/function.h"

#include <cfloat>
#include <cmath>
#include <type_traits>

namespace binding {

/// Every Argument<T> has: `read(object, position)`, which returns a ReadResult; `use_default(d)`
/// for an absent argument; `get()`; and `probe(object)`. Some have `read_fast(object)`, which is
/// compiled into every wrapper: it reads the usual kind of object in a few instructions, and is
/// false for all others. Whoever derives from one of these and has a `read` of its own needs its
/// own `read_fast`, or none.
template <class T>
struct Argument;

/// A pointer parameter that takes the native object over from its pointer object.
template <class Pointer>
struct Released;

/// The host's own type of a parameter that rows spell in another way, to convert it in another way.
template <class T>
struct NativeOf : std::type_identity<T> {};
template <class T>
using Native = typename NativeOf<T>::type;

/// The object that a data member is set to: always a pointer object, for strings too.
template <class Object>
struct Embedded;

/// The object that an extension acts on, of a type that the call names.
struct AnyObject;

// Numbers

template <>
struct Argument<int> {
    int value;
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        return PyInt_CheckExact(object) &&
               (value = static_cast<int>(PyInt_AS_LONG(object))) == PyInt_AS_LONG(object);
    }
    int read(PyObject *object, int) { return SWIG_AsVal_int(object, &value); }
    void use_default(double d) { value = static_cast<int>(d); }
    int get() const { return value; }
    static bool probe(PyObject *object) { return SWIG_AsVal_int(object, nullptr) >= 0; }
};

/// By reference in the host only: a plain number for scripts, and in messages.
template <>
struct Argument<int const &> : Argument<int> {
    ReadResult read(PyObject *object, int position) {
        return {Argument<int>::read(object, position), ReadResult::kNamedByValue};
    }
};

/// Host enumerations are plain ints and never range-checked.
template <class T>
requires std::is_enum_v<T>
struct Argument<T> : Argument<int> {
    T get() const { return static_cast<T>(value); }
};

template <>
struct Argument<unsigned int> {
    unsigned int value;
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        return PyInt_CheckExact(object) &&
               (value = static_cast<unsigned int>(PyInt_AS_LONG(object))) == PyInt_AS_LONG(object);
    }
    int read(PyObject *object, int) { return SWIG_AsVal_unsigned_SS_int(object, &value); }
    void use_default(double d) { value = static_cast<unsigned int>(d); }
    unsigned int get() const { return value; }
    static bool probe(PyObject *object) { return SWIG_AsVal_unsigned_SS_int(object, nullptr) >= 0; }
};

template <>
struct Argument<long> {
    long value;
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        if (!PyInt_CheckExact(object))
            return false;
        value = PyInt_AS_LONG(object);
        return true;
    }
    int read(PyObject *object, int) { return SWIG_AsVal_long(object, &value); }
    void use_default(double d) { value = static_cast<long>(d); }
    long get() const { return value; }
    static bool probe(PyObject *object) { return SWIG_AsVal_long(object, nullptr) >= 0; }
};

/// Integers narrower than the interpreter's, on top of the next wider conversion.
template <class T>
requires std::is_same_v<T, short> || std::is_same_v<T, unsigned short> ||
    std::is_same_v<T, signed char> || std::is_same_v<T, unsigned char>
struct Argument<T> {
    using Wide = std::conditional_t<std::is_signed_v<T>, int, unsigned int>;
    Argument<Wide> wide;
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        return wide.read_fast(object) && wide.value == static_cast<T>(wide.value);
    }
    int read(PyObject *object, int position) {
        const int code = wide.read(object, position);
        return code >= 0 && wide.value != static_cast<T>(wide.value) ? SWIG_OverflowError : code;
    }
    void use_default(double d) { wide.use_default(d); }
    T get() const { return static_cast<T>(wide.value); }
    static bool probe(PyObject *object) {
        Argument<T> argument;
        return argument.read(object, 0) >= 0;
    }
};

template <>
struct Argument<double> {
    double value;
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        if (!PyFloat_CheckExact(object))
            return false;
        value = PyFloat_AS_DOUBLE(object);
        return true;
    }
    int read(PyObject *object, int) { return SWIG_AsVal_double(object, &value); }
    void use_default(double d) { value = d; }
    double get() const { return value; }
    static bool probe(PyObject *object) { return SWIG_AsVal_double(object, nullptr) >= 0; }
};

template <>
struct Argument<float> {
    double value;
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        if (!PyFloat_CheckExact(object))
            return false;
        value = PyFloat_AS_DOUBLE(object);
        return !(std::fabs(value) > FLT_MAX);
    }
    int read(PyObject *object, int) {
        const int code = SWIG_AsVal_double(object, &value);
        // NaN and the infinities: a NaN compares false and passes, an infinity is out of range.
        return code >= 0 && (value < -FLT_MAX || value > FLT_MAX) ? SWIG_OverflowError : code;
    }
    void use_default(double d) { value = d; }
    float get() const { return static_cast<float>(value); }
    static bool probe(PyObject *object) {
        Argument<float> argument;
        return argument.read(object, 0) >= 0;
    }
};

template <>
struct Argument<bool> {
    bool value;
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        value = object == Py_True;
        return value || object == Py_False;
    }
    int read(PyObject *object, int) { return SWIG_AsVal_bool(object, &value); }
    void use_default(double d) { value = d != 0; }
    const bool &get() const { return value; }
    static bool probe(PyObject *object) {
        return PyInt_Check(object) || PyLong_Check(object) || PyFloat_Check(object);
    }
};

template <>
struct Argument<bool const &> : Argument<bool> {};

// Objects

/// A type that crosses as a typed pointer object.
template <class T>
concept HasRecord = type_index<std::remove_cv_t<T>>
>= 0 && !std::is_void_v<T>;

/// The address of a pointer object of just that type, or of such a proxy's; false for others.
[[gnu::always_inline]] inline bool read_pointer(PyObject *object, swig_type_info *type,
                                                void *&pointer) {
    auto *self = reinterpret_cast<SwigPyObject *>(object);
    if (!is_bare_pointer(object, type)) {
        self = pointer_of_proxy(object, type);
        if (!self)
            return false;
    }
    pointer = self->ptr;
    return true;
}

/// The same of any object that may stand for one of the type, but null.
inline ReadResult read_reference(PyObject *object, swig_type_info *type, void *&pointer) {
    const int code = SWIG_Python_ConvertPtrAndOwn(object, &pointer, type, 0);
    if (code >= 0 && !pointer)
        return {SWIG_ValueError, ReadResult::kNullReference};
    return code;
}

template <class T>
struct PointerArgument {
    void *pointer;
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        return read_pointer(object, type_of<std::remove_cv_t<T>>(), pointer);
    }
    int read(PyObject *object, int) {
        return SWIG_Python_ConvertPtrAndOwn(object, &pointer, type_of<std::remove_cv_t<T>>(), 0);
    }
    void use_default(double) { pointer = nullptr; }
    static bool probe(PyObject *object) {
        return SWIG_Python_ConvertPtrAndOwn(object, nullptr, type_of<std::remove_cv_t<T>>(), 0) >=
               0;
    }
};

template <HasRecord T>
struct Argument<T *> : PointerArgument<T> {
    T *get() const { return static_cast<T *>(this->pointer); }
};

/// A native function, in the forms that native code hands it out; no Python callable.
template <HasRecord T>
requires std::is_function_v<T>
struct Argument<T *> {
    void *pointer = nullptr;
    int read(PyObject *object, int) {
        return SWIG_Python_ConvertFunctionPtr(object, &pointer, type_of<T>());
    }
    void use_default(double) {}
    T *get() const { return reinterpret_cast<T *>(pointer); }
    static bool probe(PyObject *object) {
        return SWIG_Python_ConvertFunctionPtr(object, nullptr, type_of<T>()) >= 0;
    }
};

template <HasRecord T>
struct Argument<Released<T *>> : Argument<T *> {
    bool read_fast(PyObject *) = delete;
    int read(PyObject *object, int) {
        swig_type_info *type = type_of<std::remove_cv_t<T>>();
        auto *self = is_bare_pointer(object, type) ? reinterpret_cast<SwigPyObject *>(object)
                                                   : pointer_of_proxy(object, type);
        if (self) {
            this->pointer = self->ptr;
            self->own = 0;
            return SWIG_OK;
        }
        return SWIG_Python_ConvertPtrAndOwn(object, &this->pointer, type, kReleaseOwnership);
    }
};

template <class T>
struct ReferenceArgument : PointerArgument<T> {
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        return PointerArgument<T>::read_fast(object) && this->pointer;
    }
    ReadResult read(PyObject *object, int) {
        return read_reference(object, type_of<std::remove_cv_t<T>>(), this->pointer);
    }
    T &get() const { return *static_cast<T *>(this->pointer); }
};

template <HasRecord T>
struct Argument<T &> : ReferenceArgument<T> {};

template <HasRecord T>
struct Argument<Embedded<T>> : ReferenceArgument<T> {};

template <>
struct Argument<AnyObject> {
    swig_type_info *type;
    void *pointer;
    [[gnu::always_inline]] bool read_fast(PyObject *object) {
        return read_pointer(object, type, pointer) && pointer;
    }
    ReadResult read(PyObject *object, int) { return read_reference(object, type, pointer); }
    void use_default(double) {}
};

/// An address that the host finds: it is written into the caller's "void **".
template <>
struct Argument<void const *&> : ReferenceArgument<void *> {
    void const *&get() const { return *static_cast<void const **>(this->pointer); }
};

/// By value: converted like a reference, then copied.
template <HasRecord T>
requires std::is_class_v<T>
struct Argument<T> : ReferenceArgument<T> {
};

// Strings

/// A host string from anything with a text. The position is needed because a failed read raises
/// at once and the call goes on with the string empty.
struct StringArgument {
    ZString value;
    int read(PyObject *object, int position);
    void use_default(double) {}
    ZString &get() { return value; }
    static bool probe(PyObject *object) {
        return PyString_Check(object) || PyUnicode_Check(object);
    }
};

template <>
struct Argument<ZString> : StringArgument {};
template <>
struct Argument<ZString &> : StringArgument {};
template <>
struct Argument<ZString const &> : StringArgument {};

template <>
struct Argument<char const *> {
    char *text = nullptr;
    int read(PyObject *object, int) { return SWIG_AsCharPtrAndSize(object, &text, nullptr); }
    void use_default(double) {}
    const char *get() const { return text; }
    static bool probe(PyObject *object) {
        return SWIG_AsCharPtrAndSize(object, nullptr, nullptr) >= 0;
    }
};

// Opaque host data: the Python object's own address, null for None.

template <class T>
requires std::is_void_v<T>
struct Argument<T *> {
    PyObject *object;
    [[gnu::always_inline]] bool read_fast(PyObject *given) {
        object = given == Py_None ? nullptr : given;
        return true;
    }
    int read(PyObject *given, int) {
        read_fast(given);
        return SWIG_OK;
    }
    void use_default(double) { object = nullptr; }
    void *get() const { return object; }
    static bool probe(PyObject *) { return true; }
};

/// Any Python object (borrowed), as it is.
template <>
struct Argument<PyObject *> {
    PyObject *object;
    [[gnu::always_inline]] bool read_fast(PyObject *given) {
        object = given;
        return true;
    }
    int read(PyObject *given, int) {
        read_fast(given);
        return SWIG_OK;
    }
    void use_default(double) { object = nullptr; }
    PyObject *get() const { return object; }
    static bool probe(PyObject *) { return true; }
};

/// The status that many host operations report through: the wrapper's own, never an argument.
template <>
struct Argument<ZStatus *> {
    ZStatus value;
    ZStatus *get() { return &value; }
};

} // namespace binding
