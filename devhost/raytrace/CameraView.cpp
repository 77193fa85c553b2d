// SPDX-License-Identifier: MIT
#include "devhost/raytrace/CameraView.h"

#include "devhost/session/RenderSession.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace devhost {

RaySpan CameraView::clip() const {
    RaySpan span;
    if (nearClip > 0 && std::isfinite(nearClip))
        span.from = float(nearClip);
    if (farClip > span.from)
        span.to = float(farClip);
    return span;
}

ZMatrix CameraView::projection() const {
    const RaySpan span = clip();
    const double nearest = span.from > 0 || !rays.perspective ? span.from : 0.1;
    const double farthest = span.to > nearest && std::isfinite(span.to) ? span.to : nearest + 1e6;
    const double depth = farthest - nearest;
    ZMatrix result;
    result(0, 0) = 1 / rays.halfWidth;
    result(1, 1) = 1 / rays.halfHeight;
    if (rays.perspective) {
        result(2, 2) = -(farthest + nearest) / depth;
        result(3, 2) = -2 * farthest * nearest / depth;
        result(2, 3) = -1;
        result(3, 3) = 0;
    } else {
        result(2, 2) = -2 / depth;
        result(3, 2) = -(farthest + nearest) / depth;
    }
    return result;
}

ZStatus findCameraView(unsigned width, unsigned height, double pixelAspectRatio,
                       std::optional<CameraView> &view) {
    if (!width || !height || width > 16384 || height > 16384)
        return {ZStatus::kInvalidParameter, "the image size is not 1 to 16384 pixels"};

    const Scene &world = scene();
    NodeId id = world.id(renderSession().camera);
    if (id == kNoNode)
        id = world.findCamera();
    const Node *node = world.node(id);
    const Camera *camera = node ? node->camera() : nullptr;
    if (!camera)
        return {ZStatus::kNotFound, "the scene has no camera to render from"};

    // The camera's own axes, without any scale or shear of its matrix.
    const ZMatrix matrix = world.worldMatrix(id);
    const ViewFrame frame(ZVector(matrix(3, 0), matrix(3, 1), matrix(3, 2)),
                          ZVector(-matrix(2, 0), -matrix(2, 1), -matrix(2, 2)),
                          ZVector(matrix(1, 0), matrix(1, 1), matrix(1, 2)));
    // The image shows all of the camera's film and, where the proportions differ, more beside it.
    const double aspect = double(width) / height * pixelAspectRatio;
    const double film = camera->filmAspect > 0 ? camera->filmAspect : aspect;
    const double filmWidth =
        camera->orthographic
            ? camera->orthographicWidth / 2
            : std::tan(camera->verticalFieldOfView * std::numbers::pi / 360) * film;
    const double halfWidth = filmWidth * std::max(1.0, aspect / film);
    view = CameraView{id,
                      {frame, !camera->orthographic, halfWidth, halfWidth / aspect},
                      aspect,
                      camera->nearClip,
                      camera->farClip};
    return {};
}

} // namespace devhost
