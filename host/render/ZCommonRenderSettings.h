// SPDX-License-Identifier: MIT
#pragma once

// The render settings that every renderer shares, as one plain record.

#include "host/base/HostApi.h"
#include "host/core/ZString.h"
#include "host/core/ZTime.h"

class ZObject;
class ZStatus;

/// The settings that all renderers share: image name and format, frame range, resolution and
/// pre- and post-render commands. A new record holds the defaults of a still 640 x 480 PNG image;
/// ZRenderUtil.getCommonRenderSettings fills one with the settings of the current render. The
/// development host runs no commands, renders all objects and writes no resolution into pictures;
/// settings that ask for it are told as notices.
class OPENQUIL_API ZCommonRenderSettingsData {
  public:
    /// How much of the path getImageName returns.
    enum ZpathType : int {
        /// The file name and its sub-folders below the images folder.
        kRelativePath = 0,
        /// The full path of the finished image.
        kFullPathImage = 1,
        /// The full path of the temporary file that an image is written to before it is finished.
        kFullPathTmp = 2
    };

    /// Makes a record with the default settings.
    ZCommonRenderSettingsData();
    /// Destroys the record.
    ~ZCommonRenderSettingsData();

    /// True when image names carry a frame number (naming schemes 1 to 5) or when the image
    /// format is a movie format.
    bool isAnimated() const;
    /// True when the image format keeps all frames in one file (imageFormat 3).
    bool isMovieFormat() const;
    /// Sets the pass name that stands in for <RenderPass> in image names.
    void setPassName(ZString const &passName);
    /// Sets the field name ("odd", "even") that is added to the image name; empty for whole frames.
    void setFieldName(ZString const &fieldName);

    /// Returns the name of the image of a frame. `format` is the extension without its dot; when it
    /// is empty the record's image format decides. An empty scene, camera or layer stands for the
    /// current one. `createDirectory` makes the image's folder (full paths only). Fails with
    /// kFailure when that folder cannot be made and with kInvalidParameter for an unknown path
    /// type or a name that leads out of the images folder, and then returns an empty string.
    ZString getImageName(ZpathType pathType, double frameNumber, ZString const &sceneName,
                         ZString const &cameraName, ZString const &format, ZObject const layer,
                         bool const createDirectory = true, ZStatus *ReturnStatus = nullptr) const;
    /// As the shorter form, with values for further tokens: `customTokens` is a list such as
    /// "RenderPass=shadow;Version=v002", whose names may stand in the image name as <RenderPass>
    /// and <Version>.
    ZString getImageName(ZpathType pathType, double frameNumber, ZString const &sceneName,
                         ZString const &cameraName, ZString const &format, ZObject const layer,
                         ZString const &customTokens, bool const createDirectory = true,
                         ZStatus *ReturnStatus = nullptr) const;
    /// False only when skipExistingFrames is set and the image file of this frame is there
    /// already. The arguments are those of getImageName.
    bool shouldRenderFrameAtTime(ZpathType pathType, double frameNumber, ZString const &sceneName,
                                 ZString const &cameraName, ZString const &format,
                                 ZObject const layer, ZString const &customTokens) const;
    /// Returns the name of a buffer in an image of many layers: layer, camera and pass name joined
    /// by `separator` (empty: a point). Parts that are empty are left out. `forFileName` replaces
    /// characters that are unsafe in file names by "_". Fails with kInvalidParameter when all
    /// three parts are empty.
    ZString getBufferName(ZObject const &layer, ZObject const &camera, ZString const &passName,
                          ZString const &separator = ZString(), bool forFileName = false,
                          ZStatus *ReturnStatus = nullptr) const;
    /// Returns the command to run before every frame; empty when there is none.
    static ZString getPreRenderFrameCmd();
    /// Returns the command to run after every frame; empty when there is none.
    static ZString getPostRenderFrameCmd();
    /// Returns "ZCommonRenderSettingsData".
    static const char *className();

    /// The image name, with sub-folders and the tokens <Scene>, <Camera>, <RenderLayer>,
    /// <RenderPass>, <Extension> and <Frame>; empty stands for <Scene>.
    ZString name;
    /// The order of name, frame number and extension in a file name: 0 name.ext, 1 name.#.ext,
    /// 2 name_#.ext, 3 name#.ext, 4 name.ext.#, 5 as namePattern says. Any other value stands for
    /// 0.
    unsigned int namingScheme;
    /// The least number of digits of a frame number.
    unsigned int framePadding;
    /// The file name pattern of naming scheme 5: runs of # stand for the frame number; the tokens
    /// of `name` and <Name> may be used.
    ZString namePattern;
    /// The image format: 0 PNG, 1 OpenEXR, 2 the one with the extension customImageFormat, 3 a
    /// movie, which the development host does not write. Any other value stands for 0.
    unsigned int imageFormat;
    /// The extension of image format 2, without the dot.
    ZString customImageFormat;
    /// The first frame.
    ZTime frameStart;
    /// The last frame.
    ZTime frameEnd;
    /// The step between frames.
    float frameBy;
    /// True when frames whose image file exists are not rendered again.
    bool skipExistingFrames;
    /// True when all objects are rendered, false for the selected ones only.
    bool renderAll;
    /// True when customExt replaces the extension of the image format.
    bool useCustomExt;
    /// The extension that replaces the image format's, without the dot.
    ZString customExt;
    /// True when file names count from renumberStart by renumberBy instead of using frame numbers.
    bool renumberFrames;
    /// The number in the first frame's file name when frames are renumbered.
    float renumberStart;
    /// The step between the numbers of file names when frames are renumbered.
    float renumberBy;
    /// The image width in pixels.
    unsigned int width;
    /// The image height in pixels.
    unsigned int height;
    /// The width of the picture as shown, divided by its height.
    float deviceAspectRatio;
    /// The width of a pixel divided by its height.
    float pixelAspectRatio;
    /// The resolution in dots per inch.
    float dotPerInch;
    /// True when a scene without lights is lit by the host's own, which scenes do not list.
    bool enableDefaultLight;
    /// The command to run before all frames.
    ZString preKos;
    /// The command to run after all frames.
    ZString postKos;
    /// The command to run before a render layer.
    ZString preRenderLayerKos;
    /// The command to run after a render layer.
    ZString postRenderLayerKos;
    /// The command to run before every frame.
    ZString preRenderKos;
    /// The command to run after every frame.
    ZString postRenderKos;

  private:
    ZString passName_;
    ZString fieldName_;
};
