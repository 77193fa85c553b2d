#include "host/render/ZGeometry.h"

#include "devhost/geometry/GeometryStreams.h"

ZGeometry::ZGeometry(std::shared_ptr<devhost::GeometryStreams const> streams)
    : streams_(std::move(streams)) {}

ZGeometry::ZGeometry(ZGeometry const &other) = default;
ZGeometry::~ZGeometry() = default;
ZGeometry &ZGeometry::operator=(ZGeometry const &other) = default;

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
    for (const devhost::StreamHandle &stream : streams_->streams)
        if (stream->type == dataType && (!name.length() || name == stream->name.c_str()))
            return ZGeometryData(stream);
    return ZGeometryData(nullptr);
}

unsigned int ZGeometry::primitiveArrayCount() const {
    return unsigned(streams_->primitives.size());
}

ZGeometryPrimitive ZGeometry::primitiveArray(unsigned int arrayNumber) const {
    if (arrayNumber < streams_->primitives.size())
        return streams_->primitives[arrayNumber];
    return {std::make_shared<devhost::GeometryStream>(), ZGeometryPrimitive::kInvalidIndexType};
}
