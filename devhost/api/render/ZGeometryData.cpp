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
    : fStream(std::make_shared<devhost::GeometryStream>()) {
    fStream->name = name ? name : "";
    fStream->id = devhost::nextStreamId();
    fStream->type = dataType;
    fStream->elementType = elementType;
    fStream->elementSize = elementSize;
    fStream->elementCount = elementCount;
    fStream->data = pData;
    fStream->ownsData = ownsData;
}

ZGeometryData::ZGeometryData(std::shared_ptr<devhost::GeometryStream> stream)
    : fStream(stream ? std::move(stream) : std::make_shared<devhost::GeometryStream>()) {}

ZGeometryData::ZGeometryData(ZGeometryData const &other) = default;
ZGeometryData::~ZGeometryData() = default;

char const *ZGeometryData::objectName() const {
    return fStream->name.c_str();
}

int ZGeometryData::uniqueID() const {
    return fStream->id;
}

ZGeometryData::DataType ZGeometryData::dataType() const {
    return fStream->type;
}

ZGeometryData::ElementType ZGeometryData::elementType() const {
    return fStream->elementType;
}

int ZGeometryData::elementTypeSize() const {
    return sizeOf(fStream->elementType);
}

ZGeometryData::ElementSize ZGeometryData::elementSize() const {
    return static_cast<ElementSize>(fStream->elementSize);
}

unsigned int ZGeometryData::elementCount() const {
    return fStream->elementCount;
}

void *ZGeometryData::data() const {
    return fStream->data;
}

int ZGeometryData::collectionNumber() const {
    return fStream->collectionNumber;
}

void ZGeometryData::setCollectionNumber(int number) {
    fStream->collectionNumber = number;
}

void ZGeometryData::setObjectOwnsData(bool ownsData) {
    fStream->ownsData = ownsData;
}

bool ZGeometryData::objectOwnsData() const {
    return fStream->ownsData;
}
