// SPDX-License-Identifier: MIT
#include "devhost/gl/GlPrivateFramebuffer.h"

#include <GL/gl.h>
#include <GL/glext.h>

namespace devhost {

void attachImage(ZGLFunctionTable &gl, ZGLenum attachment, const GlImage &image) {
    if (image.kind == GL_RENDERBUFFER_EXT)
        gl.glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, attachment, image.kind, image.name);
    else if (image.kind)
        gl.glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, attachment, image.kind, image.name,
                                     image.level);
}

GlImage currentColorImage(ZGLFunctionTable &gl) {
    const auto parameter = [&gl](ZGLenum name) {
        ZGLint value = 0;
        gl.glGetFramebufferAttachmentParameterivEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT,
                                                    name, &value);
        return value;
    };
    ZGLint framebuffer = 0;
    gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &framebuffer);
    const auto type = framebuffer ? parameter(GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT) : 0;
    if (type != GL_TEXTURE && type != GL_RENDERBUFFER_EXT)
        return {};
    const auto name = static_cast<ZGLuint>(parameter(GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT));
    if (type == GL_RENDERBUFFER_EXT)
        return {GL_RENDERBUFFER_EXT, name, 0};
    return {GL_TEXTURE_2D, name, parameter(GL_FRAMEBUFFER_ATTACHMENT_TEXTURE_LEVEL_EXT)};
}

GlPrivateFramebuffer::GlPrivateFramebuffer(const GlImage &color, const GlImage &depth) {
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glGenFramebuffersEXT(1, &framebuffer_);
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    attachImage(gl, GL_COLOR_ATTACHMENT0_EXT, color);
    attachImage(gl, GL_DEPTH_ATTACHMENT_EXT, depth);
}

GlPrivateFramebuffer::~GlPrivateFramebuffer() {
    glFunctionTable()->glDeleteFramebuffersEXT(1, &framebuffer_);
}

} // namespace devhost
