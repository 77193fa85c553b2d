#include "devhost/gl/HardwareDevice.h"

#include "devhost/gl/GlContext.h"
#include "devhost/session/DeviceCallbacks.h"
#include "host/render/ZGLFunctionTable.h"

#include <GL/gl.h>
#include <GL/glext.h>

namespace devhost {

ZStatus HardwareDevice::open() {
    GlContext &context = glContext();
    if (!context.available)
        return {ZStatus::kFailure, ("there is no OpenGL: " + context.whyNot).c_str()};
    if (!context.makeCurrent())
        return {ZStatus::kFailure, "the OpenGL context is in use in another thread"};
    if (!isOpen_) {
        isOpen_ = true;
        runDeviceNewCallbacks();
    }
    return {};
}

bool HardwareDevice::isOpen() {
    return isOpen_ && !open().error();
}

void HardwareDevice::close() {
    if (!isOpen())
        return;
    runDeviceDeletedCallbacks();
    while (depth())
        pop();
    frame_.drop();
    swatch_.drop();
    isOpen_ = false;
}

ZStatus HardwareDevice::resize(DrawTarget target, unsigned width, unsigned height) {
    DrawBuffers &resized = buffers(target);
    if (resized.exist() && resized.width() == width && resized.height() == height)
        return {};
    const bool isLoss = resized.exist();
    if (isLoss)
        runDeviceLostCallbacks();
    ZStatus status = resized.make(width, height);
    if (isLoss)
        runDeviceResetCallbacks();
    return status;
}

void HardwareDevice::push(DrawTarget target) {
    ZGLFunctionTable &gl = *glFunctionTable();
    Use use{target, 0, {}};
    gl.glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &use.framebuffer);
    gl.glGetIntegerv(GL_VIEWPORT, use.viewport);
    uses_.push_back(use);
    if (target == DrawTarget::kNothing)
        gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    else
        buffers(target).bind();
}

void HardwareDevice::pop() {
    if (uses_.empty())
        return;
    const Use use = uses_.back();
    uses_.pop_back();
    ZGLFunctionTable &gl = *glFunctionTable();
    gl.glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<unsigned>(use.framebuffer));
    gl.glViewport(use.viewport[0], use.viewport[1], use.viewport[2], use.viewport[3]);
}

HardwareDevice &hardwareDevice() {
    // Never destroyed: the context may be gone by then. Whoever ends the host closes the device.
    static auto *const instance = new HardwareDevice;
    return *instance;
}

} // namespace devhost
