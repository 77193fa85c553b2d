// SPDX-License-Identifier: MIT
#include "host/render/ZGeometryRequirements.h"

#include "devhost/api/render/GeometryHandles.h"
#include "host/core/ZString.h"

namespace {

int validSize(int elementSize) {
    return elementSize >= 2 && elementSize <= 4 ? elementSize : 3;
}

} // namespace

ZGeometryRequirements::ZGeometryRequirements() : list_(new List) {}

ZGeometryRequirements::~ZGeometryRequirements() {
    delete list_;
}

ZGeometryRequirements::List const &ZGeometryRequirements::list() const {
    return *list_;
}

void ZGeometryRequirements::addPosition(int elementSize) {
    list_->add(ZGeometryData::kPosition, "", validSize(elementSize));
}

void ZGeometryRequirements::addNormal(int elementSize) {
    list_->add(ZGeometryData::kNormal, "", validSize(elementSize));
}

void ZGeometryRequirements::addTexCoord(ZString const &name) {
    list_->add(ZGeometryData::kTexCoord, name.asChar(), 2);
}

void ZGeometryRequirements::addColor(ZString const &name) {
    list_->add(ZGeometryData::kColor, name.asChar(), 4);
}

void ZGeometryRequirements::addTangent(ZString const &name, int elementSize) {
    list_->add(ZGeometryData::kTangent, name.asChar(), validSize(elementSize));
}

void ZGeometryRequirements::addBinormal(ZString const &name, int elementSize) {
    list_->add(ZGeometryData::kBiNormal, name.asChar(), validSize(elementSize));
}

void ZGeometryRequirements::addComponentId() {
    list_->add(ZGeometryData::kUserData, devhost::kComponentIds, 1);
}

void ZGeometryRequirements::addFaceOffsets() {
    list_->add(ZGeometryData::kUserData, devhost::kFaceOffsets, 1);
}
