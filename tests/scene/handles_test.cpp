// SPDX-License-Identifier: MIT
// Handles, paths, plugs and selection lists.
#include "host/core/ZDagPath.h"
#include "host/core/ZFileIO.h"
#include "host/core/ZPlug.h"
#include "host/core/ZSelectionList.h"
#include "host/core/ZStringArray.h"
#include "tests/scene_files.h"

using namespace devhost;

namespace {

/// |a|shape and |b|c|shape, and a material.
class HandlesTest : public SceneTest {
  protected:
    HandlesTest() {
        a = scene().add("transform", "a");
        aShape = scene().add("mesh", "shape", std::make_shared<const Mesh>(), a);
        b = scene().add("transform", "b");
        c = scene().add("transform", "c", {}, b);
        bShape = scene().add("mesh", "shape", std::make_shared<const Mesh>(), c);
        paint = scene().add("material", "paint", Material());
        scene().edit(b)->local[3][0] = 5;
        scene().edit(c)->local[0][0] = 2;
        scene().edit(bShape)->local[3][0] = 1;
    }
    ZDagPath path(NodeId id) const {
        ZDagPath result;
        EXPECT_TRUE(ZDagPath::getAPathTo(scene().object(id), result));
        return result;
    }
    NodeId a, aShape, b, c, bShape, paint;
};

TEST_F(HandlesTest, ObjectsReadAsNullOnceTheirNodeIsGone) {
    const ZObject below = scene().object(bShape), other = object("a");
    scene().remove(b);
    EXPECT_TRUE(below.isNull()) << "what lies below goes too";
    EXPECT_FALSE(other.isNull());
    // The ids of a new scene start over; old handles must not fit its nodes.
    ASSERT_TRUE(ZFileIO::newScene());
    for (NodeId id : scene().nodes())
        EXPECT_TRUE(other != scene().object(id));
    EXPECT_TRUE(other.isNull());
}

TEST_F(HandlesTest, PathsNameAndMove) {
    ZDagPath at = path(bShape);
    EXPECT_STREQ(at.fullPathName().asChar(), "|b|c|shape");
    EXPECT_STREQ(at.partialPathName().asChar(), "c|shape");
    // Row vectors: own matrix first. x = 0 moves to 1, doubles to 2, moves to 7.
    EXPECT_TRUE(near(transformPoint(ZVector(), at.inclusiveMatrix()), ZVector(7, 0, 0)));
    EXPECT_TRUE(near(transformPoint(ZVector(), at.exclusiveMatrix()), ZVector(5, 0, 0)));

    EXPECT_EQ(at.pop(3).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(at.length(), 3u) << "unchanged";
    ASSERT_TRUE(at.pop(2));
    EXPECT_TRUE(at == path(b));
    EXPECT_EQ(at.push(scene().object(bShape)).statusCode(), ZStatus::kInvalidParameter);
    ASSERT_TRUE(at.push(at.child(0)));
    EXPECT_TRUE(at == path(c));
    EXPECT_EQ(ZDagPath::getAPathTo(object("paint"), at).statusCode(), ZStatus::kInvalidParameter);
}

TEST_F(HandlesTest, PlugsReadAndWriteWhatNodesHold) {
    ZPlug plug(object("headlight"), "intensity");
    const unsigned long revision = scene().revision();
    EXPECT_TRUE(plug.setDouble(2.5));
    EXPECT_NE(scene().revision(), revision) << "renderers must notice";
    EXPECT_EQ(node("headlight").light()->intensity, 2.5);
    EXPECT_EQ(plug.asInt(), 2);
    EXPECT_EQ(plug.setString("bright").statusCode(), ZStatus::kFailure);
    EXPECT_EQ(plug.asDouble(), 2.5) << "unchanged";

    EXPECT_TRUE(ZPlug(object("paint"), "diffuse").setVector(ZVector(1, 2, 3)));
    EXPECT_TRUE(near(node("paint").material()->diffuse, ZVector(1, 2, 3)));
    EXPECT_TRUE(ZPlug(object("c"), "worldMatrix").asMatrix() == path(c).inclusiveMatrix());
    EXPECT_FALSE(ZPlug(object("c"), "worldMatrix").setMatrix(ZMatrix()));
    ZStatus status;
    EXPECT_TRUE(ZPlug(object("paint"), "missing", &status).isNull());
    EXPECT_EQ(status.statusCode(), ZStatus::kNotFound);
    newScene();
    EXPECT_TRUE(plug.isNull());
    EXPECT_EQ(plug.setDouble(1).statusCode(), ZStatus::kFailure);
}

TEST_F(HandlesTest, SelectionListsHoldEachNodeOnce) {
    ZSelectionList list;
    EXPECT_TRUE(list.add(ZString("paint")));
    EXPECT_TRUE(list.add(ZString("c|shape")));
    EXPECT_TRUE(list.add(path(bShape)));
    EXPECT_TRUE(list.add(ZString("|a|shape.visibility")));
    ASSERT_EQ(list.length(), 3u);

    ZPlug plug;
    EXPECT_TRUE(list.getPlug(2, plug));
    EXPECT_TRUE(plug.node() == scene().object(aShape));
    EXPECT_TRUE(list.hasItem(object("paint")));
    EXPECT_FALSE(list.hasItem(scene().object(aShape))) << "only its plug";
    ZDagPath found;
    EXPECT_TRUE(list.getDagPath(1, found));
    EXPECT_TRUE(found == path(bShape));
    EXPECT_EQ(list.getDagPath(0, found).statusCode(), ZStatus::kInvalidParameter);
    EXPECT_EQ(list.add(ZObject()).statusCode(), ZStatus::kInvalidParameter);
    ASSERT_EQ(list.length(), 3u);

    scene().remove(b);
    ZStringArray names;
    EXPECT_TRUE(list.getSelectionStrings(names));
    ASSERT_EQ(names.length(), 2u);
    EXPECT_STREQ(names[1].asChar(), "shape.visibility");
}

TEST_F(HandlesTest, NamesAreUniqueAmongSiblingsAndFound) {
    const NodeId second = scene().add("transform", "a");
    const NodeId odd = scene().add("transform", "left|right");
    EXPECT_EQ(scene().node(second)->name, "a1");
    EXPECT_EQ(scene().node(odd)->name, "left_right") << "the bar separates names of a path";
    EXPECT_EQ(scene().find("shape"), aShape) << "the first that was added";
    EXPECT_EQ(scene().find("|b|c|shape"), bShape);
    EXPECT_EQ(scene().find("|c|shape"), kNoNode) << "no whole path";
}

} // namespace
