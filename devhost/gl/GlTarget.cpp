// SPDX-License-Identifier: MIT
#include "devhost/gl/GlTarget.h"

#include "devhost/gl/GlPrivateFramebuffer.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace devhost {
namespace {

ZGLuint makeTexture(ZGLFunctionTable &gl, int width, int height, int internalFormat, ZGLenum format,
                    ZGLenum type) {
    ZGLuint texture = 0;
    gl.glGenTextures(1, &texture);
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    gl.glTexImage2D(GL_TEXTURE_2D, 0, internalFormat, width, height, 0, format, type, nullptr);
    return texture;
}

/// The distance along the view direction of a depth, 0 to 1, and back.
float toDistance(float depth, const ZMatrix &projection) {
    if (depth >= 1)
        return std::numeric_limits<float>::infinity();
    const double clip = 2.0 * depth - 1;
    return static_cast<float>((projection(3, 2) - clip * projection(3, 3)) /
                              (projection(2, 2) - clip * projection(2, 3)));
}
float toDepth(float distance, const ZMatrix &projection) {
    if (distance == std::numeric_limits<float>::infinity())
        return 1;
    const double w = projection(3, 3) - distance * projection(2, 3);
    const double clip = w > 0 ? (projection(3, 2) - distance * projection(2, 2)) / w : -1;
    return static_cast<float>(std::clamp(clip / 2 + 0.5, 0.0, 1.0));
}

} // namespace

float glTargetVersion() {
    if (glContext().acquire().error())
        return 0;
    ZGLFunctionTable &gl = *glFunctionTable();
    if (!gl.extensionExists(kZGLext_frame_buffer_object))
        return 0;
    const auto *version = reinterpret_cast<const char *>(gl.glGetString(GL_VERSION));
    return version ? std::strtof(version, nullptr) : 0;
}

std::unique_ptr<GlTarget> GlTarget::make(unsigned width, unsigned height) {
    ZGLFunctionTable &gl = *glFunctionTable();
    if (std::max(width, height) > static_cast<unsigned>(gl.maxTextureSize()))
        return nullptr;
    std::unique_ptr<GlTarget> target(new GlTarget(width, height));
    target->bind();
    const bool isComplete =
        gl.glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT;
    return isComplete ? std::move(target) : nullptr;
}

GlTarget::GlTarget(unsigned width, unsigned height)
    : width_(static_cast<int>(width)), height_(static_cast<int>(height)) {
    ZGLFunctionTable &gl = *glFunctionTable();
    {
        const GlPrivateScope scope;
        color_ = makeTexture(gl, width_, height_, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE);
        depth_ =
            makeTexture(gl, width_, height_, GL_DEPTH_COMPONENT24, GL_DEPTH_COMPONENT, GL_FLOAT);
    }
    gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &previous_);
    gl.glGenFramebuffersEXT(1, &framebuffer_);
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    attachImage(gl, GL_COLOR_ATTACHMENT0_EXT, {GL_TEXTURE_2D, color_});
    attachImage(gl, GL_DEPTH_ATTACHMENT_EXT, {GL_TEXTURE_2D, depth_});
}

GlTarget::~GlTarget() {
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<ZGLuint>(previous_));
    gl.glDeleteFramebuffersEXT(1, &framebuffer_);
    const ZGLuint textures[] = {color_, depth_};
    gl.glDeleteTextures(2, textures);
}

void GlTarget::bind() {
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    gl.glViewport(0, 0, width_, height_);
}

void GlTarget::read(ViewportImage &image, const ZMatrix &projection) {
    ZGLFunctionTable &gl = *glFunctionTable();
    const GlPrivateFramebuffer scope({GL_TEXTURE_2D, color_}, {GL_TEXTURE_2D, depth_});
    gl.glReadPixels(0, 0, width_, height_, GL_RGBA, GL_UNSIGNED_BYTE, image.rgba.data());
    gl.glReadPixels(0, 0, width_, height_, GL_DEPTH_COMPONENT, GL_FLOAT, image.depth.data());
    for (float &depth : image.depth)
        depth = toDistance(depth, projection);
}

void GlTarget::write(const ViewportImage &image, const ZMatrix &projection) {
    ZGLFunctionTable &gl = *glFunctionTable();
    std::vector<float> depths(image.depth.size());
    std::transform(image.depth.begin(), image.depth.end(), depths.begin(),
                   [&](float distance) { return toDepth(distance, projection); });
    const GlPrivateScope scope;
    gl.glBindTexture(GL_TEXTURE_2D, color_);
    gl.glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width_, height_, GL_RGBA, GL_UNSIGNED_BYTE,
                       image.rgba.data());
    gl.glBindTexture(GL_TEXTURE_2D, depth_);
    gl.glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width_, height_, GL_DEPTH_COMPONENT, GL_FLOAT,
                       depths.data());
}

} // namespace devhost
