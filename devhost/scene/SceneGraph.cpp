// SPDX-License-Identifier: MIT
// The scene graph: nodes, names, handles and attributes.
#include "devhost/scene/SceneGraph.h"

#include "devhost/scene/Attributes.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <type_traits>

struct ZObject::Access {
    static ZObject handle(int node, unsigned generation) {
        ZObject made;
        made.node_ = node;
        made.generation_ = generation;
        return made;
    }
    static int node(const ZObject &handle) { return handle.node_; }
    static unsigned generation(const ZObject &handle) { return handle.generation_; }
};

namespace devhost {

namespace {

// Shared by all scenes, so that a handle into one never fits a node of another.
unsigned nextGeneration() {
    static std::atomic<unsigned> last{0};
    return ++last;
}

unsigned long nextRevision() {
    static std::atomic<unsigned long> last{0};
    return ++last;
}

/// Stores a value where the kinds agree; numbers and truth values convert to each other.
template <class Target>
bool store(Target &target, const AttributeValue &value) {
    return std::visit(
        [&target](const auto &given) {
            using Given = std::decay_t<decltype(given)>;
            if constexpr (std::is_same_v<Target, bool> && std::is_arithmetic_v<Given>) {
                target = given != Given(0);
                return true;
            } else if constexpr (std::is_same_v<Target, int> && std::is_same_v<Given, double>) {
                if (!(given > -2147483649.0 && given < 2147483648.0))
                    return false;
                target = Target(given);
                return true;
            } else if constexpr (std::is_arithmetic_v<Target> && std::is_arithmetic_v<Given>) {
                target = Target(given);
                return true;
            } else if constexpr (std::is_same_v<Target, Given>) {
                target = given;
                return true;
            } else {
                return false;
            }
        },
        value);
}

/// A lens has one angle: what was set gives the other one, and the vertical one stays where the
/// film's proportions change.
void matchAngles(Camera &camera, const std::string &changed) {
    const auto across = [](double angle, double factor) {
        const double half = angle * std::numbers::pi / 360;
        return 2 * std::atan(std::tan(half) * factor) * 180 / std::numbers::pi;
    };
    if (changed == "horizontalFieldOfView")
        camera.verticalFieldOfView = across(camera.horizontalFieldOfView, 1 / camera.filmAspect);
    else if (changed == "verticalFieldOfView" || changed == "filmAspect")
        camera.horizontalFieldOfView = across(camera.verticalFieldOfView, camera.filmAspect);
}

bool endsWith(const std::string &text, const std::string &end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// A matrix that puts a node at `from`, its -Z axis towards `to`.
ZMatrix lookAt(const ZVector &from, const ZVector &to) {
    const ZVector back = (from - to).normal();
    const ZVector side = (ZVector(0, 1, 0) ^ back).normal();
    const ZVector rows[4] = {side, back ^ side, back, from};
    ZMatrix result;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 3; ++column)
            result.matrix[row][column] = rows[row][column];
    return result;
}

} // namespace

bool Node::inHierarchy() const {
    return type != "material" && type != "file" && !layer() && !pass() && !imageSource();
}

void Bounds::extend(const ZVector &point) {
    if (empty)
        low = high = point;
    empty = false;
    low = ZVector(std::min(low.x, point.x), std::min(low.y, point.y), std::min(low.z, point.z));
    high = ZVector(std::max(high.x, point.x), std::max(high.y, point.y), std::max(high.z, point.z));
}

ZVector transformPoint(const ZVector &point, const ZMatrix &matrix) {
    return point * matrix + ZVector(matrix[3][0], matrix[3][1], matrix[3][2]);
}

Scene::Scene() : revision_(nextRevision()) {}

void Scene::clear() {
    slots_.clear();
    order_.clear();
    names_.clear();
    currentLayer_ = kNoNode;
    unadjusted_.clear();
    fileName_.clear();
    motion_.reset();
    revision_ = nextRevision();
}

std::string Scene::folder() const {
    namespace fs = std::filesystem;
    std::error_code ignored;
    if (fileName_.empty())
        return fs::current_path(ignored).string();
    return fs::path(fileName_).parent_path().string();
}

std::string Scene::uniqueName(const std::string &wanted, NodeId parent) {
    std::string base = wanted.empty() ? "node" : wanted;
    std::replace(base.begin(), base.end(), '|', '_'); // it separates the names of a path
    auto [entry, isNew] = names_.try_emplace({parent, base}, 1);
    if (isNew)
        return base;
    for (unsigned &number = entry->second;;) {
        std::string name = base + std::to_string(number++);
        if (names_.try_emplace({parent, name}, 1).second)
            return name;
    }
}

NodeId Scene::add(const std::string &type, const std::string &name, Payload payload,
                  NodeId parent) {
    auto node = std::make_unique<Node>();
    node->type = type;
    node->name = uniqueName(name.empty() ? type : name, parent);
    node->parent = parent;
    node->payload = std::move(payload);

    const NodeId id = NodeId(slots_.size());
    slots_.push_back({nextGeneration(), std::move(node)});
    if (Node *above = parent == kNoNode ? nullptr : slots_[parent].node.get())
        above->children.push_back(id);
    order_.push_back(id);
    revision_ = nextRevision();
    return id;
}

void Scene::remove(NodeId id) {
    const Node *top = node(id);
    if (!top)
        return;
    if (top->parent != kNoNode)
        std::erase(slots_[top->parent].node->children, id);
    std::vector<NodeId> doomed{id};
    for (size_t at = 0; at < doomed.size(); ++at) {
        const Node &each = *node(doomed[at]);
        doomed.insert(doomed.end(), each.children.begin(), each.children.end());
    }
    for (NodeId each : doomed) {
        names_.erase({node(each)->parent, node(each)->name});
        std::erase(order_, each);
    }
    for (NodeId each : doomed)
        slots_[each].node.reset();
    revision_ = nextRevision();
}

const Node *Scene::node(NodeId id) const {
    return id >= 0 && size_t(id) < slots_.size() ? slots_[id].node.get() : nullptr;
}

Node *Scene::edit(NodeId id) {
    revision_ = nextRevision();
    return const_cast<Node *>(node(id));
}

std::vector<NodeId> Scene::nodes() const {
    return order_;
}

std::vector<NodeId> Scene::select(bool (*wanted)(const Node &)) const {
    std::vector<NodeId> found;
    for (NodeId id : order_)
        if (wanted(*slots_[id].node))
            found.push_back(id);
    return found;
}

std::vector<NodeId> Scene::meshes() const {
    return select([](const Node &node) { return node.mesh() != nullptr; });
}

std::vector<NodeId> Scene::cameras() const {
    return select([](const Node &node) { return node.camera() != nullptr; });
}

std::vector<NodeId> Scene::lights() const {
    return select([](const Node &node) { return node.light() != nullptr; });
}

std::vector<NodeId> Scene::materials() const {
    return select([](const Node &node) { return node.material() != nullptr; });
}

std::vector<NodeId> Scene::layers() const {
    return select([](const Node &node) { return node.layer() != nullptr; });
}

NodeId Scene::find(const std::string &name) const {
    if (name.empty())
        return kNoNode;
    const bool isPath = name.find('|') != std::string::npos;
    const std::string end = name[0] == '|' ? name : "|" + name;
    for (NodeId id : order_) {
        if (!isPath) {
            if (slots_[id].node->name == name)
                return id;
        } else if (name[0] == '|' ? path(id) == name : endsWith(path(id), end)) {
            return id;
        }
    }
    return kNoNode;
}

NodeId Scene::findCamera(const std::string &name) const {
    const std::vector<NodeId> all = cameras();
    if (name.empty())
        return all.empty() ? kNoNode : all.front();
    const NodeId named = find(name);
    for (NodeId id : all) {
        const NodeId parent = slots_[id].node->parent;
        const bool ownName = id == named || slots_[id].node->name == name;
        if (ownName || (named != kNoNode && parent == named))
            return id;
    }
    return kNoNode;
}

std::string Scene::path(NodeId id) const {
    const Node *end = node(id);
    if (!end)
        return {};
    if (!end->inHierarchy())
        return end->name;
    std::string result;
    for (const Node *each = end; each; each = node(each->parent))
        result.insert(0, "|" + each->name);
    return result;
}

ZMatrix Scene::worldMatrix(NodeId id) const {
    ZMatrix result;
    for (const Node *each = node(id); each; each = node(each->parent))
        result = result * each->local;
    return result;
}

bool Scene::isVisible(NodeId id) const {
    if (!node(id))
        return false;
    for (const Node *each = node(id); each; each = node(each->parent))
        if (!each->visible)
            return false;
    return true;
}

bool Scene::isAtOrBelow(NodeId id, const std::vector<NodeId> &tops) const {
    for (NodeId at = tops.empty() ? kNoNode : id; node(at); at = node(at)->parent)
        if (std::find(tops.begin(), tops.end(), at) != tops.end())
            return true;
    return false;
}

bool Scene::isChosen(NodeId id, const NodeChoice &choice) const {
    return isAtOrBelow(id, choice.nodes) != choice.except;
}

Bounds Scene::bounds() const {
    Bounds result;
    for (NodeId id : meshes()) {
        if (!isVisible(id))
            continue;
        const Mesh &mesh = *node(id)->mesh();
        const ZMatrix world = worldMatrix(id);
        for (size_t at = 0; at + 2 < mesh.positions.size(); at += 3) {
            const float *p = &mesh.positions[at];
            result.extend(transformPoint(ZVector(p[0], p[1], p[2]), world));
        }
    }
    return result;
}

std::optional<AttributeValue> Scene::attribute(NodeId id, const std::string &name) const {
    const Node *found = node(id);
    if (!found)
        return {};
    if (name == "worldMatrix" && found->inHierarchy())
        return worldMatrix(id);
    const FieldRef field = builtInField(const_cast<Node &>(*found), name);
    if (!std::holds_alternative<std::monostate>(field))
        return std::visit(
            [](auto held) -> AttributeValue {
                using Held = decltype(held);
                if constexpr (std::is_same_v<Held, std::monostate>)
                    return false; // handled above
                else
                    return *held;
            },
            field);
    const auto further = found->attributes.find(name);
    if (further == found->attributes.end())
        return {};
    return further->second;
}

bool Scene::setAttribute(NodeId id, const std::string &name, const AttributeValue &value) {
    if (!storeAttribute(id, name, value))
        return false;
    // What the current layer adjusts is kept twice: in the scene and in the layer.
    if (const Node *current = node(currentLayer_))
        for (const RenderLayer::Adjustment &each : current->layer()->adjustments) {
            if (each.node == id && each.attribute == name)
                storeAttribute(currentLayer_, each.name, value);
            else if (currentLayer_ == id && each.name == name)
                storeAttribute(each.node, each.attribute, value);
        }
    return true;
}

bool Scene::storeAttribute(NodeId id, const std::string &name, const AttributeValue &value) {
    if (!node(id))
        return false;
    Node &found = *edit(id);
    const FieldRef field = builtInField(found, name);
    if (std::holds_alternative<std::monostate>(field)) {
        const auto further = found.attributes.find(name);
        return further != found.attributes.end() &&
               std::visit([&value](auto &held) { return store(held, value); }, further->second);
    }
    const bool stored = std::visit(
        [&value](auto held) {
            if constexpr (std::is_same_v<decltype(held), std::monostate>)
                return false; // handled above
            else
                return store(*held, value);
        },
        field);
    if (auto texture = std::get_if<Texture>(&found.payload); stored && texture)
        texture->pixels.reset(); // they belong to the old file
    if (auto camera = std::get_if<Camera>(&found.payload); stored && camera)
        matchAngles(*camera, name);
    return stored;
}

NodeId Scene::currentLayer() const {
    if (node(currentLayer_))
        return currentLayer_;
    for (NodeId id : layers())
        if (node(id)->layer()->isDefault)
            return id;
    return kNoNode;
}

bool Scene::setCurrentLayer(NodeId layer) {
    const Node *next = node(layer);
    if (!next || !next->layer())
        return false;
    if (const Node *last = node(currentLayer_)) {
        const auto &adjustments = last->layer()->adjustments;
        for (size_t at = 0; at < unadjusted_.size(); ++at)
            storeAttribute(adjustments[at].node, adjustments[at].attribute, unadjusted_[at]);
    }
    unadjusted_.clear();
    for (const RenderLayer::Adjustment &each : next->layer()->adjustments) {
        unadjusted_.push_back(attribute(each.node, each.attribute).value_or(false));
        storeAttribute(each.node, each.attribute, next->attributes.at(each.name));
    }
    currentLayer_ = layer;
    revision_ = nextRevision();
    return true;
}

bool Scene::isInLayer(NodeId id, NodeId layer) const {
    const Node *held = node(layer);
    if (!held || !held->layer() || !node(id) || !node(id)->inHierarchy())
        return false;
    if (held->layer()->isDefault || isAtOrBelow(id, held->layer()->members))
        return true;
    return std::any_of(held->children.begin(), held->children.end(),
                       [&](NodeId child) { return isInLayer(id, child); });
}

bool Scene::isInCurrentLayer(NodeId id) const {
    const Node *found = node(id);
    if (!found || !found->inHierarchy())
        return false;
    const Light *light = found->light();
    return !node(currentLayer_) || (light && light->isDefault) || isInLayer(id, currentLayer_);
}

bool Scene::isRendered(NodeId id) const {
    return isVisible(id) && isInCurrentLayer(id);
}

ZObject Scene::object(NodeId id) const {
    return node(id) ? ZObject::Access::handle(id, slots_[id].generation) : ZObject();
}

NodeId Scene::id(const ZObject &object) const {
    const NodeId held = ZObject::Access::node(object);
    return node(held) && slots_[held].generation == ZObject::Access::generation(object) ? held
                                                                                        : kNoNode;
}

void Scene::addDefaults() {
    if (cameras().empty()) {
        const Bounds all = motionBounds();
        const double radius = all.empty || all.radius() == 0 ? 5 : all.radius();
        const ZVector center = all.empty ? ZVector() : all.center();
        Camera camera;
        camera.filmAspect = 4.0 / 3.0;
        matchAngles(camera, "filmAspect");
        const double half = camera.verticalFieldOfView * std::numbers::pi / 360;
        const double distance = 1.05 * radius / std::sin(half);
        camera.nearClip = distance * 0.001;
        camera.farClip = distance * 100;
        camera.orthographicWidth = 2 * radius * camera.filmAspect;
        const NodeId id = add("camera", "persp", camera);
        edit(id)->local = lookAt(center + ZVector(0.6, 0.45, 1).normal() * distance, center);
    }
    if (lights().empty())
        addDefaultLights();
    if (layers().empty()) {
        RenderLayer layer;
        layer.isDefault = true;
        add("renderLayer", "defaultRenderLayer", layer);
    }
}

void Scene::addDefaultLights() {
    // In the camera's space: from its upper left, from the right, and from behind the scene. Only
    // the first one casts shadows, so that what lies in them still shows its form.
    const struct {
        const char *name;
        ZVector shines;
        double brightness; // of a white surface that squarely faces it
        bool castsShadows;
    } setUp[] = {{"headlight", ZVector(1, -1, -0.9), 0.9, true},
                 {"fillLight", ZVector(-0.45, 0, -1), 0.2, false},
                 {"rimLight", ZVector(-0.6, -0.7, 1), 0.5, false}};
    for (const auto &[name, shines, brightness, castsShadows] : setUp) {
        Light light;
        light.isDefault = true;
        light.intensity = brightness * std::numbers::pi;
        light.shadowCasters.except = castsShadows;
        const NodeId id = add("light", name, light, findCamera());
        edit(id)->local = lookAt(ZVector(), shines);
    }
}

void Scene::replaceBy(Scene &&other) {
    const double now = time_;
    *this = std::move(other);
    setTime(now);
    revision_ = nextRevision();
}

Scene &scene() {
    // Never destroyed: handles may be asked while the process exits.
    static auto *const theScene = [] {
        auto *const fresh = new Scene;
        fresh->addDefaults();
        return fresh;
    }();
    return *theScene;
}

} // namespace devhost
