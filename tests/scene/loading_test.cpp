// SPDX-License-Identifier: MIT
// What scene files ask for: each case has the values that must be there, worked out by hand, and
// the notices of what is not.
#include "devhost/util/Notices.h"
#include "tests/scene/scene_cases.h"
#include "tests/scene_files.h"

#include <cmath>
#include <functional>

using namespace devhost;

namespace {

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
        if (part == "mirror")
            return {m->shininess, m->reflectivity.x, m->reflectivity.y, m->reflectivity.z};
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
    if (const Camera *lens = node->camera(); lens && lens->orthographic == (part[0] == 'o'))
        return {lens->orthographic ? lens->orthographicWidth : lens->verticalFieldOfView,
                lens->orthographic ? lens->filmAspect : lens->horizontalFieldOfView, lens->nearClip,
                lens->farClip};
    const std::map<std::string, Light::Kind> kinds = {{"spot", Light::kSpot},
                                                      {"directional", Light::kDirectional}};
    if (const Light *light = node->light();
        light && kinds.contains(part) && kinds.at(part) == light->kind)
        return {light->color.x,       light->color.y,   light->color.z,  light->intensity,
                double(light->decay), light->innerCone, light->outerCone};
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

    void check(const SceneCase &each) {
        const ZStatus status = open(each);
        ASSERT_TRUE(status) << status.errorString().asChar();
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
    /// It is refused in one line that has the words, and the scene stays.
    void refuse(const SceneCase &each) {
        load("good.obj", kCubeObj);
        const unsigned long revision = scene().revision();
        told.clear();
        const ZStatus status = open(each);
        EXPECT_EQ(status.statusCode(), ZStatus::kFailure);
        const std::string why = status.errorString().asChar();
        const std::string place =
            each.beside.empty() ? each.file + ": " : ""; // else it says itself
        EXPECT_NE(why.find(place + each.refused), std::string::npos) << why;
        EXPECT_EQ(why.find('\n'), std::string::npos) << why;
        EXPECT_EQ(scene().revision(), revision);
        EXPECT_TRUE(told.empty()) << "of a file that is not there";
    }
    ZStatus open(const SceneCase &each) const {
        for (const auto &[name, text] : each.beside)
            write(name, text);
        return loadScene(write(each.file, each.text));
    }
    static std::vector<SceneCase> cases(const std::string &list) {
        return SceneCaseReader::read(SCENE_CASES "/" + list + ".txt");
    }

    std::vector<std::string> told;
};

class Listed : public LoadingTest, public testing::WithParamInterface<const char *> {};

TEST_P(Listed, FilesAreWhatTheyAskFor) {
    const auto listed = cases(GetParam());
    EXPECT_GT(listed.size(), 5u);
    for (const SceneCase &each : listed) {
        SCOPED_TRACE(each.asks);
        told.clear();
        newScene();
        each.refused.empty() ? check(each) : refuse(each);
    }
}

INSTANTIATE_TEST_SUITE_P(, Listed, testing::Values("obj", "gltf", "motion", "refused"),
                         [](const auto &list) { return std::string(list.param); });

TEST_F(LoadingTest, NoFileAndAnUnknownKind) {
    EXPECT_EQ(loadScene(write("scene.fbx", "x")).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(loadScene((folder / "missing.obj").string()).statusCode(), ZStatus::kNotFound);
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
    // whose shorter diagonal lies outside; holes, from the left and from above.
    const std::array<std::pair<const char *, double>, 5> cases = {{
        {"v 0 0 0\nv 1 2 0\nv 2 0 0\nv 3 2 0\nv 4 0 0\nv 4 0 0\nv 4 3 0\nv 4 4 0\nv 4 3 0\nv 0 3 "
         "0\n"
         "f 1 2 3 4 5 6 7 8 9 10\n",
         8},
        {"v 0 0 5\nv 4 0 5\nv 4 4 5\nv 2 1 5\nv 0 4 5\nf 5 4 3 2 1\n", 10},
        {"v 0 0 0\nv 3 1 0\nv 0 2 0\nv 2 1 0\nf 1 2 3 4\n", 1},
        {"v 0 0 0\nv 10 0 0\nv 10 10 0\nv 0 10 0\nv 0 4 0\nv 4 4 0\nv 4 6 0\nv 6 6 0\nv 6 4 0\n"
         "f 1 2 3 4 5 6 7 8 9 6 5\n",
         96},
        {"v 0 0 0\nv 10 0 0\nv 10 10 0\nv 4 10 0\nv 4 6 0\nv 6 6 0\nv 6 4 0\nv 4 4 0\nv 0 10 0\n"
         "f 1 2 3 4 5 6 7 8 5 4 9\n",
         96},
    }};
    for (const auto &[text, wanted] : cases) {
        load("polygon.obj", text);
        EXPECT_NEAR(area(*scene().node(scene().meshes().at(0))->mesh()), wanted, 1e-6) << text;
    }
}

TEST_F(LoadingTest, ScriptsAndLayersMoveJoints) {
    for (const SceneCase &each : cases("motion"))
        if (each.asks == "a joint at 90 degrees") {
            ASSERT_TRUE(open(each));
        }
    // A script that moves the joint bends the mesh as well.
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
    EXPECT_NEAR(look("place joint")[0], -std::sqrt(0.5), 1e-6) << "its state at that time";
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
