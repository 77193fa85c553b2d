// The links between lights and objects.

#include "host/render/ZLightLinks.h"
#include "wrappers/rows/wrapper_table.h"

namespace {

/// An object that may be left out, which stands for the null object.
struct ObjectOrNone;

} // namespace

template <>
struct Argument<ObjectOrNone> : Argument<ZObject const &> {
    void use_default(double) { pointer = const_cast<ZObject *>(&ZObject::kNullObj); }
};

ROWS_BEGIN

CONSTRUCTOR(ZLightLinks, ZLightLinks())
DESTRUCTOR(ZLightLinks)

DESCRIBE(ZLightLinks_parseLinks, Method,
         (Pack<ZLightLinks *, ObjectOrNone, bool, std::ostream *, bool, bool>()), ZLightLinks,
         "ZLightLinks_parseLinks", "ZStatus(ZObject const &, bool, std::ostream *, bool, bool)",
         nullptr, defaults_of(0, false, 0, false, true))
PyObject *_wrap_ZLightLinks_parseLinks(PyObject *, PyObject *arguments) {
    return with_arguments<METH_VARARGS, ZLightLinks *, ObjectOrNone, bool, std::ostream *, bool,
                          bool>(
        ZLightLinks_parseLinks, arguments, [](Argument<ZLightLinks *> &self, auto &...values) {
            return result_of<ZStatus>([&] { return self.get()->parseLinks(values.get()...); });
        });
}
ROW(ZLightLinks_parseLinks)

#define LIGHTS_OF_OBJECT(member) \
    METHOD(ZLightLinks, member, ZStatus(ZDagPath const &, ZObject const &, ZDagPathArray &))
#define OBJECTS_OF_LIGHT(member) \
    METHOD(ZLightLinks, member, ZStatus(ZDagPath const &, ZSelectionList &))

LIGHTS_OF_OBJECT(getLinkedLights)
LIGHTS_OF_OBJECT(getIgnoredLights)
OBJECTS_OF_LIGHT(getLinkedObjects)
OBJECTS_OF_LIGHT(getIgnoredObjects)
LIGHTS_OF_OBJECT(getShadowLinkedLights)
LIGHTS_OF_OBJECT(getShadowIgnoredLights)
OBJECTS_OF_LIGHT(getShadowLinkedObjects)
OBJECTS_OF_LIGHT(getShadowIgnoredObjects)
PROXY(ZLightLinks)

ROWS_END(light_links_rows)
