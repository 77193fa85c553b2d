// SPDX-License-Identifier: MIT
#pragma once

// Which lights light which objects.

#include "host/core/ZObject.h"

#include <iosfwd>

class ZDagPath;
class ZDagPathArray;
class ZSelectionList;
class ZStatus;

/// Which lights illuminate which objects, and which objects cast shadows in which light. parseLinks
/// takes a snapshot of the scene, the other operations answer from it and fail with kFailure before
/// it. They fail with kInvalidParameter when a path is not valid or not of the right kind. Objects
/// are meshes; asked about a group, an operation answers for the meshes below it.
class OPENQUIL_API ZLightLinks {
  public:
    /// Makes an object that knows no links yet.
    ZLightLinks();
    /// Destroys the snapshot; the scene's links stay.
    ~ZLightLinks();
    ZLightLinks(ZLightLinks const &) = delete;
    ZLightLinks &operator=(ZLightLinks const &) = delete;

    /// Reads the links of the current render layer's objects and lights. `object` restricts that to
    /// one object or light with what is below it; a render layer stands for its own objects and
    /// lights in place of the current layer's. With `verbose` the links are written to `stream`, or
    /// to the standard output when it is null. `includeHidden` reads objects and lights that are
    /// not visible too. Without `shadowLinks`, an object casts shadows in the light that
    /// illuminates it. Fails with kInvalidParameter when `object` is none of these.
    ZStatus parseLinks(ZObject const &object = ZObject::kNullObj, bool verbose = false,
                       std::ostream *stream = nullptr, bool includeHidden = false,
                       bool shadowLinks = true);

    /// Fills the array with the lights that illuminate the object. Links are those of whole objects
    /// in the development host: `component` does not matter and may be null.
    ZStatus getLinkedLights(ZDagPath const &path, ZObject const &component, ZDagPathArray &lights);
    /// Fills the array with the lights that do not illuminate the object.
    ZStatus getIgnoredLights(ZDagPath const &path, ZObject const &component, ZDagPathArray &lights);
    /// Fills the array with the lights in which the object casts shadows.
    ZStatus getShadowLinkedLights(ZDagPath const &path, ZObject const &component,
                                  ZDagPathArray &lights);
    /// Fills the array with the lights in which the object casts no shadows.
    ZStatus getShadowIgnoredLights(ZDagPath const &path, ZObject const &component,
                                   ZDagPathArray &lights);

    /// Fills the list with the objects that the light illuminates.
    ZStatus getLinkedObjects(ZDagPath const &light, ZSelectionList &objects);
    /// Fills the list with the objects that the light does not illuminate.
    ZStatus getIgnoredObjects(ZDagPath const &light, ZSelectionList &objects);
    /// Fills the list with the objects that cast shadows in the light.
    ZStatus getShadowLinkedObjects(ZDagPath const &light, ZSelectionList &objects);
    /// Fills the list with the objects that cast no shadows in the light.
    ZStatus getShadowIgnoredObjects(ZDagPath const &light, ZSelectionList &objects);

  private:
    struct Links;
    Links *links_; // null until they are read
};
