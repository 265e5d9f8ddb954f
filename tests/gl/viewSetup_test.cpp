#include "camera/viewSetup.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "gl/shaderRig.h"
#include "support/caseName.h"

namespace {

using vec = std::array<double, 3>;

vec ToWindow(const vec& point)
{
    std::array<double, 16> model{}, projection{};
    std::array<GLint, 4> viewport{};
    glGetDoublev(GL_MODELVIEW_MATRIX, model.data());
    glGetDoublev(GL_PROJECTION_MATRIX, projection.data());
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    vec window{};
    gluProject(point[0], point[1], point[2], model.data(), projection.data(), viewport.data(),
               &window[0], &window[1], &window[2]);
    return window;
}

camData Camera(const std::array<vec, 4>& rows, float zoom)
{
    camData camera;
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t i = 0; i < 3; ++i) camera.cameraMatrix.mat[row][i] = rows[row][i];
    camera.cameraMatrix.mat[3][3] = 1.0;
    camera.zoom = zoom;
    return camera;
}

/// Looking along z at the centre of a w x h layer, which it shows at its own size.
camData FrontCamera(double w, double h, float distance)
{
    return Camera(
        {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {w / 2, h / 2, -static_cast<double>(distance)}}},
        distance);
}

struct viewCase {
    const char* name;
    std::array<vec, 4> rows;  ///< the camera's x, y and z axes and its place, host space
};
class CameraView : public ShaderRig, public testing::TestWithParam<viewCase> {};
TEST_P(CameraView, ShowsAPointWhereItsAxesSay)
{
    const auto& [x, y, z, place] = GetParam().rows;
    for (const int den : {1, 2}) {
        const viewSize size{400, 300, 400.0 / den, 300.0 / den};
        // Record zoom: 500 pixels times the divisor.
        cam3D(size, {}, Camera(GetParam().rows, 500.0f * static_cast<float>(den)), 100, 100000);
        // 250 in front, 30 along the camera's x and 20 along its y: twice the size of the layer.
        vec point{};
        for (std::size_t i = 0; i < 3; ++i)
            point[i] = place[i] + 250 * z[i] + 30 * x[i] + 20 * y[i];
        const vec window = ToWindow({point[0], point[1], -point[2]});
        // The angle of view is narrowed to float.
        EXPECT_NEAR(window[0], (200.0 + 60) / den, 1e-3);
        EXPECT_NEAR(window[1], (150.0 + 40) / den, 1e-3);
    }
}
const viewCase kCameras[] = {
    {"Default", {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {200, 150, -500}}}},
    {"Moved", {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {-30, 700, 45}}}},
    {"Turned", {{{0.8, 0, -0.6}, {0, 1, 0}, {0.6, 0, 0.8}, {10, 20, -300}}}},
    {"Rolled", {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, {200, 150, -500}}}},
    {"TiltedAndRolled", {{{0.6, 0.64, -0.48}, {-0.8, 0.48, -0.36}, {0, 0.6, 0.8}, {50, 60, -70}}}}};
INSTANTIATE_TEST_SUITE_P(Cameras, CameraView, testing::ValuesIn(kCameras), caseName{});

class View : public testing::Test {
protected:
    static constexpr int kEdge = 64;
    static constexpr viewSize kSize{kEdge, kEdge, kEdge, kEdge};

    /// A grey field (0.5) on the layer's plane, facing the viewer, seen by a front camera.
    image DrawLit(const camData& camera, const lightSettings& settings, float specularFactor = 1)
    {
        cam3D(kSize, settings, camera, 100, 100000);
        glDisable(GL_ALPHA_TEST);
        rig.SetImage(0, FlatImage(kEdge, kEdge, {0.5f, 0.5f, 0.5f, 1}));
        rig.PassWholeSource(kEdge, kEdge);
        rig.Pass("dataFromAE", kEdge, kEdge, static_cast<float>(UsableLights(camera)), -1);
        rig.Pass("reveal", 0, 1, 1, specularFactor);
        cellDraw cell;
        cell.texX1 = cell.texY1 = kEdge;
        return rig.Draw(cell);
    }
    static camData LitBy(const std::vector<lightData>& lights)
    {
        camData camera = FrontCamera(kEdge, kEdge, 500);
        for (const lightData& light : lights)
            camera.lights[static_cast<std::size_t>(camera.numLights++)] = light;
        return camera;
    }
    ShaderRig rig{kEdge};
};

/// White at half strength.
lightData Light(std::int32_t type, float x = 0, float y = 0, float z = 0)
{
    lightData light;
    light.type = type;
    light.intensity = 0.5f;
    for (double& each : light.color) each = 1.0;
    light.position[0] = x;
    light.position[1] = y;
    light.position[2] = z;
    light.coneAngle = 60;
    for (int i = 0; i < 4; ++i) light.transform.mat[i][i] = 1.0;
    return light;
}

lightData Reversed(lightData light)
{
    light.transform.mat[2][2] = -1.0;
    return light;
}

constexpr lightSettings kMatt{.specular = 0};
constexpr float kShading = 1e-4f;  // eye-space positions are interpolated in float

void ExpectGrey(const pixel& actual, float value, float tolerance = kShading)
{
    ExpectPixel(actual, {value, value, value, 1}, tolerance);
}

TEST_F(View, PointLightShinesFromItsPlaceAndFadesWithItsConstant)
{
    const auto at = [](float z) { return LitBy({Light(AEGP_LightType_POINT, 32.5f, 32.5f, z)}); };
    ExpectGrey(DrawLit(at(-100), kMatt).at(32, 32), 0.32f / 1.5f);
    ExpectGrey(DrawLit(at(100), kMatt).at(32, 32), 0.0f);
    // Linear (100 x 0.001)^2 = 0.01, quadratic (100 x 0.001)^4 = 0.0001: 1.5 + 1 + 1 at 100 pixels.
    const lightSettings fading{.specular = 0, .linear = 100, .quadratic = 100};
    ExpectGrey(DrawLit(at(-100), fading).at(32, 32), 0.32f / 3.5f);
}

TEST_F(View, SpotLightKeepsToItsCone)
{
    // 100 pixels before the layer; pixel column 37 is seen from there 15 degrees off the axis.
    const float x = 37.5f - 26.79492f;
    lightData spot = Light(AEGP_LightType_SPOT, x, 32.5f, -100);
    EXPECT_GT(DrawLit(LitBy({spot}), kMatt).at(37, 32)[0], 0.2f) << "sharp: full inside the cone";
    spot.coneFeather = 100;
    // cos 15 = 0.965926 lies (0.965926 - 0.866025) / (0.999904 - 0.866025) = 0.746204 between the
    // cosines of 30 and 30^cos(1.6384) = 0.794 degrees.
    ExpectGrey(DrawLit(LitBy({spot}), kMatt).at(37, 32), 0.32f * 0.965926f * 0.746204f / 1.5f,
               1e-3f);
    spot.coneAngle = 29;
    ExpectGrey(DrawLit(LitBy({spot}), kMatt).at(37, 32), 0.0f);
    spot.coneAngle = 60;
    ExpectGrey(DrawLit(LitBy({Reversed(spot)}), kMatt).at(37, 32), 0.0f);
}

TEST_F(View, HighlightIsScaledByTheMetalFactor)
{
    const camData camera = LitBy({Light(AEGP_LightType_PARALLEL)});
    // Diffuse 0.64, specular 0.5 x 0.5 seen straight on.
    ExpectGrey(DrawLit(camera, {}, 0.5f).at(32, 32), 0.5f * (0.64f + 0.125f));
    ExpectGrey(DrawLit(camera, {}, 0.0f).at(32, 32), 0.5f * 0.64f);
}

TEST_F(View, ColoursAreBlueGreenRed)
{
    lightData red = Light(AEGP_LightType_PARALLEL);
    red.color[2] = red.color[3] = 0.0;
    ExpectPixel(DrawLit(LitBy({red}), kMatt).at(32, 32), {0, 0, 0.32f, 1}, kShading);
}

TEST_F(View, AmbientLightsAreAveraged)
{
    lightData red = Light(AEGP_LightType_AMBIENT);
    red.color[2] = red.color[3] = 0.0;
    lightData white = Light(AEGP_LightType_AMBIENT);
    white.intensity = 1.0f;
    cam3D(kSize, {}, LitBy({white, red}), 100, 100000);
    pixel ambient{};
    glGetMaterialfv(GL_FRONT, GL_AMBIENT, ambient.data());
    // (0.5, 0.5, 0.75) x 100 x 0.0128; alpha is the last light's strength.
    ExpectPixel(ambient, {0.64f, 0.64f, 0.96f, 0.5f}, 1e-6f);
}

struct lightValueCase {
    const char* name;
    GLenum value;
    float cone, feather, constant;
    float expected;
};
class LightValues : public View, public testing::WithParamInterface<lightValueCase> {};
TEST_P(LightValues, AreClampedToWhatGLTakes)
{
    const lightValueCase& c = GetParam();
    lightData spot = Light(AEGP_LightType_SPOT);
    spot.coneAngle = c.cone;
    spot.coneFeather = c.feather;
    cam3D(kSize, {.constant = c.constant}, LitBy({spot}), 100, 100000);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    float actual = -1;
    glGetLightfv(GL_LIGHT0, c.value, &actual);
    EXPECT_FLOAT_EQ(actual, c.expected);
}
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
const lightValueCase kValues[] = {{"Cone", GL_SPOT_CUTOFF, 60, 0, 15, 30},
                                  {"WideCone", GL_SPOT_CUTOFF, 400, 0, 15, 90},
                                  {"NegativeCone", GL_SPOT_CUTOFF, -10, 0, 15, 0},
                                  {"NoCone", GL_SPOT_CUTOFF, kNaN, 0, 15, 0},
                                  {"Feather", GL_SPOT_EXPONENT, 60, 100, 15, 12.8f},
                                  {"HugeFeather", GL_SPOT_EXPONENT, 60, 5000, 15, 128},
                                  {"NegativeFeather", GL_SPOT_EXPONENT, 60, -5, 15, 0},
                                  {"Constant", GL_CONSTANT_ATTENUATION, 60, 0, 15, 1.5f},
                                  {"NoConstant", GL_CONSTANT_ATTENUATION, 60, 0, 0, 0.001f},
                                  {"MostConstant", GL_CONSTANT_ATTENUATION, 60, 0, 100, 10}};
INSTANTIATE_TEST_SUITE_P(Values, LightValues, testing::ValuesIn(kValues), caseName{});

TEST_F(View, MaterialFollowsTheSliders)
{
    const camData camera = LitBy({Light(AEGP_LightType_POINT)});
    const auto material = [&](const lightSettings& settings, GLenum name) {
        cam3D(kSize, settings, camera, 100, 100000);
        pixel value{};
        glGetMaterialfv(GL_BACK, name, value.data());
        return value[0];
    };
    EXPECT_FLOAT_EQ(material({}, GL_DIFFUSE), 1.28f);
    EXPECT_FLOAT_EQ(material({}, GL_SPECULAR), 0.5f);
    EXPECT_FLOAT_EQ(material({}, GL_SHININESS), 6.4f);
    EXPECT_FLOAT_EQ(material({.shininess = 0}, GL_SHININESS), 1.28f);
    EXPECT_FLOAT_EQ(material({.shininess = 100}, GL_SHININESS), 128.0f);
}

TEST_F(View, ADepthRangeWithoutDepthStillProjects)
{
    cam3D(kSize, {}, FrontCamera(kEdge, kEdge, 500), 100, 100);
    const vec nearest = ToWindow({32, 32, 400});
    const vec farthest = ToWindow({32, 32, 399});
    EXPECT_NEAR(nearest[2], 0.0, 1e-3);
    EXPECT_NEAR(farthest[2], 1.0, 1e-3);
}

TEST_F(View, TheFlatViewIgnoresDepthAndSetsItsState)
{
    cam3D(kSize, {}, LitBy({Light(AEGP_LightType_POINT)}), 100, 100000);
    EXPECT_TRUE(glIsEnabled(GL_ALPHA_TEST));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    SetView2D({400, 300, 200, 150}, 3000);
    for (const double z : {0.0, 2900.0, -90000.0}) {
        const vec window = ToWindow({100, 40, z});
        // GL may keep its matrices in float.
        EXPECT_NEAR(window[0], 50.0, 1e-4);
        EXPECT_NEAR(window[1], 20.0, 1e-4);
        EXPECT_GE(window[2], 0.0);
        EXPECT_LE(window[2], 1.0);
    }
    for (const auto off : {GLenum{GL_LIGHTING}, GLenum{GL_ALPHA_TEST}, GLenum{GL_DEPTH_TEST}})
        EXPECT_FALSE(glIsEnabled(off));
    GLboolean depthWrites = GL_TRUE;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthWrites);
    EXPECT_FALSE(depthWrites);
}

}  // namespace
