// SPDX-License-Identifier: MIT
#include "host/render/ZGeometryPrimitive.h"

#include "devhost/api/render/GeometryHandles.h"

ZGeometryPrimitive::ZGeometryPrimitive(ZGeometryData::Stream const &indices, DrawPrimitiveType type)
    : indices_(new ZGeometryData::Stream(indices.to)), type_(type) {}

ZGeometryPrimitive::ZGeometryPrimitive(ZGeometryPrimitive const &other)
    : indices_(devhost::share(other.indices_)), type_(other.type_) {}

ZGeometryPrimitive::~ZGeometryPrimitive() {
    devhost::drop(indices_);
}

ZGeometryPrimitive &ZGeometryPrimitive::operator=(ZGeometryPrimitive const &other) {
    ZGeometryPrimitive copy(other);
    std::swap(indices_, copy.indices_);
    type_ = other.type_;
    return *this;
}

int ZGeometryPrimitive::uniqueID() const {
    return indices_->to->id;
}

ZGeometryPrimitive::DrawPrimitiveType ZGeometryPrimitive::drawPrimitiveType() const {
    return type_;
}

unsigned int ZGeometryPrimitive::elementCount() const {
    return indices_->to->elementCount;
}

ZGeometryData::ElementType ZGeometryPrimitive::dataType() const {
    return indices_->to->elementType;
}

void *ZGeometryPrimitive::data() const {
    return indices_->to->data;
}
