// SPDX-License-Identifier: MIT
// Every value is read through a Place, which knows where in the file it stands, so that what is
// wrong can be told in the file's own terms: "layers[0].members[2]: there is no node 'cup'".
#include "devhost/scene/LayerFile.h"

#include "devhost/scene/PassKind.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/scene/SceneLoader.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>

namespace devhost {

namespace {

using Json = nlohmann::json;

class Place {
  public:
    Place(const Json &value, std::string where) : value_(value), where_(std::move(where)) {}

    [[noreturn]] void fail(const std::string &what) const {
        throw BadFile(where_.empty() ? what : where_ + ": " + what);
    }
    const Json &value() const { return value_; }

    /// Checks that it is an object, and that it has no other members: one that is misspelt would
    /// go unnoticed.
    void expectMembers(std::initializer_list<const char *> known) const {
        if (!value_.is_object())
            fail("an object {...} is expected");
        for (const auto &[key, ignored] : value_.items())
            if (std::find(known.begin(), known.end(), key) == known.end())
                fail("there is nothing called '" + key + "' here");
    }
    bool has(const char *key) const { return value_.contains(key); }
    Place at(const char *key) const {
        if (!has(key))
            fail(std::string("'") + key + "' is missing");
        return {value_[key], (where_.empty() ? "" : where_ + ".") + key};
    }
    void forEach(const char *key, const std::function<void(const Place &)> &use) const {
        if (!has(key))
            return;
        const Place list = at(key);
        if (!list.value_.is_array())
            list.fail("a list [...] is expected");
        for (size_t index = 0; index < list.value_.size(); ++index)
            use({list.value_[index], list.where_ + "[" + std::to_string(index) + "]"});
    }
    std::string text() const {
        if (!value_.is_string() || value_.get_ref<const std::string &>().empty())
            fail("a text is expected");
        return value_.get<std::string>();
    }
    std::string text(const char *key, const std::string &otherwise) const {
        return has(key) ? at(key).text() : otherwise;
    }

  private:
    const Json &value_;
    std::string where_;
};

class LayerReader {
  public:
    explicit LayerReader(Scene &scene) : scene_(scene) {}

    void read(const Json &file) {
        const Place top(file, "");
        top.expectMembers({"layers", "passes", "imageSources", "lightLinks"});
        top.forEach("passes", [this](const Place &place) { readPass(place); });
        top.forEach("layers", [this](const Place &place) { readLayer(place); });
        top.forEach("imageSources", [this](const Place &place) { readImageSource(place); });
        top.forEach("lightLinks", [this](const Place &place) { readLinks(place); });
    }

  private:
    NodeId find(const Place &place, const std::string &name) const {
        const NodeId id = scene_.find(name);
        if (id == kNoNode)
            place.fail("there is no node '" + name + "'");
        return id;
    }
    /// A node that has to be of a kind, which `kind` names.
    template <class Test>
    NodeId find(const Place &place, const char *kind, Test test) const {
        const NodeId id = find(place, place.text());
        if (!test(*scene_.node(id)))
            place.fail("'" + place.text() + "' is no " + kind);
        return id;
    }
    NodeId findObject(const Place &place) const {
        return find(place, "object, group or light",
                    [](const Node &node) { return node.inHierarchy(); });
    }

    NodeId add(const char *type, const Place &place, Payload payload, NodeId parent = kNoNode) {
        const std::string name = place.at("name").text();
        if (scene_.find(name) != kNoNode)
            place.at("name").fail("there is a node '" + name + "' already");
        return scene_.add(type, name, std::move(payload), parent);
    }

    NodeChoice choice(const Place &parent, const char *key) const {
        NodeChoice result;
        if (!parent.has(key))
            return result;
        const Place place = parent.at(key);
        place.expectMembers({"only", "except"});
        result.except = !place.has("only");
        if (place.value().size() != 1)
            place.fail("one of 'only' and 'except' is expected");
        place.forEach(result.except ? "except" : "only",
                      [&](const Place &each) { result.nodes.push_back(findObject(each)); });
        return result;
    }

    void readPass(const Place &place) {
        place.expectMembers({"name", "implementation", "id", "tokens", "objects", "lights"});
        RenderPass pass;
        pass.implementation = place.text("implementation", pass.implementation);
        if (!findPassKind(pass.implementation))
            place.at("implementation")
                .fail("there is no implementation '" + pass.implementation + "'");
        pass.passId = place.text("id", place.at("name").text());
        pass.customTokens = place.text("tokens", "");
        pass.objects = choice(place, "objects");
        pass.lights = choice(place, "lights");
        add("renderPass", place, pass);
    }

    void readLayer(const Place &place) {
        place.expectMembers({"name", "parent", "members", "adjustments", "passes"});
        RenderLayer layer;
        place.forEach("passes", [&](const Place &each) {
            layer.passes.push_back(
                find(each, "render pass", [](const Node &node) { return node.pass() != nullptr; }));
        });
        place.forEach("members",
                      [&](const Place &each) { layer.members.push_back(findObject(each)); });
        NodeId parent = kNoNode;
        if (place.has("parent"))
            parent = find(place.at("parent"), "render layer that can have children",
                          [](const Node &n) { return n.layer() && !n.layer()->isDefault; });

        const NodeId existing = scene_.find(place.at("name").text());
        const bool isDefault = existing != kNoNode && existing == scene_.currentLayer();
        if (isDefault && (place.has("members") || place.has("parent") || place.has("adjustments")))
            place.fail("the default layer can be given passes only");
        if (isDefault) {
            std::get<RenderLayer>(scene_.edit(existing)->payload).passes = layer.passes;
            return;
        }
        const NodeId id = add("renderLayer", place, layer, parent);
        if (place.has("adjustments"))
            readAdjustments(place.at("adjustments"), id);
    }

    void readAdjustments(const Place &place, NodeId layerId) {
        if (!place.value().is_object())
            place.fail("an object {...} is expected");
        for (const auto &[key, ignored] : place.value().items()) {
            const Place value = place.at(key.c_str());
            const size_t dot = key.rfind('.');
            if (dot == std::string::npos)
                value.fail("the name of a node, a point and the name of an attribute is expected");
            const NodeId id = find(value, key.substr(0, dot));
            const std::string attribute = key.substr(dot + 1);
            const auto unadjusted = scene_.attribute(id, attribute);
            if (!unadjusted)
                value.fail("there is no attribute '" + attribute + "'");
            const Texture *texture = scene_.node(id)->texture();
            if (texture && texture->fileName.empty())
                value.fail("the texture has no file of its own"); // its pixels would be lost
            // The scene converts the value to the attribute's type; then it gets its own back.
            if (!scene_.setAttribute(id, attribute, attributeValue(value)))
                value.fail("the attribute cannot have this value");
            const AttributeValue adjusted = *scene_.attribute(id, attribute);
            scene_.setAttribute(id, attribute, *unadjusted);
            const std::string name = "adjustment(" + scene_.path(id) + "." + attribute + ")";
            Node &layer = *scene_.edit(layerId);
            layer.attributes[name] = adjusted;
            std::get<RenderLayer>(layer.payload).adjustments.push_back({id, attribute, name});
        }
    }

    static AttributeValue attributeValue(const Place &place) {
        const Json &value = place.value();
        if (value.is_boolean())
            return value.get<bool>();
        if (value.is_number())
            return value.get<double>();
        if (value.is_string())
            return value.get<std::string>();
        const auto isNumber = [](const Json &each) { return each.is_number(); };
        const bool numbers = value.is_array() && std::all_of(value.begin(), value.end(), isNumber);
        if (numbers && value.size() == 3)
            return ZVector(value[0].get<double>(), value[1].get<double>(), value[2].get<double>());
        if (!numbers || value.size() != 16)
            place.fail("a number, text, true or false, or a list of 3 or 16 numbers is expected");
        ZMatrix matrix;
        for (size_t at = 0; at < 16; ++at)
            matrix.matrix[at / 4][at % 4] = value[at].get<double>();
        return matrix;
    }

    void readImageSource(const Place &place) {
        place.expectMembers({"name", "layer", "camera", "imageName"});
        ImageSource source;
        if (place.has("layer"))
            source.layer = find(place.at("layer"), "render layer",
                                [](const Node &node) { return node.layer() != nullptr; });
        if (place.has("camera"))
            source.camera = find(place.at("camera"), "camera",
                                 [](const Node &node) { return node.camera() != nullptr; });
        source.imageName = place.text("imageName", "");
        add("imageSource", place, source);
    }

    void readLinks(const Place &place) {
        place.expectMembers({"light", "illuminates", "shadows"});
        const NodeId id = find(place.at("light"), "light",
                               [](const Node &node) { return node.light() != nullptr; });
        auto &light = std::get<Light>(scene_.edit(id)->payload);
        light.illuminated = choice(place, "illuminates");
        light.shadowCasters = choice(place, "shadows");
    }

    Scene &scene_;
};

/// What the parser found, without its own error numbers: "line 3, column 5: ...".
std::string syntaxError(const Json::parse_error &error) {
    const std::string text = error.what();
    const size_t line = text.find("line ");
    return line == std::string::npos ? text : text.substr(line);
}

} // namespace

std::string layerFileOf(const std::string &scenePath) {
    return std::filesystem::path(scenePath).replace_extension(".layers.json").string();
}

ZStatus loadLayers(const std::string &path, Scene &scene) {
    try {
        std::ifstream stream(path);
        if (!stream)
            throw BadFile("it cannot be read");
        LayerReader(scene).read(Json::parse(stream));
        return ZStatus();
    } catch (const Json::parse_error &error) {
        return cannotLoad(path, syntaxError(error));
    } catch (const BadFile &error) {
        return cannotLoad(path, error.what());
    }
}

} // namespace devhost
