// damage.h: files as they come out of broken disks and transfers. Pure: the same bytes, seed and
// index give the same damage on every machine, so a message that names both is enough to repeat a
// failure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

using byteList = std::vector<std::uint8_t>;

/// The kinds of damage, in the order in which the index takes them.
enum class damageKind {
    flip,      ///< some bits within the window are inverted
    set,       ///< some bytes within the window become 0, 127, 128, 255 or any other value
    remove,    ///< the window is cut out
    truncate,  ///< everything from the window's start on is cut off
    repeat     ///< the window's bytes stand there again, up to 16 times
};
constexpr int kDamageKinds = 5;
/// Windows that one pass over the file has; each is a 32nd of the file, 64 bytes at most.
constexpr int kDamagePlaces = 64;

damageKind DamageKindOf(std::uint64_t index);

/// `bytes` with one damage in a window that slides along the file: the kind changes with every
/// index, the window moves on after all kinds were had, and one pass takes kDamageKinds *
/// kDamagePlaces indices. Every pass starts at another offset. Empty bytes stay empty.
byteList Damaged(std::span<const std::uint8_t> bytes, std::uint64_t seed, std::uint64_t index);

/// The same for texts.
std::string DamagedText(std::string_view text, std::uint64_t seed, std::uint64_t index);

}  // namespace orv
