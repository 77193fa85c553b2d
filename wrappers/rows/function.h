#pragma once

// What a wrapper knows about itself beyond its native types. All of it is constant data; only the
// bounds and the defaults are read on a success path, the texts when something is wrong.

#include <Python.h>

#include <span>
#include <string_view>

enum class Kind : unsigned char {
    Static,      ///< "Class_member", no object
    Method,      ///< "Class_member", the object first
    Constructor, ///< "new_Class"
    Destructor,  ///< "delete_Class"
    Disown,      ///< "disown_Class"
    Setter,      ///< "Class_member_set"
    Getter,      ///< "Class_member_get"
    Register,    ///< "Class_swigregister"
    Initialise,  ///< "Class_swiginit"
    Runtime      ///< no class
};

/// Tells whether an object could be an argument, without converting it.
using Probe = bool (*)(PyObject *);

/// Most parameters that a wrapper has, the object included.
inline constexpr int kMaxParameters = 16;
/// Most parameters with a default.
inline constexpr int kMaxDefaults = 6;

/// One native function. There are well over a thousand of them: what only a few need stands in
/// the types below.
struct Function {
    const char *name;        ///< the Python name, used in every message
    const char *declaration; ///< the type, as in the row: "ZStatus(unsigned int, bool) const"
    PyCFunction native;      ///< "_wrap_" and the Python name
    Kind kind;
    bool is_dispatcher;
    unsigned char owner_size; ///< characters of the class's name
    unsigned char min;        ///< parameters without a default, the object included
    unsigned char max;        ///< all parameters, but not a hidden status
    unsigned char flags;      ///< METH_NOARGS, METH_O or METH_VARARGS

    /// The class, as spelled in C++; empty for functions without one.
    std::string_view owner() const;
    /// "member" of "Class_member"; constructors go by the name of their class.
    std::string_view member() const;

    bool has_object() const {
        return kind == Kind::Method || kind == Kind::Setter || kind == Kind::Getter;
    }
    /// Of a parameter that has a default.
    signed char default_of(int index) const;
    /// The cases behind a dispatcher; none otherwise.
    std::span<const Function *const> cases() const;
};

/// A function with defaults, or a case of an overloaded one.
struct DetailedFunction : Function {
    const Probe *probes;                ///< of a case, one per parameter
    signed char defaults[kMaxDefaults]; ///< of the last max - min parameters
};

/// The function in front of overloads.
struct Dispatcher : Function {
    std::span<const Function *const> overloads;
};

inline signed char Function::default_of(int index) const {
    return static_cast<const DetailedFunction *>(this)->defaults[index - min];
}

/// One row of the method table: a function, or the dispatcher of its overloads.
using Row = const Function *;

// Failures. Each sets the exception and returns what its caller is to return.

/// Wrong number of arguments, or no tuple: returns -1.
Py_ssize_t raise_argument_count(const Function &function, PyObject *arguments);

/// Number of arguments given, or -1 with an exception set.
inline Py_ssize_t argument_count(const Function &function, PyObject *arguments) {
    if (arguments && PyTuple_Check(arguments)) [[likely]] {
        const Py_ssize_t count = PyTuple_GET_SIZE(arguments);
        if (count >= function.min && count <= function.max) [[likely]]
            return count;
    }
    return raise_argument_count(function, arguments);
}

/// Reads one argument into its cell, or its default where it is null: false with an exception set.
using Reader = bool (*)(void *cell, const Function &function, PyObject *object, int index);

/// Reads all arguments with a reader for each, into cells of `size` bytes: false with an exception
/// set.
bool read_arguments(const Function &function, PyObject *arguments, const Reader *readers,
                    void *cells, size_t size);

/// In place of a result code: None where the host expects a reference.
inline constexpr int kNullReference = -100;

/// In place of a result code: the exception is set already.
inline constexpr int kRaised = -101;

/// Added to a result code where the message tells `T` for a parameter declared `T const &`.
inline constexpr int kNamedByValue = -200;

/// An argument (counted from 1, the object included) did not convert: returns false.
bool raise_argument(const Function &function, int position, int code);

/// A string argument could not be read. The call goes on with an empty string.
void raise_expected_string(int position);

/// No overload takes these arguments: returns null.
PyObject *raise_no_overload(std::span<const Function *const> overloads);

/// Calls the first overload whose arguments fit: by their number alone where that decides, else by
/// probing the arguments that tell the candidates apart. The last candidate is not probed; it
/// reports its own conversion errors.
PyObject *dispatch(std::span<const Function *const> overloads, PyObject *self, PyObject *arguments);
