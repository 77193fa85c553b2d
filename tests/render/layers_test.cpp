// SPDX-License-Identifier: MIT
// Layers, adjustments and light links from the file beside a scene, and what rays see of them.
#include "devhost/raytrace/Shading.h"
#include "devhost/raytrace/ShadowMaps.h"
#include "devhost/session/RenderSession.h"
#include "host/core/ZPlug.h"
#include "host/core/ZSelectionList.h"
#include "host/core/ZStringArray.h"
#include "host/render/ZFnRenderLayer.h"
#include "host/render/ZLightLinks.h"
#include "host/render/ZRenderUtil.h"
#include "tests/scene_files.h"

#include <numbers>
#include <sstream>

using namespace devhost;

namespace {

/// A floor at y = 0, and a small square one unit above its middle, under the default light turned
/// to shine straight down.
constexpr const char *kFloorAndRoof = "v -9 0 9\nv 9 0 9\nv 9 0 -9\nv -9 0 -9\n"
                                      "v -1 1 1\nv 1 1 1\nv 1 1 -1\nv -1 1 -1\n"
                                      "o floor\nf 1 2 3 4\no roof\nf 5 6 7 8\n";

class LayersTest : public SceneTest {
  protected:
    ZStatus open(const std::string &layers) {
        write("room.layers.json", layers);
        return loadScene(write("room.obj", kFloorAndRoof));
    }
    static void choose(const char *layer) {
        ASSERT_TRUE(scene().setCurrentLayer(scene().find(layer)));
    }
    static void lightFromAbove() {
        scene().remove(scene().find("fillLight"));
        scene().remove(scene().find("rimLight"));
        Node &light = *scene().edit(scene().find("headlight"));
        std::get<Light>(light.payload).intensity = std::numbers::pi;
        light.parent = kNoNode;
        light.local = ZMatrix();
        light.local(1, 1) = light.local(2, 2) = 0;
        light.local(1, 2) = -1; // its Z axis, which it shines against, is the world's Y axis
        light.local(2, 1) = 1;
    }
    /// What a ray down at x sees: the red part of the colour, and at which height.
    static std::pair<float, float> look(float x, float fromHeight) {
        ZFloatVector point, color;
        EXPECT_TRUE(ZRenderUtil::raytrace(ZFloatVector(x, fromHeight, 0), ZFloatVector(0, -1, 0),
                                          nullptr, nullptr, 0, point, color));
        return {color.x, point.y};
    }
    static std::string names(const ZSelectionList &list) {
        ZStringArray all;
        list.getSelectionStrings(all);
        std::string result;
        for (unsigned at = 0; at < all.length(); ++at)
            result += std::string(all[at].asChar()) + " ";
        return result;
    }
};

} // namespace

TEST(FreshProcess, HasTheDefaultLayerBeforeAnySceneIsMade) {
    testing::FLAGS_gtest_death_test_style = "threadsafe"; // in a process of its own
    EXPECT_EXIT(std::exit(ZFnRenderLayer::defaultRenderLayer().isNull()),
                testing::ExitedWithCode(0), "");
}

TEST_F(LayersTest, RaysSeeTheCurrentLayerOnly) {
    ASSERT_TRUE(open(R"({"layers": [{"name": "low", "members": ["floor"]},
                        {"name": "high", "members": ["roof"]}]})"));
    EXPECT_FLOAT_EQ(look(0, 5).second, 1);
    choose("low");
    EXPECT_FLOAT_EQ(look(0, 5).second, 0);
    EXPECT_GT(look(0, 5).first, 0) << "the default light is in every layer";
    ZSelectionList drawn;
    EXPECT_TRUE(ZRenderUtil::renderObjectItem(nullptr, drawn));
    EXPECT_EQ(names(drawn), "|floor ");
    scene().edit(scene().find("floor"))->visible = false;
    for (const auto &[name, isIn] :
         {std::pair("roof", false), {"floor", true}, {"headlight", true}}) {
        EXPECT_EQ(ZRenderUtil::inCurrentRenderLayer(path(name)), isIn) << name;
        EXPECT_EQ(ZFnRenderLayer().inCurrentRenderLayer(path(name)), isIn) << name;
    }
}

TEST_F(LayersTest, AHiddenGroupHidesWhatItHolds) {
    ASSERT_TRUE(open("{}"));
    scene().edit(scene().find("roof"))->parent = scene().find("floor");
    ZSelectionList drawn;
    EXPECT_TRUE(ZRenderUtil::renderObjectItem(nullptr, drawn));
    EXPECT_EQ(names(drawn), "|floor |floor|roof ");
    scene().edit(scene().find("floor"))->visible = false;
    EXPECT_EQ(ZRenderUtil::renderObjectItem(nullptr, drawn), ZStatus::kNotFound);
    EXPECT_EQ(look(0, 5), std::pair(0.0f, 0.0f)) << "nothing at all";
}

TEST_F(LayersTest, MembersOfChildLayersBelongToTheParent) {
    ASSERT_TRUE(open(R"({"layers": [{"name": "all", "members": ["floor"]},
                        {"name": "part", "parent": "all", "members": ["roof"]},
                        {"name": "piece", "parent": "part"}]})"));
    ZObject top = object("all"), below = object("part");
    ZFnRenderLayer all(top), part(below);
    EXPECT_TRUE(all.inLayer(object("roof")));
    EXPECT_FALSE(part.inLayer(object("floor")));
    ZObjectArray found;
    for (const bool deep : {false, true}) {
        EXPECT_TRUE(all.layerChildren(found, deep));
        EXPECT_EQ(found.length(), deep ? 2u : 1u);
    }
}

TEST_F(LayersTest, AdjustmentsComeAndGoWithTheirLayer) {
    ASSERT_TRUE(open(R"({"layers": [{"name": "dim", "members": ["floor"],
                         "adjustments": {"headlight.intensity": 0.25, "roof.visibility": 0}}]})"));
    ZObject layer = object("dim");
    ZFnRenderLayer dim(layer);
    ZPlug intensity(object("headlight"), "intensity");
    EXPECT_NE(intensity.asDouble(), 0.25) << "another layer is current";
    EXPECT_TRUE(ZPlug(object("roof"), "visibility").asBool());
    EXPECT_TRUE(intensity.setDouble(1));
    EXPECT_TRUE(dim.isPlugAdjusted(intensity));
    ZPlug adjusted = dim.adjustmentPlug(intensity);
    EXPECT_EQ(adjusted.asDouble(), 0.25);

    choose("dim");
    EXPECT_EQ(intensity.asDouble(), 0.25);
    EXPECT_FALSE(ZPlug(object("roof"), "visibility").asBool());
    EXPECT_TRUE(adjusted.setDouble(0.5));
    EXPECT_EQ(intensity.asDouble(), 0.5) << "the layer's plug is the scene's as long as it shows";
    choose("defaultRenderLayer");
    EXPECT_EQ(intensity.asDouble(), 1);
    EXPECT_TRUE(adjusted.setDouble(0.125));
    EXPECT_EQ(intensity.asDouble(), 1);
}

TEST_F(LayersTest, LightsAndShadowsFollowTheLinks) {
    struct {
        const char *links;
        bool floorLit, roofLit, shadow;
    } const cases[] = {
        {"", true, true, true},
        {R"(, "illuminates": {"except": ["floor"]})", false, true, true},
        {R"(, "illuminates": {"only": ["floor"]})", true, false, true},
        {R"(, "shadows": {"except": ["roof"]})", true, true, false},
        {R"(, "shadows": {"only": []})", true, true, false},
    };
    for (const auto &[links, floorLit, roofLit, shadow] : cases) {
        ASSERT_TRUE(open(std::string(R"({"lightLinks": [{"light": "headlight")") + links + "}]}"));
        lightFromAbove();
        EXPECT_FLOAT_EQ(look(5, 5).first, floorLit ? 0.5f : 0) << links;
        EXPECT_FLOAT_EQ(look(0, 5).first, roofLit ? 0.5f : 0) << links;
        EXPECT_FLOAT_EQ(look(0, 0.5f).first, floorLit && !shadow ? 0.5f : 0) << links;
        // The middle of the map that callbacks get shows what casts the shadow.
        const auto maps = makeShadowMaps(worldLights(scene()).at(0), scene(), rayTracer());
        const float toRoof = maps.depths.at(kShadowMapSize / 2 * (kShadowMapSize + 1));
        const float toFloor =
            maps.depths.at(kShadowMapSize / 2 * kShadowMapSize + kShadowMapSize / 4);
        EXPECT_EQ(toRoof < toFloor - 0.5f, shadow) << links;
    }
}

TEST_F(LayersTest, LinksAreThoseOfWhatIsAskedFor) {
    ASSERT_TRUE(open(R"({"layers": [{"name": "low", "members": ["floor"]}],
             "lightLinks": [{"light": "headlight", "illuminates": {"except": ["roof"]}}]})"));
    scene().remove(scene().find("fillLight"));
    scene().remove(scene().find("rimLight"));
    ZLightLinks links;
    const auto print = [&](const ZObject &object, bool hiddenToo = false) {
        std::ostringstream text;
        EXPECT_TRUE(links.parseLinks(object, true, &text, hiddenToo));
        return text.str();
    };
    const std::string light = scene().path(scene().find("headlight"));
    const std::string floor = light + " illuminates |floor, which casts shadows\n";
    const std::string roof = light + " ignores |roof, which casts shadows\n";
    EXPECT_EQ(print(ZObject()), floor + roof);
    EXPECT_EQ(print(object("roof")), roof);
    EXPECT_EQ(print(object("low")), floor);
    scene().edit(scene().find("roof"))->visible = false;
    EXPECT_EQ(print(ZObject()), floor);
    EXPECT_EQ(print(ZObject(), true), floor + roof);
}
