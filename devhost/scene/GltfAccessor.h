// SPDX-License-Identifier: MIT
#pragma once

// Numbers out of the buffers of a glTF file, with every range checked: what a file says of itself
// need not be true.

#include "devhost/scene/SceneLoader.h"

#include <tiny_gltf.h>

#include <string>
#include <vector>

namespace devhost {

/// An element of one of the file's lists. Throws BadFile for an index that is none of it.
template <class T>
const T &gltfElement(const std::vector<T> &all, int index, const char *what) {
    if (index < 0 || size_t(index) >= all.size())
        throw BadFile(std::string(what) + " index " + std::to_string(index) +
                      " is out of range (there are " + std::to_string(all.size()) + ")");
    return all[size_t(index)];
}

/// "mesh 2 'cup'", or "mesh 2" for one without a name.
std::string gltfPlace(const char *what, size_t index, const std::string &name);

/// Does something, and puts the place before what is wrong with it.
template <class Action>
auto inPlace(const std::string &place, Action action) {
    try {
        return action();
    } catch (const BadFile &error) {
        throw BadFile(place + ": " + error.what());
    }
}

/// One of the file's accessors. Everything about it throws BadFile with its name in front.
class GltfAccessor {
  public:
    /// `what` names it in messages; `type` is TINYGLTF_TYPE_...
    GltfAccessor(const tinygltf::Model &model, int index, int type, const char *what);

    size_t count() const { return accessor_.count; }
    /// All numbers, one element's after the other's; integers of normalised accessors become 0 to 1
    /// (or -1 to 1). None that is not finite is let through.
    std::vector<float> numbers() const;
    /// All numbers of an accessor of unsigned integers, none above `most`.
    std::vector<unsigned> integers(size_t most) const;

  private:
    /// A run of equal elements in a buffer.
    struct Run {
        const unsigned char *data = nullptr;
        size_t stride = 0;
        int componentType = 0;
    };
    [[noreturn]] void fail(const std::string &why) const;
    Run findRun(int view, size_t offset, int componentType, size_t elementSize, size_t count) const;
    template <class Value, class Read>
    std::vector<Value> collect(Read readRun) const;

    const tinygltf::Model &model_;
    const tinygltf::Accessor &accessor_;
    std::string what_;
    size_t components_;
    size_t componentSize_;
};

} // namespace devhost
