// `orv panel` on example scenes: what it prints, and what a changed control changes elsewhere.
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

std::string Example(const char* name)
{
    return fs::path(std::getenv("ORV_SOURCE_DIR")) / "examples" / name;
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

TEST(Panel, PrintsWhatItsJsonHolds)
{
    for (const char* name : {"demo.json", "vertices.json"}) {
        SCOPED_TRACE(name);
        const std::string scene = Example(name);
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
    const std::string scene = Example("two_boxes.json");
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
