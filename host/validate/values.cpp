// Level 6: values. Each parameter at the ends of its range and all of them at random. A frame is a
// function of scene and time: neither the frame before, nor the order, nor the values that the
// instance had earlier, nor what stood in the output show in it.
#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "validate/bench.h"
#include "validate/frameCheck.h"
#include "validate/paramCases.h"
#include "validate/testTable.h"

namespace orv {
namespace {

/// Ends the instance on the bench, as its layer's removal would.
void SetDown(Checks& checks, ValidationBench& bench, const std::string& where)
{
    Attempt(checks, where, [&] {
        const effectFrame frame = bench.Frame();
        std::string message;
        const PF_Err result =
            bench.host().Send(PF_Cmd_SEQUENCE_SETDOWN, &frame, nullptr, nullptr, message);
        checks.That(result == PF_Err_NONE, "{}: SEQUENCE_SETDOWN answered {}: {}", where, result,
                    message);
    });
}

// ---- one parameter at a time

std::string Place(const paramDeclaration& param, const std::string& value, const char* base)
{
    return fmt::format("parameter {} \"{}\" = {} in the {} scene", param.index, param.name, value,
                       base);
}

/// The declared default; no mask and no source for parameters that name one.
bool IsDefault(const paramDeclaration& param, const std::string& value)
{
    if (param.kind == paramKind::path || param.kind == paramKind::layer) return value == "0";
    return !param.initial.empty() && value == fmt::format("{}", param.initial.front());
}

/// Some values may be refused, not all of a test.
void CheckAccepted(Checks& checks, std::ptrdiff_t accepted)
{
    checks.That(accepted > 0, "every value was refused");
}

/// Returns how many values were accepted. A default may not be refused.
int CheckEnds(Checks& checks, ValidationBench& bench, const paramDeclaration& param,
              const sceneSketch& sketch, const char* base)
{
    int accepted = 0;
    int depth = 8;
    for (const std::string& value : EndValues(param, sketch)) {
        sceneSketch changed = sketch;
        changed.values[param.index] = value;
        changed.depth = depth;
        depth = 24 - depth;  // 8 and 16 in turn
        bench.Show(changed);
        const std::string place = Place(param, value, base);
        const refusal may = IsDefault(param, value) ? refusal::never : refusal::withMessage;
        if (CheckFrame(checks, bench, place, 1.0, may)) ++accepted;
        SetDown(checks, bench, place);
        checks.Figure("parameter values", 1);
    }
    return accepted;
}

void Ends(const testSetting& setting, Checks& checks)
{
    constexpr int kSampleStep = 12;
    ValidationBench bench(setting.module);
    const effectDeclaration declaration = bench.declaration();
    const sceneSketch usual = UsualSketch(declaration), everything = EverythingSketch(declaration);
    int count = 0, accepted = 0;
    for (const paramDeclaration& param : declaration.params) {
        if (!HasValue(param)) continue;
        if (!setting.full && count++ % kSampleStep != 0) continue;
        accepted += CheckEnds(checks, bench, param, usual, "usual");
        if (setting.full) accepted += CheckEnds(checks, bench, param, everything, "richest");
    }
    if (checks.made() == 0) Checks::Skip("the effect has no parameter with a value");
    CheckAccepted(checks, accepted);
    bench.host().Close();
}

// ---- random sets

struct valueSet {
    std::string name;
    sceneSketch sketch;
};

/// Set number `number` of a seed; small pictures, in both depths, with and without motion blur.
valueSet SetOf(const effectDeclaration& declaration, std::uint64_t seed, int number)
{
    randomSource random(seed * 1000003U + static_cast<std::uint64_t>(number));
    valueSet set{fmt::format("set {} of seed {}", number, seed), EverythingSketch(declaration)};
    if (number % 2 == 1) set.sketch.onLayer.clear();
    set.sketch.depth = number % 4 < 2 ? 8 : 16;
    ChooseValues(set.sketch, declaration, random);
    return set;
}

int SetCount(const testSetting& setting)
{
    return setting.full ? 50 : 6;
}

using pictureList = std::vector<std::optional<image>>;  ///< by kTimes; none: refused
constexpr std::array kTimes{0.0, 2.5, 9.0};

pictureList FirstPictures(Checks& checks, ValidationBench& bench, const valueSet& set)
{
    pictureList pictures;
    for (const double t : kTimes)
        pictures.push_back(CheckFrame(checks, bench, fmt::format("{}, frame {}", set.name, t), t,
                                      refusal::withMessage));
    return pictures;
}

void CompareShuffled(Checks& checks, ValidationBench& bench, const valueSet& set,
                     const pictureList& expected, randomSource& random)
{
    std::vector<std::size_t> order{0, 1, 2, 0};
    std::ranges::shuffle(order, random);
    for (const std::size_t k : order)
        if (expected[k])
            CheckPicture(checks, bench,
                         fmt::format("{}, frame {} in another order", set.name, kTimes[k]),
                         kTimes[k], *expected[k]);
}

/// The frames of every set in order; then, the module set up anew, the sets and frames in another.
void Random(const testSetting& setting, Checks& checks)
{
    std::vector<std::pair<valueSet, pictureList>> done;
    std::ptrdiff_t accepted = 0;
    {
        ValidationBench bench(setting.module);
        for (int number = 0; number < SetCount(setting); ++number) {
            valueSet set = SetOf(bench.declaration(), setting.seed, number);
            bench.Show(set.sketch);
            pictureList pictures = FirstPictures(checks, bench, set);
            SetDown(checks, bench, set.name);
            accepted +=
                std::ranges::count_if(pictures, [](const auto& p) { return p.has_value(); });
            done.emplace_back(std::move(set), std::move(pictures));
        }
        bench.host().Close();
    }
    checks.Figure("parameter sets", static_cast<double>(done.size()));
    CheckAccepted(checks, accepted);
    ValidationBench bench(setting.module);
    randomSource random(setting.seed);
    std::ranges::shuffle(done, random);
    for (const auto& [set, pictures] : done) {
        bench.Show(set.sketch);
        CompareShuffled(checks, bench, set, pictures, random);
    }
    bench.host().Close();
}

/// One instance whose values change from set to set, against instances that know one set only.
void Changes(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module);
    const std::size_t lasting = bench.Show(SetOf(bench.declaration(), setting.seed + 1, 0).sketch);
    const int depth = bench.scene().depth;
    int accepted = 0;
    for (int number = 1; number <= SetCount(setting); ++number) {
        valueSet set = SetOf(bench.declaration(), setting.seed + 1, number);
        set.sketch.depth = depth;
        bench.Show(set.sketch);
        const std::optional<image> expected =
            CheckFrame(checks, bench, set.name, 2.0, refusal::withMessage);
        const std::map<int, property> values = bench.owner().effects.front().values;
        const bool blurred = bench.owner().motionBlur;
        SetDown(checks, bench, set.name);
        bench.ShowAgain(lasting);
        bench.Edit([&](layer& owner) {
            owner.effects.front().values = values;
            owner.motionBlur = blurred;
        });
        if (!expected) continue;
        ++accepted;
        CheckPicture(checks, bench,
                     fmt::format("{} in an instance that had other values", set.name), 2.0,
                     *expected);
    }
    CheckAccepted(checks, accepted);
    checks.Figure("parameter sets", SetCount(setting));
    bench.host().Close();
}

constexpr std::array kTests{
    validationTest{"values.ends", 6, "Each parameter at the ends of its range", 120, 900, Ends},
    validationTest{"values.random", 6, "Random values, frames and sets in any order", 120, 900,
                   Random},
    validationTest{"values.changes", 6, "Values that change while an instance lives", 120, 600,
                   Changes},
};

}  // namespace

std::span<const validationTest> ValueTests()
{
    return kTests;
}

}  // namespace orv
