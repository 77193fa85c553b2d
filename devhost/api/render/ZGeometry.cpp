// SPDX-License-Identifier: MIT
#include "host/render/ZGeometry.h"

#include "devhost/api/render/GeometryElements.h"
#include "host/core/ZString.h"

ZGeometry::ZGeometry(Streams const &streams) : streams_(new Streams(streams.to)) {}

ZGeometry::ZGeometry(ZGeometry const &other) : streams_(devhost::share(other.streams_)) {}

ZGeometry::~ZGeometry() {
    devhost::drop(streams_);
}

ZGeometry &ZGeometry::operator=(ZGeometry const &other) {
    ZGeometry copy(other);
    std::swap(streams_, copy.streams_);
    return *this;
}

ZGeometryData ZGeometry::position() {
    return data(ZGeometryData::kPosition, ZString());
}

ZGeometryData ZGeometry::normal() {
    return data(ZGeometryData::kNormal, ZString());
}

ZGeometryData ZGeometry::componentId() {
    return data(ZGeometryData::kUserData, devhost::kComponentIds);
}

ZGeometryData ZGeometry::texCoord(ZString const &name) {
    return data(ZGeometryData::kTexCoord, name);
}

ZGeometryData ZGeometry::color(ZString const &name) {
    return data(ZGeometryData::kColor, name);
}

ZGeometryData ZGeometry::tangent(ZString const &name) {
    return data(ZGeometryData::kTangent, name);
}

ZGeometryData ZGeometry::binormal(ZString const &name) {
    return data(ZGeometryData::kBiNormal, name);
}

ZGeometryData ZGeometry::data(ZGeometryData::DataType dataType, ZString const &name) {
    for (const devhost::StreamHandle &stream : streams_->to->streams)
        if (stream->type == dataType && (!name.length() || name == stream->name.c_str()))
            return ZGeometryData(ZGeometryData::Stream(stream));
    return ZGeometryData(ZGeometryData::Stream(std::make_shared<devhost::GeometryStream>()));
}

unsigned int ZGeometry::primitiveArrayCount() const {
    return streams_->to->triangles ? 1 : 0;
}

ZGeometryPrimitive ZGeometry::primitiveArray(unsigned int arrayNumber) const {
    if (arrayNumber < primitiveArrayCount())
        return {ZGeometryData::Stream(streams_->to->triangles), ZGeometryPrimitive::kTriangles};
    return {ZGeometryData::Stream(std::make_shared<devhost::GeometryStream>()),
            ZGeometryPrimitive::kInvalidIndexType};
}
