#include "host/render/ZGeometryPrimitive.h"
#include "devhost/geometry/GeometryStreams.h"

ZGeometryPrimitive::ZGeometryPrimitive(std::shared_ptr<devhost::GeometryStream> indices,
                                       DrawPrimitiveType type)
    : fIndices(std::move(indices)), fType(type) {}

ZGeometryPrimitive::ZGeometryPrimitive(ZGeometryPrimitive const &other) = default;
ZGeometryPrimitive::~ZGeometryPrimitive() = default;

int ZGeometryPrimitive::uniqueID() const {
    return fIndices->id;
}

ZGeometryPrimitive::DrawPrimitiveType ZGeometryPrimitive::drawPrimitiveType() const {
    return fType;
}

unsigned int ZGeometryPrimitive::elementCount() const {
    return fIndices->elementCount;
}

ZGeometryData::ElementType ZGeometryPrimitive::dataType() const {
    return fIndices->elementType;
}

void *ZGeometryPrimitive::data() const {
    return fIndices->data;
}
