// What the program computes, pixel by pixel. Pictures are worked out by hand.

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "gl/shaderForms.h"
#include "gl/shaderRig.h"
#include "support/caseName.h"

namespace {

constexpr pixel kVideo{0.2f, 0.4f, 0.6f, 1.0f};
constexpr pixel kBack{0.8f, 0.1f, 0.3f, 0.5f};
constexpr pixel kContour{0.0f, 0.25f, 0.75f, 1.0f};
constexpr pixel kCleared{};
constexpr float kRounding = 1e-5f;  // of a few float operations on values of about 1

/// A cell whose pixel centre i, k carries texture point i + shift, k + shift.
cellDraw WholeTexelCell(float shift = 0.0f)
{
    cellDraw cell;
    cell.texX0 = cell.texY0 = shift - 0.5f;
    cell.texX1 = cell.texY1 = shift + 15.5f;
    return cell;
}

class Shader : public testing::Test {
protected:
    void SetUp() override
    {
        rig.SetImage(0, FlatImage(16, 16, kVideo));
        rig.SetImage(1, FlatImage(16, 16, kBack));
        rig.SetImage(2, FlatImage(16, 16, kCleared));
        rig.PassWholeSource(16, 16);
        rig.Pass("contourColor", kContour[0], kContour[1], kContour[2], kContour[3]);
    }
    ShaderRig rig;
};

struct revealCase {
    const char* name;
    float orientation;
    bool alongX;
    int first, last;  ///< visible pixels for a reveal of a quarter to a half
};
class Reveal : public Shader, public testing::WithParamInterface<revealCase> {};
TEST_P(Reveal, ShowsWhatLiesBetweenTheBoundsWithoutThem)
{
    const revealCase& c = GetParam();
    rig.Pass("reveal", 0.25f, 0.5f, c.orientation, 1);
    const image drawn = rig.Draw(WholeTexelCell());
    for (int i = 0; i < 16; ++i) {
        const bool visible = i >= c.first && i <= c.last;
        ExpectPixel(c.alongX ? drawn.at(i, 8) : drawn.at(8, i), visible ? kBack : kCleared,
                    kRounding);
    }
}
const revealCase kOrientations[] = {{"Upright", 1, true, 5, 7},
                                    {"Quarter", 2, false, 9, 11},
                                    {"Half", 3, true, 9, 11},
                                    {"ThreeQuarters", 4, false, 5, 7}};
INSTANTIATE_TEST_SUITE_P(Orientations, Reveal, testing::ValuesIn(kOrientations), caseName{});

TEST_F(Shader, WholeRevealClearsTheEdgesThemselves)
{
    rig.Pass("dataFromAE", 15, 16, 0, -1);
    const image drawn = rig.Draw(WholeTexelCell());
    ExpectPixel(drawn.at(0, 8), kCleared, 0);
    ExpectPixel(drawn.at(1, 8), kBack, kRounding);
    ExpectPixel(drawn.at(14, 8), kBack, kRounding);
    ExpectPixel(drawn.at(15, 8), kCleared, 0);
}

TEST_F(Shader, PathRevealExcludesItsBounds)
{
    const auto shows = [&](float start, float end) {
        rig.Pass("pathReveal", start, end, 1, 1);
        return rig.Draw(WholeTexelCell(1)).at(4, 4) != kCleared;
    };
    EXPECT_TRUE(shows(0.499f, 0.501f));
    EXPECT_FALSE(shows(0.5f, 1.0f));
    EXPECT_FALSE(shows(0.0f, 0.5f));
}

TEST_F(Shader, FractionalLightCountNeitherLightsNorClips)
{
    rig.Pass("dataFromAE", 16, 16, 0.5f, -1);
    rig.Pass("reveal", 0.25f, 0.5f, 1, 1);
    ExpectPixel(rig.Draw(WholeTexelCell()).at(0, 0), kVideo, kRounding);
}

TEST_F(Shader, ExtrudedCellsBlendTheTexturesByTheirFace)
{
    // Half of the face value, and the weight of the video texture.
    const float faces[][2] = {{0.0f, 0.0f}, {0.125f, 0.25f}, {0.5f, 1.0f}, {0.7f, 1.0f}};
    for (const auto& [green, weight] : faces) {
        cellDraw cell = WholeTexelCell();
        cell.red = 2;
        cell.green = green;
        pixel expected{};
        for (std::size_t i = 0; i < 4; ++i)
            expected[i] = kVideo[i] * weight + kBack[i] * (1 - weight);
        ExpectPixel(rig.Draw(cell).at(8, 8), expected, kRounding);
    }
}

TEST_F(Shader, ContourIsPaintedEvenBesideTheSource)
{
    rig.Pass("reveal", 0, 1, 2, 1);  // along y, so that x is free
    cellDraw cell = WholeTexelCell(-4);
    cell.red = 2;
    cell.texY0 = 4;
    cell.texY1 = 12;
    cell.green = 1;
    ExpectPixel(rig.Draw(cell).at(0, 8), kContour, 0);
    cell.green = 0.5f;
    ExpectPixel(rig.Draw(cell).at(0, 8), kCleared, 0);
    cell.red = 1;  // one or two cells do not count as extruded
    ExpectPixel(rig.Draw(cell).at(0, 8), kBack, kRounding);
}

struct blurCase {
    const char* name;
    float z, focus;
    pixel encoding;  ///< of an opaque fragment
};
class BlurEncoding : public Shader, public testing::WithParamInterface<blurCase> {};
TEST_P(BlurEncoding, HoldsFractionStepsAndSign)
{
    const blurCase& c = GetParam();
    rig.Pass("DOF", 0, 0, 1, c.focus);
    cellDraw cell = WholeTexelCell(0.5f);
    cell.z = c.z;
    const pixel actual = rig.Draw(cell).at(0, 0);
    // The texel drawn is half transparent.
    ExpectPixel(actual, {c.encoding[0] / 2, c.encoding[1] / 2, c.encoding[2] / 2, 0.5f}, 1e-4f);
}
const blurCase kDepths[] = {
    // (300/100 - 1) / 2 / pi
    {"Beyond", -300, 100, {0.31831f, 1.0f, 0.0f, 1.0f}},
    // (50/100 - 1) / 2 / pi
    {"Before", -50, 100, {0.0795775f, 1.0f, 1.0f, 1.0f}},
    // (300/10 - 1) / 2 / pi = 4.61550: a fifth of it, five times
    {"FarBeyond", -300, 10, {0.92310f, 0.2f, 0.0f, 1.0f}},
    {"InFocus", -100, 100, {0.0f, 0.0f, 0.0f, 1.0f}}};
INSTANTIATE_TEST_SUITE_P(Depths, BlurEncoding, testing::ValuesIn(kDepths), caseName{});

TEST_F(Shader, DepthIsEncodedBetweenItsBounds)
{
    rig.Pass("DOF", -200, -100, 0, -1);
    cellDraw cell = WholeTexelCell(0.5f);
    cell.z = -175;
    ExpectPixel(rig.Draw(cell).at(8, 8), {0.125f, 0.125f, 0.125f, 0.5f}, kRounding);
    cell.z = -50;
    ExpectPixel(rig.Draw(cell).at(8, 8), {0.5f, 0.5f, 0.5f, 0.5f}, kRounding);
}

// ---- post pass ----

image RandomImage(int edge, std::mt19937& random)
{
    std::uniform_real_distribution<float> value(0.0f, 1.0f);
    image picture = FlatImage(edge, edge, {});
    for (pixel& each : picture.pixels) each = {value(random), value(random), value(random), 1.0f};
    for (pixel& each : picture.pixels) each[3] = value(random);
    return picture;
}

class PostPass : public testing::Test {
protected:
    image Run(const image& picture, float gain, float resolution)
    {
        rig.SetImage(0, picture);
        rig.Pass("dataFromAE", gain, 0, 0, resolution);
        return rig.Draw({});
    }
    ShaderRig rig;
};

TEST_F(PostPass, LeavesAFlatFieldAlone)
{
    const pixel value{0.1f, 0.2f, 0.3f, 0.4f};
    for (const pixel& each : Run(FlatImage(16, 16, value), 1, 3).pixels)
        ExpectPixel(each, value, 1e-6f);
}

TEST_F(PostPass, GainIsClampedToTheDisplayRange)
{
    ExpectPixel(Run(FlatImage(16, 16, {0.1f, 0.2f, 0.6f, 0.4f}), 2, 3).at(8, 8),
                {0.2f, 0.4f, 1.0f, 0.8f}, kRounding);
}

TEST_F(PostPass, SmoothsADiagonalEdge)
{
    // White where column + row >= 16. At (7, 8): luma 0 but for 2 at the upper right, so the
    // direction is (2, -2) / 2.0625 = (0.969697, -0.969697). A sixth of it along meets the white
    // texel with weight 0.83838 x 0.16162 = 0.135496, a half with 0.515152 x 0.484848 = 0.249770:
    // 0.135496 / 2 + 0.249770 / 2.
    image picture = FlatImage(16, 16, {});
    for (int y = 0; y < 16; ++y)
        for (int x = std::max(0, 16 - y); x < 16; ++x)
            picture.pixels[static_cast<std::size_t>(y * 16 + x)] = {1, 1, 1, 1};
    const image smoothed = Run(picture, 1, 1);
    constexpr float kExpected = 0.192633f;
    ExpectPixel(smoothed.at(7, 8), {kExpected, kExpected, kExpected, kExpected}, 1e-5f);
    ExpectPixel(smoothed.at(3, 3), {}, 0);
}

TEST_F(PostPass, ResolutionAboveOneCountsAsOne)
{
    std::mt19937 random(1);
    const image picture = RandomImage(16, random);
    EXPECT_EQ(Run(picture, 1, 3).pixels, Run(picture, 1, 1).pixels);
    EXPECT_NE(Run(picture, 1, 0.5f).pixels, Run(picture, 1, 1).pixels);
}

TEST(DepthBlurLimits, NothingToBlurLeavesTheColour)
{
    ShaderRig rig;
    const pixel value{0.1f, 0.2f, 0.3f, 0.25f};
    rig.SetImage(0, FlatImage(16, 16, value));
    rig.Pass("dataFromAE", 1, 0, 1, 3);
    rig.Pass("DOF", 50, 100, 1, 0);
    for (const pixel& encoding : {pixel{0, 0, 0, 1},             // no denominator
                                  pixel{0.5f, 0, 0, 1},          // nor any here
                                  pixel{0.005f, 1.0f, 0, 1}}) {  // a radius of 0.34
        rig.SetImage(2, FlatImage(16, 16, encoding));
        ExpectPixel(rig.Draw({}).at(8, 8), value, 1e-6f);
    }
    // A step of blur: (0.25 + 40 x 0.5) / 41 squared.
    rig.SetImage(2, FlatImage(16, 16, {0.02f, 1.0f, 0, 1}));
    EXPECT_NEAR(rig.Draw({}).at(8, 8)[3], 0.243947f, 1e-5f);
}

// ---- forms ----

TEST(ShaderForms, EachComputesWhatTheGeneralProgramDoes)
{
    struct setting {
        float lights, mode, focus;
    };
    ShaderRig rig;
    std::mt19937 random(4);
    for (int unit = 0; unit < 3; ++unit) rig.SetImage(unit, RandomImage(16, random));
    std::array<bool, AESDK_OpenGL::kShaderFormCount> met{};
    glEnable(GL_LIGHTING);
    const float toViewer[] = {0, 0, 1, 0};
    glLightfv(GL_LIGHT0, GL_POSITION, toViewer);
    for (const setting& s :
         {setting{0, -1, 0}, setting{0, -2, 90}, setting{0, -2, -1}, setting{1, -2, 0},
          setting{1, -1, 90}, setting{0.5f, -1, 0}, setting{0, 3, 0}, setting{1, 3, 0}}) {
        rig.PassWholeSource(16, 16);
        rig.Pass("dataFromAE", s.mode < 0 ? 16.0f : 1.0f, 16, s.lights, s.mode);
        rig.Pass("DOF", 2, 100, 1, s.focus);
        cellDraw cell = WholeTexelCell(0.5f);
        cell.z = -100;
        EXPECT_EQ(rig.Draw(cell).pixels, rig.DrawGenerally(cell).pixels)
            << "lights " << s.lights << ", mode " << s.mode << ", focus " << s.focus;
        met[static_cast<std::size_t>(
            AESDK_OpenGL::FormFor(rig.data.forms.vectors[0], rig.data.forms.vectors[4]))] = true;
    }
    EXPECT_EQ(std::count(met.begin(), met.end(), true), AESDK_OpenGL::kShaderFormCount);
}

TEST(ShaderForms, ChangeWithTheUniformsInMidRender)
{
    ShaderRig rig;
    rig.SetImage(0, FlatImage(16, 16, kVideo));
    rig.SetImage(1, FlatImage(16, 16, kBack));
    AESDK_OpenGL::AESDK_OpenGL_StartRenderToShader(rig.data);
    rig.PassWholeSource(16, 16);
    rig.Pass("dataFromAE", 1, 0, 0, 3);
    ExpectPixel(rig.Draw({}).at(8, 8), kVideo, kRounding);
    AESDK_OpenGL::AESDK_OpenGL_StartRenderToShader(rig.data);
    rig.Pass("dataFromAE", 16, 16, 0, -1);
    const image drawn = rig.Draw(WholeTexelCell(0.5f));
    ExpectPixel(drawn.at(8, 8), kBack, kRounding);
}

}  // namespace
