// SPDX-License-Identifier: MIT
#pragma once

// The arguments of one call.

#include <Python.h>

#include <utility>

namespace companion {

/// The tuple of a length that lies ready, or null. It holds nothing, and the garbage collector does
/// not see it.
template <Py_ssize_t length>
inline PyObject *spare_tuple = nullptr;

/// A tuple for one call: to make one and to give it back takes longer than to call most functions,
/// so that the last one of its length is used again. Needs the interpreter's lock.
template <Py_ssize_t length>
class ArgumentTuple {
  public:
    template <class... Argument>
    explicit ArgumentTuple(Argument *...arguments)
        : tuple_(std::exchange(spare_tuple<length>, nullptr)) {
        static_assert(sizeof...(Argument) == length);
        if (!tuple_) [[unlikely]] {
            tuple_ = PyTuple_New(length);
            if (!tuple_)
                return;
            PyObject_GC_UnTrack(tuple_);
        }
        Py_ssize_t i = 0;
        ((Py_INCREF(arguments), PyTuple_SET_ITEM(tuple_, i++, arguments)), ...);
    }
    ~ArgumentTuple() {
        if (!tuple_)
            return;
        const bool is_kept = tuple_->ob_refcnt > 1;
        // What dies here may call in turn: the tuple is given back last.
        for (Py_ssize_t i = 0; i < length && !is_kept; ++i) {
            PyObject *argument = PyTuple_GET_ITEM(tuple_, i);
            PyTuple_SET_ITEM(tuple_, i, nullptr);
            Py_DECREF(argument);
        }
        if (is_kept || spare_tuple<length>) [[unlikely]]
            Py_DECREF(tuple_);
        else
            spare_tuple<length> = tuple_;
    }
    ArgumentTuple(const ArgumentTuple &) = delete;
    ArgumentTuple &operator=(const ArgumentTuple &) = delete;

    /// Null, with an exception set, when memory is short.
    PyObject *get() const { return tuple_; }

  private:
    PyObject *tuple_;
};

template <class... Argument>
ArgumentTuple(Argument *...) -> ArgumentTuple<Py_ssize_t(sizeof...(Argument))>;

} // namespace companion
