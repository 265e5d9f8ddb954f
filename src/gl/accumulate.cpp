#include "gl/accumulate.h"

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <cstddef>

#include "Util/firstError.h"
#include "gl/glSteps.h"
#include "gl/meshDraw.h"

using namespace AESDK_OpenGL;

namespace {

void UseTarget(const frameScene& scene, bool b)
{
    Require(
        AESDK_OpenGL_MakeReadyToRender(S_EffectCommonData, b ? 1 : 0, scene.settings.renderLevel));
}

/// Pictures add up to their average. Encodings of blur are no amounts that could be added: a nearer
/// sample covers the ones before it.
smoothing HowToAdd(passKind pass, std::size_t samples)
{
    if (pass == passKind::encodeBlur)
        return {.sourceFactor = GL_ONE, .targetFactor = GL_ONE_MINUS_SRC_ALPHA};
    return {
        .gain = 1.0f / static_cast<float>(samples), .sourceFactor = GL_ONE, .targetFactor = GL_ONE};
}

/// Draws the sample into A, which is empty and bound, and adds it to B. Leaves A empty and bound.
/// `image` is only kept from sample to sample for its storage.
AESDK_OpenGL_Err AddSample(const frameScene& scene, const frameInstant& sample, passKind pass,
                           const smoothing& how, TargetCopy& image)
try {
    Require(DrawInstant(scene, sample, pass));
    // A copy ends at the frame's edges; beyond them target A may hold what larger frames drew.
    Require(CopyView(scene.settings, GL_RGBA32F_ARB, image));
    ClearFrame(scene.settings);
    UseTarget(scene, true);
    DrawSmoothed(scene, image, how);
    UseTarget(scene, false);
    return Ok;
} catch (const AESDK_OpenGL_Fault& fault) {
    return fault.code();
}

/// Gives A what the samples came to and binds it. B is emptied when another pass follows.
AESDK_OpenGL_Err TakeSum(const frameScene& scene, passKind pass)
try {
    const frameSettings& settings = scene.settings;
    UseTarget(scene, true);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_RECTANGLE_ARB,
                  S_EffectCommonData.colorTextureA[static_cast<std::size_t>(settings.renderLevel)]);
    glReadBuffer(GL_COLOR_ATTACHMENT0_EXT);
    glCopyTexSubImage2D(GL_TEXTURE_RECTANGLE_ARB, 0, 0, 0, 0, 0,
                        std::min(settings.viewWidth, settings.targetEdge),
                        std::min(settings.viewHeight, settings.targetEdge));
    if (pass == passKind::encodeBlur) ClearFrame(settings);
    UseTarget(scene, false);
    // The encoding was smoothed sample by sample.
    return pass == passKind::encodeBlur ? Ok : RunPostPass(scene, pass);
} catch (const AESDK_OpenGL_Fault& fault) {
    return fault.code();
}

}  // namespace

PF_Err DrawSamples(const renderHost& host, const frameScene& scene, std::span<frameInstant> samples,
                   passKind pass, TargetCopy& encoding)
{
    const ShaderInUse program;
    const smoothing how = HowToAdd(pass, samples.size());
    TargetCopy image;
    FirstError steps;
    steps.then([&] { return host.gl(BeginPass(scene, pass, encoding)); });
    for (frameInstant& sample : samples) {
        steps.then([&] { return host.abort(); }).then([&] {
            sample.list = SortedCells(sample);
            const AESDK_OpenGL_Err err = AddSample(scene, sample, pass, how, image);
            sample.list = {};
            return host.gl(err);
        });
    }
    return steps.then([&] { return host.gl(TakeSum(scene, pass)); }).code();
}
