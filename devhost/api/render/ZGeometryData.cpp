#include "host/render/ZGeometryData.h"

#include "devhost/geometry/GeometryStreams.h"

namespace {

int sizeOf(ZGeometryData::ElementType type) {
    switch (type) {
    case ZGeometryData::kChar:
    case ZGeometryData::kUnsignedChar:
        return 1;
    case ZGeometryData::kInt16:
    case ZGeometryData::kUnsignedInt16:
        return 2;
    case ZGeometryData::kFloat:
    case ZGeometryData::kInt32:
    case ZGeometryData::kUnsignedInt32:
        return 4;
    case ZGeometryData::kDouble:
        return 8;
    default:
        return 0;
    }
}

} // namespace

ZGeometryData::ZGeometryData(char const *name, DataType dataType, ElementType elementType,
                             ElementSize elementSize, unsigned int elementCount, void *pData,
                             bool ownsData)
    : stream_(std::make_shared<devhost::GeometryStream>()) {
    stream_->name = name ? name : "";
    stream_->id = devhost::nextStreamId();
    stream_->type = dataType;
    stream_->elementType = elementType;
    stream_->elementSize = elementSize;
    stream_->elementCount = elementCount;
    stream_->data = pData;
    stream_->ownsData = ownsData;
}

ZGeometryData::ZGeometryData(std::shared_ptr<devhost::GeometryStream> stream)
    : stream_(stream ? std::move(stream) : std::make_shared<devhost::GeometryStream>()) {}

ZGeometryData::ZGeometryData(ZGeometryData const &other) = default;
ZGeometryData::~ZGeometryData() = default;

char const *ZGeometryData::objectName() const {
    return stream_->name.c_str();
}

int ZGeometryData::uniqueID() const {
    return stream_->id;
}

ZGeometryData::DataType ZGeometryData::dataType() const {
    return stream_->type;
}

ZGeometryData::ElementType ZGeometryData::elementType() const {
    return stream_->elementType;
}

int ZGeometryData::elementTypeSize() const {
    return sizeOf(stream_->elementType);
}

ZGeometryData::ElementSize ZGeometryData::elementSize() const {
    return static_cast<ElementSize>(stream_->elementSize);
}

unsigned int ZGeometryData::elementCount() const {
    return stream_->elementCount;
}

void *ZGeometryData::data() const {
    return stream_->data;
}

int ZGeometryData::collectionNumber() const {
    return stream_->collectionNumber;
}

void ZGeometryData::setCollectionNumber(int number) {
    stream_->collectionNumber = number;
}

void ZGeometryData::setObjectOwnsData(bool ownsData) {
    stream_->ownsData = ownsData;
}

bool ZGeometryData::objectOwnsData() const {
    return stream_->ownsData;
}
