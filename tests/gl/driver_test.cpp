// SPDX-License-Identifier: MIT
// The function table on the driver at hand. Pixels are compared with a tolerance of 1 in 255, the
// rounding of a colour to eight bits.

#include "devhost/gl/GlContext.h"
#include "devhost/gl/GlDriver.h"
#include "host/render/ZGLFunctionTable.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

#define GL_FRAMEBUFFER_EXT 0x8D40
#define GL_RENDERBUFFER_EXT 0x8D41
#define GL_COLOR_ATTACHMENT0_EXT 0x8CE0
#define GL_FRAMEBUFFER_COMPLETE_EXT 0x8CD5
#ifndef GL_ARRAY_BUFFER_ARB
#define GL_ARRAY_BUFFER_ARB 0x8892
#define GL_STATIC_DRAW_ARB 0x88E4
#endif

namespace {

constexpr int kSize = 32;

class GlDriverTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!devhost::glContext().available)
            FAIL() << devhost::glContext().whyNot();
        devhost::glContext().acquire();
        devhost::glDriver.load(devhost::glContext().features);
        gl->glGenFramebuffersEXT(1, &framebuffer_);
        gl->glGenRenderbuffersEXT(1, &colors_);
        gl->glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, framebuffer_);
        gl->glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, colors_);
        gl->glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, GL_RGBA8, kSize, kSize);
        gl->glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT,
                                         GL_RENDERBUFFER_EXT, colors_);
        ASSERT_EQ(gl->glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT), GL_FRAMEBUFFER_COMPLETE_EXT);
        gl->glViewport(0, 0, kSize, kSize);
        gl->glClearColor(0, 0, 0, 1);
        gl->glClear(GL_COLOR_BUFFER_BIT);
    }
    void TearDown() override {
        if (devhost::glContext().available) {
            gl->glDeleteFramebuffersEXT(1, &framebuffer_);
            gl->glDeleteRenderbuffersEXT(1, &colors_);
            EXPECT_EQ(gl->glGetError(), ZGLenum(GL_NO_ERROR));
        }
    }

    void expectPixel(int x, int y, std::array<int, 4> expected) {
        unsigned char pixel[4] = {};
        gl->glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
        for (int i = 0; i < 4; ++i)
            EXPECT_NEAR(pixel[i], expected[static_cast<size_t>(i)], 1)
                << "channel " << i << " at " << x << ", " << y;
    }

    ZGLFunctionTable *const gl = devhost::glFunctionTable();

  private:
    ZGLuint framebuffer_ = 0, colors_ = 0;
};

TEST_F(GlDriverTest, DrawsAGradientFromArrays) {
    const float positions[] = {-1, -1, 1, -1, 1, 1, -1, 1};
    const float colors[] = {0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1};
    const unsigned short corners[] = {0, 1, 2, 0, 2, 3};
    gl->glEnableClientState(GL_VERTEX_ARRAY);
    gl->glEnableClientState(GL_COLOR_ARRAY);
    gl->glVertexPointer(2, GL_FLOAT, 0, positions);
    gl->glColorPointer(3, GL_FLOAT, 0, colors);
    gl->glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, corners);
    gl->glDisableClientState(GL_VERTEX_ARRAY);
    gl->glDisableClientState(GL_COLOR_ARRAY);
    const auto level = [](int i) { return static_cast<int>(255 * (i + 0.5) / kSize + 0.5); };
    for (const auto &[x, y] : {std::pair(3, 5), {20, 7}, {9, 30}, {31, 31}})
        expectPixel(x, y, {level(x), level(y), 255, 255});
}

TEST_F(GlDriverTest, BufferMembersTellWhetherTheySucceeded) {
    ZGLuint buffer = 0;
    gl->glGenBuffersARB(1, &buffer);
    EXPECT_FALSE(gl->glBufferDataARB(GL_ARRAY_BUFFER_ARB, 16, nullptr, GL_STATIC_DRAW_ARB));
    gl->glEnable(0xffff); // a later error does not replace the first
    EXPECT_EQ(gl->glGetError(), ZGLenum(GL_INVALID_OPERATION));
    EXPECT_EQ(gl->glGetError(), ZGLenum(GL_INVALID_ENUM));
    gl->glBindBufferARB(GL_ARRAY_BUFFER_ARB, buffer);
    EXPECT_TRUE(
        gl->glBufferDataARB(GL_ARRAY_BUFFER_ARB, 16, "0123456789abcdef", GL_STATIC_DRAW_ARB));
    EXPECT_TRUE(gl->glBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 4, 2, "xy"));
    EXPECT_FALSE(gl->glBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 10, 8, "too much"));
    EXPECT_EQ(gl->glGetError(), ZGLenum(GL_INVALID_VALUE));
    char data[17] = {};
    gl->glGetBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 0, 16, data);
    EXPECT_STREQ(data, "0123xy6789abcdef");
    gl->glDeleteBuffersARB(1, &buffer);
}

TEST_F(GlDriverTest, MissingMembersRecordAnErrorAndNothingElse) {
    devhost::glDriver.load(devhost::GlFeatures("1.1", ""));
    gl->glUniform1fARB(0, 1);
    EXPECT_EQ(gl->glGetError(), ZGLenum(GL_INVALID_OPERATION));
    EXPECT_EQ(gl->glCreateShaderObjectARB(0x8B31), 0u);
    EXPECT_EQ(gl->glMapBufferARB(0, 0), nullptr);
    EXPECT_EQ(gl->glGetError(), ZGLenum(GL_INVALID_OPERATION));
    EXPECT_EQ(gl->glGetError(), ZGLenum(GL_NO_ERROR)); // no endless errors for loops to drain
    EXPECT_TRUE(gl->glGetString(GL_VERSION));          // 1.1 has that
    devhost::glDriver.load(devhost::glContext().features);
}

TEST_F(GlDriverTest, TellsTheTruthAboutTheDriver) {
    const std::string extensions =
        reinterpret_cast<const char *>(gl->glGetString(GL_EXTENSIONS)) + std::string(" ");
    const auto listed = [&](const char *name) {
        return extensions.find(std::string("GL_") + name + " ") != std::string::npos;
    };
    EXPECT_EQ(gl->extensionExists(kZGLext_NV_register_combiners), listed("NV_register_combiners"));
    EXPECT_EQ(gl->extensionExists(kZGLext_ARB_vertex_program), listed("ARB_vertex_program"));
    for (const int none : {-1, int(kZGLext_ZGLX_create_pbuffer), int(kZGLext_NUMBER_OF_EXTENSIONS)})
        EXPECT_FALSE(gl->extensionExists(static_cast<ZGLExtension>(none))) << none;

    ZGLint size = 0;
    gl->glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
    EXPECT_EQ(gl->maxTextureSize(), size);
    EXPECT_GE(gl->maxVertexAttributes(), 16);
    EXPECT_GE(gl->numTexUnits(), 2);
}

} // namespace
