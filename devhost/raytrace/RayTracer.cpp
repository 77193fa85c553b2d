// Rays by Embree. Every mesh node becomes one geometry in world space; the geometry's number is its
// index in Impl::meshes.
#include "devhost/raytrace/RayTracer.h"

#include "devhost/session/RenderSession.h"

#include <embree3/rtcore.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <stdexcept>
#include <string>

namespace devhost {

namespace {

RTCDevice device() {
    // Never released: a tracer may outlive the main function's end.
    static auto *const theDevice =
        rtcNewDevice(("threads=" + std::to_string(renderThreads())).c_str());
    if (!theDevice)
        throw std::runtime_error("the ray tracing library does not start on this machine");
    return theDevice;
}

ZFloatVector vectorAt(const std::vector<float> &flat, unsigned index) {
    const float *p = &flat[size_t(index) * 3];
    return ZFloatVector(p[0], p[1], p[2]);
}

/// Whether the ray library takes such numbers: it ends the process over larger ones.
bool isInRange(const ZFloatVector &v) {
    constexpr float most = 1e18f;
    return std::abs(v.x) <= most && std::abs(v.y) <= most && std::abs(v.z) <= most;
}

/// False for a ray that nothing can be hit by: of no length, or from too far away.
template <class Ray>
bool setRay(Ray &ray, const ZFloatVector &origin, const ZFloatVector &direction, float far) {
    if (!isInRange(origin) || !isInRange(direction) || !(far >= 0))
        return false;
    ray.org_x = origin.x;
    ray.org_y = origin.y;
    ray.org_z = origin.z;
    ray.dir_x = direction.x;
    ray.dir_y = direction.y;
    ray.dir_z = direction.z;
    ray.tnear = 0;
    ray.tfar = far;
    ray.time = 0;
    ray.mask = ~0u;
    ray.id = 0;
    ray.flags = 0;
    return true;
}

} // namespace

struct RayTracer::Impl {
    struct WorldMesh {
        NodeId node;
        std::shared_ptr<const Mesh> mesh;
        std::vector<float> normals; // world space
    };

    RTCScene scene = nullptr;
    std::vector<WorldMesh> meshes;
    float size = 0; // of the scene

    ~Impl() {
        if (scene)
            rtcReleaseScene(scene);
    }

    void add(const Scene &from, NodeId id) {
        const auto &mesh = std::get<std::shared_ptr<const Mesh>>(from.node(id)->payload);
        const ZMatrix world = from.worldMatrix(id);
        const ZMatrix forNormals = world.inverse().transpose();
        WorldMesh made{id, mesh, std::vector<float>(mesh->normals.size())};

        auto *const geometry = rtcNewGeometry(device(), RTC_GEOMETRY_TYPE_TRIANGLE);
        auto *positions = static_cast<float *>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), mesh->vertexCount()));
        auto *triangles = static_cast<unsigned *>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(unsigned), mesh->triangleCount()));
        if (!positions || !triangles) {
            rtcReleaseGeometry(geometry);
            throw std::bad_alloc();
        }
        for (unsigned vertex = 0; vertex < mesh->vertexCount(); ++vertex) {
            const ZVector p = transformPoint(ZVector(vectorAt(mesh->positions, vertex)), world);
            const ZVector n = (ZVector(vectorAt(mesh->normals, vertex)) * forNormals).normal();
            for (unsigned k = 0; k < 3; ++k) {
                positions[vertex * 3 + k] = float(p[k]);
                made.normals[vertex * 3 + k] = float(n[k]);
            }
        }
        std::copy(mesh->triangles.begin(), mesh->triangles.end(), triangles);
        rtcCommitGeometry(geometry);
        rtcAttachGeometryByID(scene, geometry, unsigned(meshes.size()));
        rtcReleaseGeometry(geometry);
        meshes.push_back(std::move(made));
    }
};

namespace {

/// What the ray library hands back to the filter.
template <class Meshes>
struct QueryContext {
    RTCIntersectContext base;
    const Meshes *meshes;
    const PassThrough *through;

    QueryContext(const Meshes &theMeshes, const PassThrough *meshesToPass)
        : meshes(&theMeshes), through(meshesToPass) {
        rtcInitIntersectContext(&base);
        if (through)
            base.filter = filter;
    }
    /// Takes back the hit of a mesh that the ray passes through.
    static void filter(const RTCFilterFunctionNArguments *hit) {
        const auto *self = reinterpret_cast<const QueryContext *>(hit->context);
        const auto node = size_t((*self->meshes)[RTCHitN_geomID(hit->hit, hit->N, 0)].node);
        if (node < self->through->size() && (*self->through)[node])
            hit->valid[0] = 0; // rays come one by one
    }
};

} // namespace

RayTracer::RayTracer(const Scene &scene) : impl_(std::make_unique<Impl>()) {
    impl_->scene = rtcNewScene(device());
    // Rays that graze an edge must not slip between the two triangles.
    rtcSetSceneFlags(impl_->scene, RTC_SCENE_FLAG_ROBUST | RTC_SCENE_FLAG_CONTEXT_FILTER_FUNCTION);
    for (NodeId id : scene.meshes())
        if (scene.isRendered(id))
            impl_->add(scene, id);
    rtcCommitScene(impl_->scene);
    if (rtcGetDeviceError(device()) == RTC_ERROR_OUT_OF_MEMORY)
        throw std::bad_alloc();
    impl_->size = float(scene.bounds().radius());
}

RayTracer::~RayTracer() = default;

bool RayTracer::intersect(const ZFloatVector &origin, const ZFloatVector &direction, Hit &hit,
                          float maxDistance, const PassThrough *through) const {
    hit = Hit();
    RTCRayHit query;
    const ZFloatVector unit = direction.normal();
    if (!setRay(query.ray, origin, unit, maxDistance))
        return false;
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    QueryContext context(impl_->meshes, through);
    rtcIntersect1(impl_->scene, &context.base, &query);
    if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID)
        return false;

    const Impl::WorldMesh &found = impl_->meshes[query.hit.geomID];
    const unsigned *corners = &found.mesh->triangles[size_t(query.hit.primID) * 3];
    const float weights[3] = {1 - query.hit.u - query.hit.v, query.hit.u, query.hit.v};
    hit.hit = true;
    hit.distance = query.ray.tfar;
    hit.point = origin + unit * hit.distance;
    hit.u = query.hit.u;
    hit.v = query.hit.v;
    hit.mesh = found.node;
    hit.triangle = int(query.hit.primID);
    hit.material = found.mesh->materials[query.hit.primID];
    hit.geometricNormal = ZFloatVector(query.hit.Ng_x, query.hit.Ng_y, query.hit.Ng_z).normal();
    for (int k = 0; k < 3; ++k) {
        hit.normal += vectorAt(found.normals, corners[k]) * weights[k];
        if (!found.mesh->uvs.empty())
            for (int side = 0; side < 2; ++side)
                hit.uv[side] += found.mesh->uvs[size_t(corners[k]) * 2 + side] * weights[k];
    }
    hit.normal = hit.normal.normal();
    if (!(hit.normal.length() > 0.5f))
        hit.normal = hit.geometricNormal;
    if (hit.geometricNormal * hit.normal < 0) // a mirroring transform turned the triangle round
        hit.geometricNormal = -hit.geometricNormal;
    return true;
}

bool RayTracer::occluded(const ZFloatVector &origin, const ZFloatVector &direction,
                         float maxDistance, const PassThrough *through) const {
    RTCRay ray;
    if (!setRay(ray, origin, direction.normal(), maxDistance))
        return false;
    QueryContext context(impl_->meshes, through);
    rtcOccluded1(impl_->scene, &context.base, &ray);
    return ray.tfar < 0;
}

float RayTracer::offset(const ZFloatVector &point) const {
    const float most = std::max({std::abs(point.x), std::abs(point.y), std::abs(point.z)});
    return std::max(2e-5f * impl_->size, 4e-6f * most);
}

const RayTracer &rayTracer() {
    static std::unique_ptr<RayTracer> current;
    static unsigned long revision = 0;
    scene().deformMeshes();
    if (!current || revision != scene().revision()) {
        current.reset(); // first, so that two never take up memory
        current = std::make_unique<RayTracer>(scene());
        revision = scene().revision();
    }
    return *current;
}

} // namespace devhost
