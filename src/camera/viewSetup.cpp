#include "camera/viewSetup.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <array>

namespace {

constexpr float kAlphaFloor = 0.004f;

// Slider factors, single-precision numbers that enter products in double precision.
constexpr double kDiffuseFactor = static_cast<double>(0.0256f);
constexpr double kAmbientFactor = static_cast<double>(0.0128f);
constexpr double kSpecularFactor = static_cast<double>(0.01f);
constexpr float kShininessFactor = 1.28f;
constexpr float kFeatherFactor = 0.128f;

constexpr float kWidestCone = 90.0f, kNoCone = 180.0f;
constexpr float kHighestExponent = 128.0f;

using color4 = std::array<float, 4>;  // blue, green, red, alpha: the order of pixels inside GL
constexpr color4 kDark{0.0f, 0.0f, 0.0f, 0.0f};

void Set(GLenum light, GLenum name, const color4& value)
{
    glLightfv(light, name, value.data());
}

/// The light at full strength times its intensity.
color4 ColorOf(const lightData& light)
{
    const auto scaled = [&](int channel) {
        return static_cast<float>(light.color[channel] * static_cast<double>(light.intensity));
    };
    return {scaled(3), scaled(2), scaled(1), 1.0f};
}

/// Mean of the ambient lights' colours; alpha is left to the caller.
color4 AmbientMean(const camData& camera, int count)
{
    color4 sum = kDark;
    int ambients = 0;
    for (int i = 0; i < count; ++i) {
        const lightData& light = camera.lights[static_cast<std::size_t>(i)];
        if (light.type != AEGP_LightType_AMBIENT) continue;
        const color4 color = ColorOf(light);
        for (std::size_t channel = 0; channel < 3; ++channel) sum[channel] += color[channel];
        ++ambients;
    }
    if (ambients > 1)
        for (std::size_t channel = 0; channel < 3; ++channel)
            sum[channel] /= static_cast<float>(ambients);
    return sum;
}

/// A light that shines nowhere, as far as position and colours go.
void ResetLight(GLenum light)
{
    glDisable(light);
    Set(light, GL_POSITION, kDark);
    Set(light, GL_SPOT_DIRECTION, {0.0f, 0.0f, -1.0f});
    glLightf(light, GL_SPOT_CUTOFF, kNoCone);
    glLightf(light, GL_SPOT_EXPONENT, 0.0f);
    for (const GLenum name : {GLenum{GL_AMBIENT}, GLenum{GL_DIFFUSE}, GLenum{GL_SPECULAR}})
        Set(light, name, kDark);
}

void SetShine(GLenum light, const color4& ambient, const color4& direct)
{
    Set(light, GL_AMBIENT, ambient);
    Set(light, GL_DIFFUSE, direct);
    Set(light, GL_SPECULAR, direct);
}

/// Everywhere alike: no cone.
void SetOpen(GLenum light)
{
    glLightf(light, GL_SPOT_CUTOFF, kNoCone);
    glLightf(light, GL_SPOT_EXPONENT, kHighestExponent);
}

void SetSpot(GLenum light, const lightData& data)
{
    const auto& direction = data.transform.mat[2];
    Set(light, GL_SPOT_DIRECTION,
        {static_cast<float>(direction[0]), static_cast<float>(direction[1]),
         static_cast<float>(-direction[2])});
    // Written so that a NaN becomes 0.
    const auto clamped = [](float value, float most) {
        return value > 0.0f ? std::min(value, most) : 0.0f;
    };
    glLightf(light, GL_SPOT_CUTOFF, clamped(data.coneAngle * 0.5f, kWidestCone));
    glLightf(light, GL_SPOT_EXPONENT, clamped(data.coneFeather * kFeatherFactor, kHighestExponent));
}

/// Place, cone and colours. A type that is not known keeps the reset light's.
void SetLight(GLenum light, const lightData& data)
{
    const color4 place{data.position[0], data.position[1], -data.position[2], 1.0f};
    const auto& direction = data.transform.mat[2];
    switch (data.type) {
        case AEGP_LightType_SPOT:
            Set(light, GL_POSITION, place);
            SetSpot(light, data);
            SetShine(light, kDark, ColorOf(data));
            break;
        case AEGP_LightType_POINT:
            Set(light, GL_POSITION, place);
            SetOpen(light);
            SetShine(light, kDark, ColorOf(data));
            break;
        case AEGP_LightType_PARALLEL:
            Set(light, GL_POSITION,
                {static_cast<float>(-direction[0]), static_cast<float>(-direction[1]),
                 static_cast<float>(direction[2]), 0.0f});
            SetOpen(light);
            SetShine(light, kDark, ColorOf(data));
            break;
        case AEGP_LightType_AMBIENT:
            SetOpen(light);
            SetShine(light, ColorOf(data), kDark);
            break;
        default:
            break;
    }
}

void SetAttenuation(GLenum light, const lightSettings& settings)
{
    const float linear = settings.linear * 0.001f;
    const float quadratic = settings.quadratic * 0.001f;
    glLightf(light, GL_CONSTANT_ATTENUATION, std::clamp(settings.constant * 0.1f, 0.001f, 10.0f));
    glLightf(light, GL_LINEAR_ATTENUATION, linear * linear);
    glLightf(light, GL_QUADRATIC_ATTENUATION, quadratic * quadratic * quadratic * quadratic);
}

void SetMaterial(const lightSettings& settings, const color4& ambientMean, float alpha)
{
    const auto scaled = [](float value, double factor) {
        return static_cast<float>(static_cast<double>(value) * factor);
    };
    const float diffuse = scaled(settings.diffuse, kDiffuseFactor);
    const float specular = scaled(settings.specular, kSpecularFactor);
    const double ambient = static_cast<double>(settings.ambient) * kAmbientFactor;
    const auto material = [](GLenum name, const color4& value) {
        glMaterialfv(GL_FRONT_AND_BACK, name, value.data());
    };
    material(GL_DIFFUSE, {diffuse, diffuse, diffuse, 1.0f});
    material(GL_AMBIENT, {scaled(ambientMean[0], ambient), scaled(ambientMean[1], ambient),
                          scaled(ambientMean[2], ambient), alpha});
    material(GL_SPECULAR, {specular, specular, specular, 1.0f});
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS,
                std::max(settings.shininess * kShininessFactor, kShininessFactor));
}

void SetLights(const camData& camera, const lightSettings& settings)
{
    for (int i = 0; i < kMaxLights; ++i) ResetLight(GL_LIGHT0 + static_cast<GLenum>(i));
    const int count = UsableLights(camera);
    if (count == 0) {
        glDisable(GL_LIGHTING);
        return;
    }
    glShadeModel(GL_SMOOTH);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    const color4 ambientMean = AmbientMean(camera, count);
    for (int i = 0; i < count; ++i) {
        const GLenum name = GL_LIGHT0 + static_cast<GLenum>(i);
        const lightData& light = camera.lights[static_cast<std::size_t>(i)];
        glEnable(name);
        SetLight(name, light);
        SetAttenuation(name, settings);
        SetMaterial(settings, ambientMean, light.intensity);
    }
    glEnable(GL_LIGHTING);
}

void SetViewport(const viewSize& size)
{
    glViewport(0, 0, static_cast<GLsizei>(size.VW), static_cast<GLsizei>(size.VH));
}

void SetProjection(const perspectiveLens& lens)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(lens.fovy, lens.aspect, lens.nearPlane, lens.farPlane);
}

void SetCamera(const lookAtView& view)
{
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(view.eye[0], view.eye[1], view.eye[2], view.target[0], view.target[1], view.target[2],
              view.up[0], view.up[1], view.up[2]);
}

}  // namespace

lightSettings MakeLightSettings(const paramSnapshot& values)
{
    return {.ambient = values[kLightAmbient],
            .diffuse = values[kLightDiffuse],
            .specular = values[kLightSpecular],
            .shininess = values[kLightShininess],
            .constant = values[kLightConstant],
            .linear = values[kLightLinear],
            .quadratic = values[kLightQuadratic]};
}

int UsableLights(const camData& camera)
{
    GLint most = 0;
    glGetIntegerv(GL_MAX_LIGHTS, &most);
    return std::clamp(camera.numLights, 0, std::min(most, kMaxLights));
}

void cam3D(const viewSize& size, const lightSettings& lights, camData camera, double zNear,
           double zFar)
{
    SetProjection(MakeLens(size, camera.zoom, zNear, zFar));
    SetViewport(size);
    SetUpVector(camera);
    SetCamera(CameraLookAt(size, camera));
    SetLights(camera, lights);
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_GREATER, kAlphaFloor);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    glClearDepth(1.0);
}

void SetView2D(const viewSize& size, double eyeDistance)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-size.W / 2.0, size.W / 2.0, -size.H / 2.0, size.H / 2.0, kViewNear2D, kViewDepth2D);
    SetViewport(size);
    SetCamera(FrontLookAt(size, eyeDistance));
    glDisable(GL_LIGHTING);
    glDisable(GL_ALPHA_TEST);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glClearDepth(1.0);
}
