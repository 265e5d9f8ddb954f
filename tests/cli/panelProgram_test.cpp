// `orv panel` on every example scene: the rules that hold between its controls, and what it prints.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/runProgram.h"

namespace orv {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::vector<std::string> Examples()
{
    std::vector<std::string> found;
    const fs::path folder = fs::path(std::getenv("ORV_SOURCE_DIR")) / "examples";
    for (const fs::directory_entry& each : fs::directory_iterator(folder))
        if (each.path().extension() == ".json") found.push_back(each.path());
    std::ranges::sort(found);
    return found;
}

json Ask(const std::vector<std::string>& arguments)
{
    const programResult result = RunOrv(arguments);
    EXPECT_EQ(result.code, 0) << result.err;
    return json::parse(result.out, nullptr, /*allow_exceptions=*/false);
}

/// The controls of the tree in the order in which they are printed, with how deep they lie.
struct placedControl {
    json control;
    std::size_t depth;
};
void Flatten(const json& controls, std::size_t depth, std::vector<placedControl>& out)
{
    for (const json& each : controls) {
        out.push_back({each, depth});
        if (each.contains("children")) Flatten(each["children"], depth + 1, out);
    }
}

std::vector<placedControl> ControlsOf(const json& panel)
{
    std::vector<placedControl> all;
    Flatten(panel["controls"], 1, all);
    return all;
}

const json& ByIndex(const std::vector<placedControl>& controls, int index)
{
    return std::ranges::find(
               controls, index,
               [](const placedControl& each) { return each.control["index"].get<int>(); })
        ->control;
}

/// Vertices that can have a value: those of the mask, and the end of a closed one.
int VerticesOf(const json& scene, const json& panel, int mask)
{
    if (mask == 0) return 1;
    for (const json& owner : scene["compositions"][0]["layers"]) {
        if (owner["name"] != panel["layer"]) continue;
        const json& chosen = owner["masks"][static_cast<std::size_t>(mask - 1)];
        return chosen["vertices"].get<int>() + (chosen["closed"].get<bool>() ? 1 : 0);
    }
    return -1;
}

void ExpectRules(const std::vector<placedControl>& controls, int vertices)
{
    const auto value = [&](int index) { return ByIndex(controls, index)["value"].get<double>(); };
    const auto is = [&](int index, const char* mark) { return ByIndex(controls, index)[mark]; };
    const bool byReference = value(30) != 0.0;
    for (const placedControl& each : controls) {
        const int index = each.control["index"];
        bool hidden = false;
        for (const int first : {43, 146})
            if (index >= first && index < first + 100) hidden = index - first >= vertices;
        if (index == 31) hidden = !byReference;
        if (index >= 32 && index <= 35) hidden = byReference;
        EXPECT_EQ(each.control["hidden"], hidden) << each.control["name"] << " " << index;
        if (index != 34 && index != 250 && index != 251) {
            EXPECT_EQ(each.control["disabled"], false) << each.control["name"];
        }
    }
    EXPECT_EQ(is(250, "disabled"), value(279) == 1.0);
    EXPECT_EQ(is(251, "disabled"), value(279) == 1.0);
    EXPECT_EQ(is(34, "disabled"), value(35) == 0.0);
}

TEST(Panel, FollowsItsRulesOnEveryExample)
{
    // Each scene as it is, and with every switch that a rule asks about thrown.
    const std::vector<std::vector<std::string>> changes{
        {},
        {"--set", "30=on", "--set", "Camera mode=1", "--set", "Stretch along path=off"},
        {"--set", "30=off", "--set", "Camera mode=2", "--set", "Stretch along path=on", "--set",
         "Mask=none"}};
    for (const std::string& scene : Examples()) {
        const json inspected = Ask({"inspect", scene, "--json"});
        for (const std::vector<std::string>& change : changes) {
            SCOPED_TRACE(fmt::format("{} {}", scene, fmt::join(change, " ")));
            std::vector<std::string> arguments{"panel", scene, "--json"};
            arguments.insert(arguments.end(), change.begin(), change.end());
            const json panel = Ask(arguments);
            const std::vector<placedControl> controls = ControlsOf(panel);
            ASSERT_GT(controls.size(), 250U);
            const int mask = ByIndex(controls, 29)["value"].get<int>();
            ExpectRules(controls, VerticesOf(inspected, panel, mask));
        }
    }
}

TEST(Panel, PrintsWhatItsJsonHolds)
{
    for (const std::string& scene : Examples()) {
        SCOPED_TRACE(scene);
        const json panel = Ask({"panel", scene, "--json"});
        const programResult printed = RunOrv({"panel", scene});
        EXPECT_EQ(printed.code, 0);
        // The first line names the instance.
        std::size_t at = printed.out.find('\n') + 1;
        EXPECT_EQ(printed.out.substr(0, at), fmt::format("layer \"{}\", effect 1, frame 0\n",
                                                         panel["layer"].get<std::string>()));
        for (const auto& [control, depth] : ControlsOf(panel)) {
            const std::size_t end = printed.out.find('\n', at);
            ASSERT_NE(end, std::string::npos) << control;
            const std::string line = printed.out.substr(at, end - at);
            at = end + 1;
            const std::string start =
                std::string(2 * depth, ' ') + control["name"].get<std::string>();
            EXPECT_TRUE(line.starts_with(start)) << line;
            EXPECT_NE(line.find(control["text"].get<std::string>(), start.size()),
                      std::string::npos)
                << line;
            EXPECT_EQ(line.find("[greyed]") != std::string::npos, control["disabled"]) << line;
            EXPECT_EQ(line.find("[hidden]") != std::string::npos, control["hidden"]) << line;
        }
        EXPECT_EQ(at, printed.out.size());
    }
}

TEST(Panel, TellsInWordsWhatAScriptChanged)
{
    const std::string scene =
        fs::path(std::getenv("ORV_SOURCE_DIR")) / "examples" / "two_boxes.json";
    const auto changes = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"panel", scene});
        const programResult result = RunOrv(more);
        EXPECT_EQ(result.code, 0) << result.err;
        const std::size_t at = result.out.find("changed:");
        return at == std::string::npos ? "" : result.out.substr(at);
    };
    // The box is off on the upper layer and on on the lower one. Whichever of the four controls has
    // changed, the others get what the instance has.
    for (const char* control : {"Mask", "14", "31", "282"})
        EXPECT_EQ(
            changes({"--changed", control}),
            "changed: layer \"lower\", effect 1: Allow maximum texture size from on to off\n");
    EXPECT_EQ(changes({"--changed", "282", "--layer", "lower"}),
              "changed: layer \"upper\", effect 1: Allow maximum texture size from off to on\n");
    EXPECT_EQ(changes({"--changed", "282", "--set", "282=on"}), "");
    EXPECT_EQ(changes({}), "");
}

}  // namespace
}  // namespace orv
