// SPDX-License-Identifier: MIT
#include "host/render/ZHardwareRenderer.h"

#include "devhost/api/render/DefaultGeometry.h"
#include "devhost/api/render/DrawProcedures.h"
#include "devhost/gl/GlContext.h"
#include "devhost/gl/GlPrivateFramebuffer.h"
#include "devhost/gl/HardwareDevice.h"
#include "devhost/gl/HardwareFrame.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Guarded.h"
#include "host/core/ZStringArray.h"
#include "host/render/ZGLFunctionTable.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <exception>

using devhost::DrawTarget;

namespace {

constexpr char kBackEnd[] = "OpenGL";
constexpr unsigned kDefaultSwatchSize = 128;
constexpr unsigned kLargestSwatchSize = 4096;
constexpr unsigned kMostRepeats = 256;

bool isBackEnd(const ZString &name) {
    return !name.length() || name == ZString(kBackEnd);
}

/// Runs a change of a location's list.
template <class Change>
ZHardwareRenderer::DrawProcedureReturnCode withList(const ZString &backEnd, int location,
                                                    Change change) {
    auto &lists = devhost::drawProcedureLists();
    if (!isBackEnd(backEnd))
        return ZHardwareRenderer::kFailure;
    if (location < 0 || location >= static_cast<int>(lists.size()))
        return ZHardwareRenderer::kLocationNotFound;
    try {
        return change(lists[static_cast<size_t>(location)]);
    } catch (const std::exception &) { // memory is short
        return ZHardwareRenderer::kFailure;
    }
}

/// Runs an operation of a back end.
template <class Step>
ZStatus withBackEnd(const ZString &backEnd, Step step) {
    return devhost::guarded([&]() -> ZStatus {
        if (!isBackEnd(backEnd))
            return {ZStatus::kInvalidParameter, ("there is no such back end: " + backEnd).asChar()};
        return step();
    });
}

unsigned swatchSide(unsigned wanted) {
    return wanted ? std::min(wanted, kLargestSwatchSize) : kDefaultSwatchSize;
}

/// Fills the viewport with a colour, and with squares of half its brightness where their number
/// along each side is not 0.
void drawBackground(ZGLFunctionTable &gl, const ZColor &color, unsigned count) {
    gl.glLoadIdentity();
    gl.glOrtho(0, 1, 0, 1, -1, 1);
    gl.glColor4f(color.r, color.g, color.b, color.a);
    gl.glRectf(0, 0, 1, 1);
    gl.glColor4f(color.r / 2, color.g / 2, color.b / 2, color.a);
    const auto edge = [&](unsigned i) { return static_cast<float>(i) / static_cast<float>(count); };
    for (unsigned row = 0; row < count; ++row)
        for (unsigned column = (row + 1) % 2; column < count; column += 2)
            gl.glRectf(edge(column), edge(row), edge(column + 1), edge(row + 1));
}

} // namespace

ZHardwareRenderer::ZHardwareRenderer() = default;
ZHardwareRenderer::~ZHardwareRenderer() = default;

ZHardwareRenderer *ZHardwareRenderer::theRenderer() {
    static ZHardwareRenderer renderer;
    return &renderer;
}

ZString ZHardwareRenderer::backEndString() const {
    return kBackEnd;
}

ZHardwareRenderer::DrawProcedureReturnCode
ZHardwareRenderer::addDrawProcedure(ZString const &backEnd, ZDrawProcedureBase *procedure,
                                    CallLocation location) {
    return withList(backEnd, location, [&](devhost::DrawProcedureList &list) {
        return list.insert(procedure, list.procedures().size());
    });
}

ZHardwareRenderer::DrawProcedureReturnCode
ZHardwareRenderer::removeDrawProcedure(ZString const &backEnd, ZDrawProcedureBase *procedure,
                                       CallLocation location) {
    return withList(backEnd, location,
                    [&](devhost::DrawProcedureList &list) { return list.remove(procedure); });
}

ZHardwareRenderer::DrawProcedureReturnCode
ZHardwareRenderer::insertDrawProcedure(ZString const &backEnd, ZDrawProcedureBase *procedure,
                                       CallLocation location, unsigned int position,
                                       bool insertAfter) {
    return withList(backEnd, location, [&](devhost::DrawProcedureList &list) {
        const bool isAtOne = position < list.procedures().size();
        return list.insert(procedure, size_t{position} + (insertAfter && isAtOne));
    });
}

ZHardwareRenderer::DrawProcedureReturnCode
ZHardwareRenderer::getDrawProcedureCount(ZString const &backEnd, CallLocation location,
                                         unsigned int &count) const {
    return withList(backEnd, location, [&](devhost::DrawProcedureList &list) {
        count = static_cast<unsigned>(list.procedures().size());
        return kSuccess;
    });
}

ZHardwareRenderer::DrawProcedureReturnCode
ZHardwareRenderer::getDrawProcedureListNames(ZString const &backEnd, CallLocation location,
                                             ZStringArray &names) const {
    return withList(backEnd, location, [&](devhost::DrawProcedureList &list) {
        names.clear();
        for (const ZDrawProcedureBase *procedure : list.procedures())
            names.append(procedure->name());
        return kSuccess;
    });
}

ZDrawProcedureBase *ZHardwareRenderer::findDrawProcedure(ZString const &backEnd,
                                                         CallLocation location,
                                                         ZString const &procedureName) const {
    ZDrawProcedureBase *found = nullptr;
    withList(backEnd, location, [&](devhost::DrawProcedureList &list) {
        found = list.find(procedureName);
        return kSuccess;
    });
    return found;
}

ZStatus ZHardwareRenderer::makeResourceContextCurrent(ZString const &backEnd) {
    return withBackEnd(backEnd, [] {
        auto &device = devhost::hardwareDevice();
        ZStatus status = device.open();
        if (!status.error())
            device.push(DrawTarget::kNothing);
        return status;
    });
}

ZStatus ZHardwareRenderer::getBufferSize(ZString const &backEnd, unsigned int &width,
                                         unsigned int &height) const {
    return withBackEnd(backEnd, [&] {
        const auto &frame = devhost::hardwareFrame();
        const auto &settings = devhost::renderSession().settings;
        width = frame.isDrawing ? frame.width : settings.width;
        height = frame.isDrawing ? frame.height : settings.height;
        return ZStatus();
    });
}

ZStatus ZHardwareRenderer::getColorBufferPixelFormat(ZString const &backEnd,
                                                     BufferPixelFormat &format) const {
    return withBackEnd(backEnd, [&] {
        format = kRGBA_Fix8;
        return ZStatus();
    });
}

ZStatus ZHardwareRenderer::getDepthBufferPixelFormat(ZString const &backEnd,
                                                     BufferPixelFormat &format) const {
    return withBackEnd(backEnd, [&] {
        format = kDepth_Float32;
        return ZStatus();
    });
}

ZStatus ZHardwareRenderer::getCurrentExposureNumber(ZString const &backEnd,
                                                    unsigned int &number) const {
    return withBackEnd(backEnd, [&] {
        number = devhost::hardwareFrame().exposure;
        return ZStatus();
    });
}

ZStatus ZHardwareRenderer::getTotalExposureCount(ZString const &backEnd,
                                                 unsigned int &count) const {
    return withBackEnd(backEnd, [&] {
        count = devhost::hardwareFrame().exposureCount;
        return ZStatus();
    });
}

ZStatus ZHardwareRenderer::restoreCurrent(ZString const &backEnd) const {
    return withBackEnd(backEnd, [] {
        if (!devhost::hasGl())
            return ZStatus();
        auto &device = devhost::hardwareDevice();
        device.pop();
        if (!device.depth())
            devhost::glContext().release();
        return ZStatus();
    });
}

ZStatus ZHardwareRenderer::makeSwatchContextCurrent(ZString const &backEnd, unsigned int &width,
                                                    unsigned int &height) {
    return withBackEnd(backEnd, [&] {
        auto &device = devhost::hardwareDevice();
        const unsigned w = swatchSide(width), h = swatchSide(height);
        ZStatus status = device.open();
        if (!status.error())
            status = device.resize(DrawTarget::kSwatch, w, h);
        if (!status.error()) {
            device.push(DrawTarget::kSwatch);
            width = w;
            height = h;
        }
        return status;
    });
}

ZStatus ZHardwareRenderer::readSwatchContextPixels(ZString const &backEnd, ZImage &image) {
    return withBackEnd(backEnd, [&]() -> ZStatus {
        auto &device = devhost::hardwareDevice();
        if (!devhost::hasGl() || device.target() != DrawTarget::kSwatch)
            return {ZStatus::kFailure, "the swatch context is not current"};
        return device.buffers(DrawTarget::kSwatch).read(image);
    });
}

ZGeometryData *ZHardwareRenderer::referenceDefaultGeometry(GeometricShape shape,
                                                           unsigned int &numberOfData,
                                                           unsigned int *&indices,
                                                           unsigned int &numberOfIndices) {
    devhost::GeometryReference reference;
    devhost::guarded([&] { reference = devhost::referenceShape(shape); });
    numberOfData = reference.dataCount;
    indices = reference.indices;
    numberOfIndices = reference.indexCount;
    return reference.data;
}

ZStatus ZHardwareRenderer::dereferenceGeometry(ZGeometryData *data, unsigned int numberOfData) {
    if (devhost::dereferenceShape(data, numberOfData))
        return {};
    return {ZStatus::kInvalidParameter, "this is no default geometry in use"};
}

void ZHardwareRenderer::getSwatchOrthoCameraSetting(double &left, double &right, double &bottom,
                                                    double &top, double &nearPlane,
                                                    double &farPlane) const {
    left = bottom = -1.1;
    right = top = 1.1;
    nearPlane = -10;
    farPlane = 10;
}

// A sphere of radius 1 that is 3 away spans 0.354 to each side of the axis at distance 1.
void ZHardwareRenderer::getSwatchPerspectiveCameraSetting(double &left, double &right,
                                                          double &bottom, double &top,
                                                          double &nearPlane,
                                                          double &farPlane) const {
    left = bottom = -0.4;
    right = top = 0.4;
    nearPlane = 1;
    farPlane = 10;
}

void ZHardwareRenderer::getSwatchPerspectiveCameraTranslation(float &x, float &y, float &z,
                                                              float &w) const {
    x = y = 0;
    z = -3;
    w = 1;
}

void ZHardwareRenderer::getSwatchLightDirection(float &x, float &y, float &z, float &w) const {
    x = -1.0f / 3;
    y = z = 2.0f / 3;
    w = 0;
}

void ZHardwareRenderer::drawSwatchBackGroundQuads(ZColor const &color, bool textured,
                                                  unsigned int numberOfRepeats) const {
    if (devhost::glContext().acquire().error())
        return;
    ZGLFunctionTable &gl = *devhost::glFunctionTable();
    ZGLint viewport[4];
    gl.glGetIntegerv(GL_VIEWPORT, viewport);
    const devhost::GlPrivateFramebuffer scope(devhost::currentColorImage(gl), {});
    gl.glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
    drawBackground(gl, color, textured ? std::min(numberOfRepeats, kMostRepeats) : 0);
}

ZGLFunctionTable *ZHardwareRenderer::glFunctionTable() const {
    return devhost::glFunctionTable();
}
