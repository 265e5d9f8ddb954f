// The built program: usage, refusals and exit codes.
#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/exitCodes.h"
#include "cli/runProgram.h"
#include "support/caseName.h"

namespace orv {
namespace {

constexpr const char* kScene = R"({"fr": 25, "ip": 0, "op": 3, "w": 8, "h": 4,
    "layers": [{"ty": 1, "ind": 1, "nm": "red", "sw": 8, "sh": 4, "sc": "#ff0000", "ip": 0,
                "op": 3, "ks": {}}]})";

bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

bool IsEmpty(const std::filesystem::path& folder)
{
    return std::filesystem::is_empty(folder);
}

TEST(Program, TellsItsVersion)
{
    const programResult result = RunOrv({"--version"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out, "orv 1.6.0\n");
    EXPECT_EQ(result.err, "");
}

TEST(Program, HelpNamesCommandsAndEveryExitCode)
{
    const programResult result = RunOrv({"--help"});
    EXPECT_EQ(result.code, 0);
    for (const char* command : {"render", "params", "inspect", "Examples:"})
        EXPECT_TRUE(Contains(result.out, command)) << command;
    for (const exitCodeRow& row : kExitCodes)
        EXPECT_TRUE(Contains(result.out, std::string(row.meaning))) << row.code;
    EXPECT_TRUE(Contains(RunOrv({"render", "--help"}).out, "--allow-truncated"));
}

struct usageCase {
    const char* name;
    std::vector<std::string> arguments;
    const char* message;  ///< part of what stands on stderr
};

class WrongUsage : public testing::TestWithParam<usageCase> {};

// The scene does not exist: had any work begun, the code would be another.
TEST_P(WrongUsage, IsRefusedBeforeAnyWork)
{
    const TemporaryFolder folder;
    const programResult result = RunOrv(GetParam().arguments, folder.path());
    EXPECT_EQ(result.code, 2) << result.err;
    EXPECT_TRUE(result.err.starts_with("error: ")) << result.err;
    EXPECT_TRUE(Contains(result.err, GetParam().message)) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(IsEmpty(folder.path()));
}

const usageCase kCommandLines[] = {
    {"NoCommand", {}, "subcommand"},
    {"UnknownCommand", {"paint"}, "paint"},
    {"NoScene", {"render"}, "SCENE"},
    {"TwoScenes", {"render", "a.json", "b.json"}, "b.json"},
    {"UnknownOption", {"render", "a.json", "--fast"}, "--fast"},
    {"Frames", {"render", "a.json", "--frames", "1-"}, "--frames: '1-'"},
    {"EmptyFrames", {"render", "a.json", "--frames", ""}, "--frames: ''"},
    {"EmptyOutput", {"render", "a.json", "-o", ""}, "output ''"},
    {"Extension", {"render", "a.json", "-o", "a.####.bmp"}, "extension"},
    {"Depth", {"render", "a.json", "--depth", "12"}, "--depth"},
    {"Divisor", {"render", "a.json", "--downsample", "9"}, "--downsample: '9'"},
    {"DivisorPair", {"render", "a.json", "--downsample", "2x"}, "--downsample: '2x'"},
    {"Switch", {"render", "a.json", "--motion-blur", "yes"}, "--motion-blur"},
    {"Set", {"render", "a.json", "--set", "Twist"}, "--set 'Twist'"},
    {"ExrOfPng", {"render", "a.json", "--exr", "half"}, "--exr needs"},
    {"ResumedVideo", {"render", "a.json", "-o", "a.mp4", "--resume"}, "--resume"},
    {"VideoWithGaps", {"render", "a.json", "-o", "a.mp4", "--continue"}, "--continue"}};
INSTANTIATE_TEST_SUITE_P(CommandLines, WrongUsage, testing::ValuesIn(kCommandLines), caseName{});

class NotInTheScene : public testing::TestWithParam<usageCase> {};

TEST_P(NotInTheScene, IsWrongUsage)
{
    const TemporaryFolder folder, output;
    std::vector<std::string> arguments = {"render", folder.Write("s.json", kScene)};
    arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
    const programResult result = RunOrv(arguments, output.path());
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(result.err, std::string("error: ") + GetParam().message + "\n");
    EXPECT_TRUE(IsEmpty(output.path()));
}

const usageCase kNames[] = {
    {"Frame", {"--frames", "0-3"}, "--frames: 3 is outside the scene's frames 0 to 2"},
    {"Composition",
     {"--comp", "intro"},
     "--comp: the scene has no composition 'intro'; it has: none"},
    {"Layer", {"--layer", "blue"}, "--layer: the composition has no layer 'blue'; it has: red"},
    {"EmptyLayer", {"--layer", ""}, "--layer: the composition has no layer ''; it has: red"},
    {"Parameter", {"--set", "Wobble=3"}, "--set 'Wobble=3': KAL Orv has no parameter 'Wobble'"},
    {"Instance",
     {"--set", "Twist at mask end=3"},
     "--set 'Twist at mask end=3': no layer has the effect KAL Orv"},
    {"OneFileForThreeFrames",
     {"-o", "still.png"},
     "output 'still.png' needs a frame number (#### or %04d) for 3 frames"}};
INSTANTIATE_TEST_SUITE_P(Names, NotInTheScene, testing::ValuesIn(kNames), caseName{});

TEST(ExitCodes, TellScenePluginAndOutputApart)
{
    const TemporaryFolder folder;
    const std::string scene = folder.Write("s.json", kScene);
    const std::string broken = folder.Write("broken.json", "{\"fr\": 25,\n \"ip\": ]}");
    const std::string notAModule = folder.Write("module.so", "not a module");

    EXPECT_EQ(RunOrv({"render", "missing.json"}, folder.path()).code, 3);
    const programResult refused = RunOrv({"render", broken}, folder.path());
    EXPECT_EQ(refused.code, 3);
    EXPECT_TRUE(Contains(refused.err, "broken.json:2:")) << refused.err;
    EXPECT_EQ(RunOrv({"inspect", broken}).code, 3);

    for (const std::string& plugin : {std::string("missing.so"), notAModule}) {
        const programResult result = RunOrv({"render", scene, "--plugin", plugin}, folder.path());
        EXPECT_EQ(result.code, 4) << plugin;
        EXPECT_TRUE(Contains(result.err, plugin)) << result.err;
    }

    const programResult unwritable =
        RunOrv({"render", scene, "-o", scene + "/f.####.png"}, folder.path());
    EXPECT_EQ(unwritable.code, 6);
    EXPECT_TRUE(Contains(unwritable.err, scene)) << unwritable.err;
    EXPECT_EQ(RunOrv({"render", scene, "--stats", scene + "/s.json"}, folder.path()).code, 6);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "s.0000.png"))
        << "refused before any work";
}

TEST(ExitCodes, TellWhenThereIsNoOpenGL)
{
    const TemporaryFolder folder;
    const std::string scene = folder.Write("s.json", kScene);
    // The GL dispatcher finds no driver at all then, on any machine.
    setenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/nonexistent.json", 1);
    const programResult result = RunOrv({"render", scene}, folder.path());
    unsetenv("__EGL_VENDOR_LIBRARY_FILENAMES");
    EXPECT_EQ(result.code, 5) << result.err;
}

// Projects hold disk IDs, kinds and values: none of these may change by accident. Renewed by hand,
// from `orv params --json`.
TEST(Params, AreAllAsTheyWere)
{
    const programResult result = RunOrv({"params", "--json"});
    ASSERT_EQ(result.code, 0) << result.err;
    const auto params = nlohmann::json::parse(result.out);
    const std::filesystem::path golden =
        std::filesystem::path(std::getenv("ORV_SOURCE_DIR")) / "tests/golden/params.json";
    std::ifstream file(golden);
    const auto expected = nlohmann::json::parse(file);
    ASSERT_EQ(params.size(), 283U);
    for (std::size_t k = 0; k < params.size(); ++k) EXPECT_EQ(params[k], expected[k]);
    EXPECT_TRUE(Contains(RunOrv({"params"}).out, "Twist at mask end"));
}

TEST(Inspect, ShowsMasksAndChangedParameters)
{
    const TemporaryFolder folder;
    const std::string scene = folder.Write("s.json", R"({"fr": 25, "ip": 0, "op": 9, "w": 8,
        "h": 4, "layers": [{"ty": 1, "ind": 4, "nm": "band", "sw": 8, "sh": 4, "sc": "#ff0000",
        "ip": 0, "op": 3, "ks": {}, "masksProperties": [
          {"nm": "wave", "mode": "n", "pt": {"k": {"c": false, "v": [[0, 0], [4, 2], [8, 0]],
            "i": [[0, 0], [0, 0], [0, 0]], "o": [[0, 0], [0, 0], [0, 0]]}}}],
        "ef": [{"ty": 5, "mn": "KAL_Orv", "ef": [
          {"ix": 2, "v": {"k": 4}}, {"ix": 29, "v": {"k": 1}}, {"ix": 17, "v": {"k": 25}},
          {"ix": 37, "v": {"k": [{"t": 0, "s": [90]}, {"t": 8, "s": [0]}]}}]}]}]})");
    const programResult result = RunOrv({"inspect", scene, "--json"});
    ASSERT_EQ(result.code, 0) << result.err;
    const auto layer = nlohmann::json::parse(result.out)["compositions"][0]["layers"][0];
    EXPECT_EQ(layer["name"], "band");
    EXPECT_EQ(layer["masks"][0]["vertices"], 3);
    EXPECT_EQ(layer["masks"][0]["closed"], false);
    const auto values = layer["effects"][0]["values"];
    ASSERT_EQ(values.size(), 3U) << "17 has its default: " << values.dump();
    EXPECT_EQ(values[0]["value"], 4) << "the layer's ind, as the scene has it";
    EXPECT_EQ(values[0]["text"], "band");
    EXPECT_EQ(values[1]["text"], "1 (wave)");
    EXPECT_EQ(values[2]["value"], 90);
    EXPECT_EQ(values[2]["keys"], 2);
    EXPECT_TRUE(
        Contains(RunOrv({"inspect", scene}).out, "mask \"wave\": 3 vertices, open, mode none\n"));
}

}  // namespace
}  // namespace orv
