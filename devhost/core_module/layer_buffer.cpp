// SPDX-License-Identifier: MIT
// Extra layers for the render view.

#include "devhost/core_module/element_buffer.h"
#include "devhost/util/GuardedMemory.h"
#include "devhost/util/KnownMemory.h"
#include "host/render/ZRenderView.h"

#include <exception>
#include <memory>
#include <vector>

/// A fixed number of extra layers, each with a copy of its values.
class LayerBuffer {
  public:
    explicit LayerBuffer(unsigned int count) : layers_(count), values_(count) {}

    unsigned int length() const { return static_cast<unsigned int>(layers_.size()); }
    RV_AOV *data() { return layers_.data(); }

    void set(unsigned int index, const ZString &name, unsigned int channels, const float *values,
             size_t count) {
        auto copy = std::make_unique<Values>(values, count);
        layers_[index].name = name;
        layers_[index].numberOfChannels = channels;
        layers_[index].pPixels = copy->numbers.data();
        values_[index] = std::move(copy);
    }

  private:
    static constexpr char kLayers[] = "the layers of a LayerBuffer";
    static constexpr char kValues[] = "the values of a layer in a LayerBuffer";
    struct Values {
        devhost::LentVector<float, kValues> numbers;
        devhost::KnownMemory known;
        Values(const float *values, size_t count)
            : numbers(values, values + count), known(numbers.data(), count * sizeof(float)) {}
    };
    devhost::LentVector<RV_AOV, kLayers> layers_;
    std::vector<std::unique_ptr<Values>> values_;
};

namespace {

using namespace binding;

PyObject *layer_at(LayerBuffer &self, long index) {
    return find_index(index, self.length()) ? borrowed(self.data() + index) : nullptr;
}

PyObject *set_layer(LayerBuffer &self, long index, ZString const &name, unsigned int channels,
                    float *values) {
    if (!find_index(index, self.length()))
        return nullptr;
    const auto bytes = values ? devhost::knownBytes(values) : std::nullopt;
    if (!bytes) {
        PyErr_SetString(PyExc_ValueError, "the values must be a buffer of known length");
        return nullptr;
    }
    try {
        self.set(static_cast<unsigned int>(index), name, channels, values, *bytes / sizeof(float));
    } catch (const std::exception &) {
        return PyErr_NoMemory();
    }
    Py_RETURN_NONE;
}

} // namespace

#define ROW_LIST "devhost/core_module/layer_buffer.def"
#define ROW_TABLE layer_buffer_rows
#include "wrappers/rows/make_rows.h"
