// SPDX-License-Identifier: MIT
// What scene files ask for: each case has the values that must be there, worked out by hand, and
// the notices of what is not.
#include "devhost/util/Notices.h"
#include "tests/scene/gltf_file.h"
#include "tests/scene_files.h"

#include <cmath>
#include <functional>
#include <limits>
#include <map>

using namespace devhost;

namespace {

using Values = std::vector<double>;

struct Case {
    const char *asks;
    std::string file, text;
    std::map<std::string, Values> values; // by what `look` understands
    std::vector<std::string> notices = {};
    double seconds = 0;
};

const double kHalf = std::sqrt(0.5);

template <class T>
Values all(const std::vector<T> &values) {
    return Values(values.begin(), values.end());
}

Values inWorld(NodeId id, const std::vector<float> &points) {
    Values result;
    for (unsigned at = 0; at * 3 < points.size(); ++at) {
        const ZVector p = transformPoint(vertex(points, at), scene().worldMatrix(id));
        result.insert(result.end(), {p.x, p.y, p.z});
    }
    return result;
}

/// A part of the scene's first mesh, or "WHAT NODE".
Values look(const std::string &what) {
    const size_t blank = what.find(' ');
    const NodeId id =
        blank == std::string::npos ? scene().meshes().at(0) : scene().find(what.substr(blank + 1));
    const Node *node = scene().node(id);
    if (!node)
        throw std::logic_error("no node for " + what);
    const std::string part = what.substr(0, blank);
    if (const Mesh *mesh = node->mesh()) {
        const std::map<std::string, std::function<Values()>> parts = {
            {"positions", [&] { return all(mesh->positions); }},
            {"world", [&] { return inWorld(id, mesh->positions); }},
            {"normals", [&] { return all(mesh->normals); }},
            {"uvs", [&] { return all(mesh->uvs); }},
            {"uvs1", [&] { return all(mesh->secondUvs); }},
            {"colors", [&] { return all(mesh->colors); }},
            {"tangents", [&] { return all(mesh->tangents); }},
            {"triangles", [&] { return all(mesh->triangles); }},
            {"faces", [&] { return all(mesh->faceSizes); }}};
        if (parts.contains(part))
            return parts.at(part)();
    }
    if (part == "place") { // where the node takes (1, 2, 3)
        const ZVector p = transformPoint(ZVector(1, 2, 3), scene().worldMatrix(id));
        return {p.x, p.y, p.z};
    }
    if (const Material *m = node->material()) {
        const auto three = [](const ZVector &v) { return Values{v.x, v.y, v.z}; };
        if (part == "diffuse" || part == "specular" || part == "emission")
            return three(part[0] == 'd' ? m->diffuse : part[0] == 's' ? m->specular : m->emission);
        if (part == "alpha")
            return {double(m->alpha), m->alphaCutoff, m->opacity};
        if (part == "unlit")
            return {double(m->unlit)};
        if (part == "placement") {
            const auto &[set, matrix] = m->placement;
            return {double(set),  matrix[0][0], matrix[0][1], matrix[1][0],
                    matrix[1][1], matrix[2][0], matrix[2][1]};
        }
    }
    if (const Texture *texture = node->texture(); texture && part == "texture")
        return {double(texture->wrapU), double(texture->wrapV), double(texture->smooth)};
    else if (texture && part == "pixels")
        return texture->pixels ? all(texture->pixels->rgba) : Values();
    throw std::logic_error("nothing is known about " + what);
}

class LoadingTest : public SceneTest {
  protected:
    LoadingTest() {
        setNoticeListener([this](const Notice &notice) { told.push_back(notice.line()); });
    }
    ~LoadingTest() override { setNoticeListener(nullptr); }

    void check(const std::vector<Case> &cases) {
        for (const Case &each : cases) {
            SCOPED_TRACE(each.asks);
            told.clear();
            newScene();
            const ZStatus status = loadScene(write(each.file, each.text));
            EXPECT_TRUE(status) << status.errorString().asChar();
            if (!status)
                continue;
            scene().setTime(each.seconds);
            for (const auto &[what, wanted] : each.values) {
                const Values got = look(what);
                EXPECT_EQ(got.size(), wanted.size()) << what;
                for (size_t at = 0; at < std::min(got.size(), wanted.size()); ++at)
                    EXPECT_NEAR(got[at], wanted[at], 1e-5) << what << "[" << at << "]";
            }
            EXPECT_EQ(told, each.notices);
            scene().setTime(0);
        }
    }
    /// Each file is refused, in one line that has the words, and the scene stays.
    void refuse(const std::vector<std::array<std::string, 3>> &cases) {
        load("good.obj", kCubeObj);
        const unsigned long revision = scene().revision();
        told.clear();
        for (const auto &[name, text, words] : cases) {
            SCOPED_TRACE(words);
            const ZStatus status = loadScene(write(name, text));
            EXPECT_EQ(status.statusCode(), ZStatus::kFailure);
            const std::string why = status.errorString().asChar();
            EXPECT_NE(why.find(name + ": " + words), std::string::npos) << why;
            EXPECT_EQ(why.find('\n'), std::string::npos) << why;
            EXPECT_EQ(scene().revision(), revision);
        }
        EXPECT_TRUE(told.empty()) << "of files that are not there";
    }

    std::vector<std::string> told;
};

// ---- OBJ ----------------------------------------------------------------------------------------

const std::string kCorners =
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 1 1\nvn 0 0 2\n";

TEST_F(LoadingTest, ObjStatements) {
    write("paint.mtl", "newmtl red paint\nKd 0.8 0.1 0.2\nKs 0.5 0.5 0.5\nNs 30\nillum 3\nd 0.25\n"
                       "newmtl skin\nKe 0 0.5 0\nmap_Kd -clamp on -s 2 3 -o 0.5 -mm 0 1 "
                       "textures\\my wood.png\n"
                       "newmtl sign\nKd +1 .5 1e-50\nillum 0\nTf 1 1 0\nKa 1 1 1\n");
    check({
        {"polygons, relative indices and continued lines",
         "faces.obj",
         kCorners + "v 0.5 2 0\nf 1/1/1 2/2/1 3/3/1 \\\n 4//1\nf -3 -2 -1\n",
         {{"positions", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 1, 1, 0, 0, 1, 0, 0.5, 2, 0}},
          {"uvs", {0, 0, 1, 0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0}},
          // The last face's own normal: its corners run clockwise.
          {"normals", {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, -1, 0, 0, -1, 0, 0, -1}},
          {"triangles", {1, 2, 3, 1, 3, 0, 4, 5, 6}},
          {"faces", {4, 3}}}},
        {"materials by names with blanks",
         "red.obj",
         "mtllib paint.mtl\r\n" + kCorners + "o left\nusemtl red paint\nf 1 2 3\n",
         {{"diffuse red paint", {0.8, 0.1, 0.2}},
          {"alpha red paint", {Material::kIgnored, 0.5, 0.25}},
          {"triangles left", {0, 1, 2}}},
         {"paint.mtl: line 9: option -mm of texture 'textures/my wood.png'; it is left out",
          "paint.mtl: line 13: 'Tf' of material 'sign'; it is left out"}},
        {"the options of a texture, which is not there",
         "wood.obj",
         "mtllib paint.mtl\n" + kCorners + "usemtl skin\nf 1 2 3\n",
         {{"placement skin", {0, 2, 0, 0, 3, 0.5, 0}},
          {"diffuse skin", {1, 1, 1}},
          {"emission skin", {0, 0.5, 0}},
          {"texture my wood", {Texture::kClamped, Texture::kClamped, 1}}},
         {"wood.obj: material 'skin', texture 'textures/my wood.png': the image is not there; the "
          "material is shown without it"}},
        {"a material of plain colour",
         "sign.obj",
         "mtllib paint.mtl\n" + kCorners + "usemtl sign\nf 1 2 3\n",
         {{"diffuse sign", {1, 0.5, 0}}, {"unlit sign", {1}}, {"unlit red paint", {0}}}},
        {"colours of vertices",
         "colors.obj",
         "v 0 0 0\nv 1 0 0 1 0.5 0\nv 0 1 0 0 0 1\nf 1 2 3\n",
         {{"colors", {1, 1, 1, 1, 1, 0.5, 0, 1, 0, 0, 1, 1}}, {"diffuse vertexColors", {1, 1, 1}}}},
        {"smoothing groups: two faces at a right angle, then flat ones",
         "groups.obj",
         "v 0 0 0\nv 0 1 0\nv 1 0 0\nv 0 0 1\ns 1\nf 1 3 2\nf 1 2 4\no flat\ns off\nf 1 3 2\nf 1 2 "
         "4\n",
         {{"normals mesh", {kHalf, 0, kHalf, 0, 0, 1, kHalf, 0, kHalf, 1, 0, 0}},
          {"normals flat", {0, 0, 1, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 1, 0, 0}}}},
        {"what it cannot have",
         "more.obj",
         "mtllib no.mtl\nl 1 2\nl 2 3\nvp 0 0\n" + kCorners +
             "usemtl gold\nf 1/1 2/2 3/9\nf 1//5 3//1 4//1\nf 1 2 3//7\nf 1 2\n",
         {{"uvs", {}}, {"triangles", {0, 1, 2, 0, 2, 3, 0, 1, 2}}},
         {"more.obj: line 1, no.mtl: the material library cannot be read; its materials are the "
          "default grey",
          "more.obj: line 2: statement 'l' is not supported; it is left out, here and below",
          "more.obj: line 4: statement 'vp' is not supported; it is left out, here and below",
          "more.obj: line 13: there is no material 'gold'; the default grey is used",
          "more.obj: line 17: a face has 2 corners; it is left out",
          "more.obj: line 15: normal index 5 is out of range (there are 1); 2 such faces have none",
          "more.obj: line 14: texture coordinate index 9 is out of range (there are 3); the face "
          "has none"}},
    });
}

TEST_F(LoadingTest, ObjNormalsKeepSharpEdgesAndSmoothBluntOnes) {
    load("cube.obj", kCubeObj);
    const Mesh &cube = *node("cube").mesh();
    EXPECT_EQ(cube.triangleCount(), 12u);
    EXPECT_EQ(cube.vertexCount(), 24u) << "one vertex for each corner of each side";
    for (unsigned at = 0; at < cube.vertexCount(); ++at) {
        const ZVector normal = vertex(cube.normals, at), position = vertex(cube.positions, at);
        EXPECT_NEAR(std::abs(normal.x) + std::abs(normal.y) + std::abs(normal.z), 1, 1e-6);
        EXPECT_GT(normal * position, 0.9) << "outwards";
    }
    // Two faces of the same size that lean 10 degrees to either side of the y axis.
    const std::string rise = std::to_string(std::tan(0.17453292519943295));
    load("tent.obj", "v -1 0 0\nv -1 0 1\nv 0 " + rise + " 0\nv 0 " + rise +
                         " 1\nv 1 0 0\nv 1 0 1\nf 1 2 4 3\nf 3 4 6 5\n");
    const Mesh &tent = *scene().node(scene().meshes().at(0))->mesh();
    EXPECT_EQ(tent.vertexCount(), 6u);
    for (unsigned at = 0; at < tent.vertexCount(); ++at)
        if (vertex(tent.positions, at).x == 0) {
            EXPECT_TRUE(near(vertex(tent.normals, at), ZVector(0, 1, 0)));
        }
}

TEST_F(LoadingTest, BadObjFilesAreRefused) {
    write("bad.mtl", "newmtl a\nKd 1 x 1\n");
    refuse({
        {"empty.obj", "", "it holds no triangles"},
        {"past.obj", kCorners + "f 1 2 5\n",
         "line 9: position index 5 is out of range (there are 4)"},
        {"polygon.obj", kCorners + "f 1 2 3 1 77777777\n", "line 9: position index 77777777"},
        {"zero.obj", kCorners + "f 1 2 0\n", "line 9: '0' is no corner of a face"},
        {"parts.obj", kCorners + "f 1/1/1/1 2 3\n", "line 9: '1/1/1/1' is no corner of a face"},
        {"before.obj", kCorners + "f 1 2 -5\n", "line 9: index -5 is out of range (there are 4)"},
        {"endless.obj", "v 0 0 0\nv 1e999 0 0\nv 0 1 0\nf 1 2 3\n",
         "line 2: '1e999' is not finite"},
        {"nan.obj", kCorners + "vn 0 nan 1\nf 1 2 3\n", "line 9: 'nan' is not finite"},
        {"word.obj", "v 0 0 1m\n", "line 1: '1m' is no number"},
        {"short.obj", "\nv 0 0\n", "line 2: there are 2 numbers where 3 are needed"},
        {"group.obj", kCorners + "s one\nf 1 2 3\n", "line 9: 'one' is no smoothing group"},
        {"mtl.obj", "mtllib bad.mtl\n" + kCorners + "f 1 2 3\n",
         "bad.mtl: line 2: 'x' is no number"},
        {"garbage.obj", "\x7f\x45\x4c\x46\x01\x02 f f f v v\n", "it holds no triangles"},
    });
    EXPECT_EQ(loadScene(write("scene.fbx", "x")).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(loadScene((folder / "missing.obj").string()).statusCode(), ZStatus::kNotFound);
}

/// The area that a mesh covers, once for each time that it does.
double area(const Mesh &mesh) {
    double sum = 0;
    for (size_t at = 0; at < mesh.triangles.size(); at += 3) {
        const ZVector a = vertex(mesh.positions, mesh.triangles[at]);
        sum += ((vertex(mesh.positions, mesh.triangles[at + 1]) - a) ^
                (vertex(mesh.positions, mesh.triangles[at + 2]) - a))
                   .length() /
               2;
    }
    return sum;
}

/// A comb of teeth that are 1 wide and 99 high, on a back that is 1 high.
std::string comb(int teeth) {
    std::string points, face = "f";
    const auto add = [&](int x, int y) {
        points += "v " + std::to_string(x) + " 0 " + std::to_string(y) + "\n";
    };
    for (int tooth = 0; tooth < teeth; ++tooth)
        for (const auto &[x, y] : {std::pair(0, 1), {0, 100}, {1, 100}, {1, 1}})
            add(2 * tooth + x, y);
    add(2 * teeth, 0);
    add(0, 0);
    for (int corner = 1; corner <= 4 * teeth + 2; ++corner)
        face += " " + std::to_string(corner);
    return points + face + "\n";
}

// Far beyond the time limit where the time grows with the square of the number.
TEST_F(LoadingTest, ManyCornersAndManyFacesAroundAPoint) {
    constexpr int teeth = 100000, faces = 400000;
    load("comb.obj", comb(teeth));
    const Mesh &mesh = *scene().node(scene().meshes().at(0))->mesh();
    EXPECT_EQ(mesh.triangleCount(), unsigned(4 * teeth));
    EXPECT_EQ(mesh.faceSizes, std::vector<unsigned>{4 * teeth + 2});
    EXPECT_NEAR(area(mesh), teeth * 99.0 + teeth * 2 - 0.5, 0.01 * teeth) << "nothing twice";

    std::string fan = "v 0 0 1\n";
    for (int at = 0; at <= faces; ++at)
        fan += "v " + std::to_string(at) + " 1 0\n";
    for (int at = 0; at < faces; ++at)
        fan += "f 1 " + std::to_string(at + 2) + " " + std::to_string(at + 3) + "\n";
    load("fan.obj", fan);
    EXPECT_EQ(scene().node(scene().meshes().at(0))->mesh()->vertexCount(), unsigned(faces + 2));
}

TEST_F(LoadingTest, PolygonsThatAreNoFanAreCutWithoutOverlaps) {
    // By hand: a zigzag with a spike and a corner that is there twice; an arrow; a quadrilateral
    // whose shorter diagonal lies outside.
    const std::array<std::pair<const char *, double>, 3> cases = {{
        {"v 0 0 0\nv 1 2 0\nv 2 0 0\nv 3 2 0\nv 4 0 0\nv 4 0 0\nv 4 3 0\nv 4 4 0\nv 4 3 0\nv 0 3 "
         "0\n"
         "f 1 2 3 4 5 6 7 8 9 10\n",
         8},
        {"v 0 0 5\nv 4 0 5\nv 4 4 5\nv 2 1 5\nv 0 4 5\nf 5 4 3 2 1\n", 10},
        {"v 0 0 0\nv 3 1 0\nv 0 2 0\nv 2 1 0\nf 1 2 3 4\n", 1},
    }};
    for (const auto &[text, wanted] : cases) {
        load("polygon.obj", text);
        EXPECT_NEAR(area(*scene().node(scene().meshes().at(0))->mesh()), wanted, 1e-6) << text;
    }
}

// ---- glTF ---------------------------------------------------------------------------------------

/// A triangle whose corners are (0, 0, 0), (1, 0, 0), (0, 1, 0), with normals along z.
struct Triangle : GltfFile {
    int position = add<float>("VEC3", {0, 0, 0, 1, 0, 0, 0, 1, 0});
    int normal = add<float>("VEC3", {0, 0, 1, 0, 0, 1, 0, 0, 1});

    /// Further attributes of the primitive, further members of it, and of the file.
    std::string with(const std::string &attributes, const std::string &primitive = "",
                     const std::string &members = R"("nodes": [{"mesh": 0}])") const {
        return text(mesh(attributes, primitive) + ", " + members);
    }
    std::string mesh(const std::string &attributes = "", const std::string &primitive = "") const {
        return R"("meshes": [{"primitives": [{"attributes": {"POSITION": 0, "NORMAL": 1)" +
               (attributes.empty() ? "" : ", " + attributes) + "}" +
               (primitive.empty() ? "" : ", " + primitive) + "}]}]";
    }
};

const Values kTriangle = {0, 0, 0, 1, 0, 0, 0, 1, 0};
const std::string kNode = R"(, "nodes": [{"mesh": 0}])";

std::string only(int position, const std::string &more = "") {
    return R"("meshes": [{"primitives": [{"attributes": {"POSITION": )" + std::to_string(position) +
           "}" + more + "}]}]";
}

TEST_F(LoadingTest, GltfNodes) {
    const std::string half = std::to_string(kHalf);
    check({
        {"transforms of all parts",
         "tree.gltf",
         Triangle().with("", "",
                         R"("scene": 0, "scenes": [{"nodes": [0]}], "nodes": [
           {"name": "group", "translation": [10, 0, 0], "scale": [2, 3, 4], "children": [1, 2]},
           {"name": "turned", "rotation": [0, 0, )" +
                             half + ", " + half + R"(], "scale": [1, 2, 1], "mesh": 0},
           {"name": "placed", "matrix": [1,0,0,0, 0,0,1,0, 0,-1,0,0, 5,6,7,1], "mesh": 0}])"),
         // (1, 2, 3) is stretched to (1, 4, 3), turned by a quarter to (-4, 1, 3), scaled by the
         // group to (-8, 3, 12) and moved.
         {{"place turned", {2, 3, 12}},
          // The matrix gives (1 + 5, -3 + 6, 2 + 7); then the group's scale, and move.
          {"place placed", {22, 9, 36}}}},
        {"what is hidden by its size",
         "hidden.gltf",
         Triangle().with("", "", R"("nodes": [{"name": "none", "scale": [0, 0, 0], "mesh": 0},
                                              {"mesh": 0}])"),
         {{"place none", {0, 0, 0}}}},
        {"a binary file",
         "triangle.glb",
         Triangle().binary(Triangle().mesh() + kNode),
         {{"positions", kTriangle}}},
    });
}

TEST_F(LoadingTest, GltfAccessors) {
    GltfFile interleaved, bytes, shorts, ints, sparse, zeros, halves;
    const int placed = interleaved.add<float>("VEC3", {0, 0, 0, 9, 1, 0, 0, 9, 0, 1, 0, 9}, "",
                                              4); // a number in between
    bytes.add<float>("VEC3", {0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
    bytes.add<uint8_t>("SCALAR", {1, 2, 3, 0});
    shorts.add<float>("VEC3", {0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
    shorts.add<uint16_t>("SCALAR", {1, 2, 3});
    ints.add<float>("VEC3", {0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0});
    ints.add<uint32_t>("SCALAR", {1, 2, 3});
    const auto over = [](GltfFile &file, int index) {
        const int at = file.addView<uint16_t>({1, 2});
        const int values = file.addView<float>({1, 0, 0, 0, 1, 0});
        (void)index;
        return R"("sparse": {"count": 2, "indices": {"bufferView": )" + std::to_string(at) +
               R"(, "componentType": 5123}, "values": {"bufferView": )" + std::to_string(values) +
               "}}";
    };
    const std::string sparseMembers = over(sparse, 0);
    const int replaced = sparse.add<float>("VEC3", {0, 0, 0, 5, 5, 5, 6, 6, 6}, sparseMembers);
    const std::string zeroMembers = over(zeros, 0);
    const int absent = zeros.addZeros("VEC3", 3, zeroMembers);
    const int quantized = halves.add<int16_t>("VEC3", {0, 0, 0, 0, 32767, 0, 0, 0, 0, -32767, 0, 0},
                                              R"("normalized": true)", 4);
    const std::string flat = "normals";
    const Values up = {0, 0, 1, 0, 0, 1, 0, 0, 1};
    const std::string drawn = R"(, "indices": 1)";
    check({
        {"interleaved values",
         "a.gltf",
         interleaved.text(only(placed) + kNode),
         {{"positions", kTriangle}, {flat, up}}},
        {"indices of 8 bits",
         "b.gltf",
         bytes.text(only(0, drawn + R"(, "mode": 4)") + kNode),
         {{"positions", kTriangle}}},
        {"indices of 16 bits",
         "c.gltf",
         shorts.text(only(0, drawn) + kNode),
         {{"positions", kTriangle}}},
        {"indices of 32 bits",
         "d.gltf",
         ints.text(only(0, drawn) + kNode),
         {{"positions", kTriangle}}},
        {"sparse values over others",
         "e.gltf",
         sparse.text(only(replaced) + kNode),
         {{"positions", kTriangle}}},
        {"sparse values over nothing",
         "f.gltf",
         zeros.text(only(absent) + kNode),
         {{"positions", kTriangle}}},
        {"a quantized mesh",
         "g.gltf",
         halves.text(only(quantized) + R"(, "extensionsRequired": ["KHR_mesh_quantization"],
           "nodes": [{"mesh": 0, "translation": [1, 0, 0], "scale": [2, 2, 2]}])"),
         {{"positions", {0, 0, 0, 1, 0, 0, 0, -1, 0}}, {"world", {1, 0, 0, 3, 0, 0, 1, -2, 0}}}},
    });
}

TEST_F(LoadingTest, GltfPrimitives) {
    Triangle full, parts, strips, more;
    full.add<float>("VEC2", {0, 1, 1, 1, 0, 0});
    full.add<uint8_t>("VEC2", {0, 255, 0, 0, 255, 255, 0, 0, 0, 0, 0, 0}, R"("normalized": true)",
                      4);
    full.add<uint16_t>("VEC3", {65535, 0, 0, 0, 0, 65535, 0, 0, 0, 0, 65535, 0},
                       R"("normalized": true)", 4);
    full.add<float>("VEC4", {1, 0, 0, -1, 1, 0, 0, -1, 2, 0, 0, -1});
    parts.add<float>("VEC2", {0, 0, 1, 0, 0, 1});
    parts.add<uint8_t>("SCALAR", {2, 1, 0});
    strips.add<float>("VEC3", {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    strips.add<float>("VEC3", {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1});
    more.add<float>("VEC2", {0, 0, 0, 0, 0, 0});
    const std::string two = R"({"attributes": {"POSITION": 2, "NORMAL": 3}, "mode": )";
    check({
        {"all that vertices may have",
         "a.gltf",
         full.with(R"("TEXCOORD_0": 2, "TEXCOORD_1": 3, "COLOR_0": 4, "TANGENT": 5, "_OWN": 2)"),
         {{"uvs", {0, 0, 1, 0, 0, 1}}, // the file counts from the top
          {"uvs1", {0, 0, 1, 0, 0, 1}},
          {"colors", {1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 1, 1}},
          {"tangents", {1, 0, 0, -1, 1, 0, 0, -1, 1, 0, 0, -1}}}},
        {"primitives that share vertices, and have not the same attributes",
         "b.gltf",
         parts.text(R"("meshes": [{"primitives": [
             {"attributes": {"POSITION": 0, "NORMAL": 1}},
             {"attributes": {"POSITION": 0, "NORMAL": 1}, "indices": 3},
             {"attributes": {"POSITION": 0, "NORMAL": 1, "TEXCOORD_0": 2}},
             {"attributes": {"POSITION": 0, "NORMAL": 1}, "mode": 1},
             {"attributes": {"POSITION": 0}}]}])" +
                    kNode),
         {{"triangles", {0, 1, 2, 2, 1, 0, 3, 4, 5, 6, 7, 8}},
          {"uvs", {0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0}}},
         {"b.gltf: mesh 0, primitive 3: it is made of lines; it is left out"}},
        {"a strip and a fan",
         "c.gltf",
         strips.text(R"("meshes": [{"primitives": [)" + two + "5}, " + two + "6}]}]" + kNode),
         {{"triangles", {0, 1, 2, 1, 3, 2, 0, 1, 2, 0, 2, 3}}}},
        {"attributes beyond",
         "d.gltf",
         more.with(R"("TEXCOORD_2": 2, "COLOR_1": 0)"),
         {{"positions", kTriangle}},
         {"d.gltf: mesh 0, primitive 0: it has COLOR_1, TEXCOORD_2; it is left out"}},
    });
}

TEST_F(LoadingTest, GltfCamerasAndLights) {
    load("all.gltf", Triangle().with("", "", R"(
      "extensionsUsed": ["KHR_lights_punctual"],
      "extensions": {"KHR_lights_punctual": {"lights": [
        {"type": "spot", "color": [1, 0.5, 0.25], "intensity": 8,
         "spot": {"innerConeAngle": 0.1, "outerConeAngle": 0.4}},
        {"type": "directional", "range": 5}]}},
      "cameras": [
        {"type": "perspective", "perspective": {"yfov": 1.5707963267948966, "aspectRatio": 2,
                                                "znear": 0.5, "zfar": 50}},
        {"type": "orthographic", "orthographic": {"xmag": 3, "ymag": 2, "znear": 1, "zfar": 9}}],
      "nodes": [{"name": "wide", "camera": 0}, {"name": "flat", "camera": 1},
        {"name": "lamp", "translation": [0, 5, 0], "mesh": 0,
         "extensions": {"KHR_lights_punctual": {"light": 0}}},
        {"name": "sun", "extensions": {"KHR_lights_punctual": {"light": 1}}}])"));
    EXPECT_EQ(scene().cameras().size(), 2u) << "no default camera beside the file's";
    const Camera &wide = *node("wide").camera();
    EXPECT_NEAR(wide.verticalFieldOfView, 90, 1e-9);
    EXPECT_NEAR(wide.horizontalFieldOfView, 2 * std::atan(2.0) * 180 / std::acos(-1.0), 1e-9);
    EXPECT_TRUE(node("flat").camera()->orthographic);
    EXPECT_EQ(node("flat").camera()->orthographicWidth, 6);

    // A node with both a mesh and a light gets a child for each.
    EXPECT_EQ(node("lamp").type, "transform");
    ASSERT_EQ(scene().lights().size(), 2u);
    const NodeId spot = scene().find("lamp|light");
    ASSERT_NE(spot, kNoNode);
    EXPECT_TRUE(near(transformPoint(ZVector(), scene().worldMatrix(spot)), ZVector(0, 5, 0)));
    const Light &light = *scene().node(spot)->light();
    EXPECT_EQ(light.kind, Light::kSpot);
    EXPECT_TRUE(near(light.color, ZVector(1, 0.5, 0.25)));
    EXPECT_EQ(light.decay, 2);
    EXPECT_EQ(light.outerCone, 0.4);
    EXPECT_EQ(node("sun").light()->kind, Light::kDirectional);
    EXPECT_EQ(told,
              std::vector<std::string>{"all.gltf: light 1: it has a range; it reaches everywhere"});
}

TEST_F(LoadingTest, GltfMaterials) {
    Triangle file;
    file.add<float>("VEC2", {0, 0, 1, 0, 0, 1});
    const auto with = [&](const std::string &material, const std::string &more = "") {
        return file.with(R"("TEXCOORD_0": 2)", R"("material": 0)",
                         R"("nodes": [{"mesh": 0}], "materials": [{"name": "paint", )" + material +
                             "}]" + more);
    };
    // A picture of one pixel, and one that is none.
    const std::string dot =
        "data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwA"
        "DhgGAWjR9awAAAABJRU5ErkJggg==";
    const std::string image = R"(, "images": [{"name": "dot", "uri": ")" + dot + R"("},
                        {"name": "noise", "uri": "data:image/png;base64,AAAA"}])";
    const std::string textured = R"("pbrMetallicRoughness": {"baseColorTexture": {"index": 0}})";
    write("large.png",
          std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0u0\0\0u0\b\6\0\0\0\x66\x27\xf8\xba"
                      "\0\0\0\1IDAT",
                      41));
    check({
        {"factors",
         "a.gltf",
         with(R"("emissiveFactor": [0, 0, 0.5], "alphaMode": "BLEND", "pbrMetallicRoughness":
                 {"baseColorFactor": [0.5, 0.25, 1, 0.75], "metallicFactor": 0, "roughnessFactor": 1},
                 "extensions": {"KHR_materials_emissive_strength": {"emissiveStrength": 4}})"),
         {{"diffuse paint", {0.5, 0.25, 1}},
          {"specular paint", {0.04, 0.04, 0.04}},
          {"emission paint", {0, 0, 2}},
          {"alpha paint", {Material::kBlended, 0.5, 0.75}}}},
        {"a mask",
         "b.gltf",
         with(R"("alphaMode": "MASK", "alphaCutoff": 0.25, "pbrMetallicRoughness":
                 {"baseColorFactor": [1, 1, 1, 0.5]})"),
         {{"alpha paint", {Material::kMasked, 0.25, 0.5}}}},
        {"an opaque material, whatever its alpha",
         "c.gltf",
         with(R"("pbrMetallicRoughness": {"baseColorFactor": [1, 1, 1, 0.5]})"),
         {{"alpha paint", {Material::kIgnored, 0.5, 1}}}},
        {"an alpha mode that is unknown",
         "d.gltf",
         with(R"("alphaMode": "FOG")"),
         {{"alpha paint", {Material::kIgnored, 0.5, 1}}},
         {"d.gltf: material 0 'paint': alpha mode \"FOG\" is unknown; the material is opaque"}},
        {"the plain colour",
         "e.gltf",
         with(R"("emissiveFactor": [1, 1, 1], "pbrMetallicRoughness":
                 {"baseColorFactor": [0.5, 0.25, 1, 1]},
                 "extensions": {"KHR_materials_unlit": {}})"),
         {{"diffuse paint", {0.5, 0.25, 1}}, {"emission paint", {0, 0, 0}}, {"unlit paint", {1}}}},
        {"a texture that is turned",
         "f.gltf",
         // The file's example: the lower left quarter of the image, turned clockwise.
         with(R"("pbrMetallicRoughness": {"baseColorTexture": {"index": 0, "texCoord": 1,
                 "extensions": {"KHR_texture_transform": {"offset": [0, 1], "texCoord": 0,
                   "rotation": 1.5707963267948966, "scale": [0.5, 0.5]}}}})",
              image + R"(, "textures": [{"source": 0, "sampler": 0}],
                 "samplers": [{"wrapS": 33071, "wrapT": 33648, "magFilter": 9728,
                               "minFilter": 9728}])"),
         // With v upwards: (0, 0) is the file's (0, 1), which goes to (0.5, 1), so to (0.5, 0)
         // here; u takes v from 0 to 0.5, v takes u from 0.5 to 0.
         {{"placement paint", {0, 0, 0.5, -0.5, 0, 0.5, 0}},
          {"texture dot", {Texture::kClamped, Texture::kMirrored, 0}}}},
        {"what is left out",
         "g.gltf",
         with(R"("normalTexture": {"index": 0}, "occlusionTexture": {"index": 0},
                 "pbrMetallicRoughness": {"metallicRoughnessTexture": {"index": 0},
                   "baseColorTexture": {"index": 0, "texCoord": 3}})",
              image + R"(, "textures": [{"source": 0, "sampler": 0}],
                 "samplers": [{"magFilter": 9729, "minFilter": 9987, "wrapS": 7}],
                 "extensionsUsed": ["KHR_materials_sheen", "KHR_texture_transform"])"),
         {{"placement paint", {0, 1, 0, 0, 1, 0, 0}},
          {"texture dot", {Texture::kRepeated, Texture::kRepeated, 1}}},
         {"g.gltf: extension KHR_materials_sheen: it is not supported; what it adds is left out",
          "g.gltf: texture 0: wrap mode 7 is unknown; the texture repeats",
          "g.gltf: texture 0: minification filter 9987 is asked for; the texture is sampled as "
          "when "
          "it is enlarged",
          "g.gltf: material 0 'paint': a texture uses TEXCOORD_3; it uses TEXCOORD_0",
          "g.gltf: material 0 'paint': its metallic-roughness texture is not supported; it is left "
          "out",
          "g.gltf: material 0 'paint': its normal texture is not supported; it is left out",
          "g.gltf: material 0 'paint': its occlusion texture is not supported; it is left out"}},
        {"images that cannot be read",
         "h.gltf",
         with(textured + R"(, "emissiveTexture": {"index": 1})",
              R"(, "images": [{"uri": "no%20file.png"}, {"name": "noise",
                   "uri": "data:image/png;base64,AAAA"}],
                 "textures": [{"source": 0}, {"source": 1}])"),
         {{"emission paint", {0, 0, 0}}},
         {"h.gltf: material 'paint', texture 'no file.png': the image is not there; the material "
          "is "
          "shown without it",
          "h.gltf: material 'paint', texture 'noise': the image cannot be read: its format is "
          "not known; the material is shown without it"}},
        {"an image in the file that is cut off, beside one that is whole",
         "j.gltf",
         with(textured + R"(, "emissiveTexture": {"index": 1})",
              R"(, "images": [{"name": "dot", "uri": ")" + dot +
                  R"("}, {"name": "half", "uri": ")" + dot.substr(0, 90) +
                  R"("}], "textures": [{"source": 0}, {"source": 1}])"),
         {{"pixels dot", {0, 255, 0, 127}}, {"pixels half", {}}},
         {"j.gltf: material 'paint', texture 'half': the image cannot be read: it ends too early; "
          "the "
          "material is shown without it"}},
        {"a file beside it that claims to be 30000 x 30000 pixels large",
         "k.gltf",
         with(textured, R"(, "images": [{"uri": "large.png"}], "textures": [{"source": 0}])"),
         {{"pixels file", {}}},
         {"k.gltf: material 'paint', texture 'large.png': the image cannot be read: its size of "
          "30000 x 30000 pixels is not plausible; the material is shown without it"}},
        {"an image of another format",
         "i.gltf",
         with(textured, R"(, "textures": [{"extensions": {"X_image": {"source": 0}}}])"),
         {},
         {"i.gltf: texture 0: its image is of a format that only an extension knows; it is left "
          "out"}},
    });
}

// ---- motion -------------------------------------------------------------------------------------

/// A file with one animation of node 0, whose channels are of that path; `keys` and `values` are
/// accessors.
std::string animated(const GltfFile &file, const std::string &path, const std::string &values,
                     const std::string &interpolation, const std::string &nodes,
                     const std::string &mesh) {
    return file.text(mesh + R"(, "nodes": [)" + nodes + R"(], "animations": [{"name": "go",
        "samplers": [{"input": 2, "output": )" +
                     values + R"(, "interpolation": ")" + interpolation + R"("}],
        "channels": [{"sampler": 0, "target": {"node": 0, "path": ")" +
                     path + R"("}}]}])");
}

TEST_F(LoadingTest, NodesMove) {
    Triangle slide, turn, spline, shape;
    slide.add<float>("SCALAR", {1, 3});
    slide.add<float>("VEC3", {0, 0, 0, 2, 4, 6});
    turn.add<float>("SCALAR", {0, 3});
    turn.add<float>("VEC4",
                    {0, 0, 0, 1, 0, 0, -float(kHalf), -float(kHalf)}); // 90 degrees, negated
    spline.add<float>("SCALAR", {0, 2});
    spline.add<float>("VEC3", {0, 0, 0, 1, 1, 1, 4, 0, 0, 0, 8, 0, 1, 1, 1, 0, 0, 0});
    shape.add<float>("SCALAR", {0, 1});
    shape.add<float>("SCALAR", {0, 1, 2, 3});              // the weights of two targets
    shape.add<float>("VEC3", {0, 0, 0, 0, 0, 0, 0, 0, 4}); // the first lifts the last corner
    shape.add<float>("VEC3", {2, 0, 0, 0, 0, 0, 0, 0, 0}); // the second moves the first one
    const std::string node = R"({"name": "it", "mesh": 0, "scale": [2, 2, 2]})";
    const auto go = [&](const Triangle &file, const char *path, const char *interpolation) {
        return animated(file, path, "3", interpolation, node, file.mesh());
    };
    const std::string targets = R"("targets": [{"POSITION": 4}, {"POSITION": 5}])";
    // The middle of a turn by 90 degrees: y goes to (-sin, cos) of 45 degrees, and all is doubled.
    check({
        {"before its first key",
         "a.gltf",
         go(slide, "translation", "LINEAR"),
         {{"place it", {2, 4, 6}}},
         {},
         0.5},
        {"a straight way",
         "b.gltf",
         go(slide, "translation", "LINEAR"),
         {{"place it", {3, 6, 9}}},
         {},
         2},
        {"steps", "c.gltf", go(slide, "translation", "STEP"), {{"place it", {2, 4, 6}}}, {}, 2.999},
        {"behind its last key",
         "d.gltf",
         go(slide, "translation", "STEP"),
         {{"place it", {4, 8, 12}}},
         {},
         7},
        {"a turn, the short way",
         "e.gltf",
         go(turn, "rotation", "LINEAR"),
         // 30 degrees of (2, 4, 6).
         {{"place it", {2 * std::sqrt(0.75) - 2, 1 + 4 * std::sqrt(0.75), 6}}},
         {},
         1},
        {"a scale along a spline",
         "f.gltf",
         go(spline, "scale", "CUBICSPLINE"),
         // Half way the values are 1; x gets 2 s * 1/8 * 4 more, y 2 s * -1/8 * 8 less.
         {{"place it", {2, -2, 3}}},
         {},
         1},
        {"weights of morph targets",
         "g.gltf",
         animated(shape, "weights", "3", "LINEAR", node, shape.mesh("", targets)),
         // Half way the weights are 1 and 2.
         {{"positions it", {4, 0, 0, 1, 0, 0, 0, 1, 4}},
          {"normals it", {0, 0, 1, 0, 0, 1, 0, 0, 1}}},
         {},
         0.5},
        {"what cannot be animated",
         "h.gltf",
         slide.text(slide.mesh() + R"(, "scenes": [{"nodes": [0]}], "nodes": [)" + node + R"(, {}],
           "animations": [
             {"samplers": [{"input": 2, "output": 3}], "channels": [
               {"sampler": 0, "target": {"node": 0, "path": "translation"}},
               {"sampler": 0, "target": {"node": 0, "path": "pointer"}},
               {"sampler": 0, "target": {"path": "scale"}},
               {"sampler": 0, "target": {"node": 1, "path": "scale"}}]},
             {"name": "other", "samplers": [{"input": 2, "output": 3}],
              "channels": [{"sampler": 0, "target": {"node": 0, "path": "translation"}}]}])"),
         {{"place it", {3, 6, 9}}},
         {"h.gltf: animations: a channel has no node; it is left out",
          "h.gltf: animation 0, pointer: the path \"pointer\" is unknown; it is left out",
          "h.gltf: animation 0, scale: it moves node 1, which the scene does not show; it is left "
          "out",
          "h.gltf: animation 1 'other': 1 of its channels move what an animation before it moves; "
          "these are left out"},
         2},
    });
}

TEST_F(LoadingTest, JointsBendMeshes) {
    // Three corners along y; the joint stands at (0, 1, 0). The first corner is held by the root,
    // the second by both, the last by the joint alone.
    GltfFile file;
    file.add<float>("VEC3", {0, 0, 0, 0, 2, 0, 0, 3, 0});
    file.add<float>("VEC3", {1, 0, 0, 1, 0, 0, 1, 0, 0});
    file.add<uint8_t>("VEC4", {0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0});
    file.add<uint8_t>("VEC4", {255, 0, 0, 0, 128, 128, 0, 0, 255, 0, 0, 0},
                      R"("normalized": true)");
    file.add<float>("MAT4", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0,  0, 1,
                             1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -1, 0, 1});
    file.add<float>("SCALAR", {0, 1});
    file.add<float>("VEC4", {0, 0, 0, 1, 0, 0, float(kHalf), float(kHalf)});
    const auto skinned = [&](const std::string &joints) {
        return file.text(R"("meshes": [{"primitives": [{"attributes":
             {"POSITION": 0, "NORMAL": 1, "JOINTS_0": 2, "WEIGHTS_0": 3}}]}],
           "skins": [{"joints": )" +
                         joints + R"(, "inverseBindMatrices": 4}],
           "nodes": [{"name": "root", "children": [1]}, {"name": "joint", "translation": [0, 1, 0]},
             {"name": "arm", "mesh": 0, "skin": 0, "translation": [10, 0, 0], "scale": [2, 2, 2]}],
           "animations": [{"samplers": [{"input": 5, "output": 6}],
             "channels": [{"sampler": 0, "target": {"node": 1, "path": "rotation"}}]}])");
    };
    const Values atRest = {0, 0, 0, 0, 2, 0, 0, 3, 0};
    // The joint turned by 90 degrees takes (0, 3) to (-2, 1) and (0, 2) to (-1, 1); the second
    // corner is half way between that and where it was. Normals turn with it.
    const Values bent = {0, 0, 0, -0.5, 1.5, 0, -2, 1, 0};
    check({
        {"a skin at rest, which goes by its joints alone",
         "rest.gltf",
         skinned("[0, 1]"),
         {{"world", atRest}}},
        {"a joint at 90 degrees",
         "bent.gltf",
         skinned("[0, 1]"),
         {{"world", bent}, {"normals", {1, 0, 0, kHalf, kHalf, 0, 0, 1, 0}}},
         {},
         1},
    });
    // A script that moves the joint bends the mesh as well.
    newScene();
    load("script.gltf", skinned("[0, 1]"));
    scene().edit(scene().find("root"))->local[3][2] = 7;
    scene().deformMeshes();
    EXPECT_EQ(look("world")[8], 7);
    // What the current layer adjusts stays through the animation.
    const NodeId joint = scene().find("joint");
    scene().setTime(1);
    EXPECT_NEAR(look("place joint")[0], -2, 1e-6);
    RenderLayer layer;
    layer.adjustments = {{joint, "matrix", "kept"}};
    const NodeId id = scene().add("renderLayer", "still", layer);
    scene().edit(id)->attributes["kept"] = ZMatrix();
    scene().setCurrentLayer(id);
    scene().setTime(0.5);
    EXPECT_EQ(look("place joint")[0], 1);
    scene().setCurrentLayer(scene().find("defaultRenderLayer"));
    EXPECT_NEAR(look("place joint")[0], kHalf - 2 * kHalf, 1e-6) << "its state at that time";
}

std::string replaced(std::string text, const std::string &from, const std::string &to) {
    const size_t at = text.find(from);
    if (at == std::string::npos)
        throw std::logic_error("nothing to replace: " + from);
    return text.replace(at, from.size(), to);
}

TEST_F(LoadingTest, BadGltfFilesAreRefused) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    Triangle file, broken, keys, joints, picture;
    GltfFile sparse;
    file.add<uint8_t>("SCALAR", {0, 1, 3});
    broken.add<float>("VEC3", {0, 0, 0, 1, nan, 0, 0, 1, 0});
    keys.add<float>("SCALAR", {0, 2, 1});
    keys.add<float>("VEC3", {0, 0, 0, 1, 1, 1, 2, 2, 2});
    keys.add<float>("SCALAR", {0, 1});
    joints.add<uint8_t>("VEC4", {0, 0, 0, 0, 0, 0, 0, 0, 5, 0, 0, 0});
    joints.add<float>("VEC4", {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0});
    joints.add<float>("VEC4", {1, 0, 0, 0, -0.5, 1.5, 0, 0, 1, 0, 0, 0});
    picture.addView<uint8_t>({1, 2, 3, 4, 5});
    sparse.addView<uint8_t>({3});
    sparse.addView<float>({1, 1, 1});
    sparse.addZeros("VEC3", 3, R"("sparse": {"count": 1, "indices": {"bufferView": 0,
        "componentType": 5121}, "values": {"bufferView": 1}})");
    const std::string good = Triangle().with("");
    const std::string binary = Triangle().binary(Triangle().mesh() + kNode);
    const auto nodes = [](const std::string &text) { return Triangle().with("", "", text); };
    const auto animation = [&](const char *input, const char *output, const char *more = "") {
        return keys.with("", "",
                         std::string(R"("nodes": [{"mesh": 0)") + more +
                             R"(}], "animations": [{"name": "go", "samplers": [{"input": )" +
                             input + R"(, "output": )" + output + R"(}], "channels": [
              {"sampler": 0, "target": {"node": 0, "path": "scale"}}]}])");
    };
    const auto skin = [&](const char *weights) {
        return joints.with(std::string(R"("JOINTS_0": 2, "WEIGHTS_0": )") + weights, "",
                           R"("nodes": [{"name": "arm", "mesh": 0, "skin": 0}],
                              "skins": [{"joints": [0]}])");
    };
    load("good.gltf", good);
    refuse({
        {"a.gltf", "{\"asset\": {]", "line 1, column 12"},
        {"b.gltf", replaced(good, "data:application", "missing"), "File not found"},
        {"c.gltf", replaced(good, R"("mesh": 0)", R"("mesh": 7)"),
         "node 0: mesh index 7 is out of range (there are 1)"},
        {"d.gltf", replaced(good, R"("count": 3)", R"("count": 400)"),
         "node 0: mesh 0: primitive 0: POSITION (accessor 0) reaches past the end of its buffer "
         "view"},
        {"e.gltf", replaced(good, R"("count": 3)", R"("count": 6148914691236517206)"),
         "node 0: mesh 0: primitive 0: POSITION (accessor 0) reaches past"},
        {"f.gltf", replaced(good, R"("byteLength": 36)", R"("byteLength": 3600)"),
         "node 0: mesh 0: primitive 0: POSITION (accessor 0) lies in a buffer view that reaches "
         "past"},
        {"g.gltf", file.with("", R"("indices": 2)"),
         "node 0: mesh 0: primitive 0: indices (accessor 2) holds 3, which is out of range"},
        {"h.gltf", file.with("", R"("indices": 0)"),
         "node 0: mesh 0: primitive 0: indices (accessor 0) has the wrong type"},
        {"i.gltf", broken.with(R"("TANGENT": 2)"),
         "node 0: mesh 0: primitive 0: TANGENT (accessor 2) has the wrong type"},
        {"j.gltf", broken.text(only(2) + kNode),
         "node 0: mesh 0: primitive 0: POSITION (accessor 2) holds a number that is not finite"},
        {"k.gltf",
         nodes(R"("nodes": [{"mesh": 0, "children": [1]}, {"name": "loop", "children": [0]}],
                            "scenes": [{"nodes": [0]}])"),
         "node 0 has several parents, or is its own"},
        {"l.gltf", nodes(R"("nodes": [{"mesh": 0, "children": [1]}, {"children": [0]}])"),
         "every node is a child"},
        {"m.gltf", nodes(R"("nodes": [{"name": "flat", "mesh": 0, "scale": [1, 0, 1]}])"),
         "node 0 'flat': its transform has no inverse"},
        {"n.gltf", nodes(R"("nodes": [{"mesh": 0, "rotation": [0, 0, 0, 0]}])"),
         "node 0: its rotation is all zeros"},
        {"o.gltf", nodes(R"("nodes": [{"mesh": 0, "matrix": [1, 0, 0]}])"),
         "node 0: its matrix has 3 numbers"},
        {"p.gltf",
         nodes(R"("nodes": [{"mesh": 0, "extensions": {"KHR_lights_punctual": {"light": 1}}}])"),
         "node 0: light index 1 is out of range"},
        {"q.gltf", nodes(R"("nodes": [{"mesh": 0}], "extensionsRequired": ["X_packed"])"),
         "it needs the extension X_packed"},
        {"r.glb", binary.substr(0, binary.size() / 2), "Invalid glTF binary"},
        {"s.gltf", animation("2", "3"),
         "animation 0 'go': channel 0: its keys are not in order: 1.000000 s comes after 2.000000 "
         "s"},
        {"t.gltf", animation("4", "3"),
         "animation 0 'go': channel 0: there are 9 numbers for 2 keys, which take 6"},
        {"u.gltf", animation("4", "9"),
         "animation 0 'go': channel 0: accessor index 9 is out of range"},
        {"v.gltf", animation("4", "3", R"(, "matrix": [1,0,0,0, 0,1,0,0, 0,0,1,0, 0,0,0,1])"),
         "animation 0 'go': channel 0: it moves node 0, which has a matrix"},
        {"w.gltf", skin("3"), "node 0 'arm': skin 0: vertex 2 is held by joint 5, and there are 1"},
        {"x.gltf", skin("4"),
         "node 0 'arm': mesh 0: primitive 0: vertex 1 has a joint weight that is not 0 to 1"},
        {"z.gltf", sparse.text(only(0) + kNode),
         "node 0: mesh 0: primitive 0: POSITION (accessor 0) has a sparse index that is out of "
         "range"},
        {"y.gltf",
         replaced(picture.with("", "", R"("nodes": [{"mesh": 0}], "images": [
                                 {"bufferView": 2, "mimeType": "image/png"}])"),
                  R"("byteLength": 5)", R"("byteLength": 500)"),
         "image 0: it reaches past the end of its buffer"},
    });
}

TEST_F(LoadingTest, SceneGetsDefaultCameraThatSeesItAllAndAHeadlight) {
    load("cube.obj", kCubeObj);
    const NodeId camera = scene().findCamera("persp");
    ASSERT_NE(camera, kNoNode);
    for (const NodeId light : scene().lights())
        EXPECT_TRUE(scene().node(light)->light()->isDefault);
    EXPECT_EQ(scene().path(scene().find("headlight")), "|persp|headlight");

    const ZMatrix toCamera = scene().worldMatrix(camera).inverse();
    const Camera &lens = *scene().node(camera)->camera();
    const double degree = std::acos(-1) / 180;
    for (int corner = 0; corner < 8; ++corner) {
        const ZVector p = transformPoint(
            ZVector(corner & 1 ? 1 : -1, corner & 2 ? 1 : -1, corner & 4 ? 1 : -1), toCamera);
        EXPECT_LT(std::abs(p.y / -p.z), std::tan(lens.verticalFieldOfView * degree / 2));
        EXPECT_LT(std::abs(p.x / -p.z), std::tan(lens.horizontalFieldOfView * degree / 2));
        EXPECT_GT(-p.z, lens.nearClip);
        EXPECT_LT(-p.z, lens.farClip);
    }
}

} // namespace
