// SPDX-License-Identifier: MIT
#pragma once

// The materials and textures of a glTF file, and its images.

#include "devhost/scene/SceneGraph.h"
#include "devhost/util/Notices.h"

#include <tiny_gltf.h>

#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace devhost {

/// The images that the parsing library came across, by their index.
class GltfImages {
  public:
    /// Has the library hand its images over.
    void listenTo(tinygltf::TinyGLTF &parser);
    /// Decodes the images that lie in the file's buffers. Throws BadFile for one that does not.
    void readBuffers(const tinygltf::Model &model);
    /// Gives a texture the pixels of an image, or says what is damaged in it.
    void fill(int index, Texture &texture) const;

  private:
    struct Decoded {
        std::shared_ptr<const Pixels> pixels;
        std::string damage;
    };
    static Decoded decode(std::span<const unsigned char> file);

    std::map<int, Decoded> decoded_;
};

/// Adds a node for each material of the file, and one for each texture in use; the result is in the
/// file's order.
std::vector<NodeId> addGltfMaterials(const tinygltf::Model &model, const GltfImages &images,
                                     Scene &scene, FileNotices &notices);

} // namespace devhost
