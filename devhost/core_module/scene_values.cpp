// SPDX-License-Identifier: MIT
#include "devhost/core_module/scene_values.h"

#include "devhost/core_module/items.h"
#include "devhost/scene/Attributes.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZImage.h"
#include "host/core/ZPlug.h"
#include "host/core/ZSelectionList.h"
#include "host/core/ZStringArray.h"

#include <string>

namespace binding {
namespace {

using Object = swig::SwigPtr_PyObject;

PyObject *make_value(bool value) {
    return PyBool_FromLong(value);
}
PyObject *make_value(int value) {
    return PyInt_FromLong(value);
}
PyObject *make_value(double value) {
    return PyFloat_FromDouble(value);
}
PyObject *make_value(const std::string &value) {
    return string_result(ZString(value.c_str()));
}
PyObject *make_value(const ZVector &value) {
    return to_python<ZVector>(ZVector(value));
}
PyObject *make_value(const ZMatrix &value) {
    return to_python<ZMatrix>(ZMatrix(value));
}

/// What repr() gives of an object, whose reference is taken over; "?" where that fails.
std::string shown(PyObject *object) {
    const Object held(object);
    const Object text(held ? PyObject_Repr(held.get()) : nullptr);
    PyErr_Clear();
    return text ? PyString_AS_STRING(text.get()) : "?";
}
std::string shown(const ZString &text) {
    return shown(string_result(text));
}

PyObject *between_angles(const std::string &text) {
    return PyString_FromString(("<" + text + ">").c_str());
}

} // namespace

PyObject *attribute_value(const devhost::AttributeValue &value) {
    return std::visit([](const auto &held) { return make_value(held); }, value);
}

ZStringArray attribute_names(ZObject &node) {
    ZStringArray result;
    if (const devhost::Node *found = devhost::scene().node(node))
        for (const std::string &name : devhost::attributeNames(*found))
            result.append(ZString(name.c_str()));
    return result;
}

PyObject *node_representation(ZObject &self) {
    const devhost::Node *node = devhost::scene().node(self);
    return between_angles(node ? "ZObject " + node->type + " " + shown(ZString(node->name.c_str()))
                               : "ZObject: null");
}

PyObject *path_representation(ZDagPath &self) {
    return between_angles(self.isValid() ? "ZDagPath " + shown(self.fullPathName())
                                         : "ZDagPath: no node");
}

PyObject *plug_representation(ZPlug &self) {
    const auto &scene = devhost::scene();
    const auto value = scene.attribute(scene.id(self.node()), self.partialName().asChar());
    return between_angles(value ? "ZPlug " + shown(self.name()) + ": " +
                                      shown(attribute_value(*value))
                                : "ZPlug: no attribute");
}

PyObject *selection_representation(ZSelectionList &self) {
    ZStringArray names;
    self.getSelectionStrings(names);
    std::string text;
    for (unsigned i = 0; i < names.length(); ++i)
        text += (i ? ", " : "") + shown(names[i]);
    return between_angles("ZSelectionList [" + text + "]");
}

PyObject *image_representation(ZImage &self) {
    unsigned width = 0, height = 0;
    self.getSize(width, height);
    if (self.pixelType() == ZImage::kUnknown)
        return between_angles("ZImage: no pixels");
    return between_angles("ZImage " + std::to_string(width) + " x " + std::to_string(height) +
                          " pixels, " + std::to_string(self.channels()) +
                          (self.pixelType() == ZImage::kByte ? " bytes" : " floats") + " each");
}

} // namespace binding
