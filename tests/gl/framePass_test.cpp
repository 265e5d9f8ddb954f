// Draws small frames with the real program and reads them back from the target.
#include "gl/framePass.h"

#include "gl/meshVertices.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

using namespace AESDK_OpenGL;

namespace {

constexpr int kWidth = 64, kHeight = 48;

/// Alpha, red, green, blue, as the host has them.
using argb = std::array<float, 4>;
constexpr argb kClear{0, 0, 0, 0};
constexpr argb kRed{1, 1, 0, 0}, kGreen{1, 0, 1, 0};
constexpr argb kMixed{1, 0.2f, 0.4f, 0.6f};  // whole numbers of 1/255

struct picture {
    std::vector<argb> pixels;
    [[nodiscard]] argb at(int x, int y) const
    {
        return pixels[static_cast<std::size_t>(y * kWidth + x)];
    }
};

struct rect {
    float left, top, right, bottom;
};

/// A cell over `pos` of the layer at `z`, showing `tex`.
quad Cell(const rect& pos, const rect& tex, float z = 0.0f)
{
    quad cell;
    const float xs[] = {0, 1, 1, 0}, ys[] = {0, 0, 1, 1};
    for (int corner = 0; corner < 4; ++corner) {
        const auto mix = [](float from, float to, float t) { return from + (to - from) * t; };
        cell.pos[corner] = {mix(pos.left, pos.right, xs[corner]),
                            mix(pos.top, pos.bottom, ys[corner]), z};
        cell.tex[corner] = {mix(tex.left, tex.right, xs[corner]),
                            mix(tex.top, tex.bottom, ys[corner]), 0.5f};
        cell.norm[corner] = {0, 0, 1};
    }
    return cell;
}

class FramePass : public testing::TestWithParam<bool> {
protected:
    static void SetUpTestSuite()
    {
        S_EffectCommonData = {};
        ASSERT_EQ(AESDK_OpenGL_Startup(S_EffectCommonData), Ok);
        ASSERT_EQ(AESDK_OpenGL_InitShader(S_EffectCommonData, "", ""), Ok) << LastShaderLog();
        ASSERT_EQ(AESDK_OpenGL_InitResources(S_EffectCommonData, 2), Ok);
    }
    static void TearDownTestSuite()
    {
        AESDK_OpenGL_ReleaseResources(S_EffectCommonData);
        AESDK_OpenGL_Shutdown(S_EffectCommonData);
    }

    void SetUp() override
    {
        frameSettings& settings = scene.settings;
        settings.format = GetParam() ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32;
        settings.frameWidth = settings.viewWidth = kWidth;
        settings.frameHeight = settings.viewHeight = kHeight;
        settings.renderLevel = 1;
        settings.targetEdge = RenderLevelEdges(S_EffectCommonData.maxTextureSize)[1];
        scene.eyeDistance = 3000.0;

        paramSnapshot& values = instant.values;
        values.value[kRotation] = kRotation0;
        values.value[kRevealEnd] = values.value[kRevealAtMaskEnd] = 100.0f;
        values.value[kCameraMode] = kCamera2D;
        instant.mesh.extrusion = 0.0;
        instant.shape.flat = false;
    }
    void TearDown() override
    {
        glDeleteTextures(static_cast<GLsizei>(textures.size()), textures.data());
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }

    /// Uploads an image in the project's depth and shows it on both faces.
    void UseTexture(int width, int height, const std::vector<argb>& pixels)
    {
        glName name = 0;
        glGenTextures(1, &name);
        textures.push_back(name);
        glBindTexture(GL_TEXTURE_RECTANGLE_ARB, name);
        glTexImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, GetParam() ? GL_RGBA32F_ARB : GL_RGBA8, width,
                     height, 0, GL_ABGR_EXT, GL_FLOAT, pixels.data());
        glTexParameteri(GL_TEXTURE_RECTANGLE_ARB, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        scene.textures = {
            .ready = true, .source = name, .back = name, .width = width, .height = height};
        scene.roles = {.video = name, .back = name};
    }

    picture Draw(const std::vector<passKind>& passes = {passKind::single})
    {
        EXPECT_EQ(AESDK_OpenGL_MakeReadyToRender(S_EffectCommonData, 0, scene.settings.renderLevel),
                  Ok);
        AESDK_OpenGL_ClearBoundTarget(kWidth, kHeight);
        TargetCopy encoding;
        for (const passKind pass : passes) {
            EXPECT_EQ(DrawPass(scene, instant, pass, encoding), Ok);
        }
        picture result;
        result.pixels.resize(kWidth * kHeight);
        glReadBuffer(GL_COLOR_ATTACHMENT0_EXT);
        glReadPixels(0, 0, kWidth, kHeight, GL_ABGR_EXT, GL_FLOAT, result.pixels.data());
        if (!GetParam()) RoundToBytes(result);
        return result;
    }

    /// What 8-bit projects get to see.
    static void RoundToBytes(picture& image)
    {
        for (argb& pixel : image.pixels) {
            for (float& channel : pixel) channel = std::round(channel * 255.0f) / 255.0f;
        }
    }

    frameScene scene;
    frameInstant instant;
    std::vector<glName> textures;
};

INSTANTIATE_TEST_SUITE_P(Depths, FramePass, testing::Bool(),
                         [](const auto& each) { return each.param ? "SixteenBit" : "EightBit"; });

}  // namespace

TEST_P(FramePass, ShowsThePictureExactlyInsideTheCellAndNothingOutside)
{
    UseTexture(4, 4, std::vector<argb>(16, kMixed));
    instant.list.cells = {Cell({16, 12, 48, 36}, {0, 0, 4, 4})};
    const picture drawn = Draw();
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const bool inside = x >= 17 && x < 47 && y >= 13 && y < 35;
            const bool outside = x < 15 || x >= 49 || y < 11 || y >= 37;
            if (inside || outside) {
                ASSERT_EQ(drawn.at(x, y), inside ? kMixed : kClear) << x << ' ' << y;
            }
        }
    }
}

TEST_P(FramePass, KeepsTheRowsAndColumnsOfThePicture)
{
    UseTexture(2, 2, {kRed, kGreen, kMixed, kClear});
    // Each quarter of the cell lies over one texel's middle.
    for (const int row : {0, 1}) {
        for (const int column : {0, 1}) {
            const float x = static_cast<float>(column), y = static_cast<float>(row);
            const rect pos{32 * x, 24 * y, 32 * x + 32, 24 * y + 24};
            instant.list.cells.push_back(Cell(pos, {x + 0.5f, y + 0.5f, x + 0.5f, y + 0.5f}));
        }
    }
    const picture drawn = Draw();
    EXPECT_EQ(drawn.at(16, 12), kRed);
    EXPECT_EQ(drawn.at(48, 12), kGreen);
    EXPECT_EQ(drawn.at(16, 36), kMixed);
    EXPECT_EQ(drawn.at(48, 36), kClear);
}

TEST_P(FramePass, AnOpaqueCellHidesWhatLiesBehindIt)
{
    UseTexture(2, 1, {kRed, kGreen});
    const rect whole{0, 0, kWidth, kHeight};
    // A wide stretch of each texel, so that the filter has something to weigh.
    instant.list.cells = {Cell(whole, {0.1f, 0.2f, 0.4f, 0.9f}, 10.0f),
                          Cell(whole, {1.6f, 0.2f, 1.9f, 0.9f}, -10.0f)};
    const picture drawn = Draw();
    EXPECT_EQ(drawn.at(20, 20), kRed);
    EXPECT_EQ(drawn.at(40, 30), kRed);
}

TEST_P(FramePass, TranslucentCellsComeOverWhatLiesThere)
{
    const argb halfRed{0.5f, 0.5f, 0, 0};  // multiplied by alpha, as uploaded
    UseTexture(2, 1, {halfRed, kGreen});
    const rect whole{0, 0, kWidth, kHeight};
    instant.list.cells = {Cell(whole, {0.5f, 0.5f, 0.5f, 0.5f}, 10.0f),
                          Cell(whole, {1.5f, 0.5f, 1.5f, 0.5f}, -10.0f)};
    const argb drawn = Draw().at(32, 24);
    const float step = GetParam() ? 1e-6f : 0.003f;  // 0.5 is no whole number of 1/255
    EXPECT_NEAR(drawn[0], 1.0f, step);
    EXPECT_NEAR(drawn[1], 0.5f, step);
    EXPECT_NEAR(drawn[2], 0.5f, step);
}

TEST_P(FramePass, AListOfSeveralPiecesIsDrawnWhole)
{
    UseTexture(4, 4, std::vector<argb>(16, kMixed));
    const quad nowhere = Cell({-9, -9, -5, -5}, {0, 0, 4, 4});
    instant.list.cells.assign(2 * kChunkCells + 1, nowhere);
    instant.list.cells.front() = Cell({0, 0, 32, 48}, {0, 0, 4, 4});
    instant.list.cells.back() = Cell({32, 0, 64, 48}, {0, 0, 4, 4});
    const picture drawn = Draw();
    EXPECT_EQ(drawn.at(16, 24), kMixed);
    EXPECT_EQ(drawn.at(48, 24), kMixed);
}

TEST_P(FramePass, AFlatStripIsShownBeyondItsMaskPosition)
{
    UseTexture(4, 4, std::vector<argb>(16, kMixed));
    instant.shape.flat = true;
    ribbonSamples& ribbon = instant.shape.ribbon;
    for (const float p : {0.0f, 0.5f, 1.0f}) {
        ribbon.texA.push_back({4 * p, 0, 1});
        ribbon.texB.push_back({4 * p, 4, 1});
        ribbon.posA.push_back({kWidth * p, 0, 0});
        ribbon.posB.push_back({kWidth * p, kHeight, 0});
    }
    EXPECT_EQ(Draw().at(32, 24), kClear);
    instant.values.value[kRevealAtMaskEnd] = 150.0f;
    EXPECT_EQ(Draw().at(32, 24), kMixed);
}

TEST_P(FramePass, WithoutASourceImageNothingIsDrawn)
{
    instant.list.cells = {Cell({0, 0, kWidth, kHeight}, {0, 0, 4, 4})};
    EXPECT_EQ(Draw().at(32, 24), kClear);
}

TEST_P(FramePass, AFrameLargerThanTheTargetIsDrawnAsFarAsItGoes)
{
    UseTexture(4, 4, std::vector<argb>(16, kMixed));
    scene.settings.viewWidth = scene.settings.frameWidth = scene.settings.targetEdge + 100;
    const float right = static_cast<float>(scene.settings.viewWidth);
    instant.list.cells = {Cell({0, 0, right, kHeight}, {0, 0, 4, 4})};
    const picture drawn = Draw();
    EXPECT_EQ(drawn.at(1, 24), kMixed);
    EXPECT_EQ(drawn.at(63, 24), kMixed);
}

TEST_P(FramePass, DepthOfFieldBlursAwayFromTheFocusDistance)
{
    UseTexture(4, 4, std::vector<argb>(16, kMixed));
    const float distance = 500.0f;
    instant.values.value[kCameraMode] = kCamera3D;
    instant.camera = MakeCamData(1);
    instant.camera.cameraMatrix.mat[3][0] = kWidth / 2;
    instant.camera.cameraMatrix.mat[3][1] = kHeight / 2;
    instant.camera.cameraMatrix.mat[3][2] = -static_cast<double>(distance);
    instant.camera.zoom = distance;
    instant.camera.depthOfField = 1.0f;
    instant.camera.blurLevel = 100.0f;
    instant.camera.aperture = 100.0f;
    instant.list.cells = {Cell({16, 12, 48, 36}, {0, 0, 4, 4})};

    const std::vector<passKind> passes{passKind::encodeBlur, passKind::blurred};
    instant.camera.focusDistance = distance;
    const picture sharp = Draw(passes);
    instant.camera.focusDistance = distance / 2;
    const picture soft = Draw(passes);

    // (2 - 1) / 2 / pi * 100 / 0.74 is a radius of some 21 * 0.4 pixels.
    EXPECT_EQ(sharp.at(32, 24), kMixed);
    EXPECT_EQ(sharp.at(18, 24), kMixed);
    EXPECT_LT(soft.at(18, 24)[0], 0.9f);
    EXPECT_GT(soft.at(18, 24)[0], 0.0f);
}
