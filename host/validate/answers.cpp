// Level 2: what the module answers before and after all frames, and what it declares.
#include <algorithm>
#include <array>
#include <cmath>

#include "validate/bench.h"
#include "validate/frameCheck.h"
#include "validate/testTable.h"

namespace orv {
namespace {

// ---- commands

/// Sends the command without a scene, or with the bench's, and checks that it succeeds.
void CheckAnswer(Checks& checks, ValidationBench& bench, PF_Cmd cmd, const std::string& name,
                 bool withFrame)
{
    Attempt(checks, name, [&] {
        const effectFrame frame = withFrame ? bench.Frame() : effectFrame{};
        std::string message;
        const PF_Err result =
            bench.host().Send(cmd, withFrame ? &frame : nullptr, nullptr, nullptr, message);
        checks.That(result == PF_Err_NONE, "{} is answered with {} \"{}\"", name, result, message);
    });
}

void TellsAboutItself(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module);
    std::array<std::string, 2> texts;
    for (std::string& text : texts) {
        const PF_Err result = bench.host().Send(PF_Cmd_ABOUT, nullptr, nullptr, nullptr, text);
        checks.That(result == PF_Err_NONE, "ABOUT is answered with {}", result);
        checks.That(
            std::ranges::none_of(
                text,
                [](char c) { return c > 0 && c < ' ' && c != '\r' && c != '\n' && c != '\t'; }),
            "the text of ABOUT holds control characters");
    }
    checks.That(texts[0] == texts[1], "ABOUT tells \"{}\" first and \"{}\" then", texts[0],
                texts[1]);
    Attempt(checks, "GLOBAL_SETDOWN", [&] { bench.host().Close(); });
}

/// Each command of an instance's life alone, in an order without frames.
void CheckInstance(Checks& checks, ValidationBench& bench)
{
    bench.Show(UsualSketch(bench.declaration()));
    CheckAnswer(checks, bench, PF_Cmd_SEQUENCE_SETUP, "SEQUENCE_SETUP", true);
    CheckAnswer(checks, bench, PF_Cmd_SEQUENCE_FLATTEN, "SEQUENCE_FLATTEN", true);
    CheckAnswer(checks, bench, PF_Cmd_SEQUENCE_RESETUP, "SEQUENCE_RESETUP", true);
    CheckAnswer(checks, bench, PF_Cmd_SEQUENCE_SETDOWN, "SEQUENCE_SETDOWN", true);
}

void SetsUpAndDown(const testSetting& setting, Checks& checks)
{
    // A host that unloads effects it does not need sets them up again later.
    constexpr int kTimes = 3;
    for (int time = 1; time <= kTimes; ++time) {
        Attempt(checks, fmt::format("set-up number {}", time), [&] {
            ValidationBench bench(setting.module);
            if (time > 1) CheckInstance(checks, bench);
            if (time > 2) CheckInstance(checks, bench);
            bench.host().Close();
        });
    }
}

// ---- parameters

bool IsSlider(const paramDeclaration& param)
{
    return param.kind == paramKind::slider || param.kind == paramKind::floatSlider;
}

/// "parameter 7 (Width)"
std::string NameOf(const paramDeclaration& param)
{
    return fmt::format("parameter {} ({})", param.index, param.name);
}

void CheckSlider(Checks& checks, const paramDeclaration& param)
{
    const double value = param.initial.at(0);
    checks.That(param.validMin <= value && value <= param.validMax,
                "{}: its default {} is outside its valid range {}..{}", NameOf(param), value,
                param.validMin, param.validMax);
    checks.That(param.sliderMin < param.sliderMax, "{}: its slider's range is {}..{}",
                NameOf(param), param.sliderMin, param.sliderMax);
    checks.That(param.validMin <= param.sliderMin && param.sliderMax <= param.validMax,
                "{}: its slider's range {}..{} leaves its valid range {}..{}", NameOf(param),
                param.sliderMin, param.sliderMax, param.validMin, param.validMax);
}

void CheckPopup(Checks& checks, const paramDeclaration& param)
{
    const double value = param.initial.at(0);
    const auto count = static_cast<double>(param.choices.size());
    checks.That(value >= 1.0 && value <= count, "{}: its default is choice {} of {}", NameOf(param),
                value, count);
    checks.That(std::ranges::none_of(param.choices, &std::string::empty),
                "{}: a choice has no name", NameOf(param));
}

void CheckParam(Checks& checks, const paramDeclaration& param)
{
    const bool finite =
        std::ranges::all_of(param.initial, [](double v) { return std::isfinite(v); });
    if (!checks.That(finite, "{}: its default is no number", NameOf(param))) return;
    const bool named = !param.name.empty() || param.kind == paramKind::groupEnd;
    checks.That(named, "{} has no name", NameOf(param));
    if (IsSlider(param)) CheckSlider(checks, param);
    if (param.kind == paramKind::popup) CheckPopup(checks, param);
    const bool layerLike = param.kind == paramKind::path || param.kind == paramKind::layer;
    if (layerLike)
        checks.That(param.initial.at(0) >= -1.0, "{}: its default is {}", NameOf(param),
                    param.initial.at(0));
}

bool SameDeclaration(const paramDeclaration& one, const paramDeclaration& other)
{
    return one.id == other.id && one.kind == other.kind && one.name == other.name &&
           one.initial == other.initial && one.validMin == other.validMin &&
           one.validMax == other.validMax && one.flags == other.flags &&
           one.choices == other.choices;
}

void DeclaresItsParameters(const testSetting& setting, Checks& checks)
{
    // That the set is complete, its IDs unique and its groups closed is asked by the host itself.
    std::vector<paramDeclaration> first;
    {
        ValidationBench bench(setting.module);
        first = bench.declaration().params;
        bench.host().Close();
    }
    checks.Figure("parameters", static_cast<double>(first.size()) - 1);
    checks.That(!first.empty(), "there is not even the input");
    for (const paramDeclaration& param : first)
        if (param.index > 0) CheckParam(checks, param);

    ValidationBench again(setting.module);
    const std::vector<paramDeclaration>& second = again.declaration().params;
    checks.That(std::ranges::equal(first, second, SameDeclaration),
                "the second PARAMS_SETUP declares other parameters than the first");
    again.host().Close();
}

constexpr std::array kTests{
    validationTest{"answers.about", 2, "Tells about itself", 30, 30, TellsAboutItself},
    validationTest{"answers.setups", 2, "Set-ups and set-downs answer and give every handle back",
                   60, 60, SetsUpAndDown},
    validationTest{"answers.parameters", 2, "Parameters are complete, unique and within range", 30,
                   30, DeclaresItsParameters},
};

}  // namespace

std::span<const validationTest> AnswerTests()
{
    return kTests;
}

}  // namespace orv
