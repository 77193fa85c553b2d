// SPDX-License-Identifier: MIT
// The shading nodes: materials, textures and two procedures.
#include "devhost/raytrace/ShadingNetwork.h"

#include "devhost/image/TextureImage.h"
#include "devhost/raytrace/NoiseTable.h"
#include "devhost/raytrace/RayTracer.h"
#include "devhost/raytrace/Shading.h"

#include <cmath>

namespace devhost {

namespace {

template <class Array>
bool covers(const Array *array, unsigned count) {
    return array && array->length() >= count;
}

bool haveUv(const ShadingSamples &samples) {
    return covers(samples.u, samples.count) && covers(samples.v, samples.count);
}

ZStatus missing(const std::string &name, const char *what) {
    return ZStatus(ZStatus::kInvalidParameter,
                   (name + " needs " + what + " for every sample").c_str());
}

ZFloatVector grey(float value) {
    return ZFloatVector(value, value, value);
}

ZStatus makeRoom(unsigned count, ZFloatVectorArray &colors, ZFloatVectorArray &transparencies) {
    colors.clear();
    transparencies.clear();
    const ZStatus status = colors.setLength(count);
    return status ? transparencies.setLength(count) : status;
}

ZFloatVector checker(float u, float v) {
    const bool odd = std::fmod(std::floor(u) + std::floor(v), 2.0f) != 0;
    return grey(odd ? 0 : 1);
}

ZStatus sampleChecker(const ShadingSamples &samples, ZFloatVectorArray &colors,
                      ZFloatVectorArray &transparencies) {
    if (!haveUv(samples))
        return missing("checker", "uCoords and vCoords");
    if (const ZStatus status = makeRoom(samples.count, colors, transparencies); !status)
        return status;
    for (unsigned at = 0; at < samples.count; ++at)
        colors[at] = checker((*samples.u)[at], (*samples.v)[at]);
    return ZStatus();
}

ZStatus sampleNoise(const ShadingSamples &samples, ZFloatVectorArray &colors,
                    ZFloatVectorArray &transparencies) {
    const ZFloatPointArray *places =
        covers(samples.refPoints, samples.count) ? samples.refPoints : samples.points;
    if (!covers(places, samples.count))
        return missing("noise", "refPoints or points");
    if (const ZStatus status = makeRoom(samples.count, colors, transparencies); !status)
        return status;
    for (unsigned at = 0; at < samples.count; ++at) {
        const ZFloatPoint &p = (*places)[at];
        colors[at] = grey(noise(p.x, p.y, p.z));
    }
    return ZStatus();
}

ZStatus sampleTexture(NodeId id, const ShadingSamples &samples, ZFloatVectorArray &colors,
                      ZFloatVectorArray &transparencies) {
    if (!haveUv(samples))
        return missing(scene().node(id)->name, "uCoords and vCoords");
    std::shared_ptr<const Pixels> pixels;
    if (const ZStatus status = texturePixels(id, pixels); !status)
        return status;
    if (const ZStatus status = makeRoom(samples.count, colors, transparencies); !status)
        return status;
    for (unsigned at = 0; at < samples.count; ++at) {
        double rgba[4];
        sampleImage(*pixels, (*samples.u)[at], (*samples.v)[at], rgba,
                    *scene().node(id)->texture());
        colors[at] = ZFloatVector(float(rgba[0]), float(rgba[1]), float(rgba[2]));
        transparencies[at] = grey(float(1 - rgba[3]));
    }
    return ZStatus();
}

ZStatus sampleMaterial(const Material &material, const ShadingSamples &samples,
                       ZFloatVectorArray &colors, ZFloatVectorArray &transparencies) {
    if (const ZStatus status = makeRoom(samples.count, colors, transparencies); !status)
        return status;
    const Shader shader(scene(), rayTracer(), sessionShading(samples.castShadows));
    const bool uv = haveUv(samples);
    const bool lit =
        covers(samples.points, samples.count) && covers(samples.normals, samples.count);
    const ZFloatVector eye(samples.cameraToWorld(3, 0), samples.cameraToWorld(3, 1),
                           samples.cameraToWorld(3, 2));
    for (unsigned at = 0; at < samples.count; ++at) {
        SurfacePoint sample;
        if (uv) {
            sample.where.uv[0] = sample.where.secondUv[0] = (*samples.u)[at];
            sample.where.uv[1] = sample.where.secondUv[1] = (*samples.v)[at];
        }
        transparencies[at] = grey(1 - shader.looks().opacity(material, sample.where));
        if (!lit) {
            colors[at] = shader.looks().at(material, sample.where).diffuse;
            continue;
        }
        sample.point = ZFloatVector((*samples.points)[at] * samples.cameraToWorld);
        sample.normal = (*samples.normals)[at].transformAsNormal(samples.cameraToWorld);
        sample.viewDirection = (sample.point - eye).normal();
        if (sample.viewDirection * sample.normal > 0) // surfaces show both sides
            sample.normal = -sample.normal;
        colors[at] = shader.surface(material, sample);
    }
    return ZStatus();
}

} // namespace

ZStatus sampleNetwork(const std::string &name, const ShadingSamples &samples,
                      ZFloatVectorArray &colors, ZFloatVectorArray &transparencies) {
    const NodeId id = scene().find(name);
    const Node *node = scene().node(id);
    if (node && node->material())
        return sampleMaterial(*node->material(), samples, colors, transparencies);
    if (node && node->texture())
        return sampleTexture(id, samples, colors, transparencies);
    if (name == "checker")
        return sampleChecker(samples, colors, transparencies);
    if (name == "noise")
        return sampleNoise(samples, colors, transparencies);
    return ZStatus(ZStatus::kInvalidParameter,
                   ("neither material nor texture nor a known procedure: " + name).c_str());
}

} // namespace devhost
