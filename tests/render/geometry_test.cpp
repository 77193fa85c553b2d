// SPDX-License-Identifier: MIT
// Geometry of scene meshes and of the host's shapes, as renderers read it.
#include "devhost/session/RenderSession.h"
#include "devhost/session/Viewport.h"
#include "host/core/ZObject.h"
#include "host/render/ZGeometryList.h"
#include "host/render/ZGeometryManager.h"
#include "host/render/ZHardwareRenderer.h"
#include "host/render/ZRenderingInfo.h"
#include "host/render/ZViewportRenderer.h"
#include "tests/scene/gltf_file.h"
#include "tests/scene_files.h"

#include <algorithm>
#include <memory>
#include <tuple>

using namespace devhost;

namespace {

/// Two triangles of a square that faces +Z. v grows upwards; u grows to the right in the first
/// triangle, to the left in the second.
const char *const kSquares = "o square\n"
                             "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n"
                             "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nvn 0 0 1\n"
                             "f 1/1/1 2/2/1 3/3/1\nf 1/2/1 3/4/1 4/3/1\n";

/// The values as their type is told to be.
std::vector<double> values(const ZGeometryData &stream) {
    const size_t count = size_t(stream.elementCount()) * stream.elementSize();
    if (stream.elementType() == ZGeometryData::kFloat) {
        const auto *first = static_cast<const float *>(stream.data());
        return {first, first + count};
    }
    const auto *first = static_cast<const unsigned *>(stream.data());
    return {first, first + count};
}

/// Keeps the geometry of what the host asks it to draw.
struct Drawer : ZViewportRenderer {
    Drawer() : ZViewportRenderer("drawer") { setRenderingOverride(kOverrideAllDrawing); }
    ZStatus initialize() override { return {}; }
    ZStatus uninitialize() override { return {}; }
    ZStatus render(ZRenderingInfo const &info) override {
        drawn = std::make_unique<ZGeometryList>(info);
        projection = info.projectionMatrix();
        return {};
    }
    bool nativelySupports(RenderingAPI api, float) override { return api == kSoftware; }
    bool override(RenderingOverride) override { return true; }

    std::unique_ptr<ZGeometryList> drawn;
    ZMatrix projection;
};

class GeometryTest : public SceneTest {
  protected:
    ZGeometryRequirements wanted;
    ZGeometry read(const char *name) { return ZGeometryManager::getGeometry(path(name), wanted); }
};

} // namespace

TEST_F(GeometryTest, MeshComesVertexByVertex) {
    load("scene.obj", kSquares);
    wanted.addPosition();
    wanted.addNormal(4);
    wanted.addTexCoord("");
    wanted.addComponentId();
    wanted.addFaceOffsets();
    ZGeometry geometry = read("square");
    // Vertices in the order of the file's corners: all differ but those of the first position.
    EXPECT_EQ(values(geometry.position()),
              (std::vector<double>{-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, -1, 0, 1, 1, 0, -1, 1, 0}));
    EXPECT_EQ(values(geometry.texCoord("uv")),
              (std::vector<double>{0, 0, 1, 0, 1, 1, 1, 0, 0, 1, 1, 1}));
    EXPECT_EQ(values(geometry.componentId()), (std::vector<double>{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(values(geometry.normal())[5 * 4 + 2], 1);
    EXPECT_EQ(values(geometry.data(ZGeometryData::kUserData, "faceOffsets")),
              (std::vector<double>{0, 3, 6}));
    ASSERT_EQ(geometry.primitiveArrayCount(), 1u);
    EXPECT_EQ(geometry.primitiveArray(0).elementCount(), 6u);
}

TEST_F(GeometryTest, TangentsFollowTheTexture) {
    load("scene.obj", kSquares);
    wanted.addNormal();
    wanted.addTangent("uv", 4);
    wanted.addBinormal("");
    ZGeometry geometry = read("square");
    const std::vector<double> tangents = values(geometry.tangent("uv"));
    const std::vector<double> binormals = values(geometry.binormal("uv"));
    ASSERT_EQ(tangents.size(), 6u * 4);
    for (size_t i = 0; i < 6; ++i) {
        const ZVector tangent(tangents[i * 4], tangents[i * 4 + 1], tangents[i * 4 + 2]);
        const ZVector binormal(binormals[i * 3], binormals[i * 3 + 1], binormals[i * 3 + 2]);
        const double hand = i < 3 ? 1 : -1;
        EXPECT_TRUE(near(tangent, ZVector(hand, 0, 0))) << i;
        EXPECT_TRUE(near(binormal, ZVector(0, 1, 0))) << i;
        EXPECT_EQ(tangents[i * 4 + 3], hand) << i;
    }
}

TEST_F(GeometryTest, EverythingOfTheFileIsDelivered) {
    GltfFile file;
    file.add<float>("VEC3", {0, 0, 0, 1, 0, 0, 0, 1, 0});
    file.add<float>("VEC3", {0, 0, 1, 0, 0, 1, 0, 0, 1});
    file.add<float>("VEC2", {0.5, 0.75, 0, 1, 0, 0});
    file.add<float>("VEC4", {0, 1, 0, -1, 0, 1, 0, -1, 0, 1, 0, 1});
    file.add<float>("SCALAR", {0, 1}); // as times and as weights
    file.add<float>("VEC3", {0, 0, 8, 0, 0, 0, 0, 0, 0});
    load("scene.gltf", file.text(R"("meshes": [{"primitives": [{"attributes":
           {"POSITION": 0, "NORMAL": 1, "TEXCOORD_1": 2, "TANGENT": 3},
           "targets": [{"POSITION": 5}]}]}],
         "nodes": [{"name": "it", "mesh": 0}], "animations": [{"samplers": [{"input": 4, "output": 4}],
           "channels": [{"sampler": 0, "target": {"node": 0, "path": "weights"}}]}])"));
    wanted.addPosition();
    wanted.addTexCoord("uv1");
    wanted.addTangent("", 4);
    wanted.addBinormal("uv");
    ZGeometry geometry = read("it");
    EXPECT_EQ(values(geometry.texCoord("uv1")), (std::vector<double>{0.5, 0.25, 0, 0, 0, 1}));
    EXPECT_EQ(values(geometry.tangent("uv")),
              (std::vector<double>{0, 1, 0, -1, 0, 1, 0, -1, 0, 1, 0, 1}));
    // Normal times tangent is (-1, 0, 0), times the hand.
    EXPECT_EQ(values(geometry.binormal("uv")), (std::vector<double>{1, 0, 0, 1, 0, 0, -1, 0, 0}));
    setFramesPerSecond(24);
    setCurrentFrame(6);
    EXPECT_EQ(values(read("it").position())[2], 2) << "a quarter of a second";
    EXPECT_EQ(values(geometry.position())[2], 0) << "handles keep what they have";
    setCurrentFrame(0);

    load("scene.obj", "v 0 0 0 1 0 0\nv 1 0 0 0 1 0\nv 1 1 0\nv 0 1 0\nf 1 2 3 4\nf 1 2 4\n");
    wanted.addColor("");
    wanted.addFaceOffsets();
    ZGeometry faces = read("mesh");
    EXPECT_EQ(values(faces.color("color")),
              (std::vector<double>{1, 0, 0, 1, 0, 1, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(values(faces.data(ZGeometryData::kUserData, "faceOffsets")),
              (std::vector<double>{0, 4, 7}));
}

TEST_F(GeometryTest, HandlesShareTheirStreamAndKeepIt) {
    load("scene.obj", kCubeObj);
    wanted.addPosition(4);
    const ZGeometryData kept = read("cube").position();
    EXPECT_EQ(read("cube").position().uniqueID(), kept.uniqueID());
    wanted.addPosition(3);
    EXPECT_NE(read("cube").position().uniqueID(), kept.uniqueID());
    newScene();
    EXPECT_EQ(values(kept)[3], 1); // of a mesh that is in no scene any more
}

TEST_F(GeometryTest, ListFollowsTheScene) {
    load("scene.obj", std::string(kCubeObj) + "o hidden\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 9 10 11\n");
    scene().edit(scene().find("hidden"))->visible = false;
    scene().edit(scene().find("cube"))->local[3][0] = 5;
    Drawer drawer;
    ASSERT_TRUE(drawer.registerRenderer());
    ViewportImage image;
    ASSERT_TRUE(renderViewport("drawer", 4, 4, 1, image));
    ASSERT_TRUE(drawer.drawn);
    ZGeometryList &list = *drawer.drawn;
    ASSERT_EQ(list.length(), 1);
    EXPECT_TRUE(list.projectionMatrix() == drawer.projection);
    EXPECT_TRUE((list.viewMatrix() * path("persp").inclusiveMatrix()).isEquivalent(ZMatrix()));
    EXPECT_EQ(list.objectToWorldMatrix()(3, 0), 5);
    EXPECT_EQ(list.path(), path("cube"));
    ZGeometry &cube = list.geometry();
    const int id = cube.position().uniqueID();
    EXPECT_TRUE(list.addLast(path("hidden")));
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(list.addLast(cube, ZMatrix()));
    EXPECT_EQ(cube.position().uniqueID(), id) << "the reference does not move";
    list.next();
    EXPECT_EQ(list.path(), path("hidden"));
    for (const int place : {-1, 102}) {
        list.setCurrentElement(place);
        EXPECT_TRUE(list.isDone());
        EXPECT_EQ(list.geometry().primitiveArrayCount(), 0u);
    }
}

TEST_F(GeometryTest, VerticesOfShapesAreGivenBackAsOftenAsTheyWereTaken) {
    ZHardwareRenderer &renderer = *ZHardwareRenderer::theRenderer();
    const auto take = [&] {
        unsigned streams = 0, count = 0, *indices = nullptr;
        ZGeometryData *data = renderer.referenceDefaultGeometry(ZHardwareRenderer::kDefaultCube,
                                                                streams, indices, count);
        EXPECT_EQ(streams, 3u);
        EXPECT_EQ(count, 36u) << "six sides of two triangles";
        EXPECT_LT(*std::max_element(indices, indices + count), data[0].elementCount());
        return data;
    };
    ZGeometryData *const first = take();
    EXPECT_EQ(take(), first);
    ZGeometryData other("own", ZGeometryData::kUserData, ZGeometryData::kFloat, ZGeometryData::kOne,
                        0);
    for (const auto &[data, streams, isRight] : {std::tuple(first, 2u, false),
                                                 {&other, 3u, false},
                                                 {first, 3u, true},
                                                 {first, 3u, true},
                                                 {first, 3u, false}})
        EXPECT_EQ(renderer.dereferenceGeometry(data, streams),
                  isRight ? ZStatus::kSuccess : ZStatus::kInvalidParameter);
}

TEST_F(GeometryTest, ShapesAreCountedByShapeAndRequirements) {
    using Manager = ZGeometryManager;
    wanted.addNormal();
    ZGeometryRequirements same, none;
    same.addNormal();
    for (const auto shape :
         {Manager::kDefaultSphere, Manager::kDefaultPlane, Manager::kDefaultCube}) {
        ZGeometryList *list = Manager::referenceDefaultGeometry(shape, wanted);
        EXPECT_EQ(Manager::referenceDefaultGeometry(shape, same), list);
        ZGeometryList *other = Manager::referenceDefaultGeometry(shape, none);
        EXPECT_NE(other, list);
        const ZGeometryData normal = list->geometry().normal();
        for (ZGeometryList *each : {list, list, other})
            EXPECT_TRUE(Manager::dereferenceDefaultGeometry(each));
        EXPECT_EQ(Manager::dereferenceDefaultGeometry(list).statusCode(),
                  ZStatus::kInvalidParameter);
        const std::vector<double> parts = values(normal);
        for (size_t i = 0; i + 2 < parts.size(); i += 3)
            ASSERT_NEAR(ZVector(parts[i], parts[i + 1], parts[i + 2]).length(), 1, 1e-6) << i;
    }
}
