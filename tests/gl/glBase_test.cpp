#include "gl/GL_base.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "gl/glFunctions.h"
#include "support/caseName.h"

using namespace AESDK_OpenGL;

namespace {

struct levelCase {
    const char* name;
    int maximum, divisor, current;
    int maxTextureSize;
    std::array<int, 3> edges;
};
class Levels : public testing::TestWithParam<levelCase> {};
TEST_P(Levels, FollowFromTheMaximum)
{
    const levelCase& c = GetParam();
    EXPECT_EQ(MaxTextureSizeFor(c.maximum, c.divisor, c.current), c.maxTextureSize);
    EXPECT_EQ(RenderLevelEdges(c.maxTextureSize), c.edges);
}
const levelCase kMaxima[] = {{"Halved", 16384, 2, 4096, 8192, {4096, 2048, 1024}},
                             {"Whole", 16384, 1, 0, 16384, {8192, 4096, 2048}},
                             {"FloorAtStart", 8192, 2, 4096, 4096, {2048, 1024, 0}},
                             {"OneLevelAfterRebuild", 4096, 2, 0, 2048, {1024, 0, 0}},
                             {"None", 2048, 2, 0, 1024, {0, 0, 0}},
                             {"OddIsCutTwice", 8195, 1, 0, 8195, {4097, 2048, 1024}}};
INSTANTIATE_TEST_SUITE_P(Maxima, Levels, testing::ValuesIn(kMaxima), caseName{});

/// A started layer; every test leaves GL's error queue empty.
class Layer : public testing::Test {
protected:
    void SetUp() override
    {
        data.started = 0;
        ASSERT_EQ(AESDK_OpenGL_Startup(data), Ok) << macGLError();
    }
    void TearDown() override
    {
        EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
        EXPECT_EQ(AESDK_OpenGL_Shutdown(data), Ok);
    }
    /// The smallest level there is: its targets are quick to allocate.
    [[nodiscard]] int SmallestLevel() const
    {
        const auto edges = RenderLevelEdges(data.maxTextureSize);
        return static_cast<int>(
                   std::count_if(edges.begin(), edges.end(), [](int e) { return e; })) -
               1;
    }
    AESDK_OpenGL_EffectCommonData& data = S_EffectCommonData;
};

TEST_F(Layer, StartsOnceAndResetsTheSizeEachTime)
{
    const AGLContext context = data.context;
    data.maxTextureSize = 16384;
    EXPECT_EQ(AESDK_OpenGL_Startup(data), Ok);
    EXPECT_EQ(data.maxTextureSize, 4096);
    EXPECT_EQ(data.context, context);
}

TEST_F(Layer, NothingCanBeMadeReadyAfterShutdown)
{
    ASSERT_EQ(AESDK_OpenGL_InitResources(data, 2), Ok);
    ASSERT_EQ(AESDK_OpenGL_Shutdown(data), Ok);
    EXPECT_EQ(AESDK_OpenGL_Shutdown(data), Ok) << "there is nothing left to shut down";
    EXPECT_EQ(AESDK_OpenGL_MakeReadyToRender(data, 0, 0), ResourcesLoadFailed);
    data.resourcesReady = 0;
    EXPECT_EQ(AESDK_OpenGL_InitResources(data, 2), ResourcesLoadFailed);
    data.shaderReady = 0;
    EXPECT_EQ(AESDK_OpenGL_InitShader(data, "", ""), ShaderFailed);
}

TEST_F(Layer, SecondInitResourcesChangesNothing)
{
    ASSERT_EQ(AESDK_OpenGL_InitResources(data, 2), Ok);
    const auto names = data.colorTextureB;
    const auto size = data.maxTextureSize;
    EXPECT_EQ(AESDK_OpenGL_InitResources(data, 1), Ok);
    EXPECT_EQ(data.colorTextureB, names);
    EXPECT_EQ(data.maxTextureSize, size);
    EXPECT_EQ(AESDK_OpenGL_ReleaseResources(data), Ok);
    EXPECT_EQ(data.colorTextureB, levelNames{});
    EXPECT_TRUE(data.resourcesReady) << "the caller's to clear";
    EXPECT_EQ(AESDK_OpenGL_MakeReadyToRender(data, 0, SmallestLevel()), ResourcesLoadFailed);
}

TEST_F(Layer, TargetsAreWholeAndDeep)
{
    ASSERT_EQ(AESDK_OpenGL_InitResources(data, 2), Ok);
    const int level = SmallestLevel();
    const int edge = RenderLevelEdges(data.maxTextureSize)[static_cast<std::size_t>(level)];
    for (const int useB : {1, 0}) {
        ASSERT_EQ(AESDK_OpenGL_MakeReadyToRender(data, useB, level), Ok);
        EXPECT_EQ(CheckFramebufferStatus(), "OK");
        GLint depthBits = 0;
        glGetIntegerv(GL_DEPTH_BITS, &depthBits);
        EXPECT_GE(depthBits, 24);
        const auto& textures = useB ? data.colorTextureB : data.colorTextureA;
        glBindTexture(GL_TEXTURE_RECTANGLE_ARB, textures[static_cast<std::size_t>(level)]);
        const auto parameter = [](GLenum name) {
            GLint value = 0;
            glGetTexLevelParameteriv(GL_TEXTURE_RECTANGLE_ARB, 0, name, &value);
            return value;
        };
        EXPECT_EQ(parameter(GL_TEXTURE_WIDTH), edge);
        EXPECT_EQ(parameter(GL_TEXTURE_HEIGHT), edge);
        EXPECT_EQ(parameter(GL_TEXTURE_RED_SIZE), 32);
    }
    EXPECT_NE(data.frameBufferA, data.frameBufferB);
    EXPECT_EQ(data.spareBufferA, levelNames{});
}

TEST_F(Layer, LevelsThatDoNotExistCannotBeMadeReady)
{
    ASSERT_EQ(AESDK_OpenGL_InitResources(data, 2), Ok);
    for (const int level : {-1, 3})
        EXPECT_EQ(AESDK_OpenGL_MakeReadyToRender(data, 0, level), ResourcesLoadFailed);
    data.frameBufferA[0] = 0;
    EXPECT_EQ(AESDK_OpenGL_MakeReadyToRender(data, 0, 0), ResourcesLoadFailed);
}

TEST_F(Layer, ARefusedTargetFailsTheFrameAndIsTriedAgain)
{
    ASSERT_EQ(AESDK_OpenGL_InitResources(data, 2), Ok);
    const int level = SmallestLevel();
    const int size = data.maxTextureSize;
    data.maxTextureSize = size * 64;  // beyond what GL has
    EXPECT_EQ(AESDK_OpenGL_MakeReadyToRender(data, 0, level), ResourcesLoadFailed);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    data.maxTextureSize = size;
    EXPECT_EQ(AESDK_OpenGL_MakeReadyToRender(data, 0, level), Ok);
}

TEST_F(Layer, ClearTouchesTheFrameOnly)
{
    ASSERT_EQ(AESDK_OpenGL_InitResources(data, 2), Ok);
    ASSERT_EQ(AESDK_OpenGL_MakeReadyToRender(data, 0, SmallestLevel()), Ok);
    AESDK_OpenGL_ClearBoundTarget(5, 4);
    glClearColor(0.25f, 0.5f, 0.75f, 1.0f);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 5, 4);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
    glDepthMask(GL_FALSE);
    AESDK_OpenGL_ClearBoundTarget(3, 2);
    std::vector<float> alpha(5 * 4);
    glReadPixels(0, 0, 5, 4, GL_ALPHA, GL_FLOAT, alpha.data());
    for (std::size_t y = 0; y < 4; ++y)
        for (std::size_t x = 0; x < 5; ++x)
            EXPECT_EQ(alpha[y * 5 + x], x < 3 && y < 2 ? 0.0f : 1.0f) << x << ", " << y;
}

TEST_F(Layer, AnIncompleteFramebufferIsNamed)
{
    glName name = 0;
    glExt.GenFramebuffersEXT(1, &name);
    glExt.BindFramebufferEXT(GL_FRAMEBUFFER_EXT, name);
    EXPECT_EQ(CheckFramebufferStatus(), "Framebuffer incomplete, missing attachment!");
}

TEST_F(Layer, RefusesAnUnusableTextureAndAnUnusableVector)
{
    ASSERT_EQ(AESDK_OpenGL_InitShader(data, "", ""), Ok);
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(AESDK_OpenGL_BindTextureToTarget(data, 0xFFFFFFFFu, "videoTexture", 1), ShaderFailed);
    const auto activeUnit = [] {
        GLint unit = 0;
        glGetIntegerv(GL_ACTIVE_TEXTURE, &unit);
        return unit - GL_TEXTURE0;
    };
    EXPECT_EQ(activeUnit(), 0);
    EXPECT_EQ(AESDK_OpenGL_BindTextureToTarget(data, 0, "videoTexture", 5), Ok);
    EXPECT_EQ(activeUnit(), 2);
    EXPECT_EQ(AESDK_OpenGL_PassMetal(data, 0.5f, 1, 1, 1, "pathReveal"), Ok);
    EXPECT_EQ(AESDK_OpenGL_PassMetal(data, -1.0f, 2, 2, 2, "pathReveal"), ShaderFailed);
    EXPECT_EQ(data.forms.vectors[2][0], 0.5f) << "the refused vector sets nothing";
}

TEST_F(Layer, GLErrorsAreTakenOnce)
{
    glEnable(0xFFFF);
    glMatrixMode(0xFFFF);
    EXPECT_EQ(CheckGLErrors(), ResourcesLoadFailed);
    EXPECT_EQ(CheckGLErrors(), Ok);
    EXPECT_TRUE(RectangleTextureFits(64, 64, GL_RGBA));
    EXPECT_FALSE(RectangleTextureFits(1 << 24, 1 << 24, GL_RGBA32F_ARB));
}

TEST_F(Layer, TheCallersContextComesBackFromACommand)
{
    SetContext(nullptr);
    {
        const SaveRestoreOGLContext hostContext;
        SetContext(data.context);
        EXPECT_EQ(GetHostContext(data), data.context);
    }
    EXPECT_EQ(aglGetCurrentContext(), nullptr);
    SetContext(data.context);
    {
        const SaveRestoreOGLContext hostContext;
        SetContext(nullptr);
    }
    EXPECT_EQ(aglGetCurrentContext(), data.context);
    data.hostContext = nullptr;
}

}  // namespace
