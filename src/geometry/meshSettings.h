// meshSettings.h: what the geometry needs to know of one instant, in working units.
// Fractions of 1, radians, layer pixels at full resolution. Fields that end in Percent stay as
// shown: they decide counts and on which side of a vertex or seam a sample falls, where one
// rounding tells, so their products are taken in one fixed order.
#pragma once

#include <array>

#include "geometry/paramSnapshot.h"

/// Counts above these, which no slider reaches, are lowered to them.
inline constexpr int kMostStrips = 1'000'000, kMostLayers = 1'000'000;

/// Sizes that a frame's images give. Widths and heights in pixels of the images as they are,
/// that is at the preview resolution.
struct frameSizes {
    int sourceWidth = 0, sourceHeight = 0;  ///< source texture, after the crop
    int viewWidth = 0, viewHeight = 0;      ///< input layer, or its crop when it is the source
    int denX = 1, denY = 1;                 ///< downsample denominators
};

/// Values of the "3D geometry" group in render space (z mirrored).
struct transformSettings {
    point3 anchor{}, position{};  ///< A', P': full-resolution pixels
    point3 scale{1.0f, 1.0f, 1.0f};
    double angleX = 0.0, angleY = 0.0, angleZ = 0.0;  ///< radians, already negated
};

struct meshSettings {
    frameSizes sizes;
    int rotation = kRotation0;  ///< 1..4: quarter turns of the source
    double sourceScaleXPercent = 100.0;
    double sourceScaleY = 1.0;
    double sourceRadius = 1.0;
    double meshDefinitionPercent = 25.0;
    int subSampling = 2;  ///< strips that each cell is cut into, across the ribbon
    double twistStart = 0.0, twistEnd = 0.0;  ///< radians, along the source
    double scaleStart = 1.0, scaleEnd = 1.0;
    double undistortedStart = 0.0, undistortedEnd = 1.0;
    bool vertsMatch = false, relativeToSource = true, stretchAlongPath = false;
    double startPointPercent = 0.0, endPointPercent = 100.0;
    double twistMaskStart = 0.0, twistMaskEnd = 0.0;  ///< radians, along the mask
    double scaleMaskStart = 1.0, scaleMaskEnd = 1.0;
    std::array<float, kVertexParamCount> vertexZ{};  ///< pixels
    std::array<double, kVertexParamCount> vertexScale = AllOnes();
    bool smoothZ = true, smoothScale = true;
    double extrusion = 0.1;  ///< as the slider shows it
    int extrusionLayers = 1;
    double uniformScale = 1.0;
    double contourDefinitionPercent = 50.0;
    transformSettings transform;

    [[nodiscard]] bool extruded() const { return extrusion != 0.0 && extrusionLayers != 0; }
    [[nodiscard]] int faces() const { return extruded() ? 2 : 1; }
    /// From the ribbon's middle to a face; negative when the scale is.
    [[nodiscard]] double halfDepth() const
    {
        return extruded() ? extrusion * 0.5 * uniformScale : 0.0;
    }

private:
    static constexpr std::array<double, kVertexParamCount> AllOnes()
    {
        std::array<double, kVertexParamCount> ones{};
        ones.fill(1.0);
        return ones;
    }
};

/// Every number in the result is finite: one that is not counts as 0, and none passes kFarthest. A
/// rotation that no choice stands for becomes the first one, a count below 0 becomes 0.
meshSettings MakeMeshSettings(const paramSnapshot& values, const frameSizes& sizes);
