// SPDX-License-Identifier: MIT
#pragma once

// The host's swatch generators by name.

#include "host/base/HostApi.h"

class ZObject;
class ZStatus;
class ZString;
class ZSwatchRenderBase;

/// Begins the swatch of a node: gets the swatch node, the node to show and the resolution, and
/// returns a new object that the host deletes, or null when it cannot show the node.
using ZSwatchRenderCreatorFnPtr = ZSwatchRenderBase *(*)(ZObject, ZObject, int);

/// The host's swatch generators by name. A generator is a native function that begins a swatch; no
/// Python callable can be one.
class OPENQUIL_API ZSwatchRenderRegister {
  public:
    /// Makes a generator known under a name. The creator is a typed pointer that native code handed
    /// out; a null one keeps the name for a generator without swatches. Fails with
    /// kInvalidParameter when the name is empty or taken.
    static ZStatus registerSwatchRender(ZString name, ZSwatchRenderCreatorFnPtr creator);
    /// Takes a generator out. Fails with kNotFound when there is none of that name.
    static ZStatus unregisterSwatchRender(ZString name);
};
