// SPDX-License-Identifier: MIT
#include "host/render/ZHwTextureManager.h"

#include "devhost/gl/GlTextures.h"
#include "devhost/image/TextureFiles.h"
#include "devhost/image/TextureImage.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/util/Guarded.h"
#include "host/core/ZPlug.h"

#include <map>

namespace {

using devhost::guarded;
using devhost::NodeId;
using PixelsPointer = std::shared_ptr<const devhost::Pixels>;

struct RegisteredFile {
    std::string name; // absolute
    PixelsPointer pixels;
    unsigned registrations;
};

struct RegisteredFiles {
    std::map<ZHwTextureFileHandle, RegisteredFile> byHandle;
    ZHwTextureFileHandle last = 0; // handles are never used again
};

RegisteredFiles &files() {
    static auto *const instance = new RegisteredFiles; // outlives all scripts
    return *instance;
}

ZStatus unknownHandle(ZHwTextureFileHandle handle) {
    return {ZStatus::kInvalidParameter,
            ("there is no texture file with the handle " + std::to_string(handle)).c_str()};
}

ZStatus registerFile(const std::string &fileName, ZHwTextureFileHandle &handle) {
    std::string name;
    if (const ZStatus status = devhost::existingFile(fileName, name); status.error())
        return status;
    for (auto &[known, file] : files().byHandle)
        if (file.name == name) {
            ++file.registrations;
            handle = known;
            return {};
        }
    PixelsPointer pixels;
    if (const ZStatus status = devhost::readImage(name, pixels); status.error())
        return status;
    handle = ++files().last;
    files().byHandle[handle] = {name, std::move(pixels), 1};
    return {};
}

/// The texture that a node is, or that the colour of a material has.
NodeId textureOf(const ZObject &object) {
    const auto &scene = devhost::scene();
    const NodeId id = scene.id(object);
    const devhost::Node *node = scene.node(id);
    if (node && node->texture())
        return id;
    return node && node->material() ? node->material()->texture : devhost::kNoNode;
}

NodeId textureOf(const ZPlug &plug) {
    const auto &scene = devhost::scene();
    const devhost::Node *node = scene.node(scene.id(plug.node()));
    const bool isOtherPlug = node && node->material() && plug.partialName() != ZString("diffuse");
    return plug.isNull() || isOtherPlug ? devhost::kNoNode : textureOf(plug.node());
}

ZStatus bindTexture(const PixelsPointer &pixels, ZImageFileInfo::ZHwTextureType &type,
                    ZImageFileInfo::ZImageType imageType) {
    if (imageType < ZImageFileInfo::kImageTypeUnknown || imageType > ZImageFileInfo::kImageTypeBump)
        return {ZStatus::kInvalidParameter, "the image type is unknown"};
    type = ZImageFileInfo::kHwTexture2D;
    return devhost::bindGlTexture(pixels);
}

ZStatus bindNode(NodeId texture, ZImageFileInfo::ZHwTextureType &type,
                 ZImageFileInfo::ZImageType imageType) {
    if (texture == devhost::kNoNode)
        return {ZStatus::kInvalidParameter, "there is no texture to bind"};
    PixelsPointer pixels;
    if (const ZStatus status = devhost::texturePixels(texture, pixels); status.error())
        return status;
    return bindTexture(pixels, type, imageType);
}

} // namespace

const char *ZHwTextureManager::className() {
    return "ZHwTextureManager";
}

ZStatus ZHwTextureManager::glBind(ZObject const &object, ZImageFileInfo::ZHwTextureType &type,
                                  ZImageFileInfo::ZImageType imageType) {
    type = ZImageFileInfo::kHwTextureUnknown;
    return guarded([&] { return bindNode(textureOf(object), type, imageType); });
}

ZStatus ZHwTextureManager::glBind(ZPlug const &plug, ZImageFileInfo::ZHwTextureType &type,
                                  ZImageFileInfo::ZImageType imageType) {
    type = ZImageFileInfo::kHwTextureUnknown;
    return guarded([&] { return bindNode(textureOf(plug), type, imageType); });
}

ZStatus ZHwTextureManager::glBind(ZHwTextureFileHandle const &handle,
                                  ZImageFileInfo::ZHwTextureType &type,
                                  ZImageFileInfo::ZImageType imageType) {
    type = ZImageFileInfo::kHwTextureUnknown;
    return guarded([&]() -> ZStatus {
        const auto found = files().byHandle.find(handle);
        return found == files().byHandle.end() ? unknownHandle(handle)
                                               : bindTexture(found->second.pixels, type, imageType);
    });
}

ZStatus ZHwTextureManager::registerTextureFile(ZString const &fileName,
                                               ZHwTextureFileHandle &handle) {
    handle = 0;
    return guarded([&] { return registerFile(fileName.asChar(), handle); });
}

ZStatus ZHwTextureManager::deregisterTextureFile(ZHwTextureFileHandle const &handle) {
    return guarded([&]() -> ZStatus {
        const auto found = files().byHandle.find(handle);
        if (found == files().byHandle.end())
            return unknownHandle(handle);
        if (--found->second.registrations == 0)
            files().byHandle.erase(found);
        return {};
    });
}

ZStatus ZHwTextureManager::textureFile(ZHwTextureFileHandle const &handle, ZString &fileName) {
    return guarded([&]() -> ZStatus {
        const auto found = files().byHandle.find(handle);
        if (found == files().byHandle.end())
            return unknownHandle(handle);
        fileName = ZString(found->second.name.c_str());
        return {};
    });
}
