// Reading of .obj files.
#include "tests/scene_files.h"

#include <cmath>

using namespace devhost;

namespace {

TEST_F(SceneTest, ObjGivesMeshesMaterialsAndTextureCoordinates) {
    write("paint.mtl", "newmtl red\nKd 0.8 0.1 0.2\nKs 0.5 0.5 0.5\nNs 30\nillum 3\nd 0.25\n"
                       "newmtl skin\nKd 1 1 1\nKe 0 0.5 0\nmap_Kd textures\\wood.png\n");
    load("two.obj", "mtllib paint.mtl\n"
                    "v 0 0 0\nv 2 0 0\nv 2 3 0\nv 0 3 0\nv 9 9 9\n"
                    "vt 0 0\nvt 1 0\nvt 1 1\n"
                    "vn 0 0 2\n"
                    "o left\nusemtl red\nf 1/1/1 2/2/1 3/3/1\n"
                    "o right\nusemtl skin\nf 1 3 4\nusemtl red\nf -5 -3 -2\n");
    ASSERT_EQ(scene().meshes().size(), 2u);

    const Mesh &left = *node("left").mesh();
    ASSERT_EQ(left.vertexCount(), 3u) << "only the vertices that the shape uses";
    EXPECT_TRUE(near(vertex(left.normals, 1), ZVector(0, 0, 1))) << "unit length";
    EXPECT_EQ(left.uvs, (std::vector<float>{0, 0, 1, 0, 1, 1}));

    const Mesh &right = *node("right").mesh();
    ASSERT_EQ(right.triangleCount(), 2u);
    EXPECT_EQ(scene().node(right.materials[0])->name, "skin");
    EXPECT_EQ(scene().node(right.materials[1])->name, "red");
    EXPECT_TRUE(near(vertex(right.positions, right.triangles[5]), ZVector(0, 3, 0)));

    const Material &red = *node("red").material();
    EXPECT_TRUE(near(red.diffuse, ZVector(0.8, 0.1, 0.2)));
    EXPECT_TRUE(near(red.reflectivity, ZVector(0.5, 0.5, 0.5)));
    EXPECT_FLOAT_EQ(float(red.opacity), 0.25f);
    const Material &skin = *node("skin").material();
    EXPECT_TRUE(near(skin.emission, ZVector(0, 0.5, 0)));
    EXPECT_EQ(scene().node(skin.texture)->texture()->fileName, "textures/wood.png");
}

TEST_F(SceneTest, ObjWithoutNormalsKeepsSharpEdgesAndSmoothsBluntOnes) {
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

TEST_F(SceneTest, SceneGetsDefaultCameraThatSeesItAllAndLights) {
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

TEST_F(SceneTest, BadFilesAreRefusedInOneLineAndLeaveTheSceneAlone) {
    load("good.obj", kCubeObj);
    const unsigned long revision = scene().revision();
    const std::string corners = "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\n";
    struct Case {
        const char *name;
        std::string contents;
        ZStatus::ZStatusCode code;
    };
    const Case cases[] = {
        {"scene.fbx", "x", ZStatus::kInvalidParameter},
        {"empty.obj", "", ZStatus::kFailure},
        {"past.obj", corners + "f 1 2 4\n", ZStatus::kFailure},
        {"polygon.obj", corners + "f 1 2 3 1 77777777\n", ZStatus::kFailure},
        {"normal.obj", corners + "f 1//5 2//5 3//5\n", ZStatus::kFailure},
        {"uv.obj", corners + "f 1/1 2/1 3/2\n", ZStatus::kFailure},
        {"endless.obj", "v 0 0 0\nv 1e999 0 0\nv 0 1 0\nf 1 2 3\n", ZStatus::kFailure},
        {"garbage.obj", "\x7f\x45\x4c\x46\x01\x02 f f f v v\n", ZStatus::kFailure},
    };
    for (const Case &bad : cases) {
        const ZStatus status = loadScene(write(bad.name, bad.contents));
        EXPECT_EQ(status.statusCode(), bad.code) << bad.name;
        const std::string text = status.errorString().asChar();
        EXPECT_NE(text.find(bad.name), std::string::npos) << text;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
        EXPECT_EQ(scene().revision(), revision);
    }
    EXPECT_EQ(loadScene((folder / "missing.obj").string()).statusCode(), ZStatus::kNotFound);
}

} // namespace
