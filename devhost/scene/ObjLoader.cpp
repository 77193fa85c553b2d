// Reader of .obj files and their .mtl materials.
#include "devhost/scene/MeshBuilder.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/scene/SceneLoader.h"

#include <tiny_obj_loader.h>

#include <algorithm>
#include <filesystem>

namespace devhost {

namespace {

ZVector color(const tinyobj::real_t value[3]) {
    return ZVector(value[0], value[1], value[2]);
}

NodeId addMaterial(Scene &scene, const tinyobj::material_t &from) {
    Material material;
    material.diffuse = color(from.diffuse);
    material.specular = color(from.specular);
    material.emission = color(from.emission);
    material.shininess = from.shininess;
    material.opacity = from.dissolve;
    if (from.illum >= 3 && from.illum <= 9 && from.illum != 4 && from.illum != 9)
        material.reflectivity = material.specular; // the models that mirror the surroundings
    if (!from.diffuse_texname.empty()) {
        std::string file = from.diffuse_texname;
        std::replace(file.begin(), file.end(), '\\', '/');
        material.texture =
            scene.add("file", std::filesystem::path(file).stem().string(), Texture{file, nullptr});
    }
    return scene.add("material", from.name, material);
}

/// What the file says is wrong, but the parser only warns of.
bool lostFaces(const std::string &warning) {
    return warning.find("out of bounds") != std::string::npos ||
           warning.find("invalid vertex index") != std::string::npos;
}

/// Gathers what one shape uses of a pool that all shapes of the file share.
class PoolSubset {
  public:
    PoolSubset(const std::vector<tinyobj::real_t> &pool, int width)
        : pool_(pool), width_(width), places_(pool.size() / width, -1) {}

    /// Whether the file's index is an element of the pool, or an absent optional one.
    bool accepts(int index, bool optional) const {
        return (optional && index == -1) || (index >= 0 && size_t(index) < places_.size());
    }

    /// The element's index in `target`, where it is copied to on first use; -1 stays -1.
    int place(int index, std::vector<float> &target) {
        if (index < 0)
            return -1;
        if (places_[index] < 0) {
            places_[index] = int(target.size()) / width_;
            touched_.push_back(index);
            const auto from = pool_.begin() + std::ptrdiff_t(index) * width_;
            target.insert(target.end(), from, from + width_);
        }
        return places_[index];
    }

    void startShape() {
        for (int index : touched_)
            places_[index] = -1;
        touched_.clear();
    }

  private:
    const std::vector<tinyobj::real_t> &pool_;
    int width_;
    std::vector<int> places_;
    std::vector<int> touched_;
};

} // namespace

void loadObj(const std::string &path, Scene &scene) {
    const std::string badIndex = "a face has an index that is out of range";
    tinyobj::ObjReaderConfig config;
    config.triangulate = true;
    config.vertex_color = false;
    tinyobj::ObjReader reader;
    if (!reader.ParseFromFile(path, config))
        throw BadFile(reader.Error().empty() ? "it is no .obj file" : reader.Error());
    if (lostFaces(reader.Warning()))
        throw BadFile(badIndex);

    std::vector<NodeId> materials;
    for (const tinyobj::material_t &material : reader.GetMaterials())
        materials.push_back(addMaterial(scene, material));
    const tinyobj::attrib_t &pools = reader.GetAttrib();
    PoolSubset positions(pools.vertices, 3), normals(pools.normals, 3), uvs(pools.texcoords, 2);
    for (const tinyobj::shape_t &shape : reader.GetShapes()) {
        if (shape.mesh.indices.empty())
            continue; // lines or points only
        MeshSource source;
        positions.startShape();
        normals.startShape();
        uvs.startShape();
        for (const tinyobj::index_t &index : shape.mesh.indices) {
            if (!positions.accepts(index.vertex_index, false) ||
                !normals.accepts(index.normal_index, true) ||
                !uvs.accepts(index.texcoord_index, true))
                throw BadFile(badIndex);
            source.corners.push_back({positions.place(index.vertex_index, source.positions),
                                      normals.place(index.normal_index, source.normals),
                                      uvs.place(index.texcoord_index, source.uvs)});
        }
        for (int material : shape.mesh.material_ids)
            source.materials.push_back(material >= 0 && size_t(material) < materials.size()
                                           ? materials[material]
                                           : kNoNode);
        auto mesh = std::make_shared<Mesh>();
        if (const std::string wrong = buildMesh(std::move(source), *mesh); !wrong.empty())
            throw BadFile(wrong);
        scene.add("mesh", shape.name.empty() ? "mesh" : shape.name,
                  std::shared_ptr<const Mesh>(std::move(mesh)));
    }
}

} // namespace devhost
