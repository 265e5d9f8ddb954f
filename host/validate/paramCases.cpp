#include "validate/paramCases.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace orv {
namespace {

double Between(randomSource& random, double least, double most)
{
    return std::uniform_real_distribution<double>(least, most)(random);
}
int Whole(randomSource& random, int least, int most)
{
    return std::uniform_int_distribution<int>(least, most)(random);
}
/// True once in `times`.
bool Once(randomSource& random, int times)
{
    return Whole(random, 1, times) == 1;
}

std::string ListText(const std::vector<double>& numbers)
{
    return fmt::format("[{}]", fmt::join(numbers, ", "));
}

std::vector<double> RangeEnds(const paramDeclaration& param)
{
    return {param.validMin, param.validMax, param.sliderMin, param.sliderMax,
            param.initial.empty() ? param.validMin : param.initial.front()};
}

/// Turns of an angle, in degrees: none, quarters, several, and as far as an angle goes.
constexpr double kAngles[] = {0.0, 90.0, -180.0, 360.0, 1080.5, 32767.0, -32767.0};

std::vector<std::string> WholeNumbers(int first, int last)
{
    std::vector<std::string> texts;
    for (int k = first; k <= last; ++k) texts.push_back(std::to_string(k));
    return texts;
}

std::vector<std::string> PointEnds(const sceneSketch& sketch)
{
    const double w = sketch.width, h = sketch.height;
    return {ListText({0, 0, 0}), ListText({w, h, 0}), ListText({-10 * w, 10 * h, -1000}),
            ListText({w / 2, h / 2, 1000}), ListText({1e6, -1e6, 1e6})};
}

std::string RandomNumber(const paramDeclaration& param, randomSource& random)
{
    const bool all = Once(random, 8);
    const double least = all ? param.validMin : std::max(param.sliderMin, param.validMin);
    const double most = all ? param.validMax : std::min(param.sliderMax, param.validMax);
    const double value = Between(random, least, std::max(least, most));
    if (param.kind == paramKind::slider) return fmt::format("{}", std::round(value));
    return fmt::format("{}", static_cast<float>(value));
}

std::string RandomPoint(const sceneSketch& sketch, randomSource& random)
{
    const double reach = Once(random, 8) ? 10.0 : 1.0;
    return ListText({Between(random, -0.5, 1.5) * sketch.width * reach,
                     Between(random, -0.5, 1.5) * sketch.height * reach,
                     Between(random, -50.0, 50.0) * reach});
}

std::string RandomColor(randomSource& random)
{
    std::vector<double> channels(4);
    for (double& each : channels) each = Whole(random, 0, 255) / 255.0;
    return ListText(channels);
}

/// A value on each of the scene's ends, and whatever lies between them.
std::string Moving(const paramDeclaration& param, const sceneSketch& sketch, randomSource& random)
{
    const auto key = [&](int t) {
        const std::string value = RandomValue(param, sketch, random);
        return fmt::format(R"({{"t": {}, "s": {}}})", t,
                           value.front() == '[' ? value : "[" + value + "]");
    };
    const std::string first = key(0);
    return fmt::format("[{}, {}]", first, key(sketch.frames - 1));
}

}  // namespace

bool HasValue(const paramDeclaration& param)
{
    return param.index > 0 && param.kind != paramKind::groupStart &&
           param.kind != paramKind::groupEnd;
}

std::vector<std::string> EndValues(const paramDeclaration& param, const sceneSketch& sketch)
{
    std::vector<double> numbers;
    switch (param.kind) {
        case paramKind::slider:
        case paramKind::floatSlider:
            numbers = RangeEnds(param);
            break;
        case paramKind::angle:
            numbers.assign(std::begin(kAngles), std::end(kAngles));
            break;
        case paramKind::checkbox:
            return WholeNumbers(0, 1);
        case paramKind::color:
            return {ListText({0, 0, 0, 0}), ListText({0, 0, 0, 1}), ListText({1, 1, 1, 1})};
        case paramKind::popup:
            return WholeNumbers(1, static_cast<int>(param.choices.size()));
        case paramKind::path:
            return WholeNumbers(0, static_cast<int>(sketch.masks.size()));
        case paramKind::layer:
            return {"0", std::to_string(kEffectInd), std::to_string(kSourceInd)};
        case paramKind::point3D:
            return PointEnds(sketch);
        case paramKind::groupStart:
        case paramKind::groupEnd:
            break;
    }
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    std::vector<std::string> texts;
    for (const double each : numbers) texts.push_back(fmt::format("{}", each));
    return texts;
}

std::string RandomValue(const paramDeclaration& param, const sceneSketch& sketch,
                        randomSource& random)
{
    const std::vector<std::string> ends = EndValues(param, sketch);
    switch (param.kind) {
        case paramKind::slider:
        case paramKind::floatSlider:
            if (!Once(random, 20)) return RandomNumber(param, random);
            break;
        case paramKind::angle:
            if (!Once(random, 10)) return fmt::format("{}", Between(random, -400.0, 400.0));
            break;
        case paramKind::color:
            return RandomColor(random);
        case paramKind::point3D:
            return RandomPoint(sketch, random);
        case paramKind::path:
            // Without a path many effects do nothing: that is to be seldom.
            if (!Once(random, 10))
                return ends[ends.size() > 1 ? 1 + random() % (ends.size() - 1) : 0];
            break;
        case paramKind::checkbox:
        case paramKind::popup:
        case paramKind::layer:
        case paramKind::groupStart:
        case paramKind::groupEnd:
            break;
    }
    return ends.empty() ? "0" : ends[random() % ends.size()];
}

void ChooseValues(sceneSketch& sketch, const effectDeclaration& declaration, randomSource& random)
{
    // With all of them at random most pictures are empty.
    constexpr int kOneOf[] = {1, 3, 10, 30};
    const int oneOf = kOneOf[random() % std::size(kOneOf)];
    for (const paramDeclaration& param : declaration.params) {
        if (!HasValue(param) || !Once(random, oneOf)) continue;
        const bool moves = param.canVary && sketch.frames > 1 && Once(random, 4);
        sketch.values[param.index] =
            moves ? Moving(param, sketch, random) : RandomValue(param, sketch, random);
    }
}

}  // namespace orv
