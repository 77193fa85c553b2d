// SPDX-License-Identifier: MIT
// The static helpers for renderers.
#include "host/render/ZRenderUtil.h"

#include "devhost/api/render/Picture.h"
#include "devhost/gl/HardwareFrame.h"
#include "devhost/image/TextureFiles.h"
#include "devhost/image/TextureImage.h"
#include "devhost/raytrace/NoiseTable.h"
#include "devhost/raytrace/RayTracer.h"
#include "devhost/raytrace/Shading.h"
#include "devhost/raytrace/ShadingNetwork.h"
#include "devhost/session/Parallel.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Statuses.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZDoubleArray.h"
#include "host/core/ZFloatVectorArray.h"
#include "host/core/ZIntArray.h"
#include "host/core/ZSelectionList.h"
#include "host/core/ZVectorArray.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <span>

using namespace devhost;

namespace {

constexpr size_t kRaysPerBlock = 256;

/// A file name operation: its result, empty on failure.
template <class Operation>
ZString named(ZStatus *ReturnStatus, Operation operation) {
    std::string file;
    const ZStatus status = guarded([&] { return operation(file); });
    report(ReturnStatus, status);
    return status ? ZString(file.c_str()) : ZString();
}

bool isFinite(const ZFloatVector &v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool isDirection(const ZFloatVector &v) {
    return isFinite(v) && v.length() > 0;
}

ZStatus checkRay(const ZFloatVector &origin, const ZFloatVector &direction) {
    if (!isFinite(origin) || !isDirection(direction))
        return ZStatus(ZStatus::kInvalidParameter,
                       "a ray needs a finite origin and a direction that is not zero");
    return ZStatus();
}

ZStatus checkRays(const ZFloatVectorArray &origins, const ZFloatVectorArray &directions) {
    if (origins.length() != directions.length())
        return ZStatus(ZStatus::kInvalidParameter,
                       "there must be as many ray directions as ray origins");
    for (unsigned at = 0; at < origins.length(); ++at)
        if (const ZStatus status = checkRay(origins[at], directions[at]); !status)
            return status;
    return ZStatus();
}

ZStatus checkDepth(short depth) {
    return depth < 0 ? ZStatus(ZStatus::kInvalidParameter, "the ray depth must not be negative")
                     : ZStatus();
}

ZStatus checkDirections(const ZFloatVector &direction, const ZFloatVector &normal) {
    if (!isDirection(direction) || !isDirection(normal))
        return ZStatus(ZStatus::kInvalidParameter,
                       "the light direction and the normal must not be zero");
    return ZStatus();
}

/// The shader of the scene as it is now. Kept from call to call, as scripts trace ray by ray.
const Shader &sceneShader(bool castShadows) {
    struct Kept {
        std::unique_ptr<const Shader> shader;
        unsigned long revision = 0;
        ShadingOptions options;
    };
    static Kept kept[2];
    Kept &entry = kept[castShadows];
    const ShadingOptions options = sessionShading(castShadows);
    const RayTracer &tracer = rayTracer();
    if (!entry.shader || entry.revision != scene().revision() || entry.options != options) {
        entry.shader = std::make_unique<Shader>(scene(), tracer, options);
        entry.revision = scene().revision();
        entry.options = options;
    }
    return *entry.shader;
}

/// The cosine between light direction and normal; none, with a status that says why, where one of
/// them is no direction. A light that also lights back faces never faces away.
std::optional<float> facing(const ZFloatVector &lightDirection, const ZFloatVector &normal,
                            bool lightBackFace, ZStatus *ReturnStatus) {
    const ZStatus status = checkDirections(lightDirection, normal);
    report(ReturnStatus, status);
    if (!status)
        return {};
    const float cosine = std::clamp(lightDirection.normal() * normal.normal(), -1.0f, 1.0f);
    return lightBackFace ? std::abs(cosine) : cosine;
}

} // namespace

ZRenderUtil::ZRenderUtil() = default;

ZRenderUtil::QuilRenderState ZRenderUtil::quilRenderState() {
    const RenderSession &session = renderSession();
    if (hardwareFrame().isDrawing)
        return kHardwareRender;
    if (session.state != kNotRendering || !viewIsOpen())
        return session.state;
    return session.isBatch ? kBatchRender : kInteractiveRender;
}

ZStatus ZRenderUtil::raytrace(const ZFloatVector &rayOrigin, const ZFloatVector &rayDirection,
                              const void *, const void *, const short maxRayDepth,
                              ZFloatVector &resultPoint, ZFloatVector &resultColor,
                              const bool castShadows) {
    return guarded([&] {
        if (const ZStatus status = checkRay(rayOrigin, rayDirection); !status)
            return status;
        if (const ZStatus status = checkDepth(maxRayDepth); !status)
            return status;
        Hit hit;
        resultColor =
            sceneShader(castShadows).trace(rayOrigin, rayDirection, maxRayDepth, &hit).color;
        resultPoint = hit.point;
        return ZStatus();
    });
}

ZStatus ZRenderUtil::raytrace(const ZFloatVectorArray &rayOrigins,
                              const ZFloatVectorArray &rayDirections, const void *, const void *,
                              const short maxRayDepth, ZFloatVectorArray &resultPoints,
                              ZFloatVectorArray &resultColors, const bool castShadows) {
    return guarded([&] {
        if (const ZStatus status = checkRays(rayOrigins, rayDirections); !status)
            return status;
        if (const ZStatus status = checkDepth(maxRayDepth); !status)
            return status;
        // Results of their own, as a caller may well give an input array as output.
        ZFloatVectorArray points(rayOrigins.length()), colors(rayOrigins.length());
        if (points.length() != rayOrigins.length() || colors.length() != rayOrigins.length())
            return ZStatus(ZStatus::kInsufficientMemory);
        const Shader &shader = sceneShader(castShadows);
        const std::span origins(rayOrigins.data(), rayOrigins.length());
        const std::span ways(rayDirections.data(), rayOrigins.length());
        forBlocks(origins.size(), kRaysPerBlock, [&](size_t begin, size_t end) {
            shader.traceEach(origins.subspan(begin, end - begin), ways.subspan(begin, end - begin),
                             maxRayDepth, points.data() + begin, colors.data() + begin);
        });
        resultPoints = std::move(points);
        resultColors = std::move(colors);
        return ZStatus();
    });
}

ZStatus ZRenderUtil::raytraceFirstGeometryIntersections(const ZFloatVectorArray &rayOrigins,
                                                        const ZFloatVectorArray &rayDirections,
                                                        const void *, const void *,
                                                        ZFloatVectorArray &points,
                                                        ZIntArray &indices) {
    return guarded([&] {
        if (const ZStatus status = checkRays(rayOrigins, rayDirections); !status)
            return status;
        const RayTracer &tracer = rayTracer();
        const size_t count = rayOrigins.length();
        const std::span origins(rayOrigins.data(), count), ways(rayDirections.data(), count);
        std::vector<ZFloatVector> found(count);
        const auto areHit = std::make_unique<bool[]>(count);
        forBlocks(count, kRaysPerBlock, [&](size_t begin, size_t end) {
            tracer.hitPoints(origins.subspan(begin, end - begin), ways.subspan(begin, end - begin),
                             &found[begin], &areHit[begin]);
        });
        // Results of their own, as a caller may well give an input array as output.
        const auto hits = unsigned(std::count(areHit.get(), areHit.get() + count, true));
        ZFloatVectorArray hitPoints(hits);
        ZIntArray numbers(hits);
        if (hitPoints.length() != hits || numbers.length() != hits)
            return ZStatus(ZStatus::kInsufficientMemory);
        for (unsigned at = 0, next = 0; at < count; ++at) {
            if (!areHit[at])
                continue;
            hitPoints[next] = found[at];
            numbers[next++] = int(at);
        }
        points = std::move(hitPoints);
        indices = std::move(numbers);
        return ZStatus();
    });
}

ZStatus ZRenderUtil::sampleShadingNetwork(ZString shadingNodeName, int numSamples,
                                          bool useShadowMaps, bool, ZFloatMatrix &cameraMatrix,
                                          ZFloatPointArray *points, ZFloatArray *uCoords,
                                          ZFloatArray *vCoords, ZFloatVectorArray *normals,
                                          ZFloatPointArray *refPoints, ZFloatVectorArray *,
                                          ZFloatVectorArray *, ZFloatArray *,
                                          ZFloatVectorArray &resultColors,
                                          ZFloatVectorArray &resultTransparencies) {
    return guarded([&] {
        if (numSamples < 0)
            return ZStatus(ZStatus::kInvalidParameter,
                           "the number of samples must not be negative");
        const ShadingSamples samples{unsigned(numSamples),
                                     useShadowMaps,
                                     cameraMatrix,
                                     points,
                                     uCoords,
                                     vCoords,
                                     normals,
                                     refPoints};
        // Results of their own, as a caller may well give an input array as output.
        ZFloatVectorArray colors, transparencies;
        const ZStatus status =
            sampleNetwork(shadingNodeName.asChar(), samples, colors, transparencies);
        if (status) {
            resultColors = std::move(colors);
            resultTransparencies = std::move(transparencies);
        }
        return status;
    });
}

bool ZRenderUtil::generatingIprFile() {
    return renderSession().generatingIprFile;
}

ZString ZRenderUtil::relativeFileName(const ZString &absFileName, ZStatus *ReturnStatus) {
    return named(ReturnStatus, [&](std::string &file) {
        file = relativeToScene(absFileName.asChar());
        return ZStatus();
    });
}

ZString ZRenderUtil::exactFileTextureName(const ZObject &fileNode, ZStatus *ReturnStatus) {
    return named(ReturnStatus, [&](std::string &file) { return textureFile(fileNode, file); });
}

ZString ZRenderUtil::exactFileTextureName(const ZString &baseName, bool useFrameExt,
                                          const ZString &currentFrame, ZStatus *ReturnStatus) {
    return named(ReturnStatus, [&](std::string &file) {
        const std::string name = baseName.asChar();
        return existingFile(useFrameExt ? withFrame(name, currentFrame.asChar()) : name, file);
    });
}

ZString ZRenderUtil::exactFileTextureName(const ZString &baseName, bool useFrameExt,
                                          const ZString &currentFrame, const ZString &tile,
                                          ZStatus *ReturnStatus) {
    // The frame goes in first: the tile's digits are none of the frame's.
    return named(ReturnStatus, [&](std::string &file) {
        const std::string name = baseName.asChar();
        return existingFile(
            withTile(useFrameExt ? withFrame(name, currentFrame.asChar()) : name, tile.asChar()),
            file);
    });
}

ZString ZRenderUtil::convertPsdFile(const ZObject &fileNode, const bool &state,
                                    ZStatus *ReturnStatus) {
    return named(ReturnStatus,
                 [&](std::string &file) { return convertedFile(fileNode, state, file); });
}

ZString ZRenderUtil::exactImagePlaneFileName(const ZObject &imagePlaneNode, ZStatus *ReturnStatus) {
    return named(ReturnStatus,
                 [&](std::string &file) { return backgroundFile(imagePlaneNode, file); });
}

bool ZRenderUtil::inCurrentRenderLayer(const ZDagPath &objectPath, ZStatus *ReturnStatus) {
    report(ReturnStatus, objectPath.isValid()
                             ? ZStatus()
                             : ZStatus(ZStatus::kInvalidParameter, "the path is not valid"));
    return scene().isInCurrentLayer(scene().id(objectPath.node()));
}

ZRenderUtil::RenderPass ZRenderUtil::renderPass() {
    return renderSession().pass;
}

ZString ZRenderUtil::mainBeautyPassCustomTokenString() {
    return ZString();
}

ZString ZRenderUtil::mainBeautyPassName() {
    return ZString("beauty");
}

float ZRenderUtil::diffuseReflectance(const void *, const ZFloatVector &lightDirection,
                                      const ZFloatVector &, const ZFloatVector &normal,
                                      bool lightBackFace, ZStatus *ReturnStatus) {
    return std::max(facing(lightDirection, normal, lightBackFace, ReturnStatus).value_or(0), 0.0f);
}

ZFloatVector
ZRenderUtil::maximumSpecularReflection(const void *, const ZFloatVector &lightDirection,
                                       const ZFloatVector &, const ZFloatVector &normal,
                                       const ZFloatVector &rayDirection, ZStatus *ReturnStatus) {
    ZStatus status = checkDirections(lightDirection, normal);
    if (status && !isDirection(rayDirection))
        status = ZStatus(ZStatus::kInvalidParameter, "the ray direction must not be zero");
    report(ReturnStatus, status);
    if (!status)
        return ZFloatVector();
    const ZFloatVector halfway = lightDirection.normal() - rayDirection.normal();
    return halfway.length() > 1e-6f ? halfway.normal() : normal;
}

float ZRenderUtil::lightAttenuation(const void *, const ZFloatVector &pointWorld,
                                    const ZFloatVector &normal, bool castShadows,
                                    ZStatus *ReturnStatus) {
    float share = 0;
    report(ReturnStatus, guarded([&] {
               if (!isFinite(pointWorld) || !isDirection(normal))
                   return ZStatus(ZStatus::kInvalidParameter,
                                  "a finite point and a normal that is not zero are needed");
               const Shader &shader = sceneShader(castShadows);
               if (shader.lights().empty())
                   return ZStatus(ZStatus::kNotFound, "the scene has no light");
               const WorldLight &light = shader.lights().front();
               share = light.attenuation(pointWorld);
               if (share > 0 && castShadows)
                   share *= shader.unshadowed(light, pointWorld, normal.normal());
               return ZStatus();
           }));
    return share;
}

float ZRenderUtil::hemisphereCoverage(const void *, const ZFloatVector &lightDirection,
                                      const ZFloatVector &, const ZFloatVector &normal,
                                      bool lightBackFace, ZStatus *ReturnStatus) {
    const auto cosine = facing(lightDirection, normal, lightBackFace, ReturnStatus);
    return cosine ? (1 + *cosine) / 2 : 0;
}

void ZRenderUtil::sendRenderProgressInfo(const ZString &pixFile, int percentageDone) {
    if (!renderSession().progress)
        return;
    guarded([&] { // a message that cannot be shown is no reason to stop a render
        renderSession().progress(pixFile.asChar(), std::clamp(percentageDone, 0, 100));
    });
}

void ZRenderUtil::getCommonRenderSettings(ZCommonRenderSettingsData &rgData) {
    rgData = renderSession().settings;
}

ZStatus ZRenderUtil::renderObjectItem(const void *, ZSelectionList &list) {
    return guarded([&] {
        list.clear();
        for (NodeId id : scene().meshes())
            if (scene().isRendered(id))
                list.add(scene().object(id));
        return list.isEmpty() ? ZStatus(ZStatus::kNotFound, "the scene has no visible mesh")
                              : ZStatus();
    });
}

const char *ZRenderUtil::className() {
    return "ZRenderUtil";
}

ZStatus ZRenderUtil::eval2dTexture(const ZObject &texture, ZDoubleArray &uCoords,
                                   ZDoubleArray &vCoords, ZVectorArray *resultColors,
                                   ZDoubleArray *resultAlphas) {
    return guarded([&] {
        if (uCoords.length() != vCoords.length())
            return ZStatus(ZStatus::kInvalidParameter, "there must be as many v as u coordinates");
        NodeId id = scene().id(texture);
        if (const Node *node = scene().node(id); node && node->material())
            id = node->material()->texture;
        std::shared_ptr<const Pixels> pixels;
        if (const ZStatus status = texturePixels(id, pixels); !status)
            return status;
        // Results of their own, as a caller may well give an input array as output.
        ZVectorArray colors(uCoords.length());
        ZDoubleArray alphas(uCoords.length());
        for (unsigned at = 0; at < uCoords.length(); ++at) {
            double rgba[4];
            sampleImage(*pixels, uCoords[at], vCoords[at], rgba, *scene().node(id)->texture());
            colors[at] = ZVector(rgba[0], rgba[1], rgba[2]);
            alphas[at] = rgba[3];
        }
        if (resultColors)
            *resultColors = std::move(colors);
        if (resultAlphas)
            *resultAlphas = std::move(alphas);
        return ZStatus();
    });
}

unsigned int ZRenderUtil::noiseTableSize() {
    return kNoiseSize;
}

unsigned int ZRenderUtil::noiseTableCubeSide() {
    return kNoiseSide;
}

float ZRenderUtil::valueInNoiseTable(unsigned int index) {
    return noiseValue(index);
}

float ZRenderUtil::noise1(float x) {
    return noise(x, 0, 0);
}

float ZRenderUtil::noise2(float x, float y) {
    return noise(x, y, 0);
}

float ZRenderUtil::noise3(float x, float y, float z) {
    return noise(x, y, z);
}

float ZRenderUtil::noise4(float x, float y, float z, float t, unsigned short prime) {
    return noiseOverTime(x, y, z, t, prime);
}
