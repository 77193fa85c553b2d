// SPDX-License-Identifier: MIT
#include "devhost/gl/GlTextures.h"

#include "devhost/gl/GlContext.h"
#include "host/render/ZGLFunctionTable.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <map>

namespace devhost {
namespace {

struct Uploaded {
    std::weak_ptr<const Pixels> pixels;
    ZGLuint texture;
};

std::map<const Pixels *, Uploaded> &uploadedTextures() {
    static auto *const textures = new std::map<const Pixels *, Uploaded>; // outlives all scripts
    return *textures;
}

void dropUnused(ZGLFunctionTable &gl) {
    std::erase_if(uploadedTextures(), [&](const auto &entry) {
        const bool isUnused = entry.second.pixels.expired();
        if (isUnused)
            gl.glDeleteTextures(1, &entry.second.texture);
        return isUnused;
    });
}

/// Makes a texture with all its sizes. It repeats, and v runs upwards.
ZStatus upload(ZGLFunctionTable &gl, const Pixels &pixels, ZGLuint &texture) {
    const size_t row = size_t(4) * pixels.width;
    std::vector<unsigned char> fromBottom(row * pixels.height);
    for (size_t y = 0; y < pixels.height; ++y)
        std::copy_n(pixels.rgba.begin() + std::ptrdiff_t(row * y), row,
                    fromBottom.end() - std::ptrdiff_t(row * (y + 1)));

    const GlPrivateScope scope;
    gl.glGenTextures(1, &texture);
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    gl.glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, static_cast<ZGLsizei>(pixels.width),
                    static_cast<ZGLsizei>(pixels.height), 0, GL_RGBA, GL_UNSIGNED_BYTE,
                    fromBottom.data());
    const bool hasSizes = gl.extensionExists(kZGLext_frame_buffer_object);
    if (hasSizes)
        gl.glGenerateMipmapEXT(GL_TEXTURE_2D);
    gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                       hasSizes ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR);
    const ZStatus status = GlPrivateScope::check();
    if (status.error())
        gl.glDeleteTextures(1, &texture);
    return status;
}

} // namespace

ZStatus bindGlTexture(const std::shared_ptr<const Pixels> &pixels) {
    if (const ZStatus status = glContext().acquire(); status.error())
        return status;
    ZGLFunctionTable &gl = *glFunctionTable();
    dropUnused(gl);
    auto &textures = uploadedTextures();
    if (const auto found = textures.find(pixels.get()); found != textures.end()) {
        gl.glBindTexture(GL_TEXTURE_2D, found->second.texture);
        return {};
    }
    if (std::max(pixels->width, pixels->height) > static_cast<unsigned>(gl.maxTextureSize()))
        return {ZStatus::kFailure, "the image is larger than OpenGL can hold"};
    ZGLuint texture = 0;
    if (const ZStatus status = upload(gl, *pixels, texture); status.error())
        return status;
    textures[pixels.get()] = {pixels, texture};
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    return {};
}

} // namespace devhost
