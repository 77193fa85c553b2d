#pragma once

// The work behind every wrapper, one instance per signature: receive the arguments, convert them
// from left to right, call the host once, convert the result, look at the hidden status. A wrapper
// itself is only a thin function that names its description and its target.

#include "wrappers/argument.h"
#include "wrappers/result.h"

#include <initializer_list>
#include <new>
#include <tuple>

/// Number of arguments given, or -1 with an exception set.
inline Py_ssize_t argument_count(const Function &function, PyObject *arguments) {
    if (arguments && PyTuple_Check(arguments)) [[likely]] {
        const Py_ssize_t count = PyTuple_GET_SIZE(arguments);
        if (count >= function.min && count <= function.max) [[likely]]
            return count;
    }
    return raise_argument_count(function, arguments);
}

template <class T>
inline constexpr bool is_hidden_status = std::is_same_v<T, ZStatus *>;

/// Parameters that Python sees.
template <class... A>
inline constexpr int parameter_count = (0 + ... + !is_hidden_status<A>);

/// A list of types.
template <class... A>
struct Pack {};

template <class T>
constexpr Probe probe_of() {
    if constexpr (is_hidden_status<T>)
        return nullptr;
    else
        return &Argument<T>::probe;
}

template <class Parameters>
inline constexpr Probe probes_of[] = {nullptr};
template <class... A>
inline constexpr Probe probes_of<Pack<A...>>[] = {probe_of<A>()..., nullptr};

/// Reads one argument, whatever it is. Out of line: wrappers with the same type of parameter share
/// this, and hold what is usual themselves.
template <class T>
[[gnu::noinline]] bool read_any(Argument<T> &argument, const Function &function, PyObject *object,
                                int index) {
    const int code = argument.read(object, index + 1);
    return code >= 0 || raise_argument(function, index + 1, code);
}

/// Most parameters of a wrapper that reads the usual objects itself. Longer ones are rarer, and
/// spend their time in the host.
inline constexpr int kMaxUsualParameters = 6;

/// Reads one argument, or takes its default where it is absent.
template <bool may_be_absent, bool reads_usual, class T>
[[gnu::always_inline]] inline bool read_argument(Argument<T> &argument, const Function &function,
                                                 PyObject *object, int index) {
    if constexpr (is_hidden_status<T>) {
        return true;
    } else {
        if constexpr (may_be_absent) {
            if (!object) {
                argument.use_default(function.defaults[index - function.min]);
                return true;
            }
        }
        if constexpr (reads_usual && requires { argument.read_usual(object); }) {
            if (argument.read_usual(object)) [[likely]]
                return true;
        }
        return read_any(argument, function, object, index);
    }
}

/// The status after the call. The result was made before the host's verdict is looked at; where
/// the host reports failure it is abandoned as it is.
template <class T>
bool report_status(Argument<T> &argument) {
    if constexpr (is_hidden_status<T>) {
        if (argument.value.error()) {
            raise_status(argument.value);
            return false;
        }
    }
    return true;
}

/// False for an argument of whose operations none runs out of memory: there are so many of these
/// that the guard's size counts.
template <class T>
inline constexpr bool may_run_out_of_memory = true;

/// Calls the host. Running out of memory is the one native exception that a script can cause
/// wherever it wants to, and ends here; all others pass.
template <bool is_guarded, class Invoke, class... A>
[[gnu::always_inline]] inline PyObject *guarded(Invoke &invoke, Argument<A> &...values) {
    if constexpr (is_guarded) {
        try {
            return invoke(values...);
        } catch (const std::bad_alloc &) {
            return PyErr_NoMemory();
        }
    } else {
        return invoke(values...);
    }
}

/// Converts the arguments to A... and hands them to `invoke`, which makes the result object.
template <int shape, class... A, class Invoke>
[[gnu::always_inline]] inline PyObject *with_arguments(const Function &function,
                                                       PyObject *arguments, Invoke invoke) {
    constexpr int flags = shape & ~(kAllGiven | kNeedsNoMemory);
    constexpr bool may_be_absent = !(shape & kAllGiven);
    constexpr bool is_guarded = !(shape & kNeedsNoMemory) && (may_run_out_of_memory<A> && ...);
    constexpr bool reads_usual = sizeof...(A) <= kMaxUsualParameters;
    [[maybe_unused]] Py_ssize_t count = 0;
    if constexpr (flags == METH_O) {
        if (!arguments)
            return nullptr;
    } else if (flags != METH_NOARGS || arguments) {
        count = argument_count(function, arguments);
        if (count < 0)
            return nullptr;
    }
    const auto object_at = [&](int index) -> PyObject * {
        if constexpr (flags == METH_O)
            return arguments;
        else if constexpr (may_be_absent)
            return index < count ? PyTuple_GET_ITEM(arguments, index) : nullptr;
        else // a hidden status stands behind the last argument
            return index < parameter_count<A...> ? PyTuple_GET_ITEM(arguments, index) : nullptr;
    };
    return [&]<int... i>(std::integer_sequence<int, i...>)->PyObject * {
        std::tuple<Argument<A>...> values;
        if (!(read_argument<may_be_absent, reads_usual, A>(std::get<i>(values), function,
                                                           object_at(i), i) &&
              ...))
            return nullptr;
        PyObject *result = guarded<is_guarded>(invoke, std::get<i>(values)...);
        return (report_status<A>(std::get<i>(values)) && ...) ? result : nullptr;
    }
    (std::make_integer_sequence<int, sizeof...(A)>());
}

template <class R, class Call>
PyObject *result_of(Call call) {
    if constexpr (std::is_void_v<R>) {
        call();
        Py_RETURN_NONE;
    } else {
        return to_python<R>(call());
    }
}

/// A description. The parameters are those that Python sees, the object first, and the hidden
/// status; a case of an overloaded function has probes.
template <class... A>
consteval Function describe(Pack<A...>, Kind kind, const char *text, size_t owner_size,
                            PyCFunction native, const Probe *probes = nullptr,
                            std::initializer_list<signed char> defaults = {}) {
    constexpr int count = parameter_count<A...>;
    static_assert(count <= kMaxParameters);
    const auto default_count = static_cast<int>(defaults.size());
    Function function{};
    function.text = text;
    function.native = native;
    function.probes = probes;
    function.kind = kind;
    function.owner_size = static_cast<unsigned char>(owner_size);
    function.max = count;
    function.min = static_cast<unsigned char>(count - default_count);
    function.flags = count == 0                         ? METH_NOARGS
                     : count == 1 && default_count == 0 ? METH_O
                                                        : METH_VARARGS;
    int i = 0;
    for (signed char value : defaults)
        function.defaults[i++] = value;
    return function;
}

template <class Signature>
struct Static;

/// A static host operation.
template <class R, class... A>
struct Static<R(A...)> {
    using Parameters = Pack<A...>;
    template <int shape>
    [[gnu::noinline]] static PyObject *call(const Function &function, PyObject *arguments,
                                            R (*target)(A...)) {
        return with_arguments<shape, A...>(function, arguments, [=](Argument<A> &...values) {
            return result_of<R>([&]() -> R { return target(values.get()...); });
        });
    }
};

/// An operation on an object.
template <class Object, class Target, class R, class... A>
struct MethodCall {
    using Parameters = Pack<Object *, A...>;
    template <int shape>
    [[gnu::noinline]] static PyObject *call(const Function &function, PyObject *arguments,
                                            Target target) {
        return with_arguments<shape, Object *, A...>(
            function, arguments, [=](Argument<Object *> &self, Argument<A> &...values) {
                return result_of<R>([&]() -> R { return (self.get()->*target)(values.get()...); });
            });
    }
};

template <class Object, class Signature>
struct Method;
template <class Object, class R, class... A>
struct Method<Object, R(A...)>
    : MethodCall<Object, Native<R> (Object::*)(Native<A>...), Native<R>, A...> {};
template <class Object, class R, class... A>
struct Method<Object, R(A...) const>
    : MethodCall<Object, Native<R> (Object::*)(Native<A>...) const, Native<R>, A...> {};

/// True when an extension has to be given up: unlike a host operation it is not called without its
/// text.
template <class... A>
bool lacks_text() {
    constexpr bool has_text = (false || ... || std::is_same_v<std::remove_cvref_t<A>, ZString>);
    return has_text && PyErr_Occurred();
}

/// A free function that acts on an object. Its result is the declared one, or a finished Python
/// object.
template <class Object, class Signature>
struct Extension;
template <class Object, class R, class... A>
struct Extension<Object, R(A...)> {
    using Parameters = Pack<Embedded<Object>, A...>;
    template <int shape, class Result = R>
    [[gnu::noinline]] static PyObject *call(const Function &function, PyObject *arguments,
                                            Result (*target)(Object &, A...)) {
        static_assert(std::is_same_v<Result, R> || std::is_same_v<Result, PyObject *>);
        return with_arguments<shape, Embedded<Object>, A...>(
            function, arguments, [=](Argument<Embedded<Object>> &self, Argument<A> &...values) {
                return lacks_text<A...>() ? nullptr : result_of<Result>([&]() -> Result {
                    return target(self.get(), values.get()...);
                });
            });
    }
};
template <class Object, class R, class... A>
struct Extension<Object, R(A...) const> : Extension<Object, R(A...)> {};

template <class Signature>
struct Constructor;

/// A host constructor. The result is bare: the proxy's initialiser attaches it to the instance.
template <class Object, class... A>
struct Constructor<Object(A...)> {
    using Parameters = Pack<A...>;
    template <int shape>
    [[gnu::noinline]] static PyObject *call(const Function &function, PyObject *arguments) {
        return with_arguments<shape, A...>(function, arguments, [](Argument<A> &...values) {
            auto *object = new Object(values.get()...);
            PyObject *result = SWIG_Python_NewPointerObj(object, type_of<Object>(), kConstructed);
            if (!result)
                delete object;
            return result;
        });
    }
    /// With a function that makes the pointer object.
    template <int shape>
    [[gnu::noinline]] static PyObject *make(const Function &function, PyObject *arguments,
                                            PyObject *(*maker)(A...)) {
        return with_arguments<shape, A...>(function, arguments, [=](Argument<A> &...values) {
            return lacks_text<A...>() ? nullptr : maker(values.get()...);
        });
    }
};

/// Deletes a native object whose pointer object gives up its ownership; None deletes nothing.
template <class Object>
PyObject *destroy(const Function &function, PyObject *argument) {
    return with_arguments<METH_O | kNeedsNoMemory, Given<Object *>>(
        function, argument, [](Argument<Given<Object *>> &object) {
            delete object.get();
            Py_RETURN_NONE;
        });
}

/// A public data member. Numbers are stored and returned as numbers; an embedded object is copied
/// in and returned as a borrowed pointer to the member itself; a typed pointer is taken over.
template <class Object, class Field>
struct Member {
    static constexpr bool is_object = std::is_class_v<Field>;
    static constexpr bool is_typed_pointer =
        std::is_pointer_v<Field> && !std::is_void_v<std::remove_pointer_t<Field>>;
    using Value = std::conditional_t<is_object, Embedded<Field>,
                                     std::conditional_t<is_typed_pointer, Given<Field>, Field>>;
    using Result = std::conditional_t<is_object, Field &, Field>;
    using SetParameters = Pack<Object *, Value>;

    [[gnu::noinline]] static PyObject *set(const Function &function, PyObject *arguments,
                                           Field Object::*field) {
        return with_arguments<METH_VARARGS | (is_object ? 0 : kNeedsNoMemory), Object *, Value>(
            function, arguments, [=](Argument<Object *> &self, Argument<Value> &value) {
                if (self.get())
                    self.get()->*field = value.get();
                Py_RETURN_NONE;
            });
    }
    [[gnu::noinline]] static PyObject *get(const Function &function, PyObject *argument,
                                           Field Object::*field) {
        return with_arguments<METH_O | kNeedsNoMemory, Object *>(
            function, argument, [=](Argument<Object *> &self) {
                return result_of<Result>([&]() -> Result { return self.get()->*field; });
            });
    }
};

/// The description of the row in front of overloads.
template <size_t count>
consteval Function describe_dispatcher(const char *text, PyCFunction native,
                                       const Function *const (&overloads)[count]) {
    Function function = *overloads[0];
    function.text = text;
    function.native = native;
    function.overloads = overloads;
    function.overload_count = count;
    function.flags = METH_VARARGS;
    return function;
}

/// The description of a function of the proxy protocol.
consteval Function describe_proxy_row(Kind kind, const char *text, size_t owner_size,
                                      PyCFunction native) {
    Function function = describe(Pack<>(), kind, text, owner_size, native);
    function.flags = METH_VARARGS;
    return function;
}
