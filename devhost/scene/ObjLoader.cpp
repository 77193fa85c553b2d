// SPDX-License-Identifier: MIT
// Reader of .obj files: every statement is either honoured or told of, with its line.
#include "devhost/scene/MeshBuilder.h"
#include "devhost/scene/ObjMaterials.h"
#include "devhost/scene/ObjText.h"
#include "devhost/scene/SceneGraph.h"
#include "devhost/scene/SceneLoader.h"
#include "host/core/ZFloatVector.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>

namespace devhost {

namespace {

namespace fs = std::filesystem;

class ObjReader {
  public:
    ObjReader(const std::string &path, Scene &scene, FileNotices &notices)
        : folder_(fs::path(path).parent_path()), text_(path), scene_(scene), notices_(notices) {}

    void read() {
        // Room that is not used costs nothing; to move what is there does.
        corners_.reserve(text_.size() / 10);
        faces_.reserve(text_.size() / 20);
        faceLines_.reserve(text_.size() / 20);
        pools_.positions.reserve(text_.size() / 10);
        startGroup("");
        while (text_.next())
            readStatement();
        finishGroup();
        dropBadIndices();
        if (!pools_.colors.empty())
            fillColors(pools_.positions.size());
        addMeshes();
    }

  private:
    /// A run of faces under one name.
    struct Group {
        std::string name;
        size_t firstFace, endFace;
    };

    void readStatement() {
        const std::string_view word = text_.word();
        if (word == "v")
            readPosition();
        else if (word == "vn")
            readNormal();
        else if (word == "vt")
            readUv();
        else if (word == "f")
            readFace();
        else if (word == "o" || word == "g")
            startGroup(std::string(text_.rest()));
        else if (word == "usemtl")
            useMaterial(std::string(text_.rest()));
        else if (word == "mtllib")
            readLibraries();
        else if (word == "s")
            readSmoothing();
        else if (toldWords_.emplace(word).second)
            notices_.add("statement", text_.place(),
                         "statement '" + std::string(word) + "' is not supported",
                         "it is left out, here and below");
    }

    void readPosition() {
        const auto values = text_.numbers(3);
        const bool colored = values.size() == 6 || values.size() == 7;
        if (values.size() > 4 && !colored)
            text_.fail("there are " + std::to_string(values.size()) + " numbers");
        if (colored) {
            fillColors(pools_.positions.size());
            pools_.colors.insert(pools_.colors.end(), values.begin() + 3, values.begin() + 6);
        }
        if ((values.size() == 4 && values[3] != 1) || values.size() == 7)
            tellOnce("vertex weight", "a vertex has a weight or alpha");
        pools_.positions.insert(pools_.positions.end(), values.begin(), values.begin() + 3);
    }

    /// The vertices before the first with a colour are white.
    void fillColors(size_t count) { pools_.colors.resize(count, 1); }

    void readNormal() {
        const auto values = text_.numbers(3);
        const ZFloatVector unit = ZFloatVector(values[0], values[1], values[2]).normal();
        pools_.normals.insert(pools_.normals.end(), {unit.x, unit.y, unit.z});
    }

    void readUv() {
        const auto values = text_.numbers(1);
        pools_.uvs.insert(pools_.uvs.end(), {values[0], values.size() > 1 ? values[1] : 0});
        if (values.size() > 2 && values[2] != 0)
            tellOnce("texture coordinates", "texture coordinates have a third number");
    }

    void tellOnce(const char *kind, const char *found) {
        if (toldWords_.insert(kind).second)
            notices_.add(kind, text_.place(), found, "it is left out, here and below");
    }

    // ---- faces -------------------------------------------------------------------------------

    void readFace() {
        const size_t first = corners_.size();
        for (std::string_view token = text_.token(); !token.empty() && token[0] != '#';
             token = text_.token())
            corners_.push_back(cornerOf(token));
        const size_t count = corners_.size() - first;
        if (count < 3) {
            notices_.add("face", text_.place(), "a face has " + std::to_string(count) + " corners",
                         "it is left out");
            corners_.resize(first);
            return;
        }
        faces_.push_back({unsigned(first), unsigned(count), material_, smoothing_});
        faceLines_.push_back(text_.line());
    }

    /// "7", "7/1", "7//2" or "7/1/2".
    Corner cornerOf(std::string_view token) const {
        const char *at = token.data(), *const end = at + token.size();
        const size_t counts[] = {pools_.positions.size() / 3, pools_.uvs.size() / 2,
                                 pools_.normals.size() / 3};
        int indices[3] = {-1, -1, -1};
        for (int part = 0; part < 3; ++part) {
            if (part != 1 || at == end || *at != '/')
                at = readIndex(token, at, counts[part], indices[part]);
            if (at == end)
                return {indices[0], indices[2], indices[1]};
            if (*at++ != '/')
                break;
        }
        badCorner(token);
    }

    [[noreturn]] void badCorner(std::string_view token) const {
        text_.fail("'" + std::string(token) + "' is no corner of a face");
    }

    /// An index from 1 on, or backwards from -1 on, as one from 0 on.
    const char *readIndex(std::string_view token, const char *at, size_t count, int &index) const {
        const char *const end = token.data() + token.size();
        int value = 0;
        const auto [stopped, problem] = std::from_chars(at, end, value);
        if (problem != std::errc() || value == 0)
            badCorner(token);
        index = value > 0 ? value - 1 : int(count) + value;
        if (index < 0)
            text_.fail("index " + std::to_string(value) + " is out of range (there are " +
                       std::to_string(count) + ")");
        return stopped;
    }

    void readSmoothing() {
        const std::string_view group = text_.token();
        int number = Face::kFlat;
        const auto [stopped, problem] =
            std::from_chars(group.data(), group.data() + group.size(), number);
        if (group != "off" && (problem != std::errc() || number < 0))
            text_.fail("'" + std::string(group) + "' is no smoothing group");
        smoothing_ = number;
    }

    /// Whole faces lose an attribute whose index is out of range at some corner.
    void dropBadIndices() {
        dropBad("position", pools_.positions.size() / 3, &Corner::position);
        dropBad("normal", pools_.normals.size() / 3, &Corner::normal);
        dropBad("texture coordinate", pools_.uvs.size() / 2, &Corner::uv);
    }

    void dropBad(const std::string &what, size_t count, int Corner::*index) {
        size_t dropped = 0;
        std::string place, found;
        for (size_t number = 0; number < faces_.size(); ++number) {
            const auto corners =
                std::span(corners_).subspan(faces_[number].firstCorner, faces_[number].cornerCount);
            const auto bad = std::find_if(corners.begin(), corners.end(), [&](const Corner &each) {
                return each.*index >= 0 && size_t(each.*index) >= count;
            });
            if (bad == corners.end())
                continue;
            if (dropped++ == 0) {
                place = "line " + std::to_string(faceLines_[number]);
                found = what + " index " + std::to_string(int64_t((*bad).*index) + 1) +
                        " is out of range (there are " + std::to_string(count) + ")";
            }
            if (index == &Corner::position)
                throw BadFile(place.append(": ").append(found));
            for (Corner &each : corners)
                each.*index = -1;
        }
        if (dropped)
            notices_.add(what + " index", place, found,
                         dropped == 1 ? "the face has none"
                                      : std::to_string(dropped) + " such faces have none");
    }

    // ---- groups and materials ----------------------------------------------------------------

    void startGroup(const std::string &name) {
        finishGroup();
        groups_.push_back({name.empty() ? "mesh" : name, faces_.size(), 0});
    }

    void finishGroup() {
        if (!groups_.empty())
            groups_.back().endFace = faces_.size();
    }

    void useMaterial(const std::string &name) {
        const auto found = materials_.find(name);
        material_ = found == materials_.end() ? kNoNode : found->second;
        if (found == materials_.end() && toldMaterials_.insert(name).second)
            notices_.add("material", text_.place(), "there is no material '" + name + "'",
                         "the default grey is used");
    }

    /// One file whose name has blanks, or several without.
    void readLibraries() {
        const std::string whole(text_.rest());
        if (whole.empty())
            text_.fail("mtllib names no file");
        if (readLibrary(whole))
            return;
        std::string_view name = text_.token();
        const bool single = text_.rest().empty();
        for (; !name.empty(); name = text_.token())
            if (single || !readLibrary(std::string(name)))
                notices_.add("material library", text_.place() + ", " + std::string(name),
                             "the material library cannot be read",
                             "its materials are the default grey");
    }

    bool readLibrary(std::string name) {
        std::replace(name.begin(), name.end(), '\\', '/');
        const fs::path path = folder_ / name;
        std::error_code ignored;
        if (!fs::is_regular_file(path, ignored) || !std::ifstream(path))
            return false;
        if (libraries_.insert(path.string()).second)
            addObjMaterials(path.string(), scene_, notices_, materials_);
        return true;
    }

    void addMeshes() {
        MeshBuilder builder(pools_);
        for (const Group &group : groups_) {
            const auto faces =
                std::span(faces_).subspan(group.firstFace, group.endFace - group.firstFace);
            if (faces.empty())
                continue;
            if (!pools_.colors.empty())
                for (Face &face : faces)
                    face.material = face.material == kNoNode ? white() : face.material;
            const size_t first = faces.front().firstCorner;
            const size_t end = faces.back().firstCorner + faces.back().cornerCount;
            scene_.add("mesh", group.name,
                       builder.build(std::span(corners_).subspan(first, end - first), faces));
        }
    }

    /// What shows the colours of vertices that have no material.
    NodeId white() {
        if (white_ == kNoNode) {
            Material material;
            material.diffuse = ZVector(1, 1, 1);
            white_ = scene_.add("material", "vertexColors", material);
        }
        return white_;
    }

    const fs::path folder_;
    ObjText text_;
    Scene &scene_;
    FileNotices &notices_;
    MeshPools pools_;
    std::vector<Corner> corners_;
    std::vector<Face> faces_;
    std::vector<unsigned> faceLines_;
    std::vector<Group> groups_;
    std::map<std::string, NodeId, std::less<>> materials_;
    std::set<std::string> libraries_, toldMaterials_;
    std::set<std::string, std::less<>> toldWords_;
    NodeId material_ = kNoNode, white_ = kNoNode;
    int smoothing_ = Face::kByAngle;
};

} // namespace

void loadObj(const std::string &path, Scene &scene, FileNotices &notices) {
    ObjReader(path, scene, notices).read();
}

} // namespace devhost
