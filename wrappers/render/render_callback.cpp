// SPDX-License-Identifier: MIT
// Render callbacks, which Python classes may derive from.

#include "host/render/ZRenderCallback.h"
#include "wrappers/render/render_callback_director.h"
#include "wrappers/rows/call.h"

namespace {

/// A callback together with the Python object it came from.
struct CallbackAndObject {
    ZRenderCallback *callback;
    PyObject *object;

    /// True when the object is the callback's own Python instance: then it is the instance's
    /// method that calls, and the host's implementation is meant. A virtual call would come back
    /// to the same method.
    bool is_upcall() const {
        const auto *director = dynamic_cast<const Swig::Director *>(callback);
        return director && director->swig_get_self() == object;
    }
};

/// Any object: the instance that a director is to call.
struct Instance;

} // namespace

namespace binding {

template <>
struct Argument<CallbackAndObject> : Argument<ZRenderCallback *> {
    PyObject *object = nullptr;
    bool read_fast(PyObject *) = delete;
    int read(PyObject *given, int position) {
        object = given;
        return Argument<ZRenderCallback *>::read(given, position);
    }
    CallbackAndObject get() const { return {Argument<ZRenderCallback *>::get(), object}; }
};

template <>
struct Argument<Instance> : Argument<void *> {
    PyObject *get() const { return object; }
};

} // namespace binding

#define ROW_LIST "wrappers/render/render_callback.def"
#define ROW_TABLE render_callback_rows
#include "wrappers/rows/make_rows.h"

namespace {

/// Calls the host's own implementation on an upcall, else the virtual function; an exception that
/// a director throws has its Python side set already.
template <class Data>
PyObject *call_callback(const Function &function, PyObject *arguments,
                        bool (ZRenderCallback::*virtual_function)(Data const &),
                        bool (*own)(ZRenderCallback *, Data const &)) {
    return with_arguments<METH_VARARGS, CallbackAndObject, Data const &>(
        function, arguments,
        [=](Argument<CallbackAndObject> &self, Argument<Data const &> &data) -> PyObject * {
            const CallbackAndObject target = self.get();
            try {
                return PyBool_FromLong(target.is_upcall()
                                           ? own(target.callback, data.get())
                                           : (target.callback->*virtual_function)(data.get()));
            } catch (const Swig::DirectorException &) {
                return nullptr;
            }
        });
}

PyObject *_wrap_new_ZRenderCallback(PyObject *, PyObject *argument) {
    return with_arguments<METH_O, Instance>(
        row_table[at_new_ZRenderCallback], argument, [](Argument<Instance> &self) {
            return call_extension([&] {
                return owned<ZRenderCallback>(
                    self.get() ? new SwigDirector_ZRenderCallback(self.get()) : new ZRenderCallback,
                    kConstructed);
            });
        });
}

PyObject *_wrap_disown_ZRenderCallback(PyObject *, PyObject *argument) {
    return with_arguments<METH_O, ZRenderCallback *>(
        row_table[at_disown_ZRenderCallback], argument, [](Argument<ZRenderCallback *> &callback) {
            if (const auto *director = dynamic_cast<const Swig::Director *>(callback.get()))
                director->swig_disown();
            Py_RETURN_NONE;
        });
}

#define CALLBACK(member, Data)                                                         \
    PyObject *_wrap_ZRenderCallback_##member(PyObject *, PyObject *arguments) {        \
        return call_callback<Data>(row_table[at_ZRenderCallback_##member], arguments,  \
                                   &ZRenderCallback::member,                           \
                                   [](ZRenderCallback *callback, Data const &data) {   \
                                       return callback->ZRenderCallback::member(data); \
                                   });                                                 \
    }
CALLBACK(shadowCastCallback, ZRenderShadowData)
CALLBACK(renderCallback, ZRenderData)
CALLBACK(postProcessCallback, ZRenderData)
#undef CALLBACK

} // namespace
