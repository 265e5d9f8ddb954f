// Damage that other tests rely on: if it did nothing, they would prove nothing.
#include "support/damage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace orv {
namespace {

constexpr std::uint64_t kOnePass = std::uint64_t{kDamageKinds} * kDamagePlaces;

byteList Numbers(std::size_t count)
{
    byteList bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

/// How many bytes lie before the first difference; the size of the shorter when there is none.
std::size_t SameAtStart(const byteList& a, const byteList& b)
{
    return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

std::size_t SameAtEnd(byteList a, byteList b)
{
    std::ranges::reverse(a);
    std::ranges::reverse(b);
    return SameAtStart(a, b);
}

TEST(Damage, StaysWithinAWindowThatSlidesAlongTheFile)
{
    const byteList whole = Numbers(2000);
    std::vector<bool> reached(kDamagePlaces);
    for (std::uint64_t index = 0; index < kOnePass; ++index) {
        SCOPED_TRACE(index);
        const byteList damaged = Damaged(whole, 1, index);
        const std::size_t start = SameAtStart(whole, damaged);
        const std::size_t kept = start + SameAtEnd(whole, damaged);
        switch (DamageKindOf(index)) {
            case damageKind::flip:
            case damageKind::set:
                EXPECT_EQ(damaged.size(), whole.size());
                EXPECT_GE(kept, whole.size() - 64);
                break;
            case damageKind::remove:
                EXPECT_LT(damaged.size(), whole.size());
                EXPECT_GE(damaged.size(), whole.size() - 64);
                EXPECT_GE(kept, damaged.size());
                break;
            case damageKind::truncate:
                EXPECT_LT(damaged.size(), whole.size());
                EXPECT_EQ(start, damaged.size());
                break;
            case damageKind::repeat:
                EXPECT_GT(damaged.size(), whole.size());
                EXPECT_GE(kept, whole.size());
                break;
        }
        if (damaged != whole) reached[start * kDamagePlaces / whole.size()] = true;
    }
    EXPECT_GE(std::ranges::count(reached, true), kDamagePlaces - 2) << "one pass is the whole file";
}

TEST(Damage, IsTheSameAgainForTheSameSeedAndIndexAlone)
{
    const byteList whole = Numbers(300);
    int alike = 0;
    for (std::uint64_t index = 0; index < kOnePass; ++index) {
        EXPECT_EQ(Damaged(whole, 7, index), Damaged(whole, 7, index));
        alike += Damaged(whole, 7, index) == Damaged(whole, 8, index) ? 1 : 0;
        alike += Damaged(whole, 7, index) == Damaged(whole, 7, index + kOnePass) ? 1 : 0;
    }
    EXPECT_LT(alike, 2 * static_cast<int>(kOnePass) / 5) << "seeds and passes differ";
}

TEST(Damage, SmallFilesAreNoTrouble)
{
    for (const std::size_t size : {0U, 1U, 2U, 31U}) {
        const byteList whole = Numbers(size);
        for (std::uint64_t index = 0; index < kOnePass; ++index) {
            EXPECT_LE(Damaged(whole, 1, index).size(), 17 * size);
        }
    }
    EXPECT_EQ(DamagedText("scene", 1, 3).size(), 0U) << "cut off at its first window";
}

}  // namespace
}  // namespace orv
