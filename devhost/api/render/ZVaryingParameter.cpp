// SPDX-License-Identifier: MIT
// The varying parameters of hardware shaders.
#include "host/render/ZVaryingParameter.h"

#include "devhost/api/render/VertexValues.h"
#include "devhost/util/Guarded.h"
#include "devhost/util/Statuses.h"
#include "host/render/ZGeometry.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using devhost::invalid;

namespace {

constexpr unsigned kMostBytes = 1024;
constexpr unsigned kMostLevels = 8;
constexpr int kMostDimensions = 4;

unsigned nextUpdateId() {
    static std::atomic<unsigned> last = 0;
    return ++last;
}

/// What a parameter is, without what it found last.
struct Description {
    ZString name;
    devhost::VertexFormat format;
    unsigned maxDimension = 1;
    ZVaryingParameter::ZVaryingParameterSemantic semantic = ZVaryingParameter::kNoSemantic;
    ZString semanticName, destinationSet;
    ZVaryingParameter::ZVaryingParameterSemantic source = ZVaryingParameter::kNoSemantic;
    ZString sourceSet;
    std::vector<Description> elements;
    unsigned updateId = nextUpdateId();

    bool isStructure() const { return format.type == ZVaryingParameter::kStructure; }

    unsigned size() const {
        unsigned bytes = devhost::valueSize(format.type) * format.dimension;
        for (const Description &element : elements)
            bytes += element.size();
        return bytes;
    }
    unsigned greatestSize() const {
        unsigned bytes = devhost::valueSize(format.type) * maxDimension;
        for (const Description &element : elements)
            bytes += element.greatestSize();
        return bytes;
    }
    unsigned levels() const {
        unsigned below = 0;
        for (const Description &element : elements)
            below = std::max(below, element.levels());
        return below + 1;
    }
    /// All parameters of the structure that are none themselves, in the order of their bytes.
    void collectLeaves(std::vector<const Description *> &leaves) const {
        if (!isStructure())
            leaves.push_back(this);
        for (const Description &element : elements)
            element.collectLeaves(leaves);
    }
    ZGeometryData stream(ZGeometry &geometry) const {
        return geometry.data(static_cast<ZGeometryData::DataType>(source), sourceSet);
    }
};

// The semantics are the data types of streams by another name.
static_assert(int(ZVaryingParameter::kPosition) == ZGeometryData::kPosition &&
              int(ZVaryingParameter::kWeight) == ZGeometryData::kWeight &&
              int(ZVaryingParameter::kTangent) == ZGeometryData::kTangent &&
              int(ZVaryingParameter::kBinormal) == ZGeometryData::kBiNormal);

bool isSemantic(ZVaryingParameter::ZVaryingParameterSemantic semantic) {
    return (semantic >= ZVaryingParameter::kNoSemantic && semantic <= ZVaryingParameter::kWeight) ||
           semantic == ZVaryingParameter::kTangent || semantic == ZVaryingParameter::kBinormal;
}

Description describe(const ZString &name, ZVaryingParameter::ZVaryingParameterType type,
                     int minDimension, int maxDimension, int dimension,
                     ZVaryingParameter::ZVaryingParameterSemantic semantic,
                     const ZString &destinationSet, bool invertTexCoords,
                     const ZString &semanticName) {
    const bool hasValues = devhost::valueSize(type) > 0;
    const int least = hasValues ? std::clamp(minDimension, 1, kMostDimensions) : 1;
    const int greatest = hasValues ? std::clamp(maxDimension, least, kMostDimensions) : 1;
    Description result;
    result.name = name;
    result.format.type = type;
    result.format.dimension = unsigned(std::clamp(dimension, least, greatest));
    result.format.invertSecond = invertTexCoords && semantic == ZVaryingParameter::kTexCoord;
    result.maxDimension = unsigned(greatest);
    result.semantic = semantic;
    result.semanticName = semanticName;
    result.destinationSet = destinationSet;
    if (type != ZVaryingParameter::kStructure && isSemantic(semantic))
        result.source = semantic;
    return result;
}

} // namespace

struct ZVaryingParameter::Data {
    Description description;
    // What getBuffer found last: the geometry's own values, or those made of them.
    std::optional<ZGeometryData> stream;
    std::vector<unsigned char> converted;

    explicit Data(Description given = {}) : description(std::move(given)) {}

    ZStatus find(ZGeometry &geometry, const void *&data, unsigned &count, unsigned &stride) {
        std::vector<const Description *> leaves;
        description.collectLeaves(leaves);
        const unsigned size = description.size();
        if (size == 0)
            return invalid("the parameter has no values");
        std::vector<ZGeometryData> streams;
        for (const Description *leaf : leaves) {
            streams.push_back(leaf->stream(geometry));
            if (streams.back().elementCount() == 0 || !streams.back().data())
                return ZStatus(
                    ZStatus::kNotFound,
                    (std::string("the geometry has no values for ") + leaf->name.asChar()).c_str());
            if (streams.back().elementCount() != streams.front().elementCount())
                return ZStatus(
                    ZStatus::kNotFound,
                    (std::string("not every vertex has a value for ") + leaf->name.asChar())
                        .c_str());
        }
        if (leaves.size() == 1 && devhost::isStoredAs(streams[0], leaves[0]->format)) {
            stream.emplace(streams[0]);
            data = streams[0].data();
        } else {
            converted.resize(size_t(size) * streams[0].elementCount());
            size_t offset = 0;
            for (size_t i = 0; i < leaves.size(); ++i) {
                devhost::convertElements(streams[i], leaves[i]->format, converted.data() + offset,
                                         size);
                offset += leaves[i]->size();
            }
            data = converted.data();
        }
        count = streams[0].elementCount();
        stride = size;
        return ZStatus();
    }
};

ZVaryingParameter::ZVaryingParameter() : data_(new Data) {}

ZVaryingParameter::ZVaryingParameter(ZString const &name, ZVaryingParameterType type,
                                     int minDimension, int maxDimension,
                                     ZVaryingParameterSemantic semantic, bool invertTexCoords,
                                     ZString const &semanticName)
    : data_(new Data(describe(name, type, minDimension, maxDimension, kMostDimensions, semantic,
                              ZString(), invertTexCoords, semanticName))) {}

ZVaryingParameter::ZVaryingParameter(ZString const &name, ZVaryingParameterType type,
                                     int minDimension, int maxDimension, int dimension,
                                     ZVaryingParameterSemantic semantic,
                                     ZString const &destinationSet, bool invertTexCoords,
                                     ZString const &semanticName)
    : data_(new Data(describe(name, type, minDimension, maxDimension, dimension, semantic,
                              destinationSet, invertTexCoords, semanticName))) {}

ZVaryingParameter::ZVaryingParameter(ZVaryingParameter const &other)
    : data_(new Data(other.data_->description)) {}

ZVaryingParameter::~ZVaryingParameter() {
    delete data_;
}

ZVaryingParameter &ZVaryingParameter::operator=(ZVaryingParameter const &other) {
    data_->description = other.data_->description;
    return *this;
}

ZString ZVaryingParameter::name() const {
    return data_->description.name;
}

ZVaryingParameter::ZVaryingParameterType ZVaryingParameter::type() const {
    return data_->description.format.type;
}

ZVaryingParameter::ZVaryingParameterSemantic ZVaryingParameter::semantic() const {
    return data_->description.semantic;
}

ZString ZVaryingParameter::semanticName() const {
    return data_->description.semanticName;
}

ZString ZVaryingParameter::destinationSet() const {
    return data_->description.destinationSet;
}

unsigned int ZVaryingParameter::dimension() const {
    return data_->description.format.dimension;
}

unsigned int ZVaryingParameter::getElementSize() const {
    return data_->description.size();
}

unsigned int ZVaryingParameter::getMaximumStride() const {
    return data_->description.greatestSize();
}

ZStatus ZVaryingParameter::getBuffer(ZGeometry &geometry, void const *&data,
                                     unsigned int &elementCount, unsigned int &stride) const {
    return devhost::guarded([&] { return data_->find(geometry, data, elementCount, stride); });
}

ZStatus ZVaryingParameter::setSource(ZVaryingParameterSemantic semantic, ZString const &setName) {
    Description &description = data_->description;
    if (description.isStructure())
        return invalid("the elements of a structure have the sources");
    if (!isSemantic(semantic))
        return invalid("no such semantic");
    description.source = semantic;
    description.sourceSet = setName;
    description.updateId = nextUpdateId();
    return ZStatus();
}

ZVaryingParameter::ZVaryingParameterSemantic ZVaryingParameter::getSourceType() const {
    return data_->description.source;
}

ZString ZVaryingParameter::getSourceSetName() const {
    return data_->description.sourceSet;
}

ZStatus ZVaryingParameter::addElement(ZVaryingParameter const &element) {
    Description &description = data_->description;
    const Description &added = element.data_->description;
    if (!description.isStructure())
        return invalid("only structures have elements");
    if (added.size() == 0)
        return invalid("the element has no values");
    if (description.greatestSize() + added.greatestSize() > kMostBytes ||
        added.levels() + 1 > kMostLevels)
        return invalid("the structure would be too large");
    return devhost::guarded([&] {
        Description copy = added; // the element may be this structure
        description.elements.push_back(std::move(copy));
        description.updateId = nextUpdateId();
        return ZStatus();
    });
}

unsigned int ZVaryingParameter::numElements() const {
    return unsigned(data_->description.elements.size());
}

ZVaryingParameter ZVaryingParameter::getElement(unsigned int index) const {
    ZVaryingParameter element;
    if (index < data_->description.elements.size())
        element.data_->description = data_->description.elements[index];
    return element;
}

ZStatus ZVaryingParameter::removeElements() {
    Description &description = data_->description;
    if (!description.isStructure())
        return invalid("only structures have elements");
    description.elements.clear();
    description.updateId = nextUpdateId();
    return ZStatus();
}

unsigned int ZVaryingParameter::getUpdateId() const {
    return data_->description.updateId;
}
