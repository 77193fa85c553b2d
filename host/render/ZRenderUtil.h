// SPDX-License-Identifier: MIT
#pragma once

// Static helpers for software renderers: rays into the scene, shading samples, file names of
// textures, light queries, the state of the current render, and noise.
//
// Rays see the visible meshes of the current render layer. The `const void *` arguments are opaque
// render data; they are accepted for the sake of the interface and never read.

#include "host/base/HostApi.h"

class ZCommonRenderSettingsData;
class ZDagPath;
class ZDoubleArray;
class ZFloatArray;
class ZFloatMatrix;
class ZFloatPointArray;
class ZFloatVector;
class ZFloatVectorArray;
class ZIntArray;
class ZObject;
class ZSelectionList;
class ZStatus;
class ZString;
class ZVectorArray;

/// Static helpers for software renderers: rays into the scene, shading samples, file names of
/// textures, light queries, the state of the current render, and noise.
class OPENQUIL_API ZRenderUtil {
  public:
    /// What kind of render is going on.
    enum QuilRenderState {
        kNotRendering = 0,
        kBatchRender = 1,
        kInteractiveRender = 2,
        kIprRender = 3,
        kHardwareRender = 4
    };
    /// Which part of the light a render shows.
    enum RenderPass {
        kAll = 0,
        kColorOnly = 1,
        kShadowOnly = 2,
        kAmbientOnly = 3,
        kDiffuseOnly = 4,
        kSpecularOnly = 5
    };

    /// Makes an object without state; every operation of the class is static.
    ZRenderUtil();

    /// What kind of render is going on. In the development host that is kBatchRender while quilhost
    /// renders a frame (also in the script's render(frame) and in callbacks) or the script has a
    /// picture open in the render view; kHardwareRender while a frame is drawn with the procedures
    /// of the hardware renderer; kInteractiveRender while a viewport is drawn, or a picture is open
    /// outside of quilhost; kNotRendering otherwise. kIprRender never occurs there.
    static QuilRenderState quilRenderState();

    /// Shoots one ray from `rayOrigin` along `rayDirection` (any length but zero) and shades what
    /// it hits with the scene's materials and lights, following up to `maxRayDepth` reflections or
    /// see-through surfaces in a row (never more than 16). `resultPoint` gets the world-space hit
    /// point and `resultColor` the light that comes from there, as a render has it in its pixels:
    /// linear, with the exposure, and multiplied by the opacity. Both are zero when the ray hits
    /// nothing. `castShadows` tells whether lights are blocked by meshes; the default lights shine
    /// only if the common render settings enable them. Fails with kInvalidParameter for a direction
    /// of length zero, a coordinate that is not finite or a negative depth.
    static ZStatus raytrace(const ZFloatVector &rayOrigin, const ZFloatVector &rayDirection,
                            const void *objectId, const void *raySampler, const short maxRayDepth,
                            ZFloatVector &resultPoint, ZFloatVector &resultColor,
                            const bool castShadows = true);
    /// Shoots many rays, one for each origin and the direction at the same index, on all the
    /// threads of the render. The result arrays are made as long as the rays. Fails with
    /// kInvalidParameter, changing nothing, when the arrays differ in length or a ray is invalid.
    static ZStatus raytrace(const ZFloatVectorArray &rayOrigins,
                            const ZFloatVectorArray &rayDirections, const void *objectId,
                            const void *raySampler, const short maxRayDepth,
                            ZFloatVectorArray &resultPoints, ZFloatVectorArray &resultColors,
                            const bool castShadows = true);

    /// The first hit of each ray. `points` gets the world-space hit points, `indices` the number of
    /// the ray that each belongs to; rays that hit nothing have no entry. Fails as raytrace does.
    static ZStatus raytraceFirstGeometryIntersections(const ZFloatVectorArray &rayOrigins,
                                                      const ZFloatVectorArray &rayDirections,
                                                      const void *objectId, const void *raySampler,
                                                      ZFloatVectorArray &points,
                                                      ZIntArray &indices);

    /// Evaluates a material (by node name), a texture node, or the procedures "checker" and
    /// "noise", at `numSamples` samples. Textures and "checker" need `uCoords` and `vCoords`,
    /// "noise" needs `refPoints` or `points` and takes them as they are; a material is lit when
    /// `points` and `normals` are given, in the space of `cameraMatrix` (camera to world), and
    /// gives its plain diffuse colour otherwise. Colours are linear, as raytrace gives them; those
    /// of textures are decoded from sRGB. `useShadowMaps` tells whether lights are blocked
    /// by meshes. The other arrays may be null; they and `reuseMaps` change nothing. Fails with
    /// kInvalidParameter for an unknown name, a negative count, or a needed array that is null or
    /// shorter than `numSamples`; where a texture node is named, with kNotFound when its file does
    /// not exist and with kFailure when that cannot be read.
    static ZStatus sampleShadingNetwork(ZString shadingNodeName, int numSamples, bool useShadowMaps,
                                        bool reuseMaps, ZFloatMatrix &cameraMatrix,
                                        ZFloatPointArray *points, ZFloatArray *uCoords,
                                        ZFloatArray *vCoords, ZFloatVectorArray *normals,
                                        ZFloatPointArray *refPoints, ZFloatVectorArray *tangentUs,
                                        ZFloatVectorArray *tangentVs, ZFloatArray *filterSizes,
                                        ZFloatVectorArray &resultColors,
                                        ZFloatVectorArray &resultTransparencies);

    /// True while a render writes an interactive-render file.
    static bool generatingIprFile();

    /// The file name relative to the folder of the scene's file (of the working folder when the
    /// scene has none); a name that does not lie below that folder is given back unchanged.
    static ZString relativeFileName(const ZString &absFileName, ZStatus *ReturnStatus = nullptr);

    /// The absolute name of the file that a texture node reads. Fails with kInvalidParameter when
    /// the node is no texture, with kNotFound when the file does not exist.
    static ZString exactFileTextureName(const ZObject &fileNode, ZStatus *ReturnStatus = nullptr);
    /// The absolute name of the file `baseName`, looked up in the scene's folder and the working
    /// folder. With `useFrameExt`, the last run of digits or "#" in the name is replaced by
    /// `currentFrame`. Fails with kNotFound when there is no such file.
    static ZString exactFileTextureName(const ZString &baseName, bool useFrameExt,
                                        const ZString &currentFrame,
                                        ZStatus *ReturnStatus = nullptr);
    /// As above, after every "<UDIM>" in the name was replaced by `tile`.
    static ZString exactFileTextureName(const ZString &baseName, bool useFrameExt,
                                        const ZString &currentFrame, const ZString &tile,
                                        ZStatus *ReturnStatus = nullptr);

    /// The absolute name of the file that a texture node reads, as a file that is no .psd: a .psd
    /// is written beside itself as .png unless that is newer already; `state` true writes it in any
    /// case. Fails as exactFileTextureName does, and with kFailure when the .psd cannot be
    /// converted.
    static ZString convertPsdFile(const ZObject &fileNode, const bool &state = false,
                                  ZStatus *ReturnStatus = nullptr);

    /// The absolute name of the background image ("imageName") of a camera. Fails with
    /// kInvalidParameter when the node is no camera, with kNotFound when the file does not exist.
    static ZString exactImagePlaneFileName(const ZObject &imagePlaneNode,
                                           ZStatus *ReturnStatus = nullptr);

    /// True when the node at the end of the path is in the current render layer, be it visible or
    /// not. Fails with kInvalidParameter when the path is not valid.
    static bool inCurrentRenderLayer(const ZDagPath &objectPath, ZStatus *ReturnStatus = nullptr);

    /// The pass that is being rendered; kAll outside of a render.
    static RenderPass renderPass();
    /// The text that stands for the main pass in image names; empty.
    static ZString mainBeautyPassCustomTokenString();
    /// The name of the main pass, "beauty".
    static ZString mainBeautyPassName();

    /// How strongly a surface scatters light diffusely, 0 to 1: the cosine between the light
    /// direction (towards the light) and the normal. The light that comes back is this, times what
    /// arrives (the light's colour, intensity and lightAttenuation), times the surface's diffuse
    /// colour over pi. A surface that faces away gives 0, unless
    /// `lightBackFace` is true: then its normal is turned round. Fails with kInvalidParameter for
    /// a direction or normal of length zero.
    static float diffuseReflectance(const void *lightBlindData, const ZFloatVector &lightDirection,
                                    const ZFloatVector &pointCamera, const ZFloatVector &normal,
                                    bool lightBackFace, ZStatus *ReturnStatus = nullptr);
    /// The unit normal that a surface would need to mirror the light straight back along the ray:
    /// halfway between the light direction (towards the light) and the reversed ray direction.
    /// `normal` is given back where the two cancel out. The highlight is the cosine between it and
    /// the surface's own normal, to the power of the material's shininess. Fails with
    /// kInvalidParameter for a direction or normal of length zero.
    static ZFloatVector
    maximumSpecularReflection(const void *lightBlindData, const ZFloatVector &lightDirection,
                              const ZFloatVector &pointCamera, const ZFloatVector &normal,
                              const ZFloatVector &rayDirection, ZStatus *ReturnStatus = nullptr);
    /// The share of the scene's first visible light that arrives at a world-space point, from 0 up:
    /// its decay with distance and its cone; with `castShadows`, also what meshes in between let
    /// through by their opacity. The default lights count only if the common render settings enable
    /// them. Fails with kNotFound when the scene has none, with kInvalidParameter for a normal of
    /// length zero.
    static float lightAttenuation(const void *lightBlindData, const ZFloatVector &pointWorld,
                                  const ZFloatVector &normal, bool castShadows,
                                  ZStatus *ReturnStatus = nullptr);
    /// The share, 0 to 1, of a hemisphere of light centred on the light direction (towards the
    /// light) that lies above the surface: (1 + cosine) / 2. With `lightBackFace` the normal is
    /// turned to the light first. Fails with kInvalidParameter for a direction or normal of length
    /// zero.
    static float hemisphereCoverage(const void *lightBlindData, const ZFloatVector &lightDirection,
                                    const ZFloatVector &pointCamera, const ZFloatVector &normal,
                                    bool lightBackFace, ZStatus *ReturnStatus = nullptr);

    /// Tells the user how far the render is: a text and a percentage, clamped to 0 to 100.
    static void sendRenderProgressInfo(const ZString &pixFile, int percentageDone);

    /// Fills the record with the render settings in force.
    static void getCommonRenderSettings(ZCommonRenderSettingsData &rgData);

    /// Replaces the list's contents by the visible meshes of the current render layer, which are
    /// what a render draws. Fails with kNotFound when there is none.
    static ZStatus renderObjectItem(const void *item, ZSelectionList &list);

    /// The class's name, "ZRenderUtil".
    static const char *className();

    /// The colours (as linear light, 0 to 1, decoded from sRGB) and alphas of a texture, or of a
    /// material's texture, at each u and v; the texture repeats outside 0 to 1, v runs upwards.
    /// `resultColors` and `resultAlphas` may be null. Fails with kInvalidParameter when the node
    /// has no texture or the arrays differ in length, with kNotFound when the image's file does not
    /// exist, with kFailure when it cannot be read.
    static ZStatus eval2dTexture(const ZObject &texture, ZDoubleArray &uCoords,
                                 ZDoubleArray &vCoords, ZVectorArray *resultColors,
                                 ZDoubleArray *resultAlphas);

    /// The number of values in the noise table: the cube of noiseTableCubeSide.
    static unsigned int noiseTableSize();
    /// The number of noise values along each of the three directions of the table.
    static unsigned int noiseTableCubeSide();
    /// One value of the noise table, 0 to 1, the same on every machine. Positions beyond the
    /// table's end start over.
    static float valueInNoiseTable(unsigned int index);
    /// Smooth noise, 0 to 1: noise3 with y and z zero.
    static float noise1(float x);
    /// Smooth noise, 0 to 1: noise3 with z zero.
    static float noise2(float x, float y);
    /// Smooth noise, 0 to 1. At whole coordinates it is the table's value number
    /// x + side * (y + side * z), and it repeats after `side` units in each direction. A
    /// coordinate that is not finite counts as 0.
    static float noise3(float x, float y, float z);
    /// Smooth noise, 0 to 1, that changes with time `t`: at each whole t it is noise3 read `prime`
    /// table positions further on.
    static float noise4(float x, float y, float z, float t, unsigned short prime);
};
