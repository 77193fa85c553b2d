#include "host/render/ZGeometryList.h"
#include "devhost/geometry/GeometryElements.h"
#include "host/core/ZObject.h"
#include "host/render/ZRenderingInfo.h"

namespace {

ZGeometry everythingOf(const devhost::MeshHandle &mesh) {
    devhost::GeometryRequirementList all;
    all.addAll();
    return ZGeometry(devhost::makeGeometry(mesh, all));
}

} // namespace

ZGeometryList::ZGeometryList()
    : ZSetupFlags(kMatrices), fElements(std::make_unique<devhost::GeometryElements>()) {}

ZGeometryList::ZGeometryList(ZRenderingInfo const &renderInfo, int setupFlags)
    : ZSetupFlags(setupFlags), fElements(std::make_unique<devhost::GeometryElements>()) {
    fElements->projection = renderInfo.projectionMatrix();
    fElements->view = renderInfo.viewMatrix();
    const devhost::Scene &scene = devhost::scene();
    for (const devhost::NodeId mesh : scene.meshes()) {
        ZDagPath path;
        if (scene.isRendered(mesh) && !ZDagPath::getAPathTo(scene.object(mesh), path).error())
            addLast(path);
    }
}

ZGeometryList::~ZGeometryList() {
    devhost::forgetDefaultGeometry(this);
}

bool ZGeometryList::isDone() const {
    return !fElements->at();
}

void ZGeometryList::next() {
    if (!isDone())
        ++fElements->current;
}

void ZGeometryList::reset() {
    fElements->current = 0;
}

int ZGeometryList::length() const {
    return int(fElements->elements.size());
}

void ZGeometryList::setCurrentElement(int index) {
    const size_t end = fElements->elements.size();
    fElements->current = index >= 0 && size_t(index) < end ? size_t(index) : end;
}

ZGeometry &ZGeometryList::geometry(int) {
    devhost::GeometryElement *element = fElements->at();
    if (!element)
        return fElements->nothing;
    if (!element->geometry)
        element->geometry = everythingOf(element->mesh);
    return *element->geometry;
}

ZMatrix const &ZGeometryList::objectToWorldMatrix() const {
    const devhost::GeometryElement *element = fElements->at();
    return element ? element->toWorld : fElements->identity;
}

ZMatrix const &ZGeometryList::projectionMatrix() const {
    return fElements->projection;
}

ZMatrix const &ZGeometryList::viewMatrix() const {
    return fElements->view;
}

ZDagPath ZGeometryList::path() const {
    const devhost::GeometryElement *element = fElements->at();
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
    fElements->elements.push_back(std::move(element));
    return true;
}

bool ZGeometryList::addLast(ZGeometry const &geometry, ZMatrix const &objectToWorldMatrix) {
    fElements->elements.push_back({ZDagPath(), objectToWorldMatrix, nullptr, geometry});
    return true;
}
