#include "support/damage.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace orv {
namespace {

/// Random numbers that are the same with every standard library (splitmix64).
class Dice {
public:
    explicit Dice(std::uint64_t state) : state_(state) {}
    std::uint64_t next()
    {
        std::uint64_t z = (state_ += 0x9e3779b97f4a7c15U);
        z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31U);
    }
    /// 0 <= result < end.
    std::size_t below(std::size_t end) { return static_cast<std::size_t>(next() % end); }

private:
    std::uint64_t state_;
};

struct byteWindow {
    std::size_t start = 0, size = 1;  ///< within the file, never empty
};

byteWindow WindowAt(std::size_t fileSize, std::uint64_t index, Dice& dice)
{
    const std::size_t longest = std::clamp<std::size_t>(fileSize / 32, 1, 64);
    const std::size_t step = std::max<std::size_t>(fileSize / kDamagePlaces, 1);
    const auto place = static_cast<std::size_t>((index / kDamageKinds) % kDamagePlaces);
    const std::size_t start = (place * step + dice.below(step)) % fileSize;
    return {start, std::min(1 + dice.below(longest), fileSize - start)};
}

void FlipBits(std::span<std::uint8_t> window, Dice& dice)
{
    for (std::size_t count = 1 + dice.below(4); count > 0; --count) {
        std::uint8_t& byte = window[dice.below(window.size())];
        byte = static_cast<std::uint8_t>(byte ^ (1U << dice.below(8)));
    }
}

void SetBytes(std::span<std::uint8_t> window, Dice& dice)
{
    constexpr std::array<std::uint8_t, 4> kExtremes{0, 127, 128, 255};
    for (std::size_t count = 1 + dice.below(4); count > 0; --count) {
        const std::size_t choice = dice.below(kExtremes.size() + 1);
        window[dice.below(window.size())] = choice < kExtremes.size()
                                                ? kExtremes[choice]
                                                : static_cast<std::uint8_t>(dice.below(256));
    }
}

void Repeat(byteList& bytes, const byteWindow& window, Dice& dice)
{
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(window.start);
    const byteList piece(first, first + static_cast<std::ptrdiff_t>(window.size));
    byteList again;
    for (std::size_t count = 1 + dice.below(16); count > 0; --count) {
        again.insert(again.end(), piece.begin(), piece.end());
    }
    bytes.insert(first, again.begin(), again.end());
}

}  // namespace

damageKind DamageKindOf(std::uint64_t index)
{
    return static_cast<damageKind>(index % kDamageKinds);
}

byteList Damaged(std::span<const std::uint8_t> bytes, std::uint64_t seed, std::uint64_t index)
{
    byteList result(bytes.begin(), bytes.end());
    if (result.empty()) return result;

    Dice seeds(seed);
    Dice dice(seeds.next() ^ index);
    const byteWindow window = WindowAt(result.size(), index, dice);
    const std::span<std::uint8_t> inside = std::span(result).subspan(window.start, window.size);
    const auto first = result.begin() + static_cast<std::ptrdiff_t>(window.start);
    switch (DamageKindOf(index)) {
        case damageKind::flip:
            FlipBits(inside, dice);
            break;
        case damageKind::set:
            SetBytes(inside, dice);
            break;
        case damageKind::remove:
            result.erase(first, first + static_cast<std::ptrdiff_t>(window.size));
            break;
        case damageKind::truncate:
            result.erase(first, result.end());
            break;
        case damageKind::repeat:
            Repeat(result, window, dice);
            break;
    }
    return result;
}

std::string DamagedText(std::string_view text, std::uint64_t seed, std::uint64_t index)
{
    const byteList bytes =
        Damaged({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}, seed, index);
    return {bytes.begin(), bytes.end()};
}

}  // namespace orv
