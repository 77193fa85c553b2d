// SPDX-License-Identifier: MIT
#include "wrappers/render/render_callback_director.h"

#include "runtime/convert.h"
#include "runtime/interpreter_lock.h"
#include "runtime/module_types.h"
#include "runtime/object_holder.h"

using namespace binding;

SwigDirector_ZRenderCallback::SwigDirector_ZRenderCallback(PyObject *self) : Swig::Director(self) {}

SwigDirector_ZRenderCallback::~SwigDirector_ZRenderCallback() {
    TpythonLock lock(kPythonLock);
    swig_inner.clear();
}

bool SwigDirector_ZRenderCallback::swig_get_inner(const char *name) const {
    const auto found = swig_inner.find(name);
    return found != swig_inner.end() && found->second;
}

void SwigDirector_ZRenderCallback::swig_set_inner(const char *name, bool value) const {
    swig_inner[name] = value;
}

// The method sees the host's own data, which it must not keep beyond the call.
template <class Data>
bool SwigDirector_ZRenderCallback::forward(const char *name, PyObject *&method,
                                           Data const &data) const {
    TpythonLock lock(kPythonLock);
    if (!has_interpreter_lock())
        return false; // the interpreter ended before
    if (!method)
        method = PyString_InternFromString(name);
    const swig::SwigPtr_PyObject argument(
        SWIG_Python_NewPointerObj(const_cast<Data *>(&data), type_of<Data>(), kBorrowed));
    return swig_call_predicate("ZRenderCallback", method, argument.get());
}

bool SwigDirector_ZRenderCallback::shadowCastCallback(ZRenderShadowData const &data) {
    static PyObject *method;
    return forward("shadowCastCallback", method, data);
}

bool SwigDirector_ZRenderCallback::renderCallback(ZRenderData const &data) {
    static PyObject *method;
    return forward("renderCallback", method, data);
}

bool SwigDirector_ZRenderCallback::postProcessCallback(ZRenderData const &data) {
    static PyObject *method;
    return forward("postProcessCallback", method, data);
}
