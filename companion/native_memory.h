// SPDX-License-Identifier: MIT
#pragma once

// The buffer protocol, old and new, of classes with a native method memory().

#include <Python.h>

namespace companion {

/// Gives the class the protocol. A memoryview keeps the native memory, which must be the script's
/// own: what the host lends is refused with BufferError. buffer() asks for the memory at each
/// access, and so raises once the host has taken it back.
void install_memory(PyTypeObject *type);

} // namespace companion
