#include "host/render/ZGeometryPrimitive.h"

#include "devhost/geometry/GeometryStreams.h"

ZGeometryPrimitive::ZGeometryPrimitive(std::shared_ptr<devhost::GeometryStream> indices,
                                       DrawPrimitiveType type)
    : indices_(std::move(indices)), type_(type) {}

ZGeometryPrimitive::ZGeometryPrimitive(ZGeometryPrimitive const &other) = default;
ZGeometryPrimitive::~ZGeometryPrimitive() = default;

int ZGeometryPrimitive::uniqueID() const {
    return indices_->id;
}

ZGeometryPrimitive::DrawPrimitiveType ZGeometryPrimitive::drawPrimitiveType() const {
    return type_;
}

unsigned int ZGeometryPrimitive::elementCount() const {
    return indices_->elementCount;
}

ZGeometryData::ElementType ZGeometryPrimitive::dataType() const {
    return indices_->elementType;
}

void *ZGeometryPrimitive::data() const {
    return indices_->data;
}
