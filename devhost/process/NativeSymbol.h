// SPDX-License-Identifier: MIT
#pragma once

// The names of native functions on the stack, as a signal handler may ask for them. No list of
// symbols is kept: the one that is wanted is read out of the library's file, with open, lseek and
// read, and the loader is asked by the one function of its that takes no lock.

#include "devhost/util/SafeText.h"

namespace devhost {

/// Has the unwinder make ready what it makes ready once. Called outside of a signal handler.
void prepareNativeSymbols();

/// Adds "FUNCTION in LIBRARY" for the innermost function on this thread's stack that is the
/// development host's or the binding's; false where there is none.
bool addRunningFunction(SafeText &text);

} // namespace devhost
