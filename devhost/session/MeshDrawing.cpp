// SPDX-License-Identifier: MIT
#include "devhost/session/MeshDrawing.h"

#include "devhost/image/Srgb.h"
#include "devhost/raytrace/CameraView.h"
#include "devhost/raytrace/RayTracer.h"
#include "devhost/raytrace/Shading.h"
#include "devhost/session/Parallel.h"

namespace devhost {

void drawMeshes(ViewportImage &image, const ViewRays &rays, double right, double up) {
    const RayTracer &tracer = rayTracer();
    const Shader shader(scene(), tracer, sessionShading(false));
    const size_t width = image.width, height = image.height;
    forBlocks(width * height, 256, [&](size_t begin, size_t end) {
        for (size_t i = begin; i < end; ++i) {
            const size_t column = i % width, row = i / width;
            const double x = (double(column) + right) * 2 / double(width) - 1;
            const double y = (double(row) + up) * 2 / double(height) - 1;
            const ZFloatVector direction = rays.direction(x, y);
            Hit hit;
            const ZFloatVector color = shader.trace(rays.origin(x, y), direction, 0, &hit).color;
            const float depth = hit.distance / direction.length();
            if (!hit.hit || depth >= image.depth[i])
                continue;
            image.depth[i] = depth;
            for (unsigned channel = 0; channel < 3; ++channel)
                image.rgba[i * 4 + channel] = srgbByte(color[channel]);
            image.rgba[i * 4 + 3] = 255;
        }
    });
}

} // namespace devhost
