// Scene files: whatever the bytes are, they give a scene or one line that names the place; and
// whatever scene they give can be evaluated.
#include <algorithm>
#include <string>
#include <string_view>

#include "animation/evaluate.h"
#include "declaration.h"
#include "scene/loader.h"
#include "target.h"

namespace orv::fuzz {
namespace {

constexpr const char* kFile = "/nowhere/scene.json";

const loadOptions& Options()
{
    static const loadOptions kOptions{false, false, {Declaration()}};
    return kOptions;
}

void CheckMessage(std::string_view text, const char* promise)
{
    const bool oneLine = std::ranges::none_of(
        text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
    const bool named = text.starts_with(std::string(kFile) + ":");
    constexpr std::size_t kLongest = 200'000;  // 128 levels of the longest keys
    Require(oneLine && named && text.size() < kLongest, promise);
}

/// A few layers of each composition at a few instants.
void EvaluateSome(const project& scene)
{
    constexpr std::size_t kMostLayers = 8;
    const double frames[] = {static_cast<double>(scene.firstFrame), scene.firstFrame + 0.5,
                             static_cast<double>(scene.endFrame)};
    for (const composition& comp : scene.compositions) {
        const std::size_t count = std::min(comp.layers.size(), kMostLayers);
        for (const double t : frames) {
            (void)ViewAt(comp, comp.width, comp.height, t);
            for (std::size_t k = 0; k < count; ++k) {
                const layer& l = comp.layers[k];
                (void)WorldMatrix(comp, l, t);
                (void)Opacity(l, t);
                (void)PrecompositionTime(l, t, scene.frameRate);
                for (const mask& each : l.masks) (void)EvaluatePath(each.path, t);
                for (const effect& each : l.effects) {
                    for (const auto& [index, value] : each.values) (void)Evaluate(value, t, {});
                }
            }
        }
    }
}

}  // namespace
}  // namespace orv::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace orv::fuzz;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const orv::project scene =
            orv::LoadSceneText(text, kFile, Options(), [](const std::string& warning) {
                CheckMessage(warning, "a warning is one line that names the file");
            });
        EvaluateSome(scene);
    } catch (const orv::failure& problem) {
        Require(problem.kind() == orv::failureKind::scene, "a bad scene is a scene's failure");
        CheckMessage(problem.what(), "an error is one line that names the file");
    }
    return 0;
}
