// Level 4: masks and sources of every kind, and none. Whatever they are, a frame is answered, all
// of its output written, nothing kept, and the next ordinary frame is as it always is.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "validate/bench.h"
#include "validate/frameCheck.h"
#include "validate/testTable.h"

namespace orv {
namespace {

using points = std::vector<std::pair<double, double>>;

struct maskCase {
    std::string name;
    std::string mask;  ///< JSON
};

/// Vertices around the layer's middle, by the golden angle, so that the outline crosses itself.
points Whirl(int count)
{
    const double turn = std::numbers::pi * (3.0 - std::sqrt(5.0));
    points all;
    for (int k = 0; k < count; ++k) {
        const double radius = 22.0 * std::sqrt((k + 0.5) / count);
        all.emplace_back(32.0 + radius * std::cos(k * turn), 24.0 + radius * std::sin(k * turn));
    }
    return all;
}

/// Three vertices with tangents; `pull` is their length.
std::string CurvedMask(bool closed, double pull)
{
    return fmt::format(
        R"({{"mode": "n", "pt": {{"k": {{"c": {0}, "v": [[10, 30], [32, 10], [54, 30]],
 "i": [[0, 0], [-{1}, 0], [0, {1}]], "o": [[0, -{1}], [{1}, 0], [0, 0]]}}}}}})",
        closed, pull);
}

/// A mask that moves and changes its number of vertices on the way.
std::string ChangingMask()
{
    return R"({"mode": "n", "pt": {"k": [
 {"t": 0, "s": {"c": false, "v": [[8, 8], [56, 40]], "i": [[0, 0], [0, 0]], "o": [[0, 0], [0, 0]]}},
 {"t": 2, "s": {"c": false, "v": [[8, 40], [56, 8]], "i": [[0, 0], [0, 0]], "o": [[0, 0], [0, 0]]},
  "h": 1},
 {"t": 4, "s": {"c": true, "v": [[30, 20]], "i": [[0, 0]], "o": [[0, 0]]}}]}})";
}

std::vector<maskCase> MaskCases(bool full)
{
    const std::pair<const char*, points> shapes[] = {
        {"one vertex", {{30, 20}}},
        {"1000 vertices", Whirl(1000)},
        {"no vertex", {}},
        {"zero length", {{30, 20}, {30, 20}}},
        {"two vertices", {{8, 24}, {56, 24}}},
        {"doubled vertices", {{8, 24}, {8, 24}, {30, 10}, {30, 10}, {56, 24}, {56, 24}}},
        {"there and back", {{8, 24}, {56, 24}, {8, 24}}},
        {"a hundredth of a pixel", {{30, 20}, {30.01, 20}}},
        {"outside the layer", {{-500, -300}, {-400, -380}, {-450, 900}}},
        {"very long", {{-9000, 24}, {9000, 25}}}};
    std::vector<maskCase> cases;
    for (const auto& [name, vertices] : shapes)
        for (const bool closed : {false, true})
            cases.push_back({fmt::format("{}, {}", name, closed ? "closed" : "open"),
                             StraightMask(vertices, closed)});
    for (const bool closed : {false, true})
        for (const double pull : {12.0, 4000.0})
            cases.push_back(
                {fmt::format("curves, {}, pulled by {}", closed ? "closed" : "open", pull),
                 CurvedMask(closed, pull)});
    cases.push_back({"keys of other counts", ChangingMask()});
    constexpr std::size_t kSample = 6;  // up to the first without a vertex
    if (!full) cases.resize(kSample);
    return cases;
}

std::vector<int> IndicesOf(const effectDeclaration& declaration, paramKind kind)
{
    std::vector<int> indices;
    for (const paramDeclaration& each : declaration.params)
        if (each.index > 0 && each.kind == kind) indices.push_back(each.index);
    return indices;
}

const std::string& NameOf(const effectDeclaration& declaration, int index)
{
    return declaration.params.at(static_cast<std::size_t>(index)).name;
}

/// One bench with an ordinary scene to come back to.
class SourceBench {
public:
    SourceBench(const testSetting& setting, Checks& checks)
        : bench_(setting.module), checks_(checks), usual_(UsualSketch(bench_.declaration()))
    {
        // Paths may be read on the source, too.
        usual_.sourceWidth = usual_.width;
        usual_.sourceHeight = usual_.height;
        ordinary_ = bench_.Show(usual_);
        expected_ = bench_.Render(1.0);
    }

    /// Two frames of the scene, and then an ordinary one.
    void Try(const std::string& name, const sceneSketch& sketch, int depth = 8,
             refusal may = refusal::withMessage)
    {
        sceneSketch shown = sketch;
        shown.depth = depth;
        bench_.Show(shown);
        TryShown(fmt::format("{}, {} bits", name, depth), may);
    }
    /// The same with the scene that is on the bench.
    void TryShown(const std::string& name, refusal may = refusal::withMessage)
    {
        for (const double t : {0.0, 3.0}) {
            const auto picture =
                CheckFrame(checks_, bench_, fmt::format("{}, frame {}", name, t), t, may);
            if (picture && may == refusal::withMessage) ++accepted_;
        }
        bench_.ShowAgain(ordinary_);
        CheckPicture(checks_, bench_, fmt::format("an ordinary frame after {}", name), 1.0,
                     expected_);
    }

    /// Some cases may be refused, not all.
    void CheckAccepted(const char* cases)
    {
        checks_.That(accepted_ > 0, "every one of the {} was refused", cases);
    }

    [[nodiscard]] ValidationBench& bench() { return bench_; }
    [[nodiscard]] const sceneSketch& usual() const { return usual_; }

private:
    ValidationBench bench_;
    Checks& checks_;
    sceneSketch usual_;
    std::size_t ordinary_ = 0;
    image expected_;
    int accepted_ = 0;  ///< frames that might have been refused
};

// ---- masks

/// Every path parameter names the mask; in full also each of them alone.
void Masks(const testSetting& setting, Checks& checks)
{
    SourceBench rig(setting, checks);
    const std::vector<int> paths = IndicesOf(rig.bench().declaration(), paramKind::path);
    if (paths.empty()) Checks::Skip("the effect has no path parameter");
    for (const maskCase& each : MaskCases(setting.full)) {
        sceneSketch sketch = rig.usual();
        sketch.masks = {each.mask};
        rig.Try(each.name, sketch);
        if (!setting.full) continue;
        rig.Try(each.name, sketch, 16);
        sketch.masks = {rig.usual().masks.front(), each.mask};
        for (const int index : paths) {
            sceneSketch alone = sketch;
            alone.values[index] = std::to_string(2);
            rig.Try(fmt::format("{} in {} \"{}\"", each.name, index,
                                NameOf(rig.bench().declaration(), index)),
                    alone);
        }
    }
    rig.CheckAccepted("masks");
    rig.bench().host().Close();
}

/// No mask at all, and parameters that name one which was taken away.
void MissingMasks(const testSetting& setting, Checks& checks)
{
    SourceBench rig(setting, checks);
    const std::vector<int> paths = IndicesOf(rig.bench().declaration(), paramKind::path);
    if (paths.empty()) Checks::Skip("the effect has no path parameter");
    sceneSketch none = rig.usual();
    for (const int index : paths) none.values[index] = std::to_string(0);
    rig.Try("masks, but none is chosen", none, 8, refusal::never);
    none.masks.clear();
    rig.Try("no masks", none, 8, refusal::never);

    rig.bench().Show(rig.usual());
    rig.bench().Edit([](layer& owner) { owner.masks.clear(); });
    rig.TryShown("every mask taken away");
    for (const int index : paths) {
        const std::string place =
            fmt::format("{} \"{}\"", index, NameOf(rig.bench().declaration(), index));
        sceneSketch one = rig.usual();
        one.values[index] = std::to_string(0);
        rig.Try(fmt::format("no mask chosen in {}", place), one, 8, refusal::never);
        rig.bench().Show(rig.usual());
        rig.bench().Edit([index](layer& owner) {
            owner.effects.front().values[index].constant = {
                static_cast<double>(owner.masks.size() + 1)};
        });
        rig.TryShown(fmt::format("a mask that is gone in {}", place));
    }
    rig.bench().host().Close();
}

// ---- sources

struct sourceCase {
    const char* name;
    int ind;                 ///< what the layer parameters name
    std::string moreLayers;  ///< JSON
};

std::string SolidLayer(int width, int height, int from)
{
    return fmt::format(
        R"(, {{"ty": 1, "ind": 7, "sw": {}, "sh": {}, "sc": "#80c0ff", "hd": true, "ip": {}, "op": 10, "ks": {{}}}})",
        width, height, from);
}

std::vector<sourceCase> SourceCases()
{
    return {
        {"no source", 0, ""},
        {"the layer itself", kEffectInd, ""},
        {"a source of one pixel", 7, SolidLayer(1, 1, 0)},
        {"a source of 3 x 5", 7, SolidLayer(3, 5, 0)},
        {"a source outside its time", 7, SolidLayer(20, 10, 2)},
        {"a source of another shape", 7, SolidLayer(5, 700, 0)},
        {"a large source", 7, SolidLayer(2000, 1500, 0)},
        {"a null layer", 7, R"(, {"ty": 3, "ind": 7, "ip": 0, "op": 10, "ks": {}})"},
        {"a camera", 7, R"(, {"ty": 13, "ind": 7, "ip": 0, "op": 10, "pe": {"k": 60}, "ks": {}})"},
        {"a source twice as slow", 7,
         R"(, {"ty": 0, "ind": 7, "refId": "quarters", "w": 40, "h": 16, "sr": 2, "hd": true, "ip": 0, "op": 10, "ks": {}})"}};
}

/// Every layer parameter, and each alone: so a source comes as the back face of another, too.
void Sources(const testSetting& setting, Checks& checks)
{
    SourceBench rig(setting, checks);
    const std::vector<int> layers = IndicesOf(rig.bench().declaration(), paramKind::layer);
    if (layers.empty()) Checks::Skip("the effect has no layer parameter");
    std::vector<sourceCase> cases = SourceCases();
    constexpr std::size_t kSample = 3;
    if (!setting.full) cases.resize(kSample);
    for (const sourceCase& each : cases) {
        const refusal may = each.ind == 0 ? refusal::never : refusal::withMessage;
        sceneSketch sketch = rig.usual();
        sketch.moreLayers = each.moreLayers;
        for (const int index : layers) sketch.values[index] = std::to_string(each.ind);
        rig.Try(each.name, sketch, 8, may);
        if (setting.full) rig.Try(each.name, sketch, 16, may);
        for (const int index : layers) {
            sceneSketch alone = sketch;
            for (const int other : layers) alone.values[other] = std::to_string(kSourceInd);
            alone.values[index] = std::to_string(each.ind);
            rig.Try(fmt::format("{} in {} \"{}\"", each.name, index,
                                NameOf(rig.bench().declaration(), index)),
                    alone, 8, may);
        }
    }
    rig.CheckAccepted("sources");
    rig.bench().host().Close();
}

constexpr std::array kTests{
    validationTest{"sources.masks", 4, "Masks of no, one and many vertices, closed and open", 60,
                   300, Masks},
    validationTest{"sources.missingMasks", 4, "No mask chosen, and masks that are gone", 60, 60,
                   MissingMasks},
    validationTest{"sources.layers", 4, "No source, empty, small, large and foreign ones", 60, 120,
                   Sources},
};

}  // namespace

std::span<const validationTest> SourceTests()
{
    return kTests;
}

}  // namespace orv
