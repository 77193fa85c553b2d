// SPDX-License-Identifier: MIT
#pragma once

// The function set of render passes: pictures of a layer that show one thing each.

#include "host/core/ZFnDependencyNode.h"
#include "host/render/ZPxRenderPassImpl.h"

/// The function set of render passes. A pass is a picture that shows one thing about a layer, such
/// as its colours or depths. All operations fail with kFailure when the function set is attached to
/// nothing.
class OPENQUIL_API ZFnRenderPass : public ZFnDependencyNode {
  public:
    /// Makes a function set that is attached to nothing.
    ZFnRenderPass();
    /// Makes a function set for a pass. Fails with kInvalidParameter when the node is null or no
    /// render pass.
    explicit ZFnRenderPass(ZObject &object, ZStatus *ReturnStatus = nullptr);
    /// Detaches from the pass, which stays as it is.
    ~ZFnRenderPass() override;
    bool hasObj(const ZObject &object) const override;
    /// Returns "ZFnRenderPass".
    static const char *className();

    /// Chooses what the pass computes: "beauty", "diffuse", "specular", "shadow", "normal" or
    /// "depth". Fails with kNotFound, and changes nothing, for any other name.
    ZPxRenderPassImpl *setImplementation(ZString const &implementation,
                                         ZStatus *ReturnStatus = nullptr);
    /// What the pass computes; the host owns it.
    ZPxRenderPassImpl *getImplementation(ZStatus *ReturnStatus = nullptr) const;
    /// The number format of the pass's frame buffer.
    ZPxRenderPassImpl::PassTypeBit frameBufferType(ZStatus *ReturnStatus = nullptr) const;
    /// The number of values for each pixel: 4 for colours with opacity, 3 for colours and vectors,
    /// 1 for depths.
    unsigned int frameBufferChannels(ZStatus *ReturnStatus = nullptr) const;
    /// True when samples are mixed to pixels; depths and normals are not.
    bool usesFiltering(ZStatus *ReturnStatus = nullptr) const;
    /// The text that names the pass in files with many layers, such as "DEPTH".
    ZString passID(ZStatus *ReturnStatus = nullptr) const;
    /// Tokens for image names that are rendered for this pass, as getImageName of the common render
    /// settings reads them: "Version=v2;Show=demo". Empty when there are none.
    ZString customTokenString(ZStatus *ReturnStatus = nullptr) const;
};
