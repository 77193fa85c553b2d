// SPDX-License-Identifier: MIT
#include "devhost/gl/GlTarget.h"

#include "devhost/gl/GlContext.h"
#include "host/render/ZGLFunctionTable.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <cstdlib>

namespace devhost {

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

GlTarget::GlTarget(unsigned width, unsigned height) {
    ZGLFunctionTable &gl = *glFunctionTable();
    textures_.make(width, height, GL_DEPTH_COMPONENT24);
    gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &previous_);
    gl.glGenFramebuffersEXT(1, &framebuffer_);
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    textures_.attach();
}

GlTarget::~GlTarget() {
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<ZGLuint>(previous_));
    gl.glDeleteFramebuffersEXT(1, &framebuffer_);
    textures_.drop();
}

void GlTarget::bind() {
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    gl.glViewport(0, 0, textures_.width, textures_.height);
}

} // namespace devhost
