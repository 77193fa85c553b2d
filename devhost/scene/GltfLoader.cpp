// Reader of .gltf and .glb files: node transforms, triangles, materials, cameras and lights.
#include "devhost/image/ImageDecoder.h"
#include "devhost/scene/MeshBuilder.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/scene/SceneLoader.h"
#include "devhost/util/Guarded.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <optional>
#include <set>

namespace devhost {

namespace {

template <class T>
const T &element(const std::vector<T> &all, int index, const char *what) {
    if (index < 0 || size_t(index) >= all.size())
        throw BadFile(std::string(what) + " index " + std::to_string(index) + " is out of range");
    return all[size_t(index)];
}

double degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

ZVector color(const std::vector<double> &value, const ZVector &otherwise) {
    return value.size() >= 3 ? ZVector(value[0], value[1], value[2]) : otherwise;
}

/// Images that cannot be decoded leave the texture empty: the scene is usable without.
bool decodeQuietly(tinygltf::Image *image, const int, std::string *, std::string *, int, int,
                   const unsigned char *bytes, int count, void *) {
    guarded([&] {
        Pixels pixels = decodeImage({bytes, size_t(count)});
        image->width = int(pixels.width);
        image->height = int(pixels.height);
        image->component = 4;
        image->image = std::move(pixels.rgba);
    });
    return true;
}

/// Reads the numbers of accessors, with every range checked.
class Accessor {
  public:
    Accessor(const tinygltf::Model &model, int index, int wantedType, const char *what)
        : accessor_(element(model.accessors, index, "accessor")), what_(what) {
        if (accessor_.type != wantedType)
            throw BadFile(what_ + " has the wrong type");
        if (accessor_.sparse.isSparse)
            throw BadFile(what_ + " is sparse, which is not supported");
        const auto &view = element(model.bufferViews, accessor_.bufferView, "buffer view");
        const auto &bytes = element(model.buffers, view.buffer, "buffer").data;
        const int stride = accessor_.ByteStride(view);
        const int width = tinygltf::GetComponentSizeInBytes(uint32_t(accessor_.componentType));
        if (stride <= 0 || width <= 0)
            throw BadFile(what_ + " has a bad component type or stride");
        stride_ = size_t(stride);
        componentSize_ = size_t(width);
        const size_t size = componentSize_ * components();
        const size_t begin = view.byteOffset + accessor_.byteOffset;
        if (view.byteOffset > bytes.size() || accessor_.byteOffset > bytes.size() ||
            begin > bytes.size() ||
            (accessor_.count > 0 &&
             (size > bytes.size() - begin ||
              accessor_.count - 1 > (bytes.size() - begin - size) / stride_)))
            throw BadFile(what_ + " reaches past the end of its buffer");
        data_ = bytes.data() + begin;
    }

    size_t count() const { return accessor_.count; }
    size_t components() const {
        return size_t(tinygltf::GetNumComponentsInType(uint32_t(accessor_.type)));
    }

    /// A component as a number; integers of normalized accessors become 0 to 1 (or -1 to 1).
    float number(size_t index, size_t component) const {
        switch (accessor_.componentType) {
        case TINYGLTF_COMPONENT_TYPE_FLOAT:
            return read<float>(index, component);
        case TINYGLTF_COMPONENT_TYPE_BYTE:
            return scaled(read<int8_t>(index, component), 127);
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
            return scaled(read<uint8_t>(index, component), 255);
        case TINYGLTF_COMPONENT_TYPE_SHORT:
            return scaled(read<int16_t>(index, component), 32767);
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
            return scaled(read<uint16_t>(index, component), 65535);
        }
        throw BadFile(what_ + " has an unsupported component type");
    }

    int integer(size_t index) const {
        switch (accessor_.componentType) {
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
            return read<uint8_t>(index, 0);
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
            return read<uint16_t>(index, 0);
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
            // Too large a number turns out as out of range when the mesh is built.
            return int(std::min<uint32_t>(read<uint32_t>(index, 0), INT32_MAX));
        }
        throw BadFile(what_ + " has an unsupported component type");
    }

  private:
    template <class T>
    T read(size_t index, size_t component) const {
        T value;
        std::memcpy(&value, data_ + index * stride_ + component * componentSize_, sizeof value);
        return value;
    }
    float scaled(int value, int most) const {
        return accessor_.normalized ? std::max(float(value) / float(most), -1.0f) : float(value);
    }

    const tinygltf::Accessor &accessor_;
    std::string what_;
    const unsigned char *data_ = nullptr;
    size_t stride_ = 0, componentSize_ = 0;
};

class Reader {
  public:
    Reader(const tinygltf::Model &model, Scene &scene) : model_(model), scene_(scene) {}

    void read() {
        addMaterials();
        meshes_.resize(model_.meshes.size());
        std::vector<std::pair<int, NodeId>> todo; // nodes of the file, and their parents here
        for (int root : rootNodes())
            todo.emplace_back(root, kNoNode);
        std::set<int> seen;
        for (size_t at = 0; at < todo.size(); ++at) {
            const auto [index, parent] = todo[at];
            const tinygltf::Node &node = element(model_.nodes, index, "node");
            if (!seen.insert(index).second)
                throw BadFile("node " + std::to_string(index) + " has several parents");
            const NodeId id = addNode(node, parent);
            for (int child : node.children)
                todo.emplace_back(child, id);
        }
    }

  private:
    std::vector<int> rootNodes() const {
        if (!model_.scenes.empty())
            return element(model_.scenes, std::max(model_.defaultScene, 0), "scene").nodes;
        std::vector<int> roots;
        std::set<int> children;
        for (const tinygltf::Node &node : model_.nodes)
            children.insert(node.children.begin(), node.children.end());
        for (int index = 0; index < int(model_.nodes.size()); ++index)
            if (!children.contains(index))
                roots.push_back(index);
        return roots;
    }

    void addMaterials() {
        for (const tinygltf::Material &from : model_.materials) {
            const tinygltf::PbrMetallicRoughness &pbr = from.pbrMetallicRoughness;
            const ZVector base = color(pbr.baseColorFactor, ZVector(1, 1, 1));
            const double metal = std::clamp(pbr.metallicFactor, 0.0, 1.0);
            const double rough = std::clamp(pbr.roughnessFactor, 0.05, 1.0);
            Material material;
            material.diffuse = base * (1 - metal);
            material.specular = ZVector(0.04, 0.04, 0.04) * (1 - metal) + base * metal;
            // The cosine power whose highlight is about as wide as the roughness makes it.
            material.shininess = std::max(2 / std::pow(rough, 4) - 2, 1.0);
            material.reflectivity = material.specular * ((1 - rough) * (1 - rough));
            material.emission = color(from.emissiveFactor, ZVector());
            if (from.alphaMode == "BLEND" && pbr.baseColorFactor.size() == 4)
                material.opacity = pbr.baseColorFactor[3];
            // A metal shows its colour in reflections only; give it some to catch light with.
            if (metal > 0)
                material.diffuse += base * (0.5 * metal);
            if (pbr.baseColorTexture.index >= 0)
                material.texture = addTexture(pbr.baseColorTexture.index);
            materials_.push_back(scene_.add("material", from.name, material));
        }
    }

    NodeId addTexture(int index) {
        const int source = element(model_.textures, index, "texture").source;
        if (source < 0)
            return kNoNode; // an image of a format that only an extension knows
        const tinygltf::Image &image = element(model_.images, source, "image");
        Texture texture;
        if (image.uri.rfind("data:", 0) != 0)
            texture.fileName = image.uri;
        if (image.width > 0 && image.height > 0 &&
            image.image.size() == size_t(4) * size_t(image.width) * size_t(image.height)) {
            auto pixels = std::make_shared<Pixels>();
            pixels->width = unsigned(image.width);
            pixels->height = unsigned(image.height);
            pixels->rgba = image.image;
            texture.pixels = std::move(pixels);
        }
        return scene_.add("file", image.name, texture);
    }

    NodeId addNode(const tinygltf::Node &node, NodeId parent) {
        // What a node carries becomes the node itself where it is one thing only, else children.
        std::vector<std::pair<std::string, Payload>> carried;
        if (node.mesh >= 0)
            if (auto mesh = meshOf(node.mesh))
                carried.emplace_back("mesh", mesh);
        if (node.camera >= 0)
            carried.emplace_back("camera", cameraOf(node.camera));
        if (auto light = lightOf(node))
            carried.emplace_back("light", *light);
        const bool single = carried.size() == 1;
        const NodeId id = single
                              ? scene_.add(carried[0].first, node.name, carried[0].second, parent)
                              : scene_.add("transform", node.name, {}, parent);
        scene_.edit(id)->local = localMatrix(node);
        for (const auto &[type, payload] : carried)
            if (!single)
                scene_.add(type, type, payload, id);
        return id;
    }

    static ZMatrix localMatrix(const tinygltf::Node &node) {
        ZMatrix result;
        if (node.matrix.size() == 16) { // by columns, for columns: just what rows by rows are
            for (int at = 0; at < 16; ++at)
                result.matrix[at / 4][at % 4] = node.matrix[size_t(at)];
        } else {
            if (node.rotation.size() == 4) {
                double x = node.rotation[0], y = node.rotation[1], z = node.rotation[2];
                double w = node.rotation[3];
                const double length = std::sqrt(x * x + y * y + z * z + w * w);
                if (length > 0)
                    x /= length, y /= length, z /= length, w /= length;
                const double rows[3][3] = {
                    {1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)},
                    {2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)},
                    {2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)}};
                for (int row = 0; row < 3; ++row)
                    std::copy_n(rows[row], 3, result.matrix[row]);
            }
            if (node.scale.size() == 3)
                for (int row = 0; row < 3; ++row)
                    for (int column = 0; column < 3; ++column)
                        result.matrix[row][column] *= node.scale[size_t(row)];
            if (node.translation.size() == 3)
                std::copy_n(node.translation.begin(), 3, result.matrix[3]);
        }
        for (const auto &row : result.matrix)
            for (double value : row)
                if (!std::isfinite(value))
                    throw BadFile("a node's transform is not finite");
        return result;
    }

    Camera cameraOf(int index) const {
        const tinygltf::Camera &from = element(model_.cameras, index, "camera");
        Camera camera;
        if (from.type == "orthographic") {
            const auto &lens = from.orthographic;
            camera.orthographic = true;
            camera.orthographicWidth = 2 * lens.xmag;
            camera.filmAspect = lens.ymag != 0 ? std::abs(lens.xmag / lens.ymag) : 1;
            camera.nearClip = lens.znear;
            camera.farClip = lens.zfar;
            return camera;
        }
        const auto &lens = from.perspective;
        if (!(lens.yfov > 0 && lens.yfov < std::numbers::pi))
            throw BadFile("camera " + std::to_string(index) + " has a bad field of view");
        camera.filmAspect = lens.aspectRatio > 0 ? lens.aspectRatio : 4.0 / 3.0;
        camera.verticalFieldOfView = degrees(lens.yfov);
        camera.horizontalFieldOfView =
            degrees(2 * std::atan(std::tan(lens.yfov / 2) * camera.filmAspect));
        camera.nearClip = lens.znear;
        if (lens.zfar > lens.znear)
            camera.farClip = lens.zfar; // none means infinite: keep the default
        return camera;
    }

    std::optional<Light> lightOf(const tinygltf::Node &node) const {
        const auto extension = node.extensions.find("KHR_lights_punctual");
        if (extension == node.extensions.end() || !extension->second.Has("light"))
            return {};
        const int index = extension->second.Get("light").GetNumberAsInt();
        const tinygltf::Light &from = element(model_.lights, index, "light");
        Light light;
        light.color = color(from.color, ZVector(1, 1, 1));
        light.intensity = from.intensity;
        if (from.type == "point" || from.type == "spot")
            light.decay = 2;
        else if (from.type != "directional")
            throw BadFile("light type \"" + from.type + "\" is unknown");
        light.kind = from.type == "point"  ? Light::kPoint
                     : from.type == "spot" ? Light::kSpot
                                           : Light::kDirectional;
        light.innerCone = from.spot.innerConeAngle;
        light.outerCone = from.spot.outerConeAngle;
        return light;
    }

    std::shared_ptr<const Mesh> meshOf(int index) {
        const tinygltf::Mesh &from = element(model_.meshes, index, "mesh");
        std::shared_ptr<const Mesh> &mesh = meshes_[size_t(index)];
        if (mesh)
            return mesh;
        MeshSource source;
        for (const tinygltf::Primitive &primitive : from.primitives)
            addPrimitive(primitive, source);
        if (source.corners.empty())
            return nullptr; // points and lines only
        auto built = std::make_shared<Mesh>();
        if (const std::string wrong = buildMesh(std::move(source), *built); !wrong.empty())
            throw BadFile(wrong);
        return mesh = built;
    }

    void append(const tinygltf::Primitive &primitive, const char *attribute, size_t count, int type,
                std::vector<float> &target) const {
        const auto found = primitive.attributes.find(attribute);
        if (found == primitive.attributes.end())
            return;
        const Accessor values(model_, found->second, type, attribute);
        if (values.count() != count)
            throw BadFile(std::string(attribute) + " and POSITION differ in length");
        for (size_t index = 0; index < count; ++index)
            for (size_t component = 0; component < values.components(); ++component)
                target.push_back(values.number(index, component));
    }

    void addPrimitive(const tinygltf::Primitive &primitive, MeshSource &source) const {
        const int mode = primitive.mode == -1 ? TINYGLTF_MODE_TRIANGLES : primitive.mode;
        if (mode < TINYGLTF_MODE_TRIANGLES)
            return; // points and lines
        const auto position = primitive.attributes.find("POSITION");
        if (position == primitive.attributes.end())
            throw BadFile("a mesh has no positions");
        const size_t count =
            Accessor(model_, position->second, TINYGLTF_TYPE_VEC3, "POSITION").count();
        const int first[3] = {int(source.positions.size() / 3), int(source.normals.size() / 3),
                              int(source.uvs.size() / 2)};
        append(primitive, "POSITION", count, TINYGLTF_TYPE_VEC3, source.positions);
        append(primitive, "NORMAL", count, TINYGLTF_TYPE_VEC3, source.normals);
        append(primitive, "TEXCOORD_0", count, TINYGLTF_TYPE_VEC2, source.uvs);
        for (size_t at = size_t(first[2]) * 2 + 1; at < source.uvs.size(); at += 2)
            source.uvs[at] = 1 - source.uvs[at]; // the file counts from the image's top
        const bool hasNormals = int(source.normals.size() / 3) > first[1];
        const bool hasUvs = int(source.uvs.size() / 2) > first[2];

        std::vector<int> indices;
        if (primitive.indices >= 0) {
            const Accessor from(model_, primitive.indices, TINYGLTF_TYPE_SCALAR, "indices");
            for (size_t at = 0; at < from.count(); ++at) {
                indices.push_back(from.integer(at));
                if (size_t(indices.back()) >= count)
                    throw BadFile("vertex index " + std::to_string(indices.back()) +
                                  " is out of range (there are " + std::to_string(count) + ")");
            }
        } else {
            for (size_t at = 0; at < count; ++at)
                indices.push_back(int(at));
        }
        const NodeId material =
            primitive.material < 0 ? kNoNode : element(materials_, primitive.material, "material");
        const auto triangle = [&](size_t a, size_t b, size_t c) {
            for (size_t at : {a, b, c})
                source.corners.push_back({first[0] + indices[at],
                                          hasNormals ? first[1] + indices[at] : -1,
                                          hasUvs ? first[2] + indices[at] : -1});
            source.materials.push_back(material);
        };
        if (mode == TINYGLTF_MODE_TRIANGLES) {
            for (size_t at = 0; at + 2 < indices.size(); at += 3)
                triangle(at, at + 1, at + 2);
        } else {
            for (size_t at = 0; at + 2 < indices.size(); ++at)
                if (mode == TINYGLTF_MODE_TRIANGLE_FAN)
                    triangle(0, at + 1, at + 2);
                else // a strip turns every other triangle round
                    triangle(at, at + 1 + at % 2, at + 2 - at % 2);
        }
    }

    const tinygltf::Model &model_;
    Scene &scene_;
    std::vector<NodeId> materials_;
    std::vector<std::shared_ptr<const Mesh>> meshes_;
};

} // namespace

void loadGltf(const std::string &path, Scene &scene) {
    tinygltf::TinyGLTF loader;
    loader.SetImageLoader(decodeQuietly, nullptr);
    tinygltf::Model model;
    std::string error, warning;
    const bool binary = path.back() == 'b' || path.back() == 'B';
    if (!(binary ? loader.LoadBinaryFromFile(&model, &error, &warning, path)
                 : loader.LoadASCIIFromFile(&model, &error, &warning, path)))
        throw BadFile(error.empty() ? "it is no glTF file" : error);
    for (const std::string &extension : model.extensionsRequired)
        if (extension != "KHR_lights_punctual" && extension != "KHR_mesh_quantization")
            throw BadFile("it needs the extension " + extension);
    Reader(model, scene).read();
}

} // namespace devhost
