// SPDX-License-Identifier: MIT
#include "devhost/session/FrameRenderer.h"

#include "devhost/gl/GlContext.h"
#include "devhost/gl/HardwareRendering.h"
#include "devhost/image/Srgb.h"
#include "devhost/raytrace/CameraView.h"
#include "devhost/raytrace/SamplePattern.h"
#include "devhost/raytrace/SoftwareRenderer.h"
#include "devhost/session/MeshDrawing.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Notices.h"

#include <algorithm>
#include <optional>

namespace devhost {
namespace {

constexpr std::string_view kViewport = "viewport:";

ZStatus drawByHardware(const CameraView &view, ViewportImage &image) {
    HardwareView seen{view.rays.frame.worldToView(), view.projection(), {}, {}};
    for (const auto &sample : samplePattern(std::max(1u, renderSession().samples)))
        seen.places.push_back({sample.right, sample.up});
    seen.drawMeshes = [&](ViewportImage &drawn, const HardwareView::Place &place) {
        drawMeshes(drawn, view.rays, place[0], place[1]);
    };
    return drawHardwareFrame(seen, &image);
}

/// The region of an image as the frame that shows it.
void takeRegion(const ViewportImage &image, bool withDepth, Frame &frame) {
    const ZRenderData &data = frame.data;
    const size_t area = size_t(data.xsize) * data.ysize;
    frame.pixels.resize(area * 4);
    frame.depth.resize(withDepth ? area : 0);
    for (size_t at = 0; at < area; ++at) {
        const size_t row = data.bottom + at / data.xsize, column = data.left + at % data.xsize;
        const size_t from = row * image.width + column;
        fromDisplay(&image.rgba[from * 4], &frame.pixels[at * 4]);
        if (withDepth)
            frame.depth[at] = image.depth[from];
    }
}

ZStatus drawFrame(const std::string &renderer, Frame &frame, bool withDepth) {
    const auto &settings = renderSession().settings;
    std::optional<CameraView> view;
    ZStatus status =
        findCameraView(settings.width, settings.height, settings.pixelAspectRatio, view);
    if (!status.error())
        status = describeFrame(*view, frame);
    if (status.error())
        return status;
    ViewportImage image;
    status = renderer == "hardware"
                 ? drawByHardware(*view, image)
                 : renderViewport(renderer.substr(kViewport.size()), settings.width,
                                  settings.height, settings.pixelAspectRatio, image);
    if (status.error())
        return status;
    frame.renderer = renderer;
    takeRegion(image, withDepth, frame);
    return {};
}

} // namespace

bool isRendererName(const std::string &name) {
    return name == "software" || name == "hardware" ||
           (name.starts_with(kViewport) && name.size() > kViewport.size());
}

ZStatus chooseRenderer(const std::string &name) {
    if (!isRendererName(name))
        return {ZStatus::kInvalidParameter,
                ("'" + name + "' is neither software nor hardware nor viewport:NAME").c_str()};
    renderSession().renderer = name;
    if (name == "hardware" && !glContext().available)
        tell({"renderer", "", "hardware renderer", "there is no OpenGL: " + glContext().whyNot(),
              "its draw procedures have nothing to draw in"});
    return {};
}

ZStatus renderSessionFrame(Frame &frame, bool withDepth) {
    const std::string renderer = renderSession().renderer;
    if (renderer == "software")
        return renderFrame(frame, withDepth);
    return guarded([&] { return drawFrame(renderer, frame, withDepth); });
}

} // namespace devhost
