// SPDX-License-Identifier: MIT
#include "devhost/gl/HardwareDevice.h"

#include "devhost/gl/GlContext.h"
#include "devhost/session/DeviceCallbacks.h"
#include "host/render/ZGLFunctionTable.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <cstdlib>

namespace devhost {

ZStatus HardwareDevice::open() {
    if (const ZStatus status = glContext().acquire(); status.error())
        return status;
    if (!isOpen_) {
        isOpen_ = true;
        glContext().beforeRelease = [] { hardwareDevice().popTo(0); };
        static const int atExit = std::atexit([] { hardwareDevice().close(); });
        static_cast<void>(atExit);
        runDeviceNewCallbacks();
    }
    return {};
}

ZStatus HardwareDevice::enter() {
    return isOpen_ ? open() : ZStatus(ZStatus::kFailure, "nothing was drawn yet");
}

void HardwareDevice::close() {
    if (!isOpen_)
        return;
    const GlUse use;
    runDeviceDeletedCallbacks();
    if (!use.status().error()) { // else another thread draws, and the buffers stay
        popTo(0);
        frame_.drop();
        swatch_.drop();
    }
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

void HardwareDevice::popTo(size_t depth) {
    while (uses_.size() > depth)
        pop();
}

HardwareDevice &hardwareDevice() {
    // Never destroyed: scripts may still use it while the process exits.
    static auto *const instance = new HardwareDevice;
    return *instance;
}

} // namespace devhost
