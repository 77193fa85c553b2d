// Reading of .gltf and .glb files.
#include "tests/scene_files.h"

#include <cmath>

using namespace devhost;

namespace {

// One buffer: four corners of a unit square (48 bytes), the indices 0 1 2 0 2 3 as 16 bits (12
// bytes), four texture coordinates as normalized bytes, two in each 4 bytes (16 bytes).
const std::string kBuffer =
    bytesOf<float>({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}) + bytesOf<uint16_t>({0, 1, 2, 0, 2, 3}) +
    bytesOf<uint8_t>({0, 255, 0, 0, 255, 255, 0, 0, 255, 0, 0, 0, 0, 0, 0, 0});

const std::string kAccessors =
    R"("bufferViews": [{"buffer": 0, "byteLength": 48},
                       {"buffer": 0, "byteOffset": 48, "byteLength": 12},
                       {"buffer": 0, "byteOffset": 60, "byteLength": 16, "byteStride": 4}],
       "accessors": [
         {"bufferView": 0, "componentType": 5126, "count": 4, "type": "VEC3"},
         {"bufferView": 1, "componentType": 5123, "count": 6, "type": "SCALAR"},
         {"bufferView": 2, "componentType": 5121, "normalized": true, "count": 4, "type": "VEC2"}],
       "buffers": [{"byteLength": 76, "uri": "square.bin"}])";

const std::string kSquare = R"("meshes": [{"name": "square", "primitives": [
    {"attributes": {"POSITION": 0, "TEXCOORD_0": 2}, "indices": 1}]}])";

std::string document(const std::string &members, const std::string &accessors = kAccessors) {
    return R"({"asset": {"version": "2.0"}, )" + accessors + ", " + members + "}";
}

/// A binary file with the text and the buffer as its two chunks.
std::string binaryFile(std::string text, const std::string &buffer) {
    text.resize((text.size() + 3) / 4 * 4, ' ');
    const auto word = [](size_t value) { return bytesOf<uint32_t>({uint32_t(value)}); };
    return "glTF" + word(2) + word(28 + text.size() + buffer.size()) + word(text.size()) + "JSON" +
           text + word(buffer.size()) + std::string("BIN\0", 4) + buffer;
}

class GltfTest : public SceneTest {
  protected:
    GltfTest() { write("square.bin", kBuffer); }
};

TEST_F(GltfTest, NodesCarryTheirTransformsDown) {
    const double half = std::sqrt(0.5); // a quarter turn about z
    load("tree.gltf", document(kSquare + R"(, "scene": 0, "scenes": [{"nodes": [0]}], "nodes": [
           {"name": "group", "translation": [10, 0, 0], "scale": [2, 3, 4], "children": [1, 2]},
           {"name": "turned", "rotation": [0, 0, )" +
                               std::to_string(half) + ", " + std::to_string(half) + R"(],
            "scale": [1, 2, 1], "mesh": 0},
           {"name": "placed", "matrix": [1,0,0,0, 0,0,1,0, 0,-1,0,0, 5,6,7,1], "mesh": 0}])"));
    ASSERT_EQ(scene().meshes().size(), 2u);
    const ZVector up(0, 1, 0);
    const ZMatrix turned = scene().worldMatrix(scene().find("turned"));
    // Stretched to (0, 2, 0), turned to (-2, 0, 0), scaled to (-4, 0, 0), moved.
    EXPECT_TRUE(near(transformPoint(up, turned), ZVector(6, 0, 0)));
    // The matrix takes y to z and moves by (5, 6, 7).
    const ZMatrix placed = scene().worldMatrix(scene().find("placed"));
    EXPECT_TRUE(near(transformPoint(up, placed), ZVector(20, 18, 32)));

    EXPECT_EQ(node("turned").mesh(), node("placed").mesh()) << "one mesh, used twice";
    const Mesh &square = *node("turned").mesh();
    EXPECT_EQ(square.triangles, (std::vector<unsigned>{0, 1, 2, 0, 2, 3}));
    // The file's v runs down from the top: (0, 1) there is (0, 0) here.
    EXPECT_EQ(square.uvs, (std::vector<float>{0, 0, 1, 0, 1, 1, 0, 1}));
}

TEST_F(GltfTest, CamerasLightsAndMaterials) {
    load("all.gltf", document(R"(
      "extensionsUsed": ["KHR_lights_punctual"],
      "extensions": {"KHR_lights_punctual": {"lights": [
        {"type": "spot", "color": [1, 0.5, 0.25], "intensity": 8,
         "spot": {"innerConeAngle": 0.1, "outerConeAngle": 0.4}},
        {"type": "directional"}]}},
      "cameras": [
        {"type": "perspective", "perspective": {"yfov": 1.5707963267948966, "aspectRatio": 2,
                                                "znear": 0.5, "zfar": 50}},
        {"type": "orthographic", "orthographic": {"xmag": 3, "ymag": 2, "znear": 1, "zfar": 9}}],
      "materials": [{"name": "paint", "emissiveFactor": [0, 0, 0.5], "alphaMode": "BLEND",
        "pbrMetallicRoughness": {"baseColorFactor": [0.5, 0.25, 1, 0.75], "metallicFactor": 0,
                                 "roughnessFactor": 1}}],
      "meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1, "material": 0}]}],
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

    const Material &paint = *node("paint").material();
    EXPECT_TRUE(near(paint.diffuse, ZVector(0.5, 0.25, 1)));
    EXPECT_TRUE(near(paint.emission, ZVector(0, 0, 0.5)));
    EXPECT_TRUE(near(paint.reflectivity, ZVector(0, 0, 0))) << "fully rough";
    EXPECT_EQ(paint.opacity, 0.75);
}

TEST_F(GltfTest, BinaryFilesStripsAndFans) {
    const std::string inFile = kAccessors.substr(0, kAccessors.rfind(", \"uri\"")) + "}]";
    load("strip.glb", binaryFile(document(R"("nodes": [{"mesh": 0}], "meshes": [{"primitives": [
           {"attributes": {"POSITION": 0}, "mode": 5},
           {"attributes": {"POSITION": 0}, "mode": 6}]}])",
                                          inFile),
                                 kBuffer));
    const Mesh &mesh = *scene().node(scene().meshes().at(0))->mesh();
    const ZVector corners[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    // Strip: 0 1 2 and 1 3 2; fan: 0 1 2 and 0 2 3.
    const int wanted[] = {0, 1, 2, 1, 3, 2, 0, 1, 2, 0, 2, 3};
    ASSERT_EQ(mesh.triangles.size(), std::size(wanted));
    for (size_t at = 0; at < std::size(wanted); ++at)
        EXPECT_TRUE(near(vertex(mesh.positions, mesh.triangles[at]), corners[wanted[at]])) << at;
}

std::string replaced(std::string text, const std::string &from, const std::string &to) {
    const size_t at = text.find(from);
    if (at == std::string::npos)
        throw std::logic_error("nothing to replace: " + from);
    return text.replace(at, from.size(), to);
}

TEST_F(GltfTest, BadDocumentsAreRefusedInOneLine) {
    const std::string node = R"(, "nodes": [{"mesh": 0}])";
    const std::string good = document(kSquare + node);
    const std::string binary = binaryFile(good, kBuffer);
    load("good.gltf", good);
    EXPECT_EQ(scene().meshes().size(), 1u);
    const std::pair<const char *, std::string> cases[] = {
        {"MissingBuffer", replaced(good, "square.bin", "missing.bin")},
        {"MeshIndex", replaced(good, R"("mesh": 0)", R"("mesh": 7)")},
        {"PositionsPastEnd", replaced(good, R"("count": 4)", R"("count": 400)")},
        {"HugeCount", replaced(good, R"("count": 4)", R"("count": 6148914691236517206)")},
        {"IndexOutOfRange", replaced(good, R"("indices": 1)", R"("indices": 2)")},
        {"VertexOutOfRange", replaced(good, R"("componentType": 5126, "count": 4)",
                                      R"("componentType": 5126, "count": 3)")},
        {"Cycle", document(kSquare + R"(, "nodes": [{"mesh": 0, "children": [1]},
                                                    {"children": [0]}],
                                        "scenes": [{"nodes": [0]}])")},
        {"LightIndex", document(kSquare + R"(, "nodes": [{"mesh": 0, "extensions":
                                {"KHR_lights_punctual": {"light": 1}}}])")},
        {"NeedsExtension", document(kSquare + node + R"(, "extensionsRequired": ["X_packed"])")},
        {"TruncatedBinary", binary.substr(0, binary.size() / 2)},
    };
    for (const auto &[what, contents] : cases) {
        SCOPED_TRACE(what);
        newScene();
        const std::string name = contents.rfind("glTF", 0) == 0 ? "bad.glb" : "bad.gltf";
        const ZStatus status = loadScene(write(name, contents));
        EXPECT_EQ(status.statusCode(), ZStatus::kFailure);
        const std::string text = status.errorString().asChar();
        EXPECT_NE(text.find(name + ": "), std::string::npos) << text;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
        EXPECT_TRUE(scene().meshes().empty());
    }
}

TEST_F(GltfTest, DamagedImagesLeaveTheirTexturesEmpty) {
    const std::string png = "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAAAADElEQVR4nGNgZGIG"
                            "AAAOAAfXb+R4AAAAAElFTkSuQmCC";
    write("cut.jpg", "\xff\xd8\xff\xdb");
    load("images.gltf", document(kSquare + R"(, "nodes": [{"mesh": 0}],
           "images": [{"name": "whole", "uri": "data:image/png;base64,)" +
                                 png + R"("},
                      {"name": "half", "uri": "data:image/png;base64,)" +
                                 png.substr(0, 64) + R"("},
                      {"name": "cut", "uri": "cut.jpg"}],
           "textures": [{"source": 0}, {"source": 1}, {"source": 2}], "materials": [
           {"pbrMetallicRoughness": {"baseColorTexture": {"index": 0}}},
           {"pbrMetallicRoughness": {"baseColorTexture": {"index": 1}}},
           {"pbrMetallicRoughness": {"baseColorTexture": {"index": 2}}}])"));
    EXPECT_EQ(node("whole").texture()->pixels->rgba, (std::vector<unsigned char>{1, 2, 3, 255}));
    EXPECT_EQ(node("half").texture()->pixels, nullptr);
    EXPECT_EQ(node("cut").texture()->pixels, nullptr);
}

} // namespace
