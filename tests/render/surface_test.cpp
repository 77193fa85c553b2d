// SPDX-License-Identifier: MIT
// What surfaces look like without any light: textures, colours of vertices, holes and glow.
#include "host/render/ZRenderUtil.h"
#include "tests/scene_files.h"

#include <cmath>
#include <functional>
#include <tuple>

using namespace devhost;

namespace {

/// What a case may change before the ray is shot: a square from (0, 0, 0) to (1, 1, 0), whose
/// texture coordinates are x and y, and the other way round in the second set, and its unlit white
/// material.
struct Surface {
    Mesh mesh;
    Material material;
    Texture texture; // black on the left, white and clear on the right
};

struct Case {
    const char *asks;
    std::function<void(Surface &)> set;
    float x, y; // where the ray meets it
    ZVector color;
    float z = 0; // where it ends; a red wall stands at -1
};

class SurfaceTest : public SceneTest {
  protected:
    static Surface square() {
        Surface result;
        result.mesh.positions = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
        result.mesh.normals = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
        result.mesh.uvs = {0, 0, 1, 0, 1, 1, 0, 1};
        result.mesh.secondUvs = {0, 0, 0, 1, 1, 1, 1, 0};
        result.mesh.triangles = {0, 1, 2, 0, 2, 3};
        result.material.diffuse = ZVector(1, 1, 1);
        result.material.unlit = true;
        result.texture.pixels =
            std::make_shared<const Pixels>(Pixels{2, 1, {0, 0, 0, 255, 255, 255, 255, 0}});
        return result;
    }
    static void show(Surface surface, double z) {
        const NodeId texture = scene().add("file", "texture", surface.texture);
        for (NodeId *each : {&surface.material.texture, &surface.material.emissionTexture})
            *each = *each == kNoNode ? kNoNode : texture;
        const NodeId material = scene().add("material", "paint", surface.material);
        surface.mesh.materials = {material, material};
        const NodeId id = scene().add("mesh", "square", std::make_shared<const Mesh>(surface.mesh));
        scene().edit(id)->local[3][2] = z;
    }
};

constexpr NodeId kTexture = 0; // any: the node's own is put in its place

TEST_F(SurfaceTest, LooksAsItsMaterialSays) {
    const auto textured = [](Texture::Wrap wrap, bool smooth, double offset) {
        return [=](Surface &s) {
            s.material.texture = kTexture;
            s.material.placement.matrix[2][0] = offset;
            s.texture.wrapU = wrap;
            s.texture.smooth = smooth;
        };
    };
    const auto alpha = [](Material::Alpha mode, double opacity, double cutoff) {
        return [=](Surface &s) {
            s.material.texture = kTexture;
            s.material.alpha = mode;
            s.material.opacity = opacity;
            s.material.alphaCutoff = cutoff;
            s.texture.smooth = false;
        };
    };
    const ZVector black, white(1, 1, 1), grey(0.5, 0.5, 0.5), red(1, 0, 0);
    const Case cases[] = {
        {"its colour, unlit", [](Surface &s) { s.material.diffuse = ZVector(0.5, 0.25, 2); }, 0.5,
         0.5, ZVector(0.5, 0.25, 2)},
        {"colours of vertices",
         [](Surface &s) {
             s.material.diffuse = ZVector(1, 1, 0.5);
             s.mesh.colors = {0, 0, 1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 0, 1, 1, 1};
         },
         0.25, 0.75, ZVector(0.25, 0.75, 0.5)},
        {"repeated", textured(Texture::kRepeated, false, 1), 0.25, 0.5, black},
        {"mirrored", textured(Texture::kMirrored, false, 1), 0.25, 0.5, white},
        {"clamped", textured(Texture::kClamped, false, 1), 0.25, 0.5, white},
        {"repeated before its start", textured(Texture::kRepeated, false, -1), 0.75, 0.5, white},
        {"mirrored before its start", textured(Texture::kMirrored, false, -1), 0.75, 0.5, black},
        {"clamped before its start", textured(Texture::kClamped, false, -1), 0.75, 0.5, black},
        {"smooth, between two pixels", textured(Texture::kClamped, true, 0), 0.5, 0.5, grey},
        {"smooth, over the border", textured(Texture::kRepeated, true, 0), 0.001f, 0.5,
         ZVector(0.498, 0.498, 0.498)},
        {"in squares", textured(Texture::kClamped, false, 0), 0.49f, 0.5, black},
        {"by the second set",
         [](Surface &s) {
             s.material.texture = kTexture;
             s.material.placement.uvSet = 1;
             s.texture.smooth = false;
         },
         0.25, 0.75, white},
        {"turned: u is taken from v",
         [](Surface &s) {
             s.material.texture = kTexture;
             s.material.placement = {0, {{0, 1}, {1, 0}, {0, 0}}};
             s.texture.smooth = false;
         },
         0.25, 0.75, white},
        {"a hole where its alpha is too low", alpha(Material::kMasked, 1, 0.5), 0.75, 0.5, red, -1},
        {"no hole elsewhere", alpha(Material::kMasked, 1, 0.5), 0.25, 0.5, black},
        {"no hole at the very cutoff", alpha(Material::kMasked, 0.5, 0.5), 0.25, 0.5, black},
        {"a hole everywhere, as the factor counts too", alpha(Material::kMasked, 0.4, 0.5), 0.25,
         0.5, red, -1},
        {"see-through by its alpha", alpha(Material::kBlended, 1, 0), 0.75, 0.5, red},
        {"half see-through by its factor", alpha(Material::kBlended, 0.5, 0), 0.25, 0.5,
         ZVector(0.5, 0, 0)},
        {"alpha of vertices",
         [](Surface &s) {
             s.material.alpha = Material::kBlended;
             s.mesh.colors = {0, 1, 0, 0.25, 0, 1, 0, 0.25, 0, 1, 0, 0.25, 0, 1, 0, 0.25};
         },
         0.5, 0.5, ZVector(0.75, 0.25, 0)},
        {"an alpha that is ignored", alpha(Material::kIgnored, 1, 0.5), 0.75, 0.5, white},
        {"a glowing picture",
         [](Surface &s) {
             s.material.unlit = false;
             s.material.emission = ZVector(3, 2, 1);
             s.material.emissionTexture = kTexture;
             s.texture.smooth = false;
         },
         0.75, 0.5, ZVector(3, 2, 1)},
    };
    for (const Case &each : cases) {
        SCOPED_TRACE(each.asks);
        scene().clear();
        Surface surface = square(), wall = square();
        each.set(surface);
        wall.material.diffuse = red;
        show(surface, 0);
        show(wall, -1);
        ZFloatVector point, color;
        ASSERT_TRUE(ZRenderUtil::raytrace({each.x, each.y, 2}, {0, 0, -1}, nullptr, nullptr, 2,
                                          point, color));
        EXPECT_TRUE(near(ZVector(color), each.color));
        EXPECT_TRUE(near(ZVector(point), ZVector(each.x, each.y, each.z)));
    }
}

TEST_F(SurfaceTest, LightFallsThroughItsHoles) {
    // From above, on a floor below the square; the rays start between the two.
    const std::tuple<Material::Alpha, double, float, double> cases[] = {
        {Material::kMasked, 1, 0.75f, 1},
        {Material::kMasked, 1, 0.25f, 0},
        {Material::kBlended, 0.5, 0.25f, 0.5},
        {Material::kIgnored, 1, 0.75f, 0}};
    for (const auto &[alpha, opacity, x, share] : cases) {
        scene().clear();
        Surface surface = square(), floor = square();
        surface.material.texture = kTexture;
        surface.material.alpha = alpha;
        surface.material.opacity = opacity;
        surface.texture.smooth = false;
        floor.material.unlit = false;
        show(surface, 0);
        show(floor, -1);
        Light light; // shines along -z
        light.intensity = std::acos(-1.0);
        scene().add("light", "sun", light);
        ZFloatVector point, color;
        ASSERT_TRUE(
            ZRenderUtil::raytrace({x, 0.5f, -0.5f}, {0, 0, -1}, nullptr, nullptr, 1, point, color));
        EXPECT_NEAR(color.x, share, 1e-5) << alpha << " at " << x;
    }
}

} // namespace
