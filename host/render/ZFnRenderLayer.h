// SPDX-License-Identifier: MIT
#pragma once

// The function set of render layers: what a picture of the scene is made of.

#include "host/base/HostApi.h"
#include "host/core/ZFnDependencyNode.h"
#include "host/core/ZObjectArray.h"

class ZDagPath;
class ZPlug;

/// The function set of render layers. A layer says which nodes a picture of the scene is made of,
/// which attributes have other values in it, and which passes it is rendered in. The default layer
/// holds the whole scene. All operations but the static ones fail with kFailure when the function
/// set is attached to nothing.
class OPENQUIL_API ZFnRenderLayer : public ZFnDependencyNode {
  public:
    /// Makes a function set that is attached to nothing.
    ZFnRenderLayer();
    /// Makes a function set for a layer. Fails with kInvalidParameter when the node is null or no
    /// render layer.
    explicit ZFnRenderLayer(ZObject &object, ZStatus *ReturnStatus = nullptr);
    /// Detaches from the layer, which stays as it is.
    ~ZFnRenderLayer() override;
    bool hasObj(const ZObject &object) const override;
    /// Returns "ZFnRenderLayer".
    static const char *className();

    /// True when the node is in the layer: when it or a node above it was put into the layer or
    /// into one of the layer's children. Nodes that are no part of the hierarchy are in no layer.
    /// Fails with kInvalidParameter when the node is null.
    bool inLayer(ZObject const &transform, ZStatus *ReturnStatus = nullptr);
    /// Fills the array with the layers directly below this one, or with all layers below it when
    /// `recurse` is true.
    ZStatus layerChildren(ZObjectArray &layerObjects, bool recurse = false);
    /// The same as ZRenderUtil's: true when the node at the end of the path is in the layer that is
    /// being rendered, whichever layer the function set is attached to, even to none. Fails with
    /// kInvalidParameter when the path is not valid.
    bool inCurrentRenderLayer(ZDagPath const &objectPath, ZStatus *ReturnStatus = nullptr);
    /// Fills the array with the nodes that were put into the layer and into its children. Whatever
    /// lies below them in the hierarchy is in the layer too. For the default layer these are the
    /// nodes at the top of the hierarchy.
    ZStatus listMembers(ZObjectArray &objects) const;
    /// True when the attribute has a value of its own in this layer. Fails with kInvalidParameter
    /// when the plug is null.
    bool isPlugAdjusted(ZPlug const &scenePlug, ZStatus *ReturnStatus = nullptr) const;
    /// The plug that holds the value which the attribute has in this layer. Setting it changes the
    /// attribute wherever this layer is rendered. Fails with kInvalidParameter when the plug is
    /// null, and with kNotFound when the layer does not adjust it.
    ZPlug adjustmentPlug(ZPlug const &scenePlug, ZStatus *ReturnStatus = nullptr) const;
    /// Fills the array with the render passes that the layer is rendered in.
    ZStatus externalRenderPasses(ZObjectArray &objectArray) const;
    /// True when the pass is one of the layer's and shows the object, which has to be in the layer.
    /// Fails with kInvalidParameter when `renderPass` is no render pass or the path is not valid.
    bool passHasObject(ZObject const &renderPass, ZDagPath const &objectInstance,
                       ZStatus *ReturnStatus = nullptr) const;
    /// True when the pass is one of the layer's and lit by the light, which has to be in the layer.
    /// Fails with kInvalidParameter when `renderPass` is no render pass or `light` no light.
    bool passHasLight(ZObject const &renderPass, ZObject const &light,
                      ZStatus *ReturnStatus = nullptr) const;

    /// The layer of that name. Fails with kNotFound when there is none.
    static ZObject findLayerByName(ZString const &renderLayer, ZStatus *ReturnStatus = nullptr);
    /// The layer that holds the whole scene. Fails with kNotFound when the scene has none.
    static ZObject defaultRenderLayer(ZStatus *ReturnStatus = nullptr);
    /// Fills the array with all layers of the scene, the default layer first.
    static ZStatus listAllRenderLayers(ZObjectArray &renderLayers);
    /// The layer that is being rendered. Fails with kNotFound when the scene has no layers.
    static ZObject currentLayer(ZStatus *ReturnStatus = nullptr);
};
