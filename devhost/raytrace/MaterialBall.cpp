// SPDX-License-Identifier: MIT
// A ball of a material in a small studio of its own: on a chequered floor, under two lamps, inside
// a faintly glowing dome that gives mirrors something to show.
#include "devhost/raytrace/MaterialBall.h"

#include "devhost/geometry/DefaultShapes.h"
#include "devhost/image/Srgb.h"
#include "devhost/image/TextureImage.h"
#include "devhost/raytrace/RayTracer.h"
#include "devhost/raytrace/Shading.h"
#include "devhost/raytrace/ViewFrame.h"
#include "devhost/session/Parallel.h"
#include "host/render/ZSwatchRenderBase.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <numbers>
#include <utility>
#include <vector>

namespace devhost {

namespace {

constexpr int kReflectionDepth = 4;
constexpr int kHighestQuality = 3;

/// A level square below the ball; one square of the chequer is half a ball wide.
Mesh makeFloor() {
    constexpr float kHalf = 12;
    Mesh mesh;
    for (const auto &[x, z] : {std::pair(-1.0f, 1.0f), {1, 1}, {1, -1}, {-1, -1}}) {
        for (float value : {x * kHalf, -1.0f, z * kHalf})
            mesh.positions.push_back(value);
        for (float value : {0.0f, 1.0f, 0.0f})
            mesh.normals.push_back(value);
        for (float value : {x * kHalf / 2, z * kHalf / 2})
            mesh.uvs.push_back(value);
    }
    mesh.triangles = {0, 1, 2, 0, 2, 3};
    return mesh;
}

Texture makeChequer() {
    constexpr unsigned kSize = 64; // so fine that the blur between its pixels does not show
    auto pixels = std::make_shared<Pixels>();
    pixels->width = pixels->height = kSize;
    for (unsigned y = 0; y < kSize; ++y) {
        for (unsigned x = 0; x < kSize; ++x) {
            const unsigned char grey = (x < kSize / 2) == (y < kSize / 2) ? 70 : 150;
            pixels->rgba.insert(pixels->rgba.end(), {grey, grey, grey, 255});
        }
    }
    return {"", pixels};
}

void addMesh(Scene &studio, const char *name, Mesh mesh, const Material &material,
             double size = 1) {
    mesh.materials.assign(mesh.triangleCount(), studio.add("material", name, material));
    const NodeId id = studio.add("mesh", name, std::make_shared<const Mesh>(std::move(mesh)));
    // Turned half round, so that the seam of a ball's texture is at the back.
    const double diagonal[] = {-size, size, -size};
    for (unsigned axis = 0; axis < 3; ++axis)
        studio.edit(id)->local(axis, axis) = diagonal[axis];
}

/// A light that gives a white surface the colour where it squarely faces it.
void addLamp(Scene &studio, const char *name, Light::Kind kind, const ZVector &place,
             const ZVector &color) {
    Light light;
    light.kind = kind;
    light.color = color;
    light.intensity = std::numbers::pi;
    ZMatrix matrix;
    for (unsigned axis = 0; axis < 3; ++axis)
        matrix(3, axis) = place[axis];
    studio.edit(studio.add("light", name, light))->local = matrix;
}

/// The texture as a node of the studio; none when it cannot be read, as in renders of the scene.
NodeId copyTexture(Scene &studio, NodeId from) {
    std::shared_ptr<const Pixels> pixels;
    if (!scene().node(from) || !texturePixels(from, pixels))
        return kNoNode;
    Texture texture = *scene().node(from)->texture();
    texture.fileName.clear();
    texture.pixels = pixels;
    return studio.add("file", "texture", texture);
}

/// What the ball is made of; false for nodes that are neither material nor texture.
bool copyMaterial(Scene &studio, NodeId from, Material &material) {
    const Node *node = scene().node(from);
    if (node && node->material()) {
        material = *node->material();
        material.texture = copyTexture(studio, material.texture);
        material.emissionTexture = copyTexture(studio, material.emissionTexture);
        return true;
    }
    material.diffuse = ZVector(1, 1, 1);
    material.texture = copyTexture(studio, from);
    return node && node->texture();
}

/// Furnishes the studio with a ball of what the node stands for; false for nodes that are neither
/// material nor texture.
bool furnish(Scene &studio, NodeId node) {
    Material ball, floor, dome;
    if (!copyMaterial(studio, node, ball))
        return false;
    floor.diffuse = ZVector(1, 1, 1);
    floor.texture = studio.add("file", "chequer", makeChequer());
    dome.diffuse = ZVector(0, 0, 0);
    dome.emission = ZVector(0.13, 0.15, 0.18);
    addMesh(studio, "ball", makeSphere(128, 64), ball);
    addMesh(studio, "floor", makeFloor(), floor);
    addMesh(studio, "dome", makeSphere(32, 16), dome, 40);
    addLamp(studio, "key", Light::kPoint, ZVector(-4, 6, 7), ZVector(0.95, 0.93, 0.9));
    addLamp(studio, "fill", Light::kPoint, ZVector(7, 3, 3), ZVector(0.14, 0.16, 0.19));
    addLamp(studio, "dome light", Light::kAmbient, ZVector(), ZVector(0.06, 0.065, 0.07));
    return true;
}

ViewRays makeView() {
    const ZVector eye(0, 1.5, 6), target(0, -0.02, 0);
    const double halfSize = 0.2; // at depth 1: the ball fills about four fifths of the picture
    return {ViewFrame(eye, target - eye, ZVector(0, 1, 0)), true, halfSize, halfSize};
}

class MaterialBall : public ZSwatchRenderBase {
  public:
    MaterialBall(ZObject swatchNode, ZObject node, int resolution, Scene &&studio);
    bool doIteration() override;
    bool renderParallel() override;
    void cancelParallelRendering() override { cancelled_ = true; }

  private:
    /// Samples for each side of a pixel, by the quality.
    int side() const { return std::clamp(renderQuality(), 0, kHighestQuality) + 1; }
    bool isFinished() const { return samples_ >= side() * side(); }
    /// Makes sure of the picture, which whoever looks at it may also change between two steps.
    bool hasPicture();
    /// Adds one sample to some of the pixels.
    void sample(size_t begin, size_t end);

    Scene studio_;
    RayTracer tracer_;
    Shader shader_;
    ViewRays rays_ = makeView();
    std::vector<ZFloatVector> sums_; // of each pixel's samples so far
    int samples_ = 0;                // that every pixel has
    std::atomic<bool> cancelled_ = false;
};

MaterialBall::MaterialBall(ZObject swatchNode, ZObject node, int resolution, Scene &&studio)
    : ZSwatchRenderBase(swatchNode, node, resolution), studio_(std::move(studio)), tracer_(studio_),
      shader_(studio_, tracer_) {
    if (hasPicture())
        sums_.resize(size_t(resolution) * size_t(resolution));
}

bool MaterialBall::hasPicture() {
    const unsigned size = unsigned(resolution());
    unsigned width, height;
    image().getSize(width, height);
    return (width == size && height == size && image().channels() == 4 && image().pixels()) ||
           image().create(size, size);
}

void MaterialBall::sample(size_t begin, size_t end) {
    const size_t size = size_t(resolution());
    const int place = samples_ % side(), row = samples_ / side();
    const double right = (place + 0.5) / side(), up = (row + 0.5) / side();
    for (size_t i = begin; i < end; ++i) {
        const size_t column = i % size, line = i / size;
        const double x = (double(column) + right) * 2 / double(size) - 1;
        const double y = (double(line) + up) * 2 / double(size) - 1;
        sums_[i] +=
            shader_.trace(rays_.origin(x, y), rays_.direction(x, y), kReflectionDepth).color;
        const ZFloatVector color = sums_[i] / float(samples_ + 1);
        unsigned char *pixel = image().pixels() + 4 * i;
        for (unsigned channel = 0; channel < 3; ++channel)
            pixel[channel] = srgbByte(color[channel]);
        pixel[3] = 255;
    }
}

bool MaterialBall::doIteration() {
    if (!hasPicture())
        return true; // there is nothing that could be done
    if (!isFinished()) {
        sample(0, sums_.size());
        ++samples_;
    }
    return isFinished();
}

bool MaterialBall::renderParallel() {
    if (!hasPicture())
        return true;
    for (; !isFinished(); ++samples_) {
        if (cancelled_.exchange(false)) // it may have come before the start
            return false;
        forBlocks(sums_.size(), 256, [this](size_t begin, size_t end) { sample(begin, end); });
    }
    return true;
}

} // namespace

ZSwatchRenderBase *createMaterialBall(ZObject swatchNode, ZObject node, int resolution) {
    Scene studio;
    if (!furnish(studio, scene().id(node)))
        return nullptr;
    return new MaterialBall(swatchNode, node, resolution, std::move(studio));
}

} // namespace devhost
