// SPDX-License-Identifier: MIT
// The links between lights and objects.

#include "host/render/ZLightLinks.h"
#include "wrappers/rows/call.h"

namespace {

/// An object that may be left out, which stands for the null object.
struct ObjectOrNone;

} // namespace

namespace binding {

template <>
struct Argument<ObjectOrNone> : Argument<ZObject const &> {
    void use_default(double) { pointer = const_cast<ZObject *>(&ZObject::kNullObj); }
};

} // namespace binding

#define ROW_LIST "wrappers/render/light_links.def"
#define ROW_TABLE light_links_rows
#include "wrappers/rows/make_rows.h"

namespace {

PyObject *_wrap_ZLightLinks_parseLinks(PyObject *, PyObject *arguments) {
    return with_arguments<METH_VARARGS, ZLightLinks *, ObjectOrNone, bool, std::ostream *, bool,
                          bool>(row_table[at_ZLightLinks_parseLinks], arguments,
                                [](Argument<ZLightLinks *> &self, auto &...values) {
                                    return result_of<ZStatus>(
                                        [&] { return self.get()->parseLinks(values.get()...); });
                                });
}

} // namespace
