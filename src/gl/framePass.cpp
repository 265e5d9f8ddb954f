#include "gl/framePass.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>

#include "gl/glSteps.h"
#include "gl/meshDraw.h"

using namespace AESDK_OpenGL;

namespace {

/// Steps between passes keep the project's depth.
GLint ProjectFormat(const frameSettings& settings)
{
    return settings.deep() ? GL_RGBA32F_ARB : GL_RGBA8;
}

/// The image to work on. The blurred picture replaces the sharp one, which would show through.
void TakeImage(const frameSettings& settings, passKind pass, TargetCopy& image)
{
    if (pass == passKind::blurred) {
        Require(CopyView(settings, ProjectFormat(settings), image));
        ClearFrame(settings);
    } else {
        Require(CopyView(settings, GL_RGBA32F_ARB, image));
    }
}

/// Draws the view's rectangle with its pixels as texture points, as the triangles of one cell.
void DrawFrameQuad(const viewSize& size)
{
    const double corners[4][2] = {{0, 0}, {0, 1}, {1, 1}, {1, 0}};
    glBegin(GL_TRIANGLES);
    for (const unsigned corner : {0U, 1U, 2U, 0U, 2U, 3U}) {
        const auto& [x, y] = corners[corner];
        glTexCoord2d(x * size.VW, y * size.VH);
        glVertex2d(x * size.W, y * size.H);
    }
    glEnd();
}

}  // namespace

AESDK_OpenGL_Err CopyView(const frameSettings& settings, GLint internalFormat, TargetCopy& copy)
{
    return copy.Take(std::min(settings.viewWidth, settings.targetEdge),
                     std::min(settings.viewHeight, settings.targetEdge), internalFormat);
}

void ClearFrame(const frameSettings& settings)
{
    AESDK_OpenGL_ClearBoundTarget(settings.frameWidth, settings.frameHeight);
}

void DrawSmoothed(const frameScene& scene, const TargetCopy& image, const smoothing& how)
{
    Require(AESDK_OpenGL_BindTextureToTarget(S_EffectCommonData, image.name(), "videoTexture", 0));
    // Gain, depth of field, resolution factor; `DOF` stays as the mesh had it.
    SendUniform("dataFromAE", {how.gain, 0.0f, how.blurred ? 1.0f : 0.0f, 3.0f});

    SetView2D(scene.settings.view(), scene.eyeDistance);
    glEnable(GL_BLEND);
    glBlendFunc(how.sourceFactor, how.targetFactor);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    DrawFrameQuad(scene.settings.view());
}

AESDK_OpenGL_Err BeginPass(const frameScene& scene, passKind pass, TargetCopy& encoding)
try {
    Require(
        AESDK_OpenGL_MakeReadyToRender(S_EffectCommonData, /*useB=*/0, scene.settings.renderLevel));
    SendUniform("DOF", vec4{});
    if (pass != passKind::blurred) return Ok;

    Require(CopyView(scene.settings, ProjectFormat(scene.settings), encoding));
    ClearFrame(scene.settings);
    return AESDK_OpenGL_BindTextureToTarget(S_EffectCommonData, encoding.name(), "blurTexture", 2);
} catch (const AESDK_OpenGL_Fault& fault) {
    return fault.code();
}

AESDK_OpenGL_Err RunPostPass(const frameScene& scene, passKind pass)
try {
    TargetCopy image;
    TakeImage(scene.settings, pass, image);
    DrawSmoothed(scene, image, {.blurred = pass == passKind::blurred});
    return Ok;
} catch (const AESDK_OpenGL_Fault& fault) {
    return fault.code();
}

AESDK_OpenGL_Err DrawPass(const frameScene& scene, const frameInstant& instant, passKind pass,
                          TargetCopy& encoding)
try {
    const ShaderInUse program;
    Require(BeginPass(scene, pass, encoding));
    if (scene.textures.ready) Require(DrawInstant(scene, instant, pass));
    return RunPostPass(scene, pass);
} catch (const AESDK_OpenGL_Fault& fault) {
    return fault.code();
}
