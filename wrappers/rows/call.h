// SPDX-License-Identifier: MIT
#pragma once

// The work behind every wrapper, one instance per signature: receive the arguments, convert them
// from left to right, call the host once, convert the result, look at the hidden status. A wrapper
// itself is only a thin function that names its description and its target.

#include "runtime/arguments.h"
#include "wrappers/rows/argument.h"
#include "wrappers/rows/result.h"

#include <algorithm>
#include <array>
#include <new>
#include <tuple>
#include <utility>

namespace binding {

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

/// Reads one argument, or takes its default where it is absent: false with an exception set. Every
/// wrapper with a parameter of the type shares this.
template <class T>
bool read_or_default(Argument<T> &argument, const Function &function, PyObject *object, int index) {
    if (!object) {
        argument.use_default(function.default_of(index));
        return true;
    }
    const ReadResult result = argument.read(object, index + 1);
    return !result.failed() || raise_argument(function, index + 1, result);
}

template <class T>
inline constexpr bool has_fast_path = requires(Argument<T> argument, PyObject *object) {
    argument.read_fast(object);
};

/// Most parameters of a wrapper that reads the usual objects itself. Longer ones are rarer, and
/// spend their time in the host.
inline constexpr int kMaxFastParameters = 6;

/// True for wrappers with a way of their own for the usual objects.
template <class... A>
inline constexpr bool all_have_fast_paths = parameter_count<A...> <= kMaxFastParameters &&
                                            (... && (is_hidden_status<A> || has_fast_path<A>));

/// True when the object is of the kind that the argument usually gets, and was read.
template <class T>
[[gnu::always_inline]] inline bool read_fast(Argument<T> &argument, PyObject *arguments,
                                             int index) {
    if constexpr (is_hidden_status<T>)
        return true;
    else
        return argument.read_fast(PyTuple_GET_ITEM(arguments, index));
}

/// The same with the argument's place among those given.
template <class T>
[[gnu::always_inline]] inline bool read_slowly(Argument<T> &argument, const Function &function,
                                               PyObject *const *objects, int index) {
    if constexpr (is_hidden_status<T>)
        return true;
    else
        return read_or_default(argument, function, objects[index], index);
}

/// The arguments of one call: locals of the worker, so that nothing is allocated.
template <class... A>
using Arguments = std::tuple<Argument<A>...>;

/// Reads all arguments: false with an exception set. On the fast path, where each is of the kind
/// that it usually is, the worker reads them on the spot; anything else starts anew and goes
/// through the shared functions, one argument after the other.
template <int flags, class... A, int... i>
[[gnu::always_inline]] inline bool read_all(const Function &function, PyObject *arguments,
                                            Arguments<A...> &values,
                                            std::integer_sequence<int, i...>) {
    if constexpr (flags == METH_NOARGS) {
        return !arguments || SWIG_Python_UnpackTuple(arguments, function.name, 0, 0, nullptr);
    } else if constexpr (flags == METH_O) {
        if (!arguments)
            return false;
        if constexpr (all_have_fast_paths<A...>)
            if (std::get<0>(values).read_fast(arguments)) [[likely]]
                return true;
        return read_or_default(std::get<0>(values), function, arguments, 0);
    } else {
        constexpr int count = parameter_count<A...>;
        if constexpr (all_have_fast_paths<A...>)
            if (arguments && PyTuple_Check(arguments) && PyTuple_GET_SIZE(arguments) == count &&
                (read_fast<A>(std::get<i>(values), arguments, i) && ...)) [[likely]]
                return true;
        PyObject *objects[count];
        return SWIG_Python_UnpackTuple(arguments, function.name, function.min, count, objects) &&
               (read_slowly<A>(std::get<i>(values), function, objects, i) && ...);
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

/// Converts the arguments to A... and hands them to `invoke`, which makes the result object. Where
/// the first is any object, `type` is its type.
template <int flags, class... A, class Invoke>
[[gnu::always_inline]] inline PyObject *with_arguments(const Function &function,
                                                       PyObject *arguments, Invoke invoke,
                                                       swig_type_info *type = nullptr) {
    return [&]<int... i>(std::integer_sequence<int, i...> indices)->PyObject * {
        Arguments<A...> values;
        if constexpr ((std::is_same_v<A, AnyObject> || ...))
            std::get<0>(values).type = type;
        if (!read_all<flags, A...>(function, arguments, values, indices))
            return nullptr;
        PyObject *result = invoke(std::get<i>(values)...);
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

/// The defaults of a row's last parameters.
consteval auto defaults_of(auto... values) {
    return std::array<signed char, sizeof...(values)>{static_cast<signed char>(values)...};
}

/// What describes a row in text: the name, a zero and the declaration.
struct Texts {
    const char *name;
    size_t owner_size;
};

/// A description. The parameters are those that Python sees, the object first, and the hidden
/// status; a case of an overloaded function has probes.
template <class... A, class Probed = std::nullptr_t, size_t default_count = 0>
consteval Description describe(Kind kind, Texts texts, PyCFunction native, Pack<A...>,
                               Probed probes = nullptr,
                               std::array<signed char, default_count> defaults = {}) {
    constexpr int count = parameter_count<A...>;
    static_assert(default_count <= kMaxDefaults);
    Function function{};
    function.name = texts.name;
    function.native = native;
    function.is_case = !std::is_null_pointer_v<Probed>;
    function.kind = kind;
    function.owner_size = static_cast<unsigned char>(texts.owner_size);
    function.max = count;
    function.min = count - default_count;
    function.flags = count == 0                         ? METH_NOARGS
                     : count == 1 && default_count == 0 ? METH_O
                                                        : METH_VARARGS;
    std::ranges::copy(defaults, function.defaults);
    return {function, probes};
}

/// A description of the function in front of so many cases, or of one of the proxy protocol.
consteval Description describe(Kind kind, Texts texts, PyCFunction native, int case_count = 0) {
    Description description = describe(kind, texts, native, Pack<>());
    description.function.flags = METH_VARARGS;
    description.function.case_count = static_cast<unsigned char>(case_count);
    return description;
}

template <class Signature>
struct Static;

/// A static host operation.
template <class R, class... A>
struct Static<R(A...)> {
    using Parameters = Pack<A...>;
    template <int flags>
    [[gnu::noinline]] static PyObject *call(const Function &function, PyObject *arguments,
                                            R (*target)(A...)) {
        return with_arguments<flags, A...>(function, arguments, [=](Argument<A> &...values) {
            return result_of<R>([&]() -> R { return target(values.get()...); });
        });
    }
};

/// An operation on an object.
template <class Object, class Target, class R, class... A>
struct MethodCall {
    using Parameters = Pack<Object *, A...>;
    template <int flags>
    [[gnu::noinline]] static PyObject *call(const Function &function, PyObject *arguments,
                                            Target target) {
        return with_arguments<flags, Object *, A...>(
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

/// Calls code of the binding's own, which raises MemoryError where it finds no memory. What the
/// host throws is the host's affair and passes.
template <class Call>
PyObject *call_extension(Call call) {
    try {
        return call();
    } catch (const std::bad_alloc &) {
        return PyErr_NoMemory();
    }
}

/// The worker of extensions, which classes share: they are many, and have many rows alike.
template <class... A>
struct ExtensionCall {
    using Target = void (*)();
    /// Calls the target as the function that it is, and makes the result object.
    using Invoke = PyObject *(*)(Target target, void *object, A... values);

    template <int flags>
    [[gnu::noinline]] static PyObject *call(const Function &function, PyObject *arguments,
                                            swig_type_info *type, Target target, Invoke invoke) {
        return with_arguments<flags, AnyObject, A...>(
            function, arguments,
            [=](Argument<AnyObject> &self, Argument<A> &...values) {
                return lacks_text<A...>() ? nullptr : call_extension([&] {
                    return invoke(target, self.pointer, values.get()...);
                });
            },
            type);
    }
};

/// A free function that acts on an object. Its result is the declared one, or a finished Python
/// object.
template <class Object, class Signature>
struct Extension;
template <class Object, class R, class... A>
struct Extension<Object, R(A...)> {
    using Parameters = Pack<Embedded<Object>, A...>;
    using Call = ExtensionCall<A...>;

    template <class Result>
    static PyObject *invoke(typename Call::Target target, void *object, A... values) {
        return result_of<Result>([&]() -> Result {
            return reinterpret_cast<Result (*)(Object &, A...)>(target)(
                *static_cast<Object *>(object), values...);
        });
    }
    template <int flags, class Result = R>
    [[gnu::always_inline]] static PyObject *call(const Function &function, PyObject *arguments,
                                                 Result (*target)(Object &, A...)) {
        static_assert(std::is_same_v<Result, R> || std::is_same_v<Result, PyObject *>);
        return Call::template call<flags>(function, arguments, type_of<Object>(),
                                          reinterpret_cast<typename Call::Target>(target),
                                          &invoke<Result>);
    }
};
template <class Object, class R, class... A>
struct Extension<Object, R(A...) const> : Extension<Object, R(A...)> {};

/// The worker of constructors that are functions, which classes share too.
template <class... A>
struct MakerCall {
    template <int flags>
    [[gnu::noinline]] static PyObject *call(const Function &function, PyObject *arguments,
                                            PyObject *(*maker)(A...)) {
        return with_arguments<flags, A...>(function, arguments, [=](Argument<A> &...values) {
            return lacks_text<A...>() ? nullptr
                                      : call_extension([&] { return maker(values.get()...); });
        });
    }
};

template <class Signature>
struct Constructor;

/// A host constructor. The result is bare: the proxy's initialiser attaches it to the instance.
template <class Object, class... A>
struct Constructor<Object(A...)> {
    using Parameters = Pack<A...>;
    template <int flags>
    [[gnu::noinline]] static PyObject *call(const Function &function, PyObject *arguments) {
        return with_arguments<flags, A...>(function, arguments, [](Argument<A> &...values) {
            return owned(new (std::nothrow) Object(values.get()...), kConstructed);
        });
    }
    /// With a function that makes the pointer object.
    template <int flags>
    [[gnu::always_inline]] static PyObject *make(const Function &function, PyObject *arguments,
                                                 PyObject *(*maker)(A...)) {
        return MakerCall<A...>::template call<flags>(function, arguments, maker);
    }
};

/// Deletes a native object whose pointer object gives up its ownership; None deletes nothing.
template <class Object>
PyObject *destroy(const Function &function, PyObject *argument) {
    return with_arguments<METH_O, Released<Object *>>(function, argument,
                                                      [](Argument<Released<Object *>> &object) {
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
                                     std::conditional_t<is_typed_pointer, Released<Field>, Field>>;
    using Result = std::conditional_t<is_object, Field &, Field>;
    using SetParameters = Pack<Object *, Value>;

    [[gnu::noinline]] static PyObject *set(const Function &function, PyObject *arguments,
                                           Field Object::*field) {
        return with_arguments<METH_VARARGS, Object *, Value>(
            function, arguments, [=](Argument<Object *> &self, Argument<Value> &value) {
                if (self.get())
                    self.get()->*field = value.get();
                Py_RETURN_NONE;
            });
    }
    [[gnu::noinline]] static PyObject *get(const Function &function, PyObject *argument,
                                           Field Object::*field) {
        return with_arguments<METH_O, Object *>(function, argument, [=](Argument<Object *> &self) {
            return result_of<Result>([&]() -> Result { return self.get()->*field; });
        });
    }
};

} // namespace binding
