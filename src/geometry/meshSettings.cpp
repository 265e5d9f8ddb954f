#include "geometry/meshSettings.h"

#include <algorithm>
#include <numbers>

#include "geometry/vec3.h"

namespace {

/// Percent times percent.
constexpr double kPercentSquared = 0.0001;

double Radians(float degrees)
{
    return static_cast<double>(degrees) * std::numbers::pi / 180.0;
}

/// Whole, towards zero, within low..high.
int BoundedInt(float value, int low, int high)
{
    return std::clamp(static_cast<int>(value), low, high);
}

/// Hosts may hand out what no slider holds.
paramSnapshot WithinBounds(paramSnapshot values)
{
    const auto bound = [](float& value) {
        value = static_cast<float>(Bounded(static_cast<double>(value)));
    };
    for (float& value : values.value) bound(value);
    for (point3* point : {&values.anchor, &values.position}) {
        bound(point->x);
        bound(point->y);
        bound(point->z);
    }
    return values;
}

int RotationChoice(float value)
{
    const int choice = BoundedInt(value, 0, kRotation270 + 1);
    return choice >= kRotation0 && choice <= kRotation270 ? choice : kRotation0;
}

transformSettings MakeTransform(const paramSnapshot& values)
{
    const auto scale = [&](PF_ParamIndex axis) {
        const double product =
            static_cast<double>(values[kScale]) * static_cast<double>(values[axis]);
        return static_cast<float>(product * kPercentSquared);
    };
    // Through single precision: the angles of a frame and of a motion-blur sample are floats.
    const auto turn = [&](PF_ParamIndex axis) {
        return static_cast<double>(static_cast<float>(-Radians(values[axis])));
    };
    return {.anchor = {values.anchor.x, values.anchor.y, -values.anchor.z},
            .position = {values.position.x, values.position.y, -values.position.z},
            .scale = {scale(kScaleX), scale(kScaleY), scale(kScaleZ)},
            .angleX = turn(kRotationX),
            .angleY = turn(kRotationY),
            .angleZ = turn(kRotationZ)};
}

void ReadSource(const paramSnapshot& values, meshSettings& settings)
{
    settings.rotation = RotationChoice(values[kRotation]);
    settings.sourceScaleXPercent = static_cast<double>(values[kSourceXScale]);
    settings.sourceScaleY = values.fraction(kSourceYScale);
    settings.sourceRadius = values.fraction(kSourceRadius);
    settings.meshDefinitionPercent = static_cast<double>(values[kMeshDefinition]);
    settings.subSampling = BoundedInt(values[kMeshSubSampling], 0, kMostStrips);
    settings.twistStart = Radians(values[kTwistAtStart]);
    settings.twistEnd = Radians(values[kTwistAtEnd]);
    settings.scaleStart = values.fraction(kScaleAtStart);
    settings.scaleEnd = values.fraction(kScaleAtEnd);
    settings.undistortedStart = values.fraction(kUndistortedStart);
    settings.undistortedEnd = values.fraction(kUndistortedEnd);
}

void ReadMask(const paramSnapshot& values, meshSettings& settings)
{
    settings.vertsMatch = values.on(kStretchWithVertsMatch);
    settings.relativeToSource = values.on(kRelativeToSourceWidth);
    settings.stretchAlongPath = values.on(kStretchAlongPath);
    settings.startPointPercent = static_cast<double>(values[kStartPoint]);
    settings.endPointPercent = static_cast<double>(values[kEndPoint]);
    settings.twistMaskStart = Radians(values[kTwistAtMaskStart]);
    settings.twistMaskEnd = Radians(values[kTwistAtMaskEnd]);
    settings.scaleMaskStart = values.fraction(kScaleAtMaskStart);
    settings.scaleMaskEnd = values.fraction(kScaleAtMaskEnd);
    for (int vertex = 0; vertex < kVertexParamCount; ++vertex) {
        const auto slot = static_cast<std::size_t>(vertex);
        settings.vertexZ[slot] = values[kZAtVertex1 + vertex];
        settings.vertexScale[slot] = values.fraction(kScaleAtVertex1 + vertex);
    }
    settings.smoothZ = values.on(kSmoothZ);
    settings.smoothScale = values.on(kSmoothScale);
}

void ReadExtrusion(const paramSnapshot& values, meshSettings& settings)
{
    settings.extrusion = static_cast<double>(values[kExtrusion]);
    settings.extrusionLayers = BoundedInt(values[kExtrusionNumLayers], 0, kMostLayers);
    settings.uniformScale = values.fraction(kScale);
    settings.contourDefinitionPercent = static_cast<double>(values[kContourDefinition]);
}

}  // namespace

meshSettings MakeMeshSettings(const paramSnapshot& shown, const frameSizes& sizes)
{
    const paramSnapshot values = WithinBounds(shown);
    meshSettings settings;
    settings.sizes = sizes;
    ReadSource(values, settings);
    ReadMask(values, settings);
    ReadExtrusion(values, settings);
    settings.transform = MakeTransform(values);
    return settings;
}
