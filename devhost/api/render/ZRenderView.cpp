// SPDX-License-Identifier: MIT
#include "host/render/ZRenderView.h"

#include "devhost/api/render/Picture.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/KnownMemory.h"
#include "devhost/util/Statuses.h"
#include "host/core/ZDagPath.h"

#include <algorithm>

using devhost::guarded;
using devhost::invalid;
using devhost::PixelRegion;

namespace {

constexpr unsigned kLargestSize = 16384;

struct View {
    devhost::Picture picture;
    PixelRegion region;
    bool open = false;
    bool immediateFeedback = false;
    /// The picture has pixels, so that its isHdr is decided.
    bool begun = false;
    size_t pixelsSent = 0;

    /// Calls work(place in the picture, place in the block) for every row of a block.
    template <class Work>
    void forRows(const PixelRegion &block, Work work) {
        for (size_t row = 0; row < block.height(); ++row)
            work((block.bottom + row) * picture.width + block.left, row * block.width());
    }

    devhost::PictureLayer *layer(const std::string &name) {
        const auto found =
            std::find_if(picture.layers.begin(), picture.layers.end(),
                         [&](const devhost::PictureLayer &l) { return l.name == name; });
        return found == picture.layers.end() ? nullptr : &*found;
    }

    void tellProgress() const {
        const auto &session = devhost::renderSession();
        const size_t all = region.width() * region.height();
        if (session.progress)
            session.progress("rendering", int(std::min(pixelsSent, all) * 100 / all));
    }
};

View &view() {
    // Never destroyed, as the session: scripts may end renders while the process exits.
    static auto *const instance = new View;
    return *instance;
}

ZStatus notOpen() {
    return {ZStatus::kFailure, "no render is open in the render view"};
}

ZStatus openPicture(unsigned width, unsigned height, const PixelRegion &region, bool keep,
                    bool feedback) {
    View &v = view();
    if (v.open)
        return {ZStatus::kFailure, "a render is open in the render view already"};
    if (!width || !height || width > kLargestSize || height > kLargestSize)
        return invalid("the picture's size is not 1 to 16384 pixels");
    if (region.isEmpty() || !region.isInside({0, width - 1, 0, height - 1}))
        return invalid("the region is empty or not inside the picture");

    const bool whole = region.width() == width && region.height() == height;
    const bool sameSize = v.picture.width == width && v.picture.height == height;
    if (!sameSize || (whole && !keep)) {
        devhost::Picture fresh;
        fresh.width = width;
        fresh.height = height;
        fresh.pixels.resize(size_t(width) * height);
        v.picture = std::move(fresh);
        v.begun = false;
    } else if (!keep) {
        v.forRows(region, [&](size_t place, size_t) {
            std::fill_n(v.picture.pixels.data() + place, region.width(), RV_PIXEL());
            for (auto &layer : v.picture.layers)
                std::fill_n(layer.values.data() + place * layer.channels,
                            region.width() * layer.channels, 0.0f);
        });
    }
    v.region = region;
    v.immediateFeedback = feedback;
    v.pixelsSent = 0;
    v.open = true;
    return {};
}

ZStatus checkLayers(View &v, size_t pixels, unsigned count, const RV_AOV *layers) {
    if (count && !layers)
        return invalid("the extra layers are null");
    for (unsigned i = 0; i < count; ++i) {
        if (!devhost::knownBytes(&layers[i]))
            return invalid("there are fewer extra layers than numberOfAOVs");
        const RV_AOV &layer = layers[i];
        if (!layer.name.length())
            return invalid("an extra layer has no name");
        if (!layer.numberOfChannels || !layer.pPixels)
            return invalid("an extra layer has no channels or no pixels");
        if (devhost::isTooShort(layer.pPixels, pixels * layer.numberOfChannels * sizeof(float)))
            return invalid("an extra layer has fewer values than the block");
        for (unsigned other = 0; other < i; ++other)
            if (layers[other].name == layer.name)
                return invalid("two extra layers have the same name");
        const auto *known = v.layer(layer.name.asChar());
        if (known && known->channels != layer.numberOfChannels)
            return invalid("an extra layer has another number of channels than before");
    }
    return {};
}

ZStatus update(const PixelRegion &block, const RV_PIXEL *pixels, bool isHdr, unsigned layerCount,
               const RV_AOV *layers) {
    View &v = view();
    if (!v.open)
        return notOpen();
    if (block.isEmpty() || !block.isInside(v.region))
        return invalid("the block is empty or not inside the open region");
    if (!pixels)
        return invalid("the pixels are null");
    if (v.begun && isHdr != v.picture.isHdr)
        return invalid("isHdr differs from earlier blocks of the picture");
    if (devhost::isTooShort(pixels, block.area() * sizeof(RV_PIXEL)))
        return invalid("there are fewer pixels than the block has");
    if (const ZStatus status = checkLayers(v, block.area(), layerCount, layers); status.error())
        return status;

    const size_t all = v.picture.pixels.size();
    for (unsigned i = 0; i < layerCount; ++i)
        if (!v.layer(layers[i].name.asChar()))
            v.picture.layers.push_back({layers[i].name.asChar(), layers[i].numberOfChannels,
                                        std::vector<float>(all * layers[i].numberOfChannels)});
    v.forRows(block, [&](size_t place, size_t offset) {
        std::copy_n(pixels + offset, block.width(), v.picture.pixels.data() + place);
        for (unsigned i = 0; i < layerCount; ++i) {
            const size_t channels = layers[i].numberOfChannels;
            std::copy_n(layers[i].pPixels + offset * channels, block.width() * channels,
                        v.layer(layers[i].name.asChar())->values.data() + place * channels);
        }
    });
    v.picture.isHdr = isHdr;
    v.begun = true;
    v.pixelsSent += block.width() * block.height();
    if (v.immediateFeedback)
        v.tellProgress();
    return {};
}

ZStatus closePicture() {
    View &v = view();
    if (!v.open)
        return notOpen();
    v.open = false;
    auto &session = devhost::renderSession();
    ++session.picturesFinished;
    session.outputError.clear();
    if (session.outputFile.empty())
        return {};
    ZStatus status = guarded([&] { return devhost::writePicture(v.picture, session.outputFile); });
    if (status.error())
        session.outputError = status.errorString().asChar();
    return status;
}

} // namespace

namespace devhost {

const Picture &viewPicture() {
    return view().picture;
}
bool viewIsOpen() {
    return view().open;
}
void abandonView() {
    view().open = false;
}

} // namespace devhost

// Layers are known as long as they live, so that updatePixels can count them.
RV_AOV::RV_AOV() {
    // Without memory for that, none is there to send.
    devhost::guarded([&] { devhost::knowMemory(this, sizeof *this); });
}
RV_AOV::RV_AOV(const RV_AOV &other) : RV_AOV() {
    *this = other;
}
RV_AOV::~RV_AOV() {
    devhost::forgetMemory(this);
}

ZRenderView::ZRenderView() = default;
ZRenderView::~ZRenderView() = default;

bool ZRenderView::doesRenderEditorExist() {
    return true;
}

ZStatus ZRenderView::setCurrentCamera(ZDagPath &cameraDagPath) {
    return guarded([&]() -> ZStatus {
        const auto &scene = devhost::scene();
        const ZObject object = cameraDagPath.node();
        const devhost::NodeId id = scene.id(object);
        const devhost::Node *node = scene.node(id);
        if (!node)
            return invalid("the path names no camera");
        if (node->camera()) {
            devhost::renderSession().camera = object;
            return {};
        }
        // A transform stands for the camera right below it.
        for (const devhost::NodeId child : node->children)
            if (scene.node(child)->camera()) {
                devhost::renderSession().camera = scene.object(child);
                return {};
            }
        return invalid("the path names no camera");
    });
}

ZStatus ZRenderView::getRenderRegion(unsigned int &left, unsigned int &right, unsigned int &bottom,
                                     unsigned int &top) {
    const auto &settings = devhost::renderSession().settings;
    if (!view().open && (!settings.width || !settings.height))
        return {ZStatus::kFailure, "the current resolution is zero"};
    const PixelRegion region = view().open ? view().region : devhost::renderRegion();
    left = region.left;
    right = region.right;
    bottom = region.bottom;
    top = region.top;
    return {};
}

ZStatus ZRenderView::startRender(unsigned int width, unsigned int height, bool doNotClearBackground,
                                 bool immediateFeedback) {
    return guarded([&] {
        // A size of zero wraps round here and is refused by openPicture().
        return openPicture(width, height, {0, width - 1, 0, height - 1}, doNotClearBackground,
                           immediateFeedback);
    });
}

ZStatus ZRenderView::startRegionRender(unsigned int imageWidth, unsigned int imageHeight,
                                       unsigned int regionLeft, unsigned int regionRight,
                                       unsigned int regionBottom, unsigned int regionTop,
                                       bool doNotClearBackground, bool immediateFeedback) {
    return guarded([&] {
        return openPicture(imageWidth, imageHeight,
                           {regionLeft, regionRight, regionBottom, regionTop}, doNotClearBackground,
                           immediateFeedback);
    });
}

ZStatus ZRenderView::updatePixels(unsigned int left, unsigned int right, unsigned int bottom,
                                  unsigned int top, RV_PIXEL *pPixels, bool isHdr,
                                  unsigned int numberOfAOVs, const RV_AOV *const pAOVs) {
    return guarded([&] {
        return update({left, right, bottom, top}, pPixels, isHdr, numberOfAOVs, pAOVs);
    });
}

ZStatus ZRenderView::refresh(unsigned int left, unsigned int right, unsigned int bottom,
                             unsigned int top) {
    return guarded([&]() -> ZStatus {
        const View &v = view();
        if (!v.open)
            return notOpen();
        const PixelRegion block{left, right, bottom, top};
        if (block.isEmpty() || !block.isInside({0, v.picture.width - 1, 0, v.picture.height - 1}))
            return invalid("the block is empty or not inside the picture");
        v.tellProgress();
        return {};
    });
}

ZStatus ZRenderView::endRender() {
    return guarded(closePicture);
}

ZStatus ZRenderView::setDrawTileBoundary(bool) {
    return {};
}

const char *ZRenderView::className() {
    return "ZRenderView";
}
