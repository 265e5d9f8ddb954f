// camData.h: the camera and lights of one instant, as read from the host.
#pragma once

#include <array>
#include <cstdint>

#include "host_api.h"

inline constexpr int kMaxLights = 8;

/// One gathered light. Host space: x right, y down, z into the screen.
struct lightData {
    float intensity = 0.0f;    ///< 1 is 100 %; 0..30000
    double color[4] = {};      ///< alpha, red, green, blue, 0..1
    float position[3] = {};    ///< not set for ambient lights
    std::int32_t type = 0;     ///< AEGP_LightType_*
    float coneFeather = 0.0f;  ///< percent; spot lights
    float coneAngle = 0.0f;    ///< full angle, degrees; spot lights
    A_Matrix4 transform = {};  ///< layer to world; spot and parallel lights (row 2: direction)
};

struct camData {
    A_Matrix4 cameraMatrix = {};  ///< layer to world: row 3 position, row 2 viewing direction
    A_Matrix4 cameraInverse = {};
    float zoom = 0.0f;  ///< pixels x downsample_x.den
    std::array<lightData, kMaxLights> lights{};
    std::int32_t numLights = 0;                   ///< valid entries of `lights`, 0..8
    float up[3] = {};                             ///< written by cam3D into its own copy
    std::int32_t compWidth = 0, compHeight = 0;   ///< 3D mode only; pixels
    float depthOfField = 0.0f;                    ///< a switch
    float focusDistance = 0.0f, aperture = 0.0f;  ///< pixels
    float blurLevel = 0.0f;                       ///< percent
};

/// What a frame starts from: zeros, identity matrices, zoom 3000 / `denX`.
camData MakeCamData(int denX);
