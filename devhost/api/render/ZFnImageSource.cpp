// SPDX-License-Identifier: MIT
#include "host/render/ZFnImageSource.h"

#include "devhost/scene/SceneGraph.h"
#include "devhost/session/RenderSession.h"
#include "devhost/util/Statuses.h"

using devhost::ImageSource;
using devhost::Node;
using devhost::NodeId;
using devhost::report;
using devhost::scene;

namespace {

const ImageSource *sourceOf(const ZFnImageSource &set, ZStatus &status) {
    const Node *node = scene().node(set.object(&status));
    return node ? node->imageSource() : nullptr;
}

/// The source's own node, or else the given one, which has to be null or of the same kind.
ZObject ownOr(const ZFnImageSource &set, NodeId ImageSource::*own, const ZObject &given,
              bool (*isKind)(const Node &), const char *wrongKind, ZStatus *ReturnStatus) {
    ZStatus status;
    const ImageSource *source = sourceOf(set, status);
    const Node *node = scene().node(given);
    if (status && node && !isKind(*node))
        status = ZStatus(ZStatus::kInvalidParameter, wrongKind);
    report(ReturnStatus, status);
    if (!status)
        return ZObject();
    return scene().node(source->*own) ? scene().object(source->*own) : given;
}

} // namespace

ZFnImageSource::ZFnImageSource() = default;
ZFnImageSource::ZFnImageSource(ZObject &object, ZStatus *ReturnStatus) {
    report(ReturnStatus, setObject(object));
}
ZFnImageSource::~ZFnImageSource() = default;

bool ZFnImageSource::hasObj(const ZObject &object) const {
    const Node *node = scene().node(object);
    return node && node->imageSource();
}

const char *ZFnImageSource::className() {
    return "ZFnImageSource";
}

ZObject ZFnImageSource::sourceLayer(ZObject const &layer, ZStatus *ReturnStatus) {
    return ownOr(
        *this, &ImageSource::layer, layer, [](const Node &node) { return node.layer() != nullptr; },
        "the object is no render layer", ReturnStatus);
}

ZObject ZFnImageSource::sourceCamera(ZObject const &camera, ZStatus *ReturnStatus) {
    return ownOr(
        *this, &ImageSource::camera, camera,
        [](const Node &node) { return node.camera() != nullptr; }, "the object is no camera",
        ReturnStatus);
}

ZString ZFnImageSource::getImageName(ZCommonRenderSettingsData::ZpathType pathType, double frame,
                                     ZString const &sceneName, ZObject const camera,
                                     ZObject const layer, ZString *imageFormat,
                                     ZStatus *ReturnStatus) const {
    ZStatus status;
    const ImageSource *source = sourceOf(*this, status);
    ZFnImageSource own(*this);
    const ZObject seenBy = status ? own.sourceCamera(camera, &status) : ZObject();
    const ZObject shown = status ? own.sourceLayer(layer, &status) : ZObject();
    ZString name;
    if (status) {
        ZCommonRenderSettingsData settings = devhost::renderSession().settings;
        if (!source->imageName.empty())
            settings.name = source->imageName.c_str();
        const Node *cameraNode = scene().node(seenBy);
        name = settings.getImageName(pathType, frame, sceneName,
                                     cameraNode ? cameraNode->name.c_str() : "", ZString(), shown,
                                     false, &status);
        if (status && imageFormat) {
            settings.namingScheme = 5; // the file name is nothing but the pattern
            settings.namePattern = "<Extension>";
            *imageFormat = settings.getImageName(ZCommonRenderSettingsData::kRelativePath, frame,
                                                 "", "", "", ZObject::kNullObj, false);
        }
    }
    report(ReturnStatus, status);
    return name;
}
