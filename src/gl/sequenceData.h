// sequenceData.h: the two records that the effect keeps in host handles.
#pragma once

#include <cstdint>
#include <vector>

#include "host_api.h"

/// One per process (the host's global_data).
struct GlobalData {
    std::int32_t slotCount = 1;         ///< next instance slot
    std::uint8_t sizeWarningShown = 0;  ///< the texture-size warning was written and still holds
};

/// One per effect instance (the host's sequence_data): the render record. Lives in its handle by
/// placement new. What the frame renderers cache here decides whether textures are uploaded again.
struct SequenceData {
    std::uint64_t number = 0;      ///< of this record, the only one in this process; stands first
    std::int32_t slot = 0;         ///< index into the two texture lists
    std::int32_t renderLevel = 0;  ///< 0, 1, 2: rewritten at each FRAME_SETUP
    std::uint8_t listsInitialised = 0;
    PF_State sourceState{}, backState{};
    std::uint8_t statesValid = 0;
    std::uint32_t cachedDownsample = 0;  ///< larger denominator at the last render
    std::int32_t sourceWidth = 0, sourceHeight = 0;
    std::int32_t cachedRotation = 0;
    std::vector<std::uint32_t> sourceTextures, backTextures;  ///< GL names, owned
    double cachedCropLeft = 0, cachedCropTop = 0, cachedCropRight = 0, cachedCropBottom = 0;
    // What else the pixels in the textures depend on.
    std::uint8_t cachedContourInset = 0;
    std::int32_t cachedPixelFormat = 0;
    std::int32_t cachedWorldWidth = 0, cachedWorldHeight = 0;
};
