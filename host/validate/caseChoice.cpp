#include "validate/caseChoice.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <random>

namespace orv {

std::vector<std::int64_t> ChooseCases(std::int64_t count, const testSetting& setting)
{
    constexpr std::int64_t kFirst = 100, kSeeded = 200;
    std::vector<std::int64_t> all(static_cast<std::size_t>(std::max<std::int64_t>(count, 0)));
    std::iota(all.begin(), all.end(), 1);
    if (setting.full || count <= kFirst + kSeeded) return all;
    std::vector<std::int64_t> chosen(all.begin(), all.begin() + kFirst);
    std::mt19937_64 random(setting.seed);
    std::ranges::sample(all.begin() + kFirst, all.end(), std::back_inserter(chosen), kSeeded,
                        random);
    return chosen;
}

}  // namespace orv
