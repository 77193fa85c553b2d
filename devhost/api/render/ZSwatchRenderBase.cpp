// SPDX-License-Identifier: MIT
// What every swatch has, and how the host renders one.
#include "host/render/ZSwatchRenderBase.h"

#include "devhost/api/render/Swatches.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Guarded.h"

#include <mutex>
#include <tuple>
#include <utility>

namespace devhost {

namespace {

bool enabled = true;

/// The swatch that the host is rendering, if there is one. Cancelling comes from any thread.
std::mutex currentLock;
ZSwatchRenderBase *current = nullptr;
bool currentCancelled = false;

class Current {
  public:
    explicit Current(ZSwatchRenderBase &swatch) {
        const std::lock_guard lock(currentLock);
        outer_ = {current, currentCancelled};
        current = &swatch;
        currentCancelled = false;
    }
    ~Current() {
        const std::lock_guard lock(currentLock);
        std::tie(current, currentCancelled) = outer_;
    }
    Current(const Current &) = delete;

    bool cancelled() const {
        const std::lock_guard lock(currentLock);
        return currentCancelled || renderSession().cancelled;
    }

  private:
    /// A generator may make a swatch of its own while it renders one.
    std::pair<ZSwatchRenderBase *, bool> outer_;
};

} // namespace

ZStatus renderSwatch(const ZString &generator, const ZObject &node, int resolution, ZImage &image,
                     int quality) {
    return guarded([&]() -> ZStatus {
        if (!enabled)
            return {ZStatus::kFailure, "the rendering of swatches is switched off"};
        std::unique_ptr<ZSwatchRenderBase> swatch;
        if (const ZStatus status = beginSwatch(generator, node, resolution, swatch); !status)
            return status;
        swatch->setRenderQuality(quality);
        const Current guard(*swatch);
        for (bool finished = swatch->renderParallel(); !finished; finished = swatch->doIteration())
            if (guard.cancelled())
                return {ZStatus::kFailure, "the swatch was cancelled"};
        image = swatch->image();
        return {};
    });
}

} // namespace devhost

using namespace devhost;

ZSwatchRenderBase::ZSwatchRenderBase(ZObject swatchNode, ZObject node, int resolution)
    : swatchNode_(swatchNode), node_(node), resolution_(resolution) {
    if (resolution > 0)
        image_.create(unsigned(resolution), unsigned(resolution));
}

ZSwatchRenderBase::~ZSwatchRenderBase() = default;

bool ZSwatchRenderBase::doIteration() {
    return true;
}

bool ZSwatchRenderBase::renderParallel() {
    return false;
}

void ZSwatchRenderBase::cancelParallelRendering() {}

ZObject ZSwatchRenderBase::swatchNode() const {
    return swatchNode_;
}

ZObject ZSwatchRenderBase::node() const {
    return node_;
}

int ZSwatchRenderBase::resolution() const {
    return resolution_;
}

ZImage &ZSwatchRenderBase::image() {
    return image_;
}

void ZSwatchRenderBase::setRenderQuality(int quality) {
    quality_ = quality;
}

int ZSwatchRenderBase::renderQuality() const {
    return quality_;
}

void ZSwatchRenderBase::cancelCurrentSwatchRender() {
    const std::lock_guard lock(currentLock);
    if (!current)
        return;
    currentCancelled = true;
    current->cancelParallelRendering();
}

void ZSwatchRenderBase::enableSwatchRender(bool enable) {
    enabled = enable;
}
