// SPDX-License-Identifier: MIT
#include "devhost/gl/GlPrivateFramebuffer.h"

#include <GL/gl.h>
#include <GL/glext.h>

namespace devhost {

namespace {

ZGLint attachmentParameter(ZGLFunctionTable &gl, ZGLenum attachment, ZGLenum name) {
    ZGLint value = 0;
    gl.glGetFramebufferAttachmentParameterivEXT(GL_FRAMEBUFFER_EXT, attachment, name, &value);
    return value;
}

GlImage imageAt(ZGLFunctionTable &gl, ZGLenum attachment) {
    const auto parameter = [&](ZGLenum name) { return attachmentParameter(gl, attachment, name); };
    const auto type = parameter(GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT);
    if (type != GL_TEXTURE && type != GL_RENDERBUFFER_EXT)
        return {};
    const auto name = static_cast<ZGLuint>(parameter(GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT));
    if (type == GL_RENDERBUFFER_EXT)
        return {GL_RENDERBUFFER_EXT, name};
    const auto face = parameter(GL_FRAMEBUFFER_ATTACHMENT_TEXTURE_CUBE_MAP_FACE_EXT);
    return {static_cast<ZGLenum>(face), name,
            parameter(GL_FRAMEBUFFER_ATTACHMENT_TEXTURE_LEVEL_EXT),
            parameter(GL_FRAMEBUFFER_ATTACHMENT_TEXTURE_3D_ZOFFSET_EXT)};
}

} // namespace

void attachImage(ZGLFunctionTable &gl, ZGLenum attachment, const GlImage &image) {
    if (image.kind == GL_RENDERBUFFER_EXT)
        gl.glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, attachment, image.kind, image.name);
    else if (image.kind == GL_TEXTURE_3D)
        gl.glFramebufferTexture3DEXT(GL_FRAMEBUFFER_EXT, attachment, image.kind, image.name,
                                     image.level, image.slice);
    else if (image.kind)
        gl.glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, attachment, image.kind, image.name,
                                     image.level);
}

GlImage currentColorImage(ZGLFunctionTable &gl) {
    ZGLint framebuffer = 0, attachment = GL_NONE;
    gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &framebuffer);
    gl.glGetIntegerv(GL_DRAW_BUFFER, &attachment);
    if (!framebuffer || attachment == GL_NONE)
        return {};
    return imageAt(gl, static_cast<ZGLenum>(attachment));
}

GlPrivateFramebuffer::GlPrivateFramebuffer(const GlImage &color, const GlImage &depth) {
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glGenFramebuffersEXT(1, &framebuffer_);
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
    const auto attach = [&](const GlImage &image) {
        attachImage(gl, GL_COLOR_ATTACHMENT0_EXT, image);
        return isComplete();
    };
    if (!color.name || color.kind)
        attach(color);
    else
        for (const ZGLenum kind :
             {ZGLenum{GL_TEXTURE_2D}, ZGLenum{GL_TEXTURE_RECTANGLE}, ZGLenum{GL_TEXTURE_3D}})
            if (attach({kind, color.name, color.level, color.slice}))
                break;
    attachImage(gl, GL_DEPTH_ATTACHMENT_EXT, depth);
}

bool GlPrivateFramebuffer::isComplete() {
    return glFunctionTable()->glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) ==
           GL_FRAMEBUFFER_COMPLETE_EXT;
}

GlPrivateFramebuffer::~GlPrivateFramebuffer() {
    glFunctionTable()->glDeleteFramebuffersEXT(1, &framebuffer_);
}

} // namespace devhost
