// SPDX-License-Identifier: MIT
#pragma once

// A render callback whose virtual functions are Python methods, and false without an interpreter.

#include "host/render/ZRenderCallback.h"
#include "runtime/director.h"

class SwigDirector_ZRenderCallback : public ZRenderCallback, public Swig::Director {
  public:
    explicit SwigDirector_ZRenderCallback(PyObject *self);
    ~SwigDirector_ZRenderCallback() override;

    bool shadowCastCallback(ZRenderShadowData const &data) override;
    bool renderCallback(ZRenderData const &data) override;
    bool postProcessCallback(ZRenderData const &data) override;

    /// The flag stored under a name; false when there is none.
    bool swig_get_inner(const char *name) const override;
    void swig_set_inner(const char *name, bool value) const override;

  private:
    template <class Data>
    bool forward(const char *name, PyObject *&method, Data const &data) const;

    mutable std::map<std::string, bool> swig_inner;
};
