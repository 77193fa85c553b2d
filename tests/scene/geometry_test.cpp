// Geometry of scene meshes and of the host's shapes, as renderers read it.
#include "devhost/render/Viewport.h"
#include "host/core/ZObject.h"
#include "host/render/ZGeometryList.h"
#include "host/render/ZGeometryManager.h"
#include "host/render/ZRenderingInfo.h"
#include "host/render/ZViewportRenderer.h"
#include "tests/scene/scene_files.h"

#include <functional>

using namespace devhost;

namespace {

/// Two triangles of a square that faces +Z. v grows upwards; u grows to the right in the first
/// triangle, to the left in the second.
const char *const kSquares = "o square\n"
                             "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n"
                             "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nvn 0 0 1\n"
                             "f 1/1/1 2/2/1 3/3/1\nf 1/2/1 3/4/1 4/3/1\n";

ZDagPath pathTo(const char *name) {
    ZDagPath path;
    ZDagPath::getAPathTo(scene().object(scene().find(name)), path);
    return path;
}

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

/// Hands what the host asks it to draw to a function.
class Drawer : public ZViewportRenderer {
  public:
    explicit Drawer(std::function<void(ZRenderingInfo const &)> draw)
        : ZViewportRenderer("drawer"), fDraw(std::move(draw)) {
        setRenderingOverride(kOverrideAllDrawing);
    }
    ZStatus initialize() override { return {}; }
    ZStatus uninitialize() override { return {}; }
    ZStatus render(ZRenderingInfo const &info) override {
        fDraw(info);
        return {};
    }
    bool nativelySupports(RenderingAPI api, float) override { return api == kSoftware; }
    bool override(RenderingOverride) override { return true; }

  private:
    std::function<void(ZRenderingInfo const &)> fDraw;
};

class GeometryTest : public SceneTest {
  protected:
    ZGeometryRequirements wanted;
    ZGeometry read(const char *name) { return ZGeometryManager::getGeometry(pathTo(name), wanted); }
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
    EXPECT_EQ(geometry.normal().elementSize(), ZGeometryData::kFour);
    for (size_t i = 0; i < 6; ++i)
        EXPECT_EQ(values(geometry.normal())[i * 4 + 2], 1) << i;
    EXPECT_EQ(values(geometry.data(ZGeometryData::kUserData, "faceOffsets")),
              (std::vector<double>{0, 3, 6}));
    ASSERT_EQ(geometry.primitiveArrayCount(), 1u);
    const ZGeometryPrimitive triangles = geometry.primitiveArray(0);
    EXPECT_EQ(triangles.drawPrimitiveType(), ZGeometryPrimitive::kTriangles);
    ASSERT_EQ(triangles.elementCount(), 6u);
    for (unsigned i = 0; i < 6; ++i)
        EXPECT_EQ(static_cast<unsigned *>(triangles.data())[i], i);
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

TEST_F(GeometryTest, WhatIsNotThereIsEmpty) {
    load("scene.obj", kCubeObj); // no texture coordinates
    wanted.addTexCoord("");
    wanted.addTangent("uv");
    wanted.addColor("");
    ZGeometry geometry = read("cube");
    for (const ZGeometryData &stream :
         {geometry.position(), geometry.texCoord(""), geometry.tangent("uv"), geometry.color(""),
          geometry.data(ZGeometryData::kVelocity, "")}) {
        EXPECT_EQ(stream.dataType(), ZGeometryData::kInvalidDataType);
        EXPECT_EQ(stream.elementCount(), 0u);
        EXPECT_EQ(stream.data(), nullptr);
    }
    EXPECT_EQ(geometry.primitiveArray(1).data(), nullptr);
    EXPECT_EQ(read("nobody").primitiveArrayCount(), 0u);
    ZObject part = pathTo("cube").node();
    EXPECT_EQ(ZGeometryManager::getGeometry(pathTo("cube"), wanted, &part).primitiveArrayCount(),
              0u);
}

TEST_F(GeometryTest, HandlesShareTheirStreamAndKeepIt) {
    load("scene.obj", kCubeObj);
    wanted.addPosition(4);
    ZGeometryData first = read("cube").position();
    ZGeometryData second = read("cube").position();
    EXPECT_EQ(first.uniqueID(), second.uniqueID());
    first.setCollectionNumber(7);
    EXPECT_EQ(second.collectionNumber(), 7);
    wanted.addPosition(3);
    EXPECT_NE(read("cube").position().uniqueID(), first.uniqueID());
    newScene();
    EXPECT_EQ(values(second)[3], 1); // of a mesh that is in no scene any more
}

TEST_F(GeometryTest, ListFollowsTheScene) {
    load("scene.obj", std::string(kCubeObj) + "o hidden\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 9 10 11\n");
    scene().edit(scene().find("hidden"))->visible = false;
    scene().edit(scene().find("cube"))->local[3][0] = 5;
    std::unique_ptr<ZGeometryList> drawn;
    ZMatrix projection;
    Drawer drawer([&](ZRenderingInfo const &info) {
        drawn = std::make_unique<ZGeometryList>(info);
        projection = info.projectionMatrix();
    });
    ASSERT_TRUE(drawer.registerRenderer());
    ASSERT_TRUE(renderViewport("drawer", 4, 4, ""));
    ASSERT_TRUE(drawn);
    ZGeometryList &list = *drawn;
    EXPECT_EQ(list.ZSetupFlags, ZGeometryList::kMatrices);
    ASSERT_EQ(list.length(), 1);
    EXPECT_TRUE(list.projectionMatrix() == projection);
    EXPECT_TRUE((list.viewMatrix() * pathTo("persp").inclusiveMatrix()).isEquivalent(ZMatrix()));
    EXPECT_EQ(list.objectToWorldMatrix()(3, 0), 5);
    EXPECT_EQ(list.path(), pathTo("cube"));
    ZGeometry &cube = list.geometry();
    const int id = cube.position().uniqueID();
    EXPECT_TRUE(list.addLast(pathTo("hidden")));
    EXPECT_FALSE(list.addLast(ZDagPath()));
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(list.addLast(cube, ZMatrix()));
    EXPECT_EQ(cube.position().uniqueID(), id) << "the reference does not move";
    list.next();
    EXPECT_EQ(list.path(), pathTo("hidden"));
    list.next();
    EXPECT_FALSE(list.path().isValid());
    EXPECT_EQ(list.geometry().position().uniqueID(), id);
    for (const int place : {-1, 102}) {
        list.setCurrentElement(place);
        EXPECT_TRUE(list.isDone());
        list.next();
        EXPECT_EQ(list.geometry().primitiveArrayCount(), 0u);
        EXPECT_TRUE(list.objectToWorldMatrix() == ZMatrix());
    }
    list.reset();
    EXPECT_FALSE(list.isDone());
}

TEST_F(GeometryTest, ShapesAreCountedByShapeAndRequirements) {
    using Manager = ZGeometryManager;
    ZGeometryRequirements others;
    others.addNormal();
    for (const auto shape :
         {Manager::kDefaultSphere, Manager::kDefaultPlane, Manager::kDefaultCube}) {
        ZGeometryList *list = Manager::referenceDefaultGeometry(shape, others);
        ZGeometryRequirements same;
        same.addNormal();
        EXPECT_EQ(Manager::referenceDefaultGeometry(shape, same), list);
        ZGeometryList *other = Manager::referenceDefaultGeometry(shape, wanted);
        EXPECT_NE(other, list);
        EXPECT_EQ(list->length(), 1);
        const ZGeometryData normal = list->geometry().normal();
        EXPECT_TRUE(Manager::dereferenceDefaultGeometry(list));
        EXPECT_EQ(list->geometry().normal().uniqueID(), normal.uniqueID());
        EXPECT_TRUE(Manager::dereferenceDefaultGeometry(list));
        EXPECT_EQ(Manager::dereferenceDefaultGeometry(list).statusCode(),
                  ZStatus::kInvalidParameter);
        const std::vector<double> parts = values(normal);
        for (size_t i = 0; i + 2 < parts.size(); i += 3)
            ASSERT_NEAR(ZVector(parts[i], parts[i + 1], parts[i + 2]).length(), 1, 1e-6) << i;
        delete other; // wrong, and yet the manager must not hand it out again
        EXPECT_EQ(Manager::dereferenceDefaultGeometry(other).statusCode(),
                  ZStatus::kInvalidParameter);
    }
    EXPECT_EQ(Manager::dereferenceDefaultGeometry(nullptr).statusCode(),
              ZStatus::kInvalidParameter);
    EXPECT_EQ(Manager::referenceDefaultGeometry(Manager::GeometricShape(3), wanted), nullptr);
}
