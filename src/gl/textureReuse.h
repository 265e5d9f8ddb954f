// textureReuse.h: whether the textures of an instance's last render still show what they should.
#pragma once

#include <cstdint>

#include "geometry/paramSnapshot.h"
#include "gl/frameSettings.h"
#include "gl/sequenceData.h"

/// Everything that the pixels of the textures depend on, but for the layers' own content.
struct textureInputs {
    std::uint32_t downsample = 0;  ///< larger denominator
    std::int32_t rotation = 0;
    double cropLeft = 0, cropRight = 0, cropTop = 0, cropBottom = 0;  ///< percent
    bool contourInset = false;
    std::int32_t pixelFormat = 0;
    std::int32_t worldWidth = 0, worldHeight = 0;
    bool operator==(const textureInputs&) const = default;
};

textureInputs CurrentInputs(const frameSettings& settings, const paramSnapshot& values);
textureInputs CachedInputs(const SequenceData& record);
void StoreInputs(const textureInputs& inputs, SequenceData& record);

/// Whether both texture lists hold a name at the instance's slot; a back-face name is asked for
/// only with `separateBack`.
bool HasTextures(const SequenceData& record, bool separateBack);
/// The name at the instance's slot, or 0.
std::uint32_t TextureAt(const std::vector<std::uint32_t>& names, std::int32_t slot);

/// The whole test: compares inputs and the layers' states with what `record` remembers, then
/// remembers the new ones, whatever came out. Each state is taken at the time at which its layer
/// is read. `record.statesValid` is left clear: whoever then makes sure of the textures sets it. On
/// a host error the answer is unspecified.
PF_Err TestTextureReuse(const renderHost& host, const frameSettings& settings,
                        const paramSnapshot& values, bool& reuse);
