#include "plugin/worlds.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <span>

#include <fmt/format.h>

namespace orv {

namespace {

constexpr std::uint8_t kSentinel = 0xA7;
constexpr std::uint8_t kUnclearedByte = 0x5C;  ///< a 16-bit channel of it is still within range

/// Sentinels before the first row and behind the last, at least a row of them: an effect that draws
/// a row too many meets no other memory. A multiple of 64, for the alignment of the pixels.
std::size_t MarginBytes(A_long rowBytes)
{
    return (static_cast<std::size_t>(rowBytes) + 63) / 64 * 64;
}
std::span<std::uint8_t> FrontMargin(const hostWorld& world)
{
    return {world.block.memory.get(), MarginBytes(world.world.rowbytes)};
}
std::span<std::uint8_t> BackMargin(const hostWorld& world)
{
    return {world.row(world.world.height), MarginBytes(world.world.rowbytes)};
}
std::span<std::uint8_t> Padding(const hostWorld& world, A_long y)
{
    return {world.row(y) + world.pixelBytesInRow,
            static_cast<std::size_t>(world.world.rowbytes) - world.pixelBytesInRow};
}

void WriteSentinels(const hostWorld& world)
{
    std::ranges::fill(FrontMargin(world), kSentinel);
    std::ranges::fill(BackMargin(world), kSentinel);
    for (A_long y = 0; y < world.world.height; ++y) {
        std::ranges::fill(Padding(world, y), kSentinel);
    }
}

/// At least three pixels, so that no padded row has a multiple of the pixel size's next power.
A_long PaddingPixels(std::uint32_t serial)
{
    return 3 + 2 * static_cast<A_long>(serial % 4);
}

}  // namespace

A_long PixelBytes(PF_PixelFormat format)
{
    switch (format) {
        case PF_PixelFormat_ARGB32:
            return sizeof(PF_Pixel8);
        case PF_PixelFormat_ARGB64:
            return sizeof(PF_Pixel16);
        case PF_PixelFormat_ARGB128:
            return sizeof(PF_PixelFloat);
        case PF_PixelFormat_INVALID:
            break;
    }
    return 0;
}

PF_PixelFormat FormatOfDepth(int depth)
{
    return depth == 16 ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32;
}

hostWorld* WorldStore::New(A_long width, A_long height, PF_PixelFormat format, bool clear)
{
    constexpr A_long kLargestSide = 1 << 20;
    if (width > kLargestSide || height > kLargestSide) return nullptr;
    auto fresh = std::make_unique<hostWorld>();
    const A_long pixelBytes = PixelBytes(format);
    fresh->format = format;
    fresh->pixelBytesInRow = static_cast<std::size_t>(width) * static_cast<std::size_t>(pixelBytes);
    PF_EffectWorld& world = fresh->world;
    world.world_flags =
        PF_WorldFlag_WRITEABLE | (format == PF_PixelFormat_ARGB32 ? 0 : PF_WorldFlag_DEEP);
    world.rowbytes = (width + PaddingPixels(made_++)) * pixelBytes;
    world.width = width;
    world.height = height;
    world.extent_hint = {0, 0, width, height};
    const std::size_t margin = MarginBytes(world.rowbytes);
    const std::size_t bytes =
        static_cast<std::size_t>(world.rowbytes) * static_cast<std::size_t>(height) + 2 * margin;
    fresh->block = memory_.Take(bytes);
    if (!fresh->block.memory) return nullptr;
    std::uint8_t* memory = fresh->block.memory.get();
    if (!clear) {
        std::memset(memory, kUnclearedByte, bytes);
    } else if (!fresh->block.zeroed) {
        std::memset(memory, 0, bytes);
    }
    world.data = memory + margin;
    WriteSentinels(*fresh);
    hostWorld* made = fresh.get();
    worlds_.emplace(made->world.data, std::move(fresh));
    return made;
}

hostWorld* WorldStore::Find(const PF_EffectWorld* world) const
{
    if (world == nullptr || world->data == nullptr) return nullptr;
    const auto found = worlds_.find(world->data);
    if (found == worlds_.end()) return nullptr;
    const PF_EffectWorld& own = found->second->world;
    const bool same =
        own.width == world->width && own.height == world->height && own.rowbytes == world->rowbytes;
    return same ? found->second.get() : nullptr;
}

void WorldStore::FreeAt(const void* pixels)
{
    const auto found = worlds_.find(pixels);
    if (found == worlds_.end()) return;
    memory_.Give(std::move(found->second->block));
    worlds_.erase(found);
}

std::string WorldStore::DamagedPadding() const
{
    for (const auto& [pixels, each] : worlds_)
        if (std::string damage = PaddingDamage(*each); !damage.empty()) return damage;
    return {};
}

ownedWorld OwnBlankWorld(WorldStore& store, const image& like)
{
    ownedWorld made(store.New(like.width, like.height, FormatOfDepth(like.depth), /*clear=*/true),
                    freeWorld{&store});
    if (!made) throw std::bad_alloc();
    return made;
}

ownedWorld OwnWorldFrom(WorldStore& store, const image& picture)
{
    ownedWorld made = OwnBlankWorld(store, picture);
    CopyPixels(picture, *made);
    return made;
}

std::string PaddingDamage(const hostWorld& world)
{
    const auto damaged = [](std::span<const std::uint8_t> bytes) {
        return std::ranges::any_of(bytes, [](std::uint8_t byte) { return byte != kSentinel; });
    };
    const auto told = [&](const std::string& place) {
        return fmt::format(
            "something was written outside the rows of a world of {} x {} pixels: {}",
            world.world.width, world.world.height, place);
    };
    for (A_long y = 0; y < world.world.height; ++y)
        if (damaged(Padding(world, y))) return told(fmt::format("behind row {}", y));
    if (damaged(FrontMargin(world))) return told("before the first row");
    if (damaged(BackMargin(world))) return told("behind the last row");
    return {};
}

image ToImage(const hostWorld& world)
{
    image picture(world.world.width, world.world.height,
                  world.format == PF_PixelFormat_ARGB64 ? 16 : 8);
    for (A_long y = 0; y < world.world.height; ++y) {
        std::memcpy(picture.row(y), world.row(y), world.pixelBytesInRow);
    }
    return picture;
}

void CopyPixels(const image& from, hostWorld& to)
{
    for (A_long y = 0; y < to.world.height; ++y) {
        std::memcpy(to.row(y), from.row(y), to.pixelBytesInRow);
    }
}

std::uint64_t Checksum(const hostWorld& world)
{
    constexpr std::uint64_t kPrime = 0x9E3779B97F4A7C15U;
    std::uint64_t sum = 0;
    for (A_long y = 0; y < world.world.height; ++y) {
        const std::uint8_t* row = world.row(y);
        // Rows are multiples of 4 bytes; two words at a time keep this at memory speed.
        std::uint64_t even = sum + static_cast<std::uint64_t>(y), odd = ~sum;
        std::size_t at = 0;
        for (; at + 16 <= world.pixelBytesInRow; at += 16) {
            std::uint64_t words[2];
            std::memcpy(words, row + at, sizeof words);
            even = (even ^ words[0]) * kPrime;
            odd = (odd ^ words[1]) * kPrime;
        }
        for (; at + 4 <= world.pixelBytesInRow; at += 4) {
            std::uint32_t word = 0;
            std::memcpy(&word, row + at, sizeof word);
            even = (even ^ word) * kPrime;
        }
        sum = (even ^ (even >> 29)) + (odd ^ (odd >> 31)) * kPrime;
    }
    return sum;
}

}  // namespace orv
