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

/// Added to the flags in Function::shape().
inline constexpr int kAllGiven = 0x100;
/// Added where what is called cannot run out of memory.
inline constexpr int kNeedsNoMemory = 0x200;

/// One native function. There are well over a thousand of them, and what weighs in the module are
/// the pointers, which the loader has to relocate: hence one text for name and declaration.
struct Function {
    const char *text;   ///< the Python name, a null character, the declared type
    PyCFunction native; ///< "_wrap_" and the Python name
    union {
        const Probe
            *probes; ///< of a case, one per parameter; null for a function without overloads
        const Function *const *overloads; ///< of a dispatcher, which has a count of them
    };
    Kind kind;
    unsigned char owner_size; ///< characters of the class's name
    unsigned char overload_count;
    unsigned char min;                  ///< parameters without a default, the object included
    unsigned char max;                  ///< all parameters, but not a hidden status
    unsigned char flags;                ///< METH_NOARGS, METH_O or METH_VARARGS
    signed char defaults[kMaxDefaults]; ///< of the last max - min parameters

    /// What the code of a call depends on: the flags, and whether no argument may be absent.
    constexpr int shape() const { return flags | (min == max ? kAllGiven : 0); }
    /// The Python name, used in every message.
    const char *name() const { return text; }
    /// The declared type, as written in the row: "ZStatus(unsigned int, bool) const".
    const char *declaration() const;
    /// The class, as spelled in C++; empty for functions without one.
    std::string_view owner() const;
    /// "member" of "Class_member"; constructors go by the name of their class.
    std::string_view member() const;

    bool has_object() const {
        return kind == Kind::Method || kind == Kind::Setter || kind == Kind::Getter;
    }
    /// The cases behind a dispatcher; none otherwise.
    std::span<const Function *const> cases() const;
};

/// One row of the method table: a function, or the dispatcher of its overloads.
using Row = const Function *;

// Failures. Each sets the exception and returns what its caller is to return.

/// Wrong number of arguments, or no tuple: returns -1.
Py_ssize_t raise_argument_count(const Function &function, PyObject *arguments);

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
