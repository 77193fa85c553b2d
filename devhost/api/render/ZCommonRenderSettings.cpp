// SPDX-License-Identifier: MIT
#include "host/render/ZCommonRenderSettings.h"

#include "devhost/session/RenderSession.h"
#include "devhost/util/FramePlaces.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Statuses.h"
#include "host/core/ZStringArray.h"

#include <cmath>
#include <filesystem>
#include <map>
#include <string>

namespace fs = std::filesystem;

namespace {

enum NamingScheme {
    kNameExt,
    kNameFrameExt,
    kNameUnderscoreFrameExt,
    kNameframeExt,
    kNameExtFrame,
    kPattern
};
enum ImageFormat { kPng, kExr, kCustomFormat, kMovie };

using Tokens = std::map<std::string, std::string>;

/// Replaces every <Token> that is known; others stay as they are.
std::string expand(const std::string &text, const Tokens &tokens) {
    std::string result;
    for (size_t at = 0; at < text.size();) {
        const size_t close = text[at] == '<' ? text.find('>', at) : std::string::npos;
        const auto token = close == std::string::npos
                               ? tokens.end()
                               : tokens.find(text.substr(at + 1, close - at - 1));
        if (token == tokens.end()) {
            result += text[at++];
        } else {
            result += token->second;
            at = close + 1;
        }
    }
    return result;
}

/// A text as one part of a file name.
std::string fileNamePart(const std::string &text) {
    std::string result = text;
    for (char &c : result)
        if (static_cast<unsigned char>(c) < ' ' ||
            std::string("/\\|:*?\"<>").find(c) != std::string::npos)
            c = '_';
    return result;
}

/// The last name of a path such as "|group|camera".
std::string lastName(const std::string &path) {
    const size_t bar = path.rfind('|');
    return bar == std::string::npos ? path : path.substr(bar + 1);
}

std::string nodeName(const ZObject &object) {
    const auto *node = devhost::scene().node(devhost::scene().id(object));
    return node ? node->name : std::string();
}

std::string sceneNameOr(const ZString &given) {
    std::string name = given.asChar();
    if (name.empty())
        name = devhost::scene().fileName();
    name = fs::path(name).stem().string();
    return name.empty() ? "untitled" : fileNamePart(name);
}

std::string cameraNameOr(const ZString &given) {
    if (given.length())
        return fileNamePart(lastName(given.asChar()));
    const auto &scene = devhost::scene();
    devhost::NodeId id = scene.id(devhost::renderSession().camera);
    if (id == devhost::kNoNode)
        id = scene.findCamera();
    const auto *node = scene.node(id);
    return node ? fileNamePart(node->name) : std::string();
}

/// Reads "RenderPass=shadow;Version=v002".
void addCustomTokens(const ZString &list, Tokens &tokens) {
    ZStringArray parts;
    list.split(';', parts);
    for (unsigned i = 0; i < parts.length(); ++i) {
        const std::string part = parts[i].asChar();
        const size_t equals = part.find('=');
        if (equals == std::string::npos)
            continue;
        const size_t start = part.find_first_not_of(' ');
        tokens[part.substr(start, equals - start)] = fileNamePart(part.substr(equals + 1));
    }
}

std::string extensionOf(const ZCommonRenderSettingsData &settings, const ZString &given) {
    if (given.length())
        return given.asChar();
    if (settings.useCustomExt)
        return settings.customExt.asChar();
    switch (settings.imageFormat) {
    case kExr:
        return "exr";
    case kCustomFormat:
        return settings.customImageFormat.asChar();
    case kMovie:
        return "mov";
    default:
        return "png";
    }
}

double fileNumber(const ZCommonRenderSettingsData &settings, double frame) {
    if (!settings.renumberFrames)
        return frame;
    const double step = settings.frameBy != 0 ? settings.frameBy : 1;
    const double index = (frame - settings.frameStart.as(ZTime::uiUnit())) / step;
    return settings.renumberStart + index * settings.renumberBy;
}

void joinWith(std::string &text, const std::string &separator, const std::string &part) {
    if (!text.empty() && !part.empty())
        text += separator;
    text += part;
}

} // namespace

ZCommonRenderSettingsData::ZCommonRenderSettingsData()
    : namingScheme(kNameExt), framePadding(4), imageFormat(kPng), frameStart(1), frameEnd(1),
      frameBy(1), skipExistingFrames(false), renderAll(true), useCustomExt(false),
      renumberFrames(false), renumberStart(1), renumberBy(1), width(640), height(480),
      deviceAspectRatio(640.0f / 480.0f), pixelAspectRatio(1), dotPerInch(72),
      enableDefaultLight(true) {}

ZCommonRenderSettingsData::~ZCommonRenderSettingsData() = default;

bool ZCommonRenderSettingsData::isAnimated() const {
    return isMovieFormat() || (namingScheme >= kNameFrameExt && namingScheme <= kPattern);
}

bool ZCommonRenderSettingsData::isMovieFormat() const {
    return imageFormat == kMovie;
}

void ZCommonRenderSettingsData::setPassName(ZString const &passName) {
    passName_ = passName;
}
void ZCommonRenderSettingsData::setFieldName(ZString const &fieldName) {
    fieldName_ = fieldName;
}

ZString ZCommonRenderSettingsData::getImageName(ZpathType pathType, double frameNumber,
                                                ZString const &sceneName, ZString const &cameraName,
                                                ZString const &format, ZObject const layer,
                                                bool const createDirectory,
                                                ZStatus *ReturnStatus) const {
    return getImageName(pathType, frameNumber, sceneName, cameraName, format, layer, ZString(),
                        createDirectory, ReturnStatus);
}

ZString ZCommonRenderSettingsData::getImageName(ZpathType pathType, double frameNumber,
                                                ZString const &sceneName, ZString const &cameraName,
                                                ZString const &format, ZObject const layer,
                                                ZString const &customTokens,
                                                bool const createDirectory,
                                                ZStatus *ReturnStatus) const {
    ZString result;
    const ZStatus status = devhost::guarded([&]() -> ZStatus {
        if (pathType != kRelativePath && pathType != kFullPathImage && pathType != kFullPathTmp)
            return devhost::invalid("unknown path type");
        if (!std::isfinite(frameNumber))
            return devhost::invalid("the frame number is not a number");
        const double number = fileNumber(*this, frameNumber);
        const std::string frame = devhost::frameText(number, framePadding);
        const std::string extension = extensionOf(*this, format);
        const auto &scene = devhost::scene();
        const ZObject shown = layer.isNull() ? scene.object(scene.currentLayer()) : layer;
        Tokens tokens = {{"Scene", sceneNameOr(sceneName)},
                         {"Camera", cameraNameOr(cameraName)},
                         {"RenderLayer", fileNamePart(nodeName(shown))},
                         {"RenderPass", fileNamePart(passName_.asChar())},
                         {"Extension", fileNamePart(extension)},
                         {"Frame", frame}};
        addCustomTokens(customTokens, tokens);

        std::string stem = expand(name.length() ? name.asChar() : "<Scene>", tokens);
        joinWith(stem, "_", fileNamePart(fieldName_.asChar()));
        const std::string dotExtension = extension.empty() ? "" : "." + extension;
        std::string file;
        switch (namingScheme) {
        case kNameFrameExt:
            file = stem + "." + frame + dotExtension;
            break;
        case kNameUnderscoreFrameExt:
            file = stem + "_" + frame + dotExtension;
            break;
        case kNameframeExt:
            file = stem + frame + dotExtension;
            break;
        case kNameExtFrame:
            file = stem + dotExtension + "." + frame;
            break;
        case kPattern:
            // The # are replaced first, so that one in a token's value stays.
            tokens["Name"] = stem;
            file = expand(devhost::numberHashes(devhost::hashPlaces(namePattern.asChar()), number),
                          tokens);
            break;
        default:
            file = stem + dotExtension;
        }

        // A token without a value may leave an empty or absolute folder behind.
        fs::path path = fs::path(file).lexically_normal().relative_path();
        if (!path.empty() && *path.begin() == "..")
            return devhost::invalid(("the image's name leads out of its folder: " + file).c_str());
        if (pathType != kRelativePath) {
            fs::path folder = devhost::renderSession().imagesFolder;
            if (pathType == kFullPathTmp)
                folder /= "tmp";
            path = fs::weakly_canonical(fs::absolute(folder)) / path;
            if (createDirectory)
                fs::create_directories(path.parent_path());
        }
        result = ZString(path.c_str());
        return {};
    });
    devhost::report(ReturnStatus, status);
    return result;
}

bool ZCommonRenderSettingsData::shouldRenderFrameAtTime(ZpathType pathType, double frameNumber,
                                                        ZString const &sceneName,
                                                        ZString const &cameraName,
                                                        ZString const &format, ZObject const layer,
                                                        ZString const &customTokens) const {
    if (!skipExistingFrames)
        return true;
    ZStatus status;
    // The file itself is meant, even where its relative name is asked for.
    const ZpathType full = pathType == kRelativePath ? kFullPathImage : pathType;
    const ZString path = getImageName(full, frameNumber, sceneName, cameraName, format, layer,
                                      customTokens, false, &status);
    std::error_code ignored;
    return status.error() || !fs::exists(path.asChar(), ignored);
}

ZString ZCommonRenderSettingsData::getBufferName(ZObject const &layer, ZObject const &camera,
                                                 ZString const &passName, ZString const &separator,
                                                 bool forFileName, ZStatus *ReturnStatus) const {
    std::string result;
    const ZStatus status = devhost::guarded([&]() -> ZStatus {
        const std::string between = separator.length() ? separator.asChar() : ".";
        for (const std::string &part :
             {nodeName(layer), nodeName(camera), std::string(passName.asChar())})
            joinWith(result, between, part);
        if (result.empty())
            return devhost::invalid("layer, camera and pass are all empty");
        if (forFileName)
            result = fileNamePart(result);
        return {};
    });
    devhost::report(ReturnStatus, status);
    return status.error() ? ZString() : ZString(result.c_str());
}

ZString ZCommonRenderSettingsData::getPreRenderFrameCmd() {
    return devhost::renderSession().settings.preRenderKos;
}

ZString ZCommonRenderSettingsData::getPostRenderFrameCmd() {
    return devhost::renderSession().settings.postRenderKos;
}

const char *ZCommonRenderSettingsData::className() {
    return "ZCommonRenderSettingsData";
}
