#include "scene/sceneHeader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>

#include "animation/ticks.h"

namespace orv {
namespace {

void ReadRate(const JsonNode& root, project& scene)
{
    const JsonNode fr = root.required("fr", "a number");
    scene.frameRate = fr.number();
    if (!(scene.frameRate > 0.0 && scene.frameRate <= 999.0)) {
        fr.fail(fmt::format("{} is outside the limits: above 0, at most 999",
                            NumberText(scene.frameRate)));
    }
    const tickRate rate = TickRateOf(scene.frameRate);
    scene.ticksPerFrame = rate.perFrame;
    scene.ticksPerSecond = rate.perSecond;
}

/// The first whole frame at or after `t`, which exporters write a little off.
int FrameFrom(double t)
{
    constexpr double kTolerance = 0.001;
    return static_cast<int>(std::ceil(t - kTolerance));
}

void ReadFrames(const JsonNode& root, project& scene)
{
    constexpr int kMostFrames = 1'000'000;
    const double ip = root.numberAt("ip");
    const JsonNode op = root.required("op", "a number");
    if (op.number() <= ip) {
        op.fail(fmt::format("{} is not after ip, which is {}", NumberText(op.number()),
                            NumberText(ip)));
    }
    scene.firstFrame = FrameFrom(ip);
    scene.endFrame = FrameFrom(op.number());
    if (scene.endFrame <= scene.firstFrame) {
        op.fail(fmt::format("no frame lies between ip {} and op {}", NumberText(ip),
                            NumberText(op.number())));
    }
    if (scene.endFrame - scene.firstFrame > kMostFrames) {
        op.fail(fmt::format("{} frames, the limit is {}", scene.endFrame - scene.firstFrame,
                            kMostFrames));
    }
}

void ReadVersion(const JsonNode& kal)
{
    const auto version = kal.find("version");
    if (version && version->number() > 1.0) {
        version->fail(fmt::format("version {} is newer than this program knows, the highest is 1",
                                  NumberText(version->number())));
    }
}

void ReadDepth(const JsonNode& kal, project& scene)
{
    const auto depth = kal.find("depth");
    if (!depth) return;
    const double bits = depth->number();
    if (bits != 8.0 && bits != 16.0) {
        depth->fail(
            fmt::format("a depth of {} is not possible, expected 8 or 16", NumberText(bits)));
    }
    scene.depth = static_cast<int>(bits);
}

int ReadDivisor(const JsonNode& node)
{
    const double divisor = node.number();
    if (divisor != std::floor(divisor) || divisor < 1.0 || divisor > 8.0) {
        node.fail(fmt::format("{} is no preview divisor, expected 1 to 8", NumberText(divisor)));
    }
    return static_cast<int>(divisor);
}

void ReadDownsample(const JsonNode& kal, project& scene)
{
    const auto node = kal.find("downsample");
    if (!node) return;
    if (!node->isList()) {
        scene.downsampleX = scene.downsampleY = ReadDivisor(*node);
        return;
    }
    if (node->size() != 2) node->fail(fmt::format("{} divisors, expected two", node->size()));
    scene.downsampleX = ReadDivisor(node->item(0));
    scene.downsampleY = ReadDivisor(node->item(1));
}

/// The number at `key`, clamped with a warning.
double ClampedAt(const JsonNode& node, std::string_view key, double fallback, double low,
                 double high)
{
    const double value = node.numberAt(key, fallback);
    if (value < low || value > high) {
        node.messages().warn(PathWithKey(node.path(), key),
                             fmt::format("{} is outside {}..{}, clamped", NumberText(value),
                                         NumberText(low), NumberText(high)));
    }
    return std::clamp(value, low, high);
}

}  // namespace

void ReadHeader(const JsonNode& root, project& scene)
{
    scene.file = root.messages().file();
    scene.name = root.textAt("nm", "");
    ReadRate(root, scene);
    ReadFrames(root, scene);
    if (const auto kal = root.find("kal")) {
        WarnUnknownKeys(*kal, {"version", "depth", "downsample", "motionBlur"});
        ReadVersion(*kal);
        ReadDepth(*kal, scene);
        ReadDownsample(*kal, scene);
    }
}

motionBlurRules ReadMotionBlurRules(const JsonNode& root)
{
    motionBlurRules rules;
    if (const auto kal = root.find("kal")) {
        if (const auto forced = kal->find("motionBlur")) rules.forced = forced->flag();
    }
    rules.inherited.enabled = rules.forced.value_or(false);
    rules.inherited = ReadMotionBlur(root, rules);
    return rules;
}

motionBlurSettings ReadMotionBlur(const JsonNode& compositionNode, const motionBlurRules& rules)
{
    const auto mb = compositionNode.find("mb");
    if (!mb) return rules.inherited;
    motionBlurSettings settings;
    settings.enabled = rules.forced.value_or(true);
    settings.shutterAngle = ClampedAt(*mb, "sa", settings.shutterAngle, 0.0, 720.0);
    settings.shutterPhase = ClampedAt(*mb, "sp", settings.shutterPhase, -360.0, 360.0);
    settings.samples =
        static_cast<int>(std::lround(ClampedAt(*mb, "spf", settings.samples, 2.0, 64.0)));
    return settings;
}

}  // namespace orv
