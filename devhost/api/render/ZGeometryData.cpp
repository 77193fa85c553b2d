// SPDX-License-Identifier: MIT
#include "host/render/ZGeometryData.h"

#include "devhost/api/render/GeometryHandles.h"

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
    : ZGeometryData(Stream(std::make_shared<devhost::GeometryStream>())) {
    devhost::GeometryStream &stream = *stream_->to;
    stream.name = name ? name : "";
    stream.id = devhost::nextStreamId();
    stream.type = dataType;
    stream.elementType = elementType;
    stream.elementSize = elementSize;
    stream.elementCount = elementCount;
    stream.data = pData;
    stream.ownsData = ownsData;
}

ZGeometryData::ZGeometryData(Stream const &stream) : stream_(new Stream(stream.to)) {}

ZGeometryData::ZGeometryData(ZGeometryData const &other) : stream_(devhost::share(other.stream_)) {}

ZGeometryData::~ZGeometryData() {
    devhost::drop(stream_);
}

ZGeometryData &ZGeometryData::operator=(ZGeometryData const &other) {
    ZGeometryData copy(other);
    std::swap(stream_, copy.stream_);
    return *this;
}

char const *ZGeometryData::objectName() const {
    return stream_->to->name.c_str();
}

int ZGeometryData::uniqueID() const {
    return stream_->to->id;
}

ZGeometryData::DataType ZGeometryData::dataType() const {
    return stream_->to->type;
}

ZGeometryData::ElementType ZGeometryData::elementType() const {
    return stream_->to->elementType;
}

int ZGeometryData::elementTypeSize() const {
    return sizeOf(stream_->to->elementType);
}

ZGeometryData::ElementSize ZGeometryData::elementSize() const {
    return static_cast<ElementSize>(stream_->to->elementSize);
}

unsigned int ZGeometryData::elementCount() const {
    return stream_->to->elementCount;
}

void *ZGeometryData::data() const {
    return stream_->to->data;
}

int ZGeometryData::collectionNumber() const {
    return stream_->to->collectionNumber;
}

void ZGeometryData::setCollectionNumber(int number) {
    stream_->to->collectionNumber = number;
}

void ZGeometryData::setObjectOwnsData(bool ownsData) {
    stream_->to->ownsData = ownsData;
}

bool ZGeometryData::objectOwnsData() const {
    return stream_->to->ownsData;
}
