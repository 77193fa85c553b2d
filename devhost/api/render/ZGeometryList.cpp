// SPDX-License-Identifier: MIT
#include "host/render/ZGeometryList.h"

#include "devhost/api/render/GeometryElements.h"
#include "host/core/ZObject.h"
#include "host/core/ZStatus.h"
#include "host/render/ZRenderingInfo.h"

namespace {

ZGeometry everythingOf(const devhost::MeshHandle &mesh) {
    devhost::GeometryRequirementList all;
    all.addAll();
    return devhost::geometryOf(mesh, all);
}

} // namespace

struct ZGeometryList::Elements : devhost::GeometryElements {};

ZGeometryList::ZGeometryList() : ZSetupFlags(kMatrices), elements_(new Elements) {}

ZGeometryList::ZGeometryList(ZRenderingInfo const &renderInfo, int setupFlags) : ZGeometryList() {
    // After the other constructor, so that the list is destroyed when what follows throws.
    ZSetupFlags = setupFlags; // NOLINT(cppcoreguidelines-prefer-member-initializer)
    elements_->projection = renderInfo.projectionMatrix();
    elements_->view = renderInfo.viewMatrix();
    const devhost::Scene &scene = devhost::scene();
    for (const devhost::NodeId mesh : scene.meshes()) {
        ZDagPath path;
        if (scene.isRendered(mesh) && !ZDagPath::getAPathTo(scene.object(mesh), path).error())
            addLast(path);
    }
}

ZGeometryList::~ZGeometryList() {
    devhost::forgetDefaultGeometry(this);
    delete elements_;
}

bool ZGeometryList::isDone() const {
    return !elements_->at();
}

void ZGeometryList::next() {
    if (!isDone())
        ++elements_->current;
}

void ZGeometryList::reset() {
    elements_->current = 0;
}

int ZGeometryList::length() const {
    return int(elements_->elements.size());
}

void ZGeometryList::setCurrentElement(int index) {
    const size_t end = elements_->elements.size();
    elements_->current = index >= 0 && size_t(index) < end ? size_t(index) : end;
}

ZGeometry &ZGeometryList::geometry(int) {
    devhost::GeometryElement *element = elements_->at();
    if (!element)
        return elements_->nothing;
    if (!element->geometry)
        element->geometry = everythingOf(element->mesh);
    return *element->geometry;
}

ZMatrix const &ZGeometryList::objectToWorldMatrix() const {
    const devhost::GeometryElement *element = elements_->at();
    return element ? element->toWorld : elements_->identity;
}

ZMatrix const &ZGeometryList::projectionMatrix() const {
    return elements_->projection;
}

ZMatrix const &ZGeometryList::viewMatrix() const {
    return elements_->view;
}

ZDagPath ZGeometryList::path() const {
    const devhost::GeometryElement *element = elements_->at();
    return element ? element->path : ZDagPath();
}

ZGeometryList::CullMode ZGeometryList::cullMode() const {
    return kCullNone;
}

bool ZGeometryList::addLast(ZDagPath const &path, ZObject const *component) {
    const devhost::NodeId mesh = devhost::meshNode(path);
    if (mesh == devhost::kNoNode || (component && !component->isNull()))
        return false;
    devhost::GeometryElement element;
    if (ZDagPath::getAPathTo(devhost::scene().object(mesh), element.path).error())
        return false;
    element.toWorld = element.path.inclusiveMatrix();
    element.mesh = devhost::meshOfNode(mesh);
    elements_->elements.push_back(std::move(element));
    return true;
}

bool ZGeometryList::addLast(ZGeometry const &geometry, ZMatrix const &objectToWorldMatrix) {
    elements_->elements.push_back({ZDagPath(), objectToWorldMatrix, nullptr, geometry});
    return true;
}
