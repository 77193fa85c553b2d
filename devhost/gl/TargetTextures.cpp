// SPDX-License-Identifier: MIT
#include "devhost/gl/TargetTextures.h"

#include "devhost/gl/GlPrivateFramebuffer.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <limits>
#include <vector>

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

void TargetTextures::make(unsigned theWidth, unsigned theHeight, int depthFormat) {
    ZGLFunctionTable &gl = *glFunctionTable();
    width = static_cast<int>(theWidth);
    height = static_cast<int>(theHeight);
    const GlPrivateScope scope;
    color = makeTexture(gl, width, height, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE);
    depth = makeTexture(gl, width, height, depthFormat, GL_DEPTH_COMPONENT, GL_FLOAT);
}

void TargetTextures::drop() {
    const ZGLuint textures[] = {color, depth};
    glFunctionTable()->glDeleteTextures(2, textures);
    *this = {};
}

void TargetTextures::attach() const {
    ZGLFunctionTable &gl = *glFunctionTable();
    attachImage(gl, GL_COLOR_ATTACHMENT0_EXT, {GL_TEXTURE_2D, color});
    attachImage(gl, GL_DEPTH_ATTACHMENT_EXT, {GL_TEXTURE_2D, depth});
}

void TargetTextures::read(ViewportImage &image, const ZMatrix &projection) const {
    ZGLFunctionTable &gl = *glFunctionTable();
    const GlPrivateFramebuffer scope({GL_TEXTURE_2D, color}, {GL_TEXTURE_2D, depth});
    gl.glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, image.rgba.data());
    gl.glReadPixels(0, 0, width, height, GL_DEPTH_COMPONENT, GL_FLOAT, image.depth.data());
    for (float &each : image.depth)
        each = toDistance(each, projection);
}

void TargetTextures::write(const ViewportImage &image, const ZMatrix &projection) const {
    ZGLFunctionTable &gl = *glFunctionTable();
    std::vector<float> depths(image.depth.size());
    std::transform(image.depth.begin(), image.depth.end(), depths.begin(),
                   [&](float distance) { return toDepth(distance, projection); });
    const GlPrivateScope scope;
    gl.glBindTexture(GL_TEXTURE_2D, color);
    gl.glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE,
                       image.rgba.data());
    gl.glBindTexture(GL_TEXTURE_2D, depth);
    gl.glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_DEPTH_COMPONENT, GL_FLOAT,
                       depths.data());
}

} // namespace devhost
