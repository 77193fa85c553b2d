// SPDX-License-Identifier: MIT
#pragma once

// The varying parameters of a shader.

#include "host/base/HostApi.h"
#include "host/render/ZVaryingParameter.h"

/// The varying parameters of a shader, in order. The list holds copies: what is appended, set or
/// read is independent of it.
class OPENQUIL_API ZVaryingParameterList {
  public:
    /// Makes an empty list.
    ZVaryingParameterList();
    /// Makes a list with copies of the other's elements.
    ZVaryingParameterList(ZVaryingParameterList const &other);
    /// Destroys the list with its elements.
    ~ZVaryingParameterList();
    /// Takes copies of the other's elements in place of its own and returns itself.
    ZVaryingParameterList &operator=(ZVaryingParameterList const &other);

    /// Adds a copy of the element at the end.
    void append(ZVaryingParameter const &element);
    /// The number of elements.
    int length() const;
    /// Takes elements off the end, or adds empty ones. A length below 0 or above 65536 is left
    /// alone.
    void setLength(int length);
    /// A copy of the element at the index, counted from 0; an empty one where there is none.
    ZVaryingParameter getElement(int index) const;
    /// Puts a copy in place of the element at the index. Does nothing where there is none.
    void setElement(int index, ZVaryingParameter const &element);

  private:
    struct Elements;
    Elements *elements_;
};
