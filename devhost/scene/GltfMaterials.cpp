// SPDX-License-Identifier: MIT
#include "devhost/scene/GltfMaterials.h"

#include "devhost/image/ImageDecoder.h"
#include "devhost/scene/GltfAccessor.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace devhost {

namespace {

/// The name of a file that a URI stands for: "%20" is a blank.
std::string fileNameOf(const std::string &uri) {
    std::string result;
    for (size_t at = 0; at < uri.size(); ++at) {
        const std::string digits = uri[at] == '%' ? uri.substr(at + 1, 2) : "";
        char *end = nullptr;
        const long code = std::strtol(digits.c_str(), &end, 16);
        const bool encoded = digits.size() == 2 && *end == '\0';
        result += encoded ? char(code) : uri[at];
        at += encoded ? 2 : 0;
    }
    return result;
}

double number(const tinygltf::Value &object, const char *key, double otherwise) {
    return object.Has(key) && object.Get(key).IsNumber() ? object.Get(key).GetNumberAsDouble()
                                                         : otherwise;
}

/// A pair of numbers; what is missing is `otherwise`.
std::array<double, 2> pair(const tinygltf::Value &object, const char *key, double otherwise) {
    std::array<double, 2> result = {otherwise, otherwise};
    if (!object.Has(key))
        return result;
    const tinygltf::Value &list = object.Get(key);
    for (int at = 0; at < 2 && size_t(at) < list.ArrayLen(); ++at)
        result[size_t(at)] = list.Get(at).GetNumberAsDouble();
    return result;
}

/// The file's transform is of coordinates whose v runs downwards.
TexturePlacement placementOf(int texCoord, const tinygltf::ExtensionMap &extensions) {
    TexturePlacement result;
    result.uvSet = texCoord;
    const auto found = extensions.find("KHR_texture_transform");
    if (found == extensions.end())
        return result;
    const tinygltf::Value &transform = found->second;
    result.uvSet = int(number(transform, "texCoord", texCoord));
    const auto [x, y] = pair(transform, "offset", 0);
    const auto [sx, sy] = pair(transform, "scale", 1);
    const double angle = number(transform, "rotation", 0);
    const double c = std::cos(angle), s = std::sin(angle);
    const double rows[3][2] = {{c * sx, s * sx}, {-s * sy, c * sy}, {x + s * sy, 1 - y - c * sy}};
    for (int row = 0; row < 3; ++row)
        std::copy_n(rows[row], 2, result.matrix[row]);
    return result;
}

class MaterialReader {
  public:
    MaterialReader(const tinygltf::Model &model, const GltfImages &images, Scene &scene,
                   FileNotices &notices)
        : model_(model), images_(images), scene_(scene), notices_(notices) {}

    NodeId add(size_t index) {
        const tinygltf::Material &from = model_.materials[index];
        place_ = gltfPlace("material", index, from.name);
        const tinygltf::PbrMetallicRoughness &pbr = from.pbrMetallicRoughness;
        Material material;
        readSurface(pbr, material);
        readEmission(from, material);
        readAlpha(from, material);
        material.unlit = from.extensions.contains("KHR_materials_unlit");
        if (material.unlit) {
            material.diffuse = color(pbr.baseColorFactor);
            material.specular = material.reflectivity = material.emission = ZVector();
        }
        material.texture = textureOf(pbr.baseColorTexture, material.placement);
        if (!material.unlit)
            material.emissionTexture = textureOf(from.emissiveTexture, material.emissionPlacement);
        tellLeftOut("metallic-roughness texture", pbr.metallicRoughnessTexture.index);
        tellLeftOut("normal texture", from.normalTexture.index);
        tellLeftOut("occlusion texture", from.occlusionTexture.index);
        return scene_.add("material", from.name, material);
    }

  private:
    static ZVector color(const std::vector<double> &value) {
        return ZVector(value[0], value[1], value[2]); // of that length, as the parser checks
    }

    void readSurface(const tinygltf::PbrMetallicRoughness &pbr, Material &material) const {
        const ZVector base = color(pbr.baseColorFactor);
        const double metal = std::clamp(pbr.metallicFactor, 0.0, 1.0);
        const double rough = std::clamp(pbr.roughnessFactor, 0.05, 1.0);
        material.diffuse = base * (1 - metal);
        material.specular = ZVector(0.04, 0.04, 0.04) * (1 - metal) + base * metal;
        // The cosine power whose highlight is about as wide as the roughness makes it.
        material.shininess = std::max(2 / std::pow(rough, 4) - 2, 1.0);
        material.reflectivity = material.specular * ((1 - rough) * (1 - rough));
        // A metal shows its colour in reflections only; give it some to catch light with.
        if (metal > 0)
            material.diffuse += base * (0.5 * metal);
    }

    static void readEmission(const tinygltf::Material &from, Material &material) {
        material.emission = color(from.emissiveFactor);
        const auto strength = from.extensions.find("KHR_materials_emissive_strength");
        if (strength != from.extensions.end())
            material.emission *= number(strength->second, "emissiveStrength", 1);
    }

    void readAlpha(const tinygltf::Material &from, Material &material) {
        if (from.alphaMode == "MASK")
            material.alpha = Material::kMasked;
        else if (from.alphaMode == "BLEND")
            material.alpha = Material::kBlended;
        else if (from.alphaMode != "OPAQUE")
            notices_.add("alpha mode", place_, "alpha mode \"" + from.alphaMode + "\" is unknown",
                         "the material is opaque");
        if (material.alpha != Material::kIgnored)
            material.opacity = from.pbrMetallicRoughness.baseColorFactor[3];
        material.alphaCutoff = from.alphaCutoff;
    }

    void tellLeftOut(const char *what, int texture) {
        if (texture >= 0)
            notices_.add(what, place_, std::string("its ") + what + " is not supported",
                         "it is left out");
    }

    NodeId textureOf(const tinygltf::TextureInfo &info, TexturePlacement &placement) {
        if (info.index < 0)
            return kNoNode;
        const NodeId texture = inPlace(place_, [&] { return addTexture(info.index); });
        placement = placementOf(info.texCoord, info.extensions);
        if (placement.uvSet < 0 || placement.uvSet > 1) {
            notices_.add("texture coordinates", place_,
                         "a texture uses TEXCOORD_" + std::to_string(placement.uvSet),
                         "it uses TEXCOORD_0");
            placement.uvSet = 0;
        }
        return texture;
    }

    NodeId addTexture(int index) {
        const tinygltf::Texture &from = gltfElement(model_.textures, index, "texture");
        const auto [known, isNew] = textures_.try_emplace(index, kNoNode);
        if (!isNew)
            return known->second;
        const std::string place = gltfPlace("texture", size_t(index), from.name);
        if (from.source < 0) {
            notices_.add("image", place, "its image is of a format that only an extension knows",
                         "it is left out");
            return kNoNode;
        }
        const tinygltf::Image &image = gltfElement(model_.images, from.source, "image");
        Texture texture;
        if (image.uri.rfind("data:", 0) != 0)
            texture.fileName = fileNameOf(image.uri);
        images_.fill(from.source, texture);
        if (from.sampler >= 0)
            readSampler(gltfElement(model_.samplers, from.sampler, "sampler"), place, texture);
        return known->second = scene_.add("file", image.name, texture);
    }

    void readSampler(const tinygltf::Sampler &from, const std::string &place, Texture &texture) {
        texture.wrapU = wrapOf(from.wrapS, place);
        texture.wrapV = wrapOf(from.wrapT, place);
        texture.smooth = from.magFilter != TINYGLTF_TEXTURE_FILTER_NEAREST;
        const int nearest = texture.smooth ? TINYGLTF_TEXTURE_FILTER_LINEAR // as when enlarged
                                           : TINYGLTF_TEXTURE_FILTER_NEAREST;
        if (from.minFilter != -1 && from.minFilter != nearest)
            notices_.add("filter", place,
                         "minification filter " + std::to_string(from.minFilter) + " is asked for",
                         "the texture is sampled as when it is enlarged");
    }

    Texture::Wrap wrapOf(int mode, const std::string &place) {
        switch (mode) {
        case TINYGLTF_TEXTURE_WRAP_CLAMP_TO_EDGE:
            return Texture::kClamped;
        case TINYGLTF_TEXTURE_WRAP_MIRRORED_REPEAT:
            return Texture::kMirrored;
        case TINYGLTF_TEXTURE_WRAP_REPEAT:
            break;
        default:
            notices_.add("wrap mode", place, "wrap mode " + std::to_string(mode) + " is unknown",
                         "the texture repeats");
        }
        return Texture::kRepeated;
    }

    const tinygltf::Model &model_;
    const GltfImages &images_;
    Scene &scene_;
    FileNotices &notices_;
    std::string place_;              // of the material that is being read
    std::map<int, NodeId> textures_; // those added, by the file's index
};

} // namespace

GltfImages::Decoded GltfImages::decode(ImageBytes file) try {
    return {std::make_shared<const Pixels>(decodeImage(file)), {}};
} catch (const BadImage &bad) {
    return {nullptr, bad.what()};
}

void GltfImages::listenTo(tinygltf::TinyGLTF &parser) {
    const auto take = [](tinygltf::Image *image, int index, std::string *, std::string *, int, int,
                         const unsigned char *bytes, int count, void *self) {
        // The library does not look whether those in buffers lie there.
        if (image->bufferView < 0)
            static_cast<GltfImages *>(self)->decoded_[index] = decode({bytes, size_t(count)});
        return true;
    };
    parser.SetImageLoader(take, this);
}

void GltfImages::readBuffers(const tinygltf::Model &model) {
    for (size_t index = 0; index < model.images.size(); ++index) {
        const tinygltf::Image &image = model.images[index];
        if (image.bufferView < 0)
            continue;
        inPlace(gltfPlace("image", index, image.name), [&] {
            const auto &view = gltfElement(model.bufferViews, image.bufferView, "buffer view");
            const auto &bytes = gltfElement(model.buffers, view.buffer, "buffer").data;
            if (view.byteOffset > bytes.size() || view.byteLength > bytes.size() - view.byteOffset)
                throw BadFile("it reaches past the end of its buffer");
            decoded_[int(index)] = decode({bytes.data() + view.byteOffset, view.byteLength});
        });
    }
}

void GltfImages::fill(int index, Texture &texture) const {
    const auto found = decoded_.find(index);
    if (found == decoded_.end())
        return;
    texture.pixels = found->second.pixels;
    texture.damage = found->second.damage;
}

std::vector<NodeId> addGltfMaterials(const tinygltf::Model &model, const GltfImages &images,
                                     Scene &scene, FileNotices &notices) {
    MaterialReader reader(model, images, scene, notices);
    std::vector<NodeId> result;
    for (size_t index = 0; index < model.materials.size(); ++index)
        result.push_back(reader.add(index));
    return result;
}

} // namespace devhost
