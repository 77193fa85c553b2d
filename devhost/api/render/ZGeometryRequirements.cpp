#include "host/render/ZGeometryRequirements.h"
#include "devhost/geometry/GeometryStreams.h"

namespace {

int validSize(int elementSize) {
    return elementSize >= 2 && elementSize <= 4 ? elementSize : 3;
}

} // namespace

ZGeometryRequirements::ZGeometryRequirements()
    : fList(std::make_unique<devhost::GeometryRequirementList>()) {}
ZGeometryRequirements::~ZGeometryRequirements() = default;

void ZGeometryRequirements::addPosition(int elementSize) {
    fList->add(ZGeometryData::kPosition, "", validSize(elementSize));
}

void ZGeometryRequirements::addNormal(int elementSize) {
    fList->add(ZGeometryData::kNormal, "", validSize(elementSize));
}

void ZGeometryRequirements::addTexCoord(ZString const &name) {
    fList->add(ZGeometryData::kTexCoord, name.asChar(), 2);
}

void ZGeometryRequirements::addColor(ZString const &name) {
    fList->add(ZGeometryData::kColor, name.asChar(), 4);
}

void ZGeometryRequirements::addTangent(ZString const &name, int elementSize) {
    fList->add(ZGeometryData::kTangent, name.asChar(), validSize(elementSize));
}

void ZGeometryRequirements::addBinormal(ZString const &name, int elementSize) {
    fList->add(ZGeometryData::kBiNormal, name.asChar(), validSize(elementSize));
}

void ZGeometryRequirements::addComponentId() {
    fList->add(ZGeometryData::kUserData, devhost::kComponentIds, 1);
}

void ZGeometryRequirements::addFaceOffsets() {
    fList->add(ZGeometryData::kUserData, devhost::kFaceOffsets, 1);
}
