// SPDX-License-Identifier: MIT
#pragma once

// The function set of image sources: the files that renders write.

#include "host/core/ZFnDependencyNode.h"
#include "host/render/ZCommonRenderSettings.h"

/// The function set of image sources. An image source stands for the images of one layer seen by
/// one camera, and knows the names of their files. All operations fail with kFailure when the
/// function set is attached to nothing.
class OPENQUIL_API ZFnImageSource : public ZFnDependencyNode {
  public:
    /// Makes a function set that is attached to nothing.
    ZFnImageSource();
    /// Makes a function set for an image source. Fails with kInvalidParameter when the node is null
    /// or no image source.
    explicit ZFnImageSource(ZObject &object, ZStatus *ReturnStatus = nullptr);
    /// Detaches from the image source, which stays as it is.
    ~ZFnImageSource() override;
    bool hasObj(const ZObject &object) const override;
    /// Returns "ZFnImageSource".
    static const char *className();

    /// Returns the name of the image of a frame: the source's own image name, or else that of the
    /// common render settings, with their format, padding and folder. An empty `sceneName` stands
    /// for the current scene; `camera` and `layer` count where the source has none of its own, and
    /// null ones stand for the current ones. `imageFormat`, when given, is filled with the
    /// extension of the image's file ("png"). Fails as getImageName of the common render settings
    /// does; no folder is made.
    ZString getImageName(ZCommonRenderSettingsData::ZpathType pathType, double frame,
                         ZString const &sceneName, ZObject const camera, ZObject const layer,
                         ZString *imageFormat = nullptr, ZStatus *ReturnStatus = nullptr) const;
    /// The source's own layer; `layer` when it has none. Fails with kInvalidParameter when that is
    /// neither null nor a render layer.
    ZObject sourceLayer(ZObject const &layer, ZStatus *ReturnStatus = nullptr);
    /// The source's own camera; `camera` when it has none. Fails with kInvalidParameter when that
    /// is neither null nor a camera.
    ZObject sourceCamera(ZObject const &camera, ZStatus *ReturnStatus = nullptr);
};
