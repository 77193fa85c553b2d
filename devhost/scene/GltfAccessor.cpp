// SPDX-License-Identifier: MIT
#include "devhost/scene/GltfAccessor.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace devhost {

namespace {

// Elements that no buffer holds are zeros; a count beyond this is a sign of damage.
constexpr size_t kMostZeros = size_t(1) << 24;

template <class T>
T load(const unsigned char *from) {
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

/// Calls `use` with a value of the C++ type that a component type stands for; false for others.
template <class Use>
bool withComponent(int type, Use use) {
    switch (type) {
    // Each value has another type. NOLINTNEXTLINE(bugprone-branch-clone)
    case TINYGLTF_COMPONENT_TYPE_BYTE:
        return use(int8_t()), true;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
        return use(uint8_t()), true;
    case TINYGLTF_COMPONENT_TYPE_SHORT:
        return use(int16_t()), true;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
        return use(uint16_t()), true;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
        return use(uint32_t()), true;
    case TINYGLTF_COMPONENT_TYPE_FLOAT:
        return use(float()), true;
    default:
        return false;
    }
}

template <class T>
float toFloat(T value, bool normalized) {
    if constexpr (std::is_floating_point_v<T>)
        return value;
    else
        return normalized ? std::max(float(value) / float(std::numeric_limits<T>::max()), -1.0f)
                          : float(value);
}

bool allFinite(const std::vector<float> &values) {
    float sum = 0; // stays 0 unless some product with 0 is no number
    for (float value : values)
        sum += value * 0;
    return sum == 0;
}

} // namespace

std::string gltfPlace(const char *what, size_t index, const std::string &name) {
    return what + (" " + std::to_string(index)) + (name.empty() ? "" : " '" + name + "'");
}

GltfAccessor::GltfAccessor(const tinygltf::Model &model, int index, int type, const char *what)
    : model_(model), accessor_(gltfElement(model.accessors, index, "accessor")),
      what_(what + (" (accessor " + std::to_string(index)) + ")") {
    if (accessor_.type != type)
        fail("has the wrong type");
    const int size = tinygltf::GetComponentSizeInBytes(uint32_t(accessor_.componentType));
    if (size <= 0)
        fail("has an unknown component type");
    componentSize_ = size_t(size);
    components_ = size_t(tinygltf::GetNumComponentsInType(uint32_t(type)));
    // Here and not when it is read, so that a count can be relied upon before room is made for it.
    if (accessor_.bufferView >= 0)
        findRun(accessor_.bufferView, accessor_.byteOffset, accessor_.componentType,
                componentSize_ * components_, accessor_.count);
    else if (accessor_.count > kMostZeros)
        fail("has " + std::to_string(accessor_.count) + " elements and no buffer view");
}

void GltfAccessor::fail(const std::string &why) const {
    throw BadFile(what_ + " " + why);
}

GltfAccessor::Run GltfAccessor::findRun(int viewIndex, size_t offset, int componentType,
                                        size_t elementSize, size_t count) const {
    const auto &view = gltfElement(model_.bufferViews, viewIndex, "buffer view");
    const auto &bytes = gltfElement(model_.buffers, view.buffer, "buffer").data;
    if (view.byteOffset > bytes.size() || view.byteLength > bytes.size() - view.byteOffset)
        fail("lies in a buffer view that reaches past the end of its buffer");
    const size_t stride = view.byteStride ? view.byteStride : elementSize;
    const size_t space = view.byteLength;
    if (count == 0)
        return {};
    if (offset > space || elementSize > space - offset ||
        count - 1 > (space - offset - elementSize) / stride)
        fail("reaches past the end of its buffer view");
    return {bytes.data() + view.byteOffset + offset, stride, componentType};
}

/// Reads the elements, zeros where there is no buffer view, and puts the sparse ones over them.
/// `readRun` reads a run of that many elements into room for them.
template <class Value, class Read>
std::vector<Value> GltfAccessor::collect(Read readRun) const {
    std::vector<Value> values(accessor_.count * components_);
    const size_t size = componentSize_ * components_;
    if (accessor_.bufferView >= 0 && accessor_.count > 0)
        readRun(findRun(accessor_.bufferView, accessor_.byteOffset, accessor_.componentType, size,
                        accessor_.count),
                accessor_.count, values.data());
    const auto &sparse = accessor_.sparse;
    if (!sparse.isSparse || sparse.count == 0)
        return values;
    if (sparse.count < 0 || size_t(sparse.count) > accessor_.count ||
        sparse.indices.byteOffset < 0 || sparse.values.byteOffset < 0)
        fail("has a bad count or offset of sparse elements");
    const size_t count = size_t(sparse.count);
    const int width = tinygltf::GetComponentSizeInBytes(uint32_t(sparse.indices.componentType));
    if (width <= 0 || sparse.indices.componentType == TINYGLTF_COMPONENT_TYPE_DOUBLE)
        fail("has sparse indices of an unknown type");
    const Run indices = findRun(sparse.indices.bufferView, size_t(sparse.indices.byteOffset),
                                sparse.indices.componentType, size_t(width), count);
    std::vector<Value> replaced(count * components_);
    readRun(findRun(sparse.values.bufferView, size_t(sparse.values.byteOffset),
                    accessor_.componentType, size, count),
            count, replaced.data());
    withComponent(indices.componentType, [&](auto zero) {
        if constexpr (!std::is_unsigned_v<decltype(zero)>)
            fail("has sparse indices that are no unsigned integers");
        for (size_t at = 0; at < count; ++at) {
            const auto index = load<decltype(zero)>(indices.data + at * indices.stride);
            if (size_t(index) >= accessor_.count)
                fail("has a sparse index that is out of range");
            std::copy_n(&replaced[at * components_], components_,
                        &values[size_t(index) * components_]);
        }
    });
    return values;
}

std::vector<float> GltfAccessor::numbers() const {
    const auto values = collect<float>([this](const Run &run, size_t count, float *target) {
        if (run.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT &&
            run.stride == components_ * sizeof(float)) {
            std::memcpy(target, run.data, count * run.stride);
            return;
        }
        const bool known = withComponent(run.componentType, [&](auto zero) {
            using T = decltype(zero);
            for (size_t index = 0; index < count; ++index)
                for (size_t k = 0; k < components_; ++k)
                    *target++ = toFloat(load<T>(run.data + index * run.stride + k * sizeof(T)),
                                        accessor_.normalized);
        });
        if (!known)
            fail("has an unsupported component type");
    });
    if (!allFinite(values))
        fail("holds a number that is not finite");
    return values;
}

std::vector<unsigned> GltfAccessor::integers(size_t most) const {
    const auto values = collect<unsigned>([this](const Run &run, size_t count, unsigned *target) {
        const bool known = withComponent(run.componentType, [&](auto zero) {
            using T = decltype(zero);
            if constexpr (std::is_unsigned_v<T>)
                for (size_t index = 0; index < count; ++index)
                    for (size_t k = 0; k < components_; ++k)
                        *target++ = load<T>(run.data + index * run.stride + k * sizeof(T));
            else
                fail("is not of unsigned integers");
        });
        if (!known)
            fail("has an unsupported component type");
    });
    const auto greatest = std::max_element(values.begin(), values.end());
    if (greatest != values.end() && *greatest > most)
        fail("holds " + std::to_string(*greatest) + ", which is out of range (the most is " +
             std::to_string(most) + ")");
    return values;
}

} // namespace devhost
