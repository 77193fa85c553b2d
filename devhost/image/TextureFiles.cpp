// SPDX-License-Identifier: MIT
// File names of textures.
#include "devhost/image/TextureFiles.h"

#include "devhost/image/TextureImage.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/util/FileName.h"
#include "host/core/ZImage.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>

namespace devhost {

namespace fs = std::filesystem;

std::string relativeToScene(const std::string &name) {
    const fs::path path = fs::path(name).lexically_normal();
    if (!path.is_absolute())
        return name;
    const fs::path below = path.lexically_relative(fs::path(scene().folder()).lexically_normal());
    return below.empty() || *below.begin() == ".." ? name : below.string();
}

std::string withFrame(const std::string &name, const std::string &frame) {
    const auto isPlace = [](char c) { return c == '#' || std::isdigit((unsigned char)c); };
    const size_t folder = name.rfind('/');
    size_t end = name.size();
    const size_t first = folder == std::string::npos ? 0 : folder + 1;
    // A digit in a three-letter extension such as ".mp4" is no frame number, unless all are.
    const size_t dot = name.rfind('.');
    if (dot != std::string::npos && dot > first &&
        !std::all_of(name.begin() + std::ptrdiff_t(dot) + 1, name.end(), isPlace))
        end = dot;
    while (end > first && !isPlace(name[end - 1]))
        --end;
    size_t begin = end;
    while (begin > first && isPlace(name[begin - 1]))
        --begin;
    return begin == end ? name : name.substr(0, begin) + frame + name.substr(end);
}

std::string withTile(const std::string &name, const std::string &tile) {
    const std::string token = "<UDIM>";
    std::string result = name;
    for (size_t at = result.find(token); at != std::string::npos;
         at = result.find(token, at + tile.size()))
        result.replace(at, token.size(), tile);
    return result;
}

ZStatus existingFile(const std::string &name, std::string &file) {
    file = resolveFile(name);
    return file.empty() ? ZStatus(ZStatus::kNotFound, ("file not found: " + name).c_str())
                        : ZStatus();
}

ZStatus textureFile(const ZObject &texture, std::string &file) {
    const Node *node = scene().node(texture);
    if (!node || !node->texture())
        return ZStatus(ZStatus::kInvalidParameter, "the node is not a texture");
    if (node->texture()->fileName.empty())
        return ZStatus(ZStatus::kNotFound,
                       ("the texture is held by the scene file itself: " + node->name).c_str());
    return existingFile(node->texture()->fileName, file);
}

ZStatus backgroundFile(const ZObject &camera, std::string &file) {
    const Node *node = scene().node(camera);
    if (!node || !node->camera())
        return ZStatus(ZStatus::kInvalidParameter, "the node is not a camera");
    if (node->camera()->imageName.empty())
        return ZStatus(ZStatus::kNotFound,
                       ("the camera has no background image: " + node->name).c_str());
    return existingFile(node->camera()->imageName, file);
}

namespace {

ZStatus writePng(const Pixels &pixels, const std::string &file) {
    ZImage image;
    if (const ZStatus status = image.create(pixels.width, pixels.height); !status)
        return status;
    const size_t row = size_t(4) * pixels.width;
    for (unsigned y = 0; y < pixels.height; ++y) // the image class puts row 0 at the bottom
        std::memcpy(image.pixels() + row * y, &pixels.rgba[row * (pixels.height - 1 - y)], row);
    return image.writeToFile(ZString(file.c_str()), ZString("png"));
}

} // namespace

ZStatus convertedFile(const ZObject &texture, bool always, std::string &file) {
    if (const ZStatus status = textureFile(texture, file); !status)
        return status;
    const fs::path source = file;
    if (lowerExtension(source) != ".psd")
        return ZStatus();

    const fs::path target = fs::path(source).replace_extension(".png");
    std::error_code absent, ignored;
    const auto written = fs::last_write_time(target, absent);
    if (always || absent || written < fs::last_write_time(source, ignored)) {
        std::shared_ptr<const Pixels> pixels;
        if (const ZStatus status = readImage(source.string(), pixels); !status)
            return status;
        if (const ZStatus status = writePng(*pixels, target.string()); !status)
            return status;
    }
    file = target.string();
    return ZStatus();
}

} // namespace devhost
