// SPDX-License-Identifier: MIT
#include "devhost/scene/GltfMeshes.h"

#include "devhost/scene/GltfAccessor.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <numeric>
#include <optional>
#include <span>
#include <string_view>

namespace devhost {

namespace {

using Attributes = std::map<std::string, int>;

/// The values of some vertices, in their order; of all, as they stand, where there is no order.
std::vector<float> gathered(std::vector<float> values, unsigned width,
                            const std::vector<unsigned> &order) {
    if (order.empty())
        return values;
    std::vector<float> result;
    result.reserve(order.size() * width);
    for (unsigned vertex : order)
        result.insert(result.end(), &values[size_t(vertex) * width],
                      &values[size_t(vertex) * width] + width);
    return result;
}

/// Appends values at the vertex `first`; the vertices before it that have none get the filler.
void append(std::vector<float> &target, size_t first, unsigned width, std::span<const float> values,
            std::initializer_list<float> filler) {
    while (target.size() < first * width)
        target.insert(target.end(), filler);
    target.insert(target.end(), values.begin(), values.end());
}

/// Gives vectors the length one.
void normalise(std::vector<float> &values, unsigned width) {
    for (size_t at = 0; at + width <= values.size(); at += width) {
        float *v = &values[at];
        const float length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
        if (length > 0)
            for (int k = 0; k < 3; ++k)
                v[k] /= length;
    }
}

std::vector<float> opaque(const std::vector<float> &rgb) {
    std::vector<float> result;
    result.reserve(rgb.size() / 3 * 4);
    for (size_t at = 0; at < rgb.size(); at += 3)
        result.insert(result.end(), {rgb[at], rgb[at + 1], rgb[at + 2], 1});
    return result;
}

/// The vertices of a primitive's triangles, three by three.
std::vector<unsigned> triangleCorners(std::vector<unsigned> indices, int mode) {
    if (mode == TINYGLTF_MODE_TRIANGLES) {
        indices.resize(indices.size() / 3 * 3);
        return indices;
    }
    std::vector<unsigned> result;
    for (size_t at = 0; at + 2 < indices.size(); ++at) {
        if (mode == TINYGLTF_MODE_TRIANGLE_FAN) // every other triangle of a strip is turned round
            result.insert(result.end(), {indices[0], indices[at + 1], indices[at + 2]});
        else
            result.insert(result.end(),
                          {indices[at], indices[at + 1 + at % 2], indices[at + 2 - at % 2]});
    }
    return result;
}

class MeshReader {
  public:
    MeshReader(const tinygltf::Model &model, const std::vector<NodeId> &materials,
               FileNotices &notices, std::string place)
        : model_(model), materials_(materials), notices_(notices), place_(std::move(place)) {}

    Deformable read(const tinygltf::Mesh &from) {
        for (size_t index = 0; index < from.primitives.size(); ++index) {
            primitivePlace_ = "primitive " + std::to_string(index);
            inPlace(primitivePlace_, [&] { addPrimitive(from.primitives[index]); });
        }
        if (mesh_.triangles.empty())
            return {};
        fillUp();
        result_.rest = std::make_shared<const Mesh>(std::move(mesh_));
        return std::move(result_);
    }

  private:
    void tellPrimitive(const char *kind, const std::string &found, const char *instead) {
        notices_.add(kind, place_ + ", " + primitivePlace_, found, instead);
    }

    void addPrimitive(const tinygltf::Primitive &primitive) {
        const int mode = primitive.mode == -1 ? TINYGLTF_MODE_TRIANGLES : primitive.mode;
        if (!hasTriangles(mode))
            return;
        const auto position = primitive.attributes.find("POSITION");
        if (position == primitive.attributes.end())
            throw BadFile("it has no positions");
        count_ = accessor(position->second, TINYGLTF_TYPE_VEC3, "POSITION").count();
        const std::vector<unsigned> corners = triangleCorners(indicesOf(primitive), mode);
        if (corners.empty())
            return;
        if (!primitives_++)
            shapeCount_ = primitive.targets.size();
        else if (shapeCount_ != primitive.targets.size())
            throw BadFile("it has " + std::to_string(primitive.targets.size()) +
                          " morph targets, and those before it " + std::to_string(shapeCount_));

        const unsigned first = mesh_.triangleCount();
        if (primitive.attributes.contains("NORMAL"))
            addTriangles(corners, sharedVertices(primitive));
        else
            addFlatTriangles(corners, addVertices(primitive, corners));
        mesh_.materials.resize(first + corners.size() / 3,
                               primitive.material < 0
                                   ? kNoNode
                                   : gltfElement(materials_, primitive.material, "material"));
    }

    bool hasTriangles(int mode) {
        static constexpr const char *others[] = {"points", "lines", "a line loop", "a line strip"};
        if (mode < 0 || mode > TINYGLTF_MODE_TRIANGLE_FAN)
            throw BadFile("primitive mode " + std::to_string(mode) + " is unknown");
        if (mode < TINYGLTF_MODE_TRIANGLES)
            tellPrimitive("primitive mode", std::string("it is made of ") + others[mode],
                          "it is left out");
        return mode >= TINYGLTF_MODE_TRIANGLES;
    }

    void addTriangles(const std::vector<unsigned> &corners, unsigned firstVertex) {
        mesh_.triangles.reserve(mesh_.triangles.size() + corners.size());
        for (unsigned corner : corners)
            mesh_.triangles.push_back(firstVertex + corner);
    }

    /// Triangles whose corners have vertices of their own, one after the other.
    void addFlatTriangles(const std::vector<unsigned> &corners, unsigned firstVertex) {
        for (unsigned at = 0; at < corners.size(); ++at) {
            mesh_.triangles.push_back(firstVertex + at);
            if (at % 3 != 2)
                continue;
            result_.flatTriangles.push_back(mesh_.triangleCount() - 1);
            flattenTriangle(mesh_, mesh_.triangleCount() - 1);
        }
    }

    GltfAccessor accessor(int index, int type, const char *what) const {
        return GltfAccessor(model_, index, type, what);
    }

    std::vector<unsigned> indicesOf(const tinygltf::Primitive &primitive) const {
        if (primitive.indices >= 0 && count_ > 0)
            return accessor(primitive.indices, TINYGLTF_TYPE_SCALAR, "indices")
                .integers(count_ - 1);
        std::vector<unsigned> all(count_);
        std::iota(all.begin(), all.end(), 0u);
        return all;
    }

    /// The first vertex of a primitive, whose vertices may be those of an earlier one.
    unsigned sharedVertices(const tinygltf::Primitive &primitive) {
        const auto [known, isNew] =
            vertices_.try_emplace({primitive.attributes, primitive.targets}, mesh_.vertexCount());
        return isNew ? addVertices(primitive, {}) : known->second;
    }

    /// The values of an attribute, if there are any. The type is found in the file where it is 0.
    std::vector<float> values(const Attributes &attributes, const char *name, int type,
                              const std::vector<unsigned> &order) const {
        const auto found = attributes.find(name);
        if (found == attributes.end())
            return {};
        if (!type)
            type = gltfElement(model_.accessors, found->second, "accessor").type;
        const GltfAccessor from = accessor(found->second, type, name);
        if (from.count() != count_)
            throw BadFile(std::string(name) + " has " + std::to_string(from.count()) +
                          " elements, and POSITION " + std::to_string(count_));
        return gathered(from.numbers(), unsigned(tinygltf::GetNumComponentsInType(uint32_t(type))),
                        order);
    }

    /// Appends the primitive's vertices in the order, or all as they come.
    unsigned addVertices(const tinygltf::Primitive &primitive, const std::vector<unsigned> &order) {
        const Attributes &all = primitive.attributes;
        const unsigned first = mesh_.vertexCount();
        append(mesh_.positions, first, 3, values(all, "POSITION", TINYGLTF_TYPE_VEC3, order), {});
        std::vector<float> normals = values(all, "NORMAL", TINYGLTF_TYPE_VEC3, order);
        normals.resize(mesh_.positions.size() - size_t(first) * 3);
        normalise(normals, 3);
        append(mesh_.normals, first, 3, normals, {});
        addUvs(mesh_.uvs, first, values(all, "TEXCOORD_0", TINYGLTF_TYPE_VEC2, order));
        addUvs(mesh_.secondUvs, first, values(all, "TEXCOORD_1", TINYGLTF_TYPE_VEC2, order));
        addColors(all, first, order);
        addTangents(all, first, order);
        addInfluences(all, first, order);
        addShapes(primitive, first, order);
        tellOtherAttributes(all);
        return first;
    }

    static void addUvs(std::vector<float> &target, unsigned first, std::vector<float> values) {
        for (size_t at = 1; at < values.size(); at += 2)
            values[at] = 1 - values[at]; // the file counts from the image's top
        if (!values.empty())
            append(target, first, 2, values, {0, 0});
    }

    void addColors(const Attributes &all, unsigned first, const std::vector<unsigned> &order) {
        std::vector<float> colors = values(all, "COLOR_0", 0, order);
        if (colors.empty())
            return;
        const size_t width = colors.size() / (mesh_.vertexCount() - first);
        if (width != 3 && width != 4)
            throw BadFile("COLOR_0 has the wrong type");
        if (width == 3)
            colors = opaque(colors);
        append(mesh_.colors, first, 4, colors, {1, 1, 1, 1});
    }

    void addTangents(const Attributes &all, unsigned first, const std::vector<unsigned> &order) {
        std::vector<float> tangents = values(all, "TANGENT", TINYGLTF_TYPE_VEC4, order);
        const bool flat = !all.contains("NORMAL");
        if (flat && !tangents.empty()) {
            tellPrimitive("tangents", "it has tangents and no normals", "they are left out");
            tangents.clear();
        }
        (tangents.empty() ? withoutTangents_ : withTangents_) = true;
        normalise(tangents, 4);
        if (!tangents.empty())
            append(mesh_.tangents, first, 4, tangents, {1, 0, 0, 1});
    }

    void addInfluences(const Attributes &all, unsigned first, const std::vector<unsigned> &order) {
        unsigned sets = 0;
        while (all.contains("JOINTS_" + std::to_string(sets)))
            ++sets;
        if (!sets)
            return;
        if (!result_.influences && first > 0)
            throw BadFile("it has joints, and those before it have none");
        if (result_.influences && result_.influences != sets * 4)
            throw BadFile("it has another number of joints than those before it");
        result_.influences = sets * 4;
        const size_t vertices = order.empty() ? count_ : order.size();
        const size_t begin = result_.joints.size();
        result_.joints.resize(begin + vertices * result_.influences);
        result_.shares.resize(begin + vertices * result_.influences);
        for (unsigned set = 0; set < sets; ++set)
            addInfluenceSet(all, set, begin, order);
        checkShares(begin);
    }

    void addInfluenceSet(const Attributes &all, unsigned set, size_t begin,
                         const std::vector<unsigned> &order) {
        const std::string number = std::to_string(set);
        const std::string joints = "JOINTS_" + number, weights = "WEIGHTS_" + number;
        const GltfAccessor from = accessor(all.at(joints), TINYGLTF_TYPE_VEC4, joints.c_str());
        const std::vector<unsigned> indices = from.integers(UINT16_MAX);
        const std::vector<float> shares = values(all, weights.c_str(), TINYGLTF_TYPE_VEC4, {});
        if (from.count() != count_ || shares.size() != count_ * 4)
            throw BadFile(joints + ", " + weights + " and POSITION differ in length");
        const size_t vertices = order.empty() ? count_ : order.size();
        for (size_t vertex = 0; vertex < vertices; ++vertex) {
            const size_t source = order.empty() ? vertex : order[vertex];
            for (unsigned k = 0; k < 4; ++k) {
                const size_t target = begin + vertex * result_.influences + size_t(set) * 4 + k;
                result_.joints[target] = uint16_t(indices[source * 4 + k]);
                result_.shares[target] = shares[source * 4 + k];
            }
        }
    }

    /// The shares of a vertex are made to add up to 1.
    void checkShares(size_t begin) {
        constexpr float tolerance = 0.01f; // more than bytes and rounding account for
        bool unequal = false;
        for (size_t at = begin; at < result_.shares.size(); at += result_.influences) {
            const std::span<float> shares(&result_.shares[at], result_.influences);
            const float sum = std::accumulate(shares.begin(), shares.end(), 0.0f);
            for (float share : shares)
                if (!(share >= 0) || share > 1 + tolerance)
                    throw BadFile("vertex " + std::to_string((at - begin) / shares.size()) +
                                  " has a joint weight that is not 0 to 1");
            if (!(sum > 0))
                throw BadFile("the joint weights of vertex " +
                              std::to_string((at - begin) / shares.size()) + " are all 0");
            unequal = unequal || std::abs(sum - 1) > tolerance;
            for (float &share : shares)
                share /= sum;
        }
        if (unequal)
            tellPrimitive("joint weights", "the joint weights of some vertices do not add up to 1",
                          "they are scaled so that they do");
    }

    void addShapes(const tinygltf::Primitive &primitive, unsigned first,
                   const std::vector<unsigned> &order) {
        result_.shapes.resize(primitive.targets.size());
        for (size_t index = 0; index < primitive.targets.size(); ++index) {
            const Attributes &target = primitive.targets[index];
            Deformable::Shape &shape = result_.shapes[index];
            const auto add = [&](std::vector<float> &to, const char *name) {
                const std::vector<float> found = values(target, name, TINYGLTF_TYPE_VEC3, order);
                if (!found.empty())
                    append(to, first, 3, found, {0, 0, 0});
            };
            inPlace("morph target " + std::to_string(index), [&] {
                add(shape.positions, "POSITION");
                add(shape.normals, "NORMAL");
                add(shape.tangents, "TANGENT");
            });
            for (const auto &[name, ignored] : target)
                if (name != "POSITION" && name != "NORMAL" && name != "TANGENT" && name[0] != '_')
                    tellPrimitive("morph target", "a morph target changes " + name,
                                  "this part of it is left out");
        }
    }

    void tellOtherAttributes(const Attributes &all) {
        static constexpr std::string_view known[] = {"POSITION",   "NORMAL",     "TANGENT",
                                                     "TEXCOORD_0", "TEXCOORD_1", "COLOR_0"};
        std::string others;
        for (const auto &[name, ignored] : all) {
            const bool isKnown =
                std::find(std::begin(known), std::end(known), name) != std::end(known) ||
                name.starts_with("JOINTS_") || name.starts_with("WEIGHTS_");
            if (!isKnown && !name.starts_with('_')) // those are an application's own
                others += (others.empty() ? "" : ", ") + name;
        }
        if (!others.empty())
            tellPrimitive("vertex attribute", "it has " + others, "it is left out");
    }

    /// What only some primitives have gets values for the others.
    void fillUp() {
        const size_t vertices = mesh_.vertexCount();
        const auto fill = [&](std::vector<float> &values, unsigned width,
                              std::initializer_list<float> filler) {
            if (!values.empty())
                append(values, vertices, width, {}, filler);
        };
        fill(mesh_.uvs, 2, {0, 0});
        fill(mesh_.secondUvs, 2, {0, 0});
        fill(mesh_.colors, 4, {1, 1, 1, 1});
        for (Deformable::Shape &shape : result_.shapes)
            for (std::vector<float> *each : {&shape.positions, &shape.normals, &shape.tangents})
                fill(*each, 3, {0, 0, 0});
        if (withTangents_ && withoutTangents_) {
            notices_.add("tangents", place_, "only some of its primitives have tangents",
                         "all are made from the texture coordinates");
            mesh_.tangents.clear();
        }
        if (result_.influences && result_.joints.size() != vertices * result_.influences)
            throw BadFile("only some of its primitives have joints");
    }

    const tinygltf::Model &model_;
    const std::vector<NodeId> &materials_;
    FileNotices &notices_;
    std::string place_, primitivePlace_;
    Mesh mesh_;
    Deformable result_;
    size_t count_ = 0; // of the current primitive's vertices in the file
    size_t primitives_ = 0, shapeCount_ = 0;
    bool withTangents_ = false, withoutTangents_ = false;
    std::map<std::pair<Attributes, std::vector<Attributes>>, unsigned> vertices_;
};

} // namespace

Deformable readGltfMesh(const tinygltf::Model &model, int index,
                        const std::vector<NodeId> &materials, FileNotices &notices) {
    const tinygltf::Mesh &from = gltfElement(model.meshes, index, "mesh");
    const std::string place = gltfPlace("mesh", size_t(index), from.name);
    return inPlace(place, [&] { return MeshReader(model, materials, notices, place).read(from); });
}

} // namespace devhost
