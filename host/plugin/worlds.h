// worlds.h: images in the host's layout, as effects see them.
//
// Rows are padded on purpose, by a different amount from world to world, so that an effect that
// takes `rowbytes` for granted is found. Padding and the bytes before and behind the pixels hold
// sentinels.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "host_api.h"

#include "image/image.h"
#include "plugin/blockPool.h"

namespace orv {

/// Bytes of a pixel; 0 for a format that does not exist.
A_long PixelBytes(PF_PixelFormat format);
/// The format of a project's depth, 8 or 16.
PF_PixelFormat FormatOfDepth(int depth);

struct hostWorld {
    PF_EffectWorld world{};  ///< as handed out
    PF_PixelFormat format = PF_PixelFormat_INVALID;
    std::size_t pixelBytesInRow = 0;
    memoryBlock block;

    [[nodiscard]] std::uint8_t* row(A_long y) const
    {
        return static_cast<std::uint8_t*>(world.data) +
               static_cast<std::ptrdiff_t>(y) * world.rowbytes;
    }
};

/// Owns the worlds. A world is known by the address of its pixels: effects may copy the record.
class WorldStore {
public:
    /// `clear`: transparent black, else pixels of no meaning, the same in every run. Null when
    /// there is no memory. Both sides must be above 0.
    hostWorld* New(A_long width, A_long height, PF_PixelFormat format, bool clear);
    /// The world behind a record that an effect passes; null when it is not one of the host's, or
    /// when size or rowbytes were changed.
    [[nodiscard]] hostWorld* Find(const PF_EffectWorld* world) const;
    void Free(const hostWorld& world) { FreeAt(world.world.data); }
    /// By the address of its pixels.
    void FreeAt(const void* pixels);
    /// PaddingDamage of the first world that has some.
    [[nodiscard]] std::string DamagedPadding() const;

private:
    std::unordered_map<const void*, std::unique_ptr<hostWorld>> worlds_;
    BlockPool memory_;
    std::uint32_t made_ = 0;
};

/// Frees a world of the host's own when nobody needs it any more.
struct freeWorld {
    WorldStore* store = nullptr;
    void operator()(hostWorld* world) const { store->Free(*world); }
};
using ownedWorld = std::unique_ptr<hostWorld, freeWorld>;

/// A world with the image's pixels; one of its size and depth that is transparent black. Throw
/// std::bad_alloc.
ownedWorld OwnWorldFrom(WorldStore& store, const image& picture);
ownedWorld OwnBlankWorld(WorldStore& store, const image& like);

/// Where something was written outside the rows, as a broken rule; "" if nowhere.
std::string PaddingDamage(const hostWorld& world);
/// The pixels without the padding. The depth must be 8 or 16 bits.
image ToImage(const hostWorld& world);
/// Sizes and depths must be equal.
void CopyPixels(const image& from, hostWorld& to);
/// Of the pixels; tells with near certainty whether one was changed.
std::uint64_t Checksum(const hostWorld& world);

}  // namespace orv
