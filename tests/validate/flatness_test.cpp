// What counts as growth in the validator's long runs.
#include "validate/flatness.h"

#include <gtest/gtest.h>

#include <ostream>

namespace orv {
namespace {

/// What a process holds after each of 90 steps.
struct growthCase {
    const char* name;
    std::int64_t (*heapAfter)(int step);
    int stepsPerTexture;  ///< 0: none is made
    const char* growth;
};
void PrintTo(const growthCase& c, std::ostream* out)
{
    *out << c.name;
}

class Growth : public testing::TestWithParam<growthCase> {};

TEST_P(Growth, IsToldFromWhatComesAndGoes)
{
    const growthCase& c = GetParam();
    std::vector<holdings> steps;
    for (int k = 0; k < 90; ++k) {
        holdings& now = steps.emplace_back();
        now.heapBytes = 1'000'000 + c.heapAfter(k);
        if (c.stepsPerTexture > 0) now.gl.textures = 3 + k / c.stepsPerTexture;
    }
    EXPECT_EQ(GrowthOf(LeastOfBlocks(steps, 9)), c.growth);
}
INSTANTIATE_TEST_SUITE_P(
    Runs, Growth,
    testing::Values(
        growthCase{"Swings", [](int k) -> std::int64_t { return k % 10 * 50'000; }, 0, ""},
        growthCase{"Settles", [](int k) -> std::int64_t { return k < 40 ? k * 100 : 4000; }, 0, ""},
        growthCase{"EightBytesAStep", [](int k) -> std::int64_t { return 8 * k + k % 10 * 50'000; },
                   0, "the heap grew all the time, by 640 bytes"},
        growthCase{"MuchAtOnce", [](int k) -> std::int64_t { return k < 60 ? 0 : 2'000'000; }, 0,
                   "the heap grew by 2000000 bytes"},
        growthCase{"Textures", [](int) -> std::int64_t { return 0; }, 40,
                   "GL objects grew from 0 contexts, 3 textures, 0 framebuffers, 0 renderbuffers, "
                   "0 buffers, 0 shaders and programs to 0 contexts, 5 textures, 0 framebuffers, 0 "
                   "renderbuffers, 0 buffers, 0 shaders and programs"}),
    [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace orv
