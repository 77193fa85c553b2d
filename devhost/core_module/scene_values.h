// SPDX-License-Identifier: MIT
#pragma once

// What is in the scene as Python shows it.

#include "devhost/scene/SceneGraph.h"

#include <Python.h>

class ZDagPath;
class ZImage;
class ZPlug;
class ZSelectionList;
class ZStringArray;

namespace binding {

/// The value of an attribute; null with an exception set.
PyObject *attribute_value(const devhost::AttributeValue &value);

/// The names of a node's attributes; none of a null handle.
ZStringArray attribute_names(ZObject &node);

// What repr() gives, and print shows: "<ZPlug u'light.intensity': 1.0>".

PyObject *node_representation(ZObject &self);
PyObject *path_representation(ZDagPath &self);
PyObject *plug_representation(ZPlug &self);
PyObject *selection_representation(ZSelectionList &self);
PyObject *image_representation(ZImage &self);

} // namespace binding
