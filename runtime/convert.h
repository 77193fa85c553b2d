// SPDX-License-Identifier: MIT
#pragma once

// Between Python values and native pointers: who is behind a value, which pointer of a requested
// type it yields, and what value stands for a pointer. None of these raises; the caller does.

#include "runtime/pointer_object.h"

namespace binding {

/// Flags of SWIG_Python_ConvertPtrAndOwn.
enum ConvertFlags {
    kReleaseOwnership = 1,  ///< the native object passes to the host
    kImplicitConversion = 2 ///< try the requested class's constructor when nothing else fits
};

/// Flags of SWIG_Python_NewPointerObj.
enum WrapFlags {
    kBorrowed = 0,
    kOwned = 1,   ///< Python destroys the native object
    kNoProxy = 2, ///< the bare pointer object, even where a proxy class registered
    kConstructed = kOwned | kNoProxy ///< for a proxy's initialiser, which attaches it itself
};

/// Added to a result code when an implicit conversion made a native object that the caller owns.
inline constexpr int kNewObject = 512;

} // namespace binding

/// The interned name "this" (borrowed), made on first use.
PyObject *SWIG_This();

/// Forgets the interned name at teardown; the next SWIG_This makes it again.
void SWIG_ForgetThis();

namespace binding {
/// The interned name "this", or null where nothing asked for it yet.
extern PyObject *swig_this;

/// The pointer object that an instance's dictionary names "this", if it is of exactly the type: the
/// usual proxy. Null, with no exception set, for everything else, which takes the long way.
SwigPyObject *pointer_of_proxy(PyObject *instance, const swig_type_info *type);
} // namespace binding

/// The pointer object behind a value (borrowed), through proxies of any depth, or null.
SwigPyObject *SWIG_Python_GetSwigThis(PyObject *object);

/// Finds the pointer of type `type` that `object` stands for, and writes it to `pointer` if that
/// is given. None stands for the null pointer of every type; a null `type` accepts any.
/// Returns a result code; no exception is left pending.
int SWIG_Python_ConvertPtrAndOwn(PyObject *object, void **pointer, swig_type_info *type, int flags);

/// A new reference to the value that stands for `pointer`: None for null, else a proxy instance
/// where the type's class has registered, else the bare pointer object. Null when memory is short.
PyObject *SWIG_Python_NewPointerObj(void *pointer, swig_type_info *type, int flags);
