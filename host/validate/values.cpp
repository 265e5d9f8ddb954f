#include <array>

#include "validate/bench.h"
#include "validate/testTable.h"

namespace orv {
namespace {

void RendersEverything(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module);
    bench.Show(EverythingSketch(bench.declaration()));
    const image first = bench.Render(1.0);
    checks.That(first == bench.Render(1.0), "the same frame differs the second time");
    bench.host().Close();
}

constexpr std::array kTests{
    validationTest{"values.everything", 6, "A scene that uses everything renders", 60, 60,
                   RendersEverything},
};

}  // namespace

std::span<const validationTest> ValueTests()
{
    return kTests;
}

}  // namespace orv
