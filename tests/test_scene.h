// SPDX-License-Identifier: MIT
#pragma once

// A small scene whose picture can be worked out by hand.

#include "devhost/scene/SceneGraph.h"
#include "devhost/session/RenderSession.h"

#include <gtest/gtest.h>

namespace apptest {

/// A square of half size 2 in the plane z = -1, seen by a camera at (0, 0, 4) that looks down -z:
/// the square is 5 units away. Starts a fresh session of the given size.
class SquareScene : public ::testing::Test {
  protected:
    void SetUp() override { build(64, 48, false); }
    void TearDown() override {
        devhost::scene().clear();
        session().progress = nullptr;
        session().onCallbackError = nullptr;
        session().callbackErrors = 0;
        session().cancelled = false;
        session().outputFile.clear();
        session().settings = ZCommonRenderSettingsData();
        session().region.reset();
        session().samples = 4;
        session().exposure = 0;
        session().exrFloats = false;
        session().frame = 1;
    }

    static devhost::RenderSession &session() { return devhost::renderSession(); }

    static void build(unsigned width, unsigned height, bool orthographic) {
        using namespace devhost;
        scene().clear();
        auto mesh = std::make_shared<Mesh>();
        mesh->positions = {-2, -2, -1, 2, -2, -1, 2, 2, -1, -2, 2, -1};
        mesh->normals = {0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1};
        mesh->triangles = {0, 1, 2, 0, 2, 3};
        mesh->materials = {kNoNode, kNoNode};
        scene().add("mesh", "square", std::shared_ptr<const Mesh>(mesh));
        Camera camera;
        camera.verticalFieldOfView = 90;
        camera.horizontalFieldOfView = 90;
        camera.filmAspect = 1;
        camera.orthographic = orthographic;
        camera.orthographicWidth = 8;
        const NodeId id = scene().add("camera", "cam", camera);
        place(id, 0, 0, 4);
        session().camera = scene().object(id);
        session().settings.width = width;
        session().settings.height = height;
    }

    /// Makes the square shine by itself, and only so.
    static void glow(const ZVector &color, double opacity = 1) {
        using namespace devhost;
        Material material;
        material.diffuse = ZVector();
        material.emission = color;
        material.opacity = opacity;
        paint(material);
    }
    static void paint(const devhost::Material &material) {
        using namespace devhost;
        auto &held =
            std::get<std::shared_ptr<const Mesh>>(scene().edit(scene().find("square"))->payload);
        Mesh mesh = *held;
        mesh.materials.assign(2, scene().add("material", "paint", material));
        held = std::make_shared<const Mesh>(std::move(mesh));
    }

    static devhost::NodeId addLight(devhost::Light::Kind kind, double x, double y, double z) {
        devhost::Light light;
        light.kind = kind;
        const devhost::NodeId id = devhost::scene().add("light", "lamp", light);
        place(id, x, y, z);
        return id;
    }

    static void place(devhost::NodeId id, double x, double y, double z) {
        ZMatrix &matrix = devhost::scene().edit(id)->local;
        matrix(3, 0) = x;
        matrix(3, 1) = y;
        matrix(3, 2) = z;
    }
};

} // namespace apptest
