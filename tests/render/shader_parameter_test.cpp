// SPDX-License-Identifier: MIT
// Shader parameters: where uniform values come from, and how vertex values are laid out.
#include "devhost/scene/SceneGraph.h"
#include "devhost/session/RenderSession.h"
#include "host/core/ZDagPath.h"
#include "host/core/ZPlug.h"
#include "host/core/ZStatus.h"
#include "host/render/ZDrawContext.h"
#include "host/render/ZGeometry.h"
#include "host/render/ZGeometryManager.h"
#include "host/render/ZGeometryRequirements.h"
#include "host/render/ZUniformParameter.h"
#include "host/render/ZVaryingParameter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

using Uniform = ZUniformParameter;
using Varying = ZVaryingParameter;
using devhost::scene;

namespace {

ZMatrix matrix(std::initializer_list<double> values) {
    ZMatrix result;
    std::copy(values.begin(), values.end(), result.matrix[0]);
    return result;
}

const ZMatrix world = matrix({2, 1, 0, 0, 0, 3, 0, 0, 1, 0, 1, 0, 5, -4, 7, 1});
const ZMatrix view = matrix({0, 1, 0, 0, -1, 0, 2, 0, 0, 0, 1, 0, 1, 2, 3, 1});
const ZMatrix projection = matrix({1, 0, 0, 0, 0, 2, 0, 0, 0, 0, -1, -1, 0, 0, -0.5, 0});
const ZHWRender::ZDrawContext context(world, view, projection, 320, 200);

ZMatrix value(int semantic) {
    const Uniform parameter("m", Uniform::kTypeFloat, Uniform::DataSemantic(semantic), 4, 4);
    const float *floats = parameter.getAsFloatArray(context);
    ZMatrix result;
    std::copy_n(floats, 16, result.matrix[0]);
    return result;
}

class ShaderParameters : public ::testing::Test {
  protected:
    void SetUp() override {
        scene().clear();
        auto mesh = std::make_shared<devhost::Mesh>();
        mesh->positions = {0, 0, 0, 4, 0, 0, 4, 0.5f, -2};
        mesh->normals = {0, 0, 1, 0, 0, 1, 0, 0, 1};
        mesh->uvs = {0, 0.25f, 1, 0, 0.5f, 1};
        mesh->triangles = {0, 1, 2};
        mesh->materials = {devhost::kNoNode};
        const auto shape =
            scene().add("mesh", "shape", std::shared_ptr<const devhost::Mesh>(std::move(mesh)));
        ZDagPath::getAPathTo(scene().object(shape), path_);
        requirements_.addPosition();
        requirements_.addNormal();
        requirements_.addTexCoord("");
    }
    void TearDown() override { scene().clear(); }

    ZDagPath path_;
    ZGeometryRequirements requirements_;
};

} // namespace

TEST(UniformShape, IsKeptOrRefusedAloud) {
    const struct {
        unsigned rows, columns, elements;
        const char *told;
    } cases[] = {
        {70000, 3, 210000, ""},
        {1, 1 << 24, 1 << 24, ""},
        {0, 3, 1, "quilhost: the uniform parameter 'big' cannot have 0 x 3 values: it has one\n"},
        {~0u, ~0u, 1,
         "quilhost: the uniform parameter 'big' cannot have 4294967295 x 4294967295 "
         "values: it has one\n"},
    };
    for (const auto &each : cases) {
        testing::internal::CaptureStderr();
        const Uniform parameter("big", Uniform::kTypeFloat, Uniform::kSemanticUnknown, each.rows,
                                each.columns);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), each.told);
        EXPECT_EQ(parameter.numElements(), each.elements);
        EXPECT_EQ(parameter.numRows(), each.elements == 1 ? 1 : each.rows);
    }
}

TEST_F(ShaderParameters, MatricesComeFromWhatIsDrawn) {
    using enum Uniform::DataSemantic;
    const struct {
        std::vector<ZMatrix> chain;
        int plain, inverseTranspose, transpose; // semantics; the inverse's follows the plain one's
    } cases[] = {
        {{world}, kSemanticWorldMatrix, 15, 35},
        {{view}, kSemanticViewMatrix, 18, 36},
        {{projection}, kSemanticProjectionMatrix, 21, 37},
        {{world, view}, kSemanticWorldViewMatrix, 24, 38},
        {{world, view, projection}, kSemanticWorldViewProjectionMatrix, 27, 39},
        {{view, projection}, kSemanticViewProjectionMatrix, 43, 42},
    };
    for (const auto &c : cases) {
        // A corner of the object goes through the spaces one by one.
        double point[4] = {3, -1, 2, 1}, carried[4];
        for (const ZMatrix &step : c.chain) {
            for (int column = 0; column < 4; ++column) {
                carried[column] = 0;
                for (int row = 0; row < 4; ++row)
                    carried[column] += point[row] * step.matrix[row][column];
            }
            std::copy_n(carried, 4, point);
        }
        const ZMatrix plain = value(c.plain), inverse = value(c.plain + 1);
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(3 * plain[0][column] - plain[1][column] + 2 * plain[2][column] +
                            plain[3][column],
                        point[column], 1e-4)
                << c.plain;
        EXPECT_TRUE((plain * inverse).isEquivalent(ZMatrix(), 1e-4)) << c.plain;
        EXPECT_TRUE(value(c.inverseTranspose).transpose() == inverse) << c.plain;
        EXPECT_TRUE(value(c.transpose).transpose() == plain) << c.plain;
    }
    devhost::renderSession().frame = 12;
    const Uniform frame("f", Uniform::kTypeInt, Uniform::kSemanticFrameNumber);
    EXPECT_EQ(frame.getAsInt(context), 12);
    const Uniform time("t", Uniform::kTypeFloat, Uniform::kSemanticTime);
    EXPECT_EQ(time.getAsFloat(context), 0.5f);
    devhost::renderSession().frame = 1;
    const Uniform size("s", Uniform::kTypeFloat, Uniform::kSemanticViewportPixelSize, 1, 2);
    EXPECT_EQ(size.getAsFloatArray(context)[1], 200);
}

TEST_F(ShaderParameters, ValuesKeepToTypeAndRange) {
    const struct {
        Uniform::DataType type;
        double set;
        float asFloat;
        int asInt;
    } cases[] = {{Uniform::kTypeFloat, 2.75, 2.75f, 2},
                 {Uniform::kTypeInt, 2.75, 2, 2},
                 {Uniform::kTypeInt, 3e9, 2147483648.0f, 2147483647},
                 {Uniform::kTypeFloat, NAN, NAN, 0},
                 {Uniform::kTypeUnknown, 2.75, 0, 0}};
    for (const auto &c : cases) {
        Uniform parameter("p", c.type, Uniform::kSemanticUnknown);
        parameter.setAsFloat(float(c.set));
        const float found = parameter.getAsFloat(context);
        EXPECT_TRUE(found == c.asFloat || (std::isnan(found) && std::isnan(c.asFloat))) << c.set;
        EXPECT_EQ(parameter.getAsInt(context), c.asInt) << c.set;
    }
    Uniform exact("i", Uniform::kTypeInt, Uniform::kSemanticUnknown);
    exact.setAsInt(16777217); // no float has this value
    EXPECT_EQ(exact.getAsInt(context), 16777217);
    exact.setSoftRangeMax(5); // for sliders only
    exact.setRangeMax(10);
    EXPECT_EQ(exact.getAsInt(context), 10);

    Uniform choice("e", Uniform::kTypeEnum, Uniform::kSemanticUnknown);
    choice.setEnumFieldNames("low:medium:high");
    choice.setAsString("high");
    EXPECT_EQ(choice.getAsInt(context), 2);
    choice.setAsInt(1);
    EXPECT_STREQ(choice.getAsString(context).asChar(), "medium");
    choice.setAsInt(3);
    EXPECT_EQ(choice.getAsString(context).length(), 0u);
}

TEST_F(ShaderParameters, NamesOfAttributesReachTheScene) {
    devhost::Texture wood;
    wood.fileName = "wood.png";
    devhost::Material material;
    material.texture = scene().add("file", "wood", wood);
    const auto oak = scene().add("material", "oak", material);
    Uniform colour("oak.diffuse", Uniform::kTypeFloat, Uniform::kSemanticColor, 1, 4);
    EXPECT_STREQ(colour.getPlug().name().asChar(), "oak.diffuse");
    EXPECT_STREQ(colour.getSource().name().asChar(), "wood.fileTextureName");
    EXPECT_TRUE(colour.hasChanged(context));
    EXPECT_EQ(colour.getAsFloatArray(context)[2], 0.5f);
    EXPECT_FALSE(colour.hasChanged(context));
    scene().setAttribute(oak, "diffuse", ZVector(0.25, 0.5, 1));
    EXPECT_TRUE(colour.hasChanged(context));
    EXPECT_EQ(colour.getAsFloatArray(context)[0], 0.25f);
    colour.setAsFloat(0.75f);
    EXPECT_TRUE(scene().node(oak)->material()->diffuse == ZVector(0.75, 0.5, 1));

    Uniform file("oak.diffuse", Uniform::kType2DTexture, Uniform::kSemanticColorTexture);
    EXPECT_STREQ(file.getAsString(context).asChar(), "wood.png");
    file.setAsString("pine.png");
    EXPECT_EQ(scene().node(material.texture)->texture()->fileName, "pine.png");
    scene().remove(oak);
    EXPECT_TRUE(colour.getPlug().isNull());
    EXPECT_EQ(colour.getAsFloat(context), 0.75f) << "what was set last";
}

TEST_F(ShaderParameters, VertexValuesAreLaidOutAsAskedFor) {
    Varying vertex("vertex", Varying::kStructure), inner("inner", Varying::kStructure);
    ASSERT_TRUE(
        inner.addElement(Varying("uv", Varying::kUnsignedChar, 2, 2, Varying::kTexCoord, true)));
    ASSERT_TRUE(vertex.addElement(inner));
    ASSERT_TRUE(vertex.addElement(Varying("p", Varying::kDouble, 1, 4, Varying::kPosition)));
    ASSERT_TRUE(vertex.addElement(Varying("n", Varying::kInt16, 1, 3, 3, Varying::kNormal)));
    ZGeometry shape = ZGeometryManager::getGeometry(path_, requirements_);
    const void *data = nullptr;
    unsigned count = 0, stride = 0;
    ASSERT_TRUE(vertex.getBuffer(shape, data, count, stride));
    ASSERT_EQ(count, 3u);
    ASSERT_EQ(stride, 40u);
    const auto *bytes = static_cast<const unsigned char *>(data) + 2 * stride; // the last vertex
    double position[4];
    std::memcpy(position, bytes + 2, sizeof position);
    short normal[3];
    std::memcpy(normal, bytes + 34, sizeof normal);
    EXPECT_EQ(bytes[0], 128); // u of 0.5
    EXPECT_EQ(bytes[1], 0);   // v of 1, turned over
    EXPECT_EQ((std::vector<double>(position, position + 4)), (std::vector<double>{4, 0.5, -2, 1}));
    EXPECT_EQ((std::vector<short>(normal, normal + 3)), (std::vector<short>{0, 0, 32767}));

    // What the geometry has already is not copied.
    const Varying plain("p", Varying::kFloat, 3, 3, Varying::kPosition);
    ASSERT_TRUE(plain.getBuffer(shape, data, count, stride));
    EXPECT_EQ(data, shape.position().data());
    EXPECT_EQ(stride, 12u);

    // Another source than the semantic's, and one that is not there.
    Varying weight("w", Varying::kFloat, 3, 3, Varying::kWeight);
    ASSERT_TRUE(weight.setSource(Varying::kNormal, ""));
    ASSERT_TRUE(weight.getBuffer(shape, data, count, stride));
    EXPECT_EQ(data, shape.normal().data());
    ASSERT_TRUE(weight.setSource(Varying::kTexCoord, "no such set"));
    EXPECT_EQ(weight.getBuffer(shape, data, count, stride).statusCode(), ZStatus::kNotFound);
}
