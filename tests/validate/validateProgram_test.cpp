// `orv validate` as a user runs it.
#include <signal.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <utility>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/runProgram.h"

namespace orv {
namespace {

using nlohmann::json;

std::string TestModule(const std::string& name)
{
    return std::string(std::getenv("ORV_BINARY_DIR")) + "/testModules/" + name + ".so";
}

programResult Validate(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "validate");
    return RunOrv(arguments);
}

json Reported(const programResult& result)
{
    return json::parse(result.out, nullptr, /*allow_exceptions=*/false);
}

TEST(Validate, PassesAGoodModuleAtEveryLevel)
{
    const programResult result =
        Validate({"--plugin", TestModule("plain"), "--strictness", "10", "--seed", "3", "--json"});
    const json all = Reported(result);
    EXPECT_EQ(result.code, 0) << result.out;
    EXPECT_EQ(all["verdict"], "passed");
    EXPECT_EQ(all["strictness"], 10);
    EXPECT_EQ(all["seed"], 3);
    std::int64_t checks = 0;
    for (const json& test : all["tests"]) checks += test["checks"].get<std::int64_t>();
    EXPECT_EQ(all["checks"], checks);
}

TEST(Validate, PassesTheRibbon)
{
    const programResult result = Validate({});
    EXPECT_EQ(result.code, 0) << result.out;
}

struct endCase {
    const char* name;
    const char* module;
    std::vector<std::string> arguments;
    const char* state;
    const char* reason;  ///< how it begins
};
class Ends : public testing::TestWithParam<endCase> {};

TEST_P(Ends, AreToldWithTheLastCommand)
{
    std::vector<std::string> arguments{"--plugin", TestModule(GetParam().module)};
    arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
    const programResult lines = Validate(arguments);
    arguments.push_back("--json");
    const programResult result = Validate(arguments);
    EXPECT_EQ(lines.code, 4) << lines.out;
    EXPECT_EQ(result.code, 4) << result.out;
    const json all = Reported(result);
    ASSERT_EQ(all["tests"].size(), 1U);
    EXPECT_EQ(all["verdict"], "failed");
    EXPECT_EQ(all["tests"][0]["state"], GetParam().state);
    const std::string reason = all["tests"][0]["reason"];
    EXPECT_EQ(reason.substr(0, std::string(GetParam().reason).size()), GetParam().reason);
    EXPECT_TRUE(lines.out.starts_with(GetParam().state)) << lines.out;
    EXPECT_NE(lines.out.find("\nfailed: 1 of 1 test, "), std::string::npos) << lines.out;
}
INSTANTIATE_TEST_SUITE_P(
    Modules, Ends,
    testing::Values(endCase{"Crash",
                            "crashesAtUnknown",
                            {"--only", "abuse.commands"},
                            "crashed",
                            "SIGABRT; last: command -1 with nothing; PF_Cmd_"},
                    endCase{"Hang",
                            "neverAnswers",
                            {"--only", "answers.about", "--patience", "0.05"},
                            "timed out",
                            "stopped after "},
                    endCase{
                        "Failure", "losesGlobalRecord", {"--only", "answers.about"}, "failed", ""}),
    [](const auto& each) { return std::string(each.param.name); });

struct usageCase {
    const char* name;
    std::vector<std::string> arguments;
    int code;
    const char* message;
};
class Usage : public testing::TestWithParam<usageCase> {};

TEST_P(Usage, SaysWhatIsWrong)
{
    const programResult result = Validate(GetParam().arguments);
    EXPECT_EQ(result.code, GetParam().code);
    EXPECT_NE(result.err.find(GetParam().message), std::string::npos) << result.err;
}
INSTANTIATE_TEST_SUITE_P(
    Refusals, Usage,
    testing::Values(usageCase{"UnknownTest",
                              {"--only", "pictures.none"},
                              2,
                              "there is no test 'pictures.none'"},
                    usageCase{"Strictness", {"--strictness", "11"}, 2, "--strictness"},
                    usageCase{"NoModule",
                              {"--plugin", "/nowhere/Effect.so"},
                              4,
                              "/nowhere/Effect.so: no such plug-in"}),
    [](const auto& each) { return std::string(each.param.name); });

/// Whether an orv-check works on that module.
bool IsChecked(const std::string& module)
{
    for (const auto& each : std::filesystem::directory_iterator("/proc")) {
        std::ostringstream line;
        line << std::ifstream(each.path() / "cmdline", std::ios::binary).rdbuf();
        const std::string words = line.str();
        if (words.find("--test") != std::string::npos && words.find(module) != std::string::npos)
            return true;
    }
    return false;
}

/// Whether that comes true, for which it is given more time than it could need.
bool BecomesChecked(const std::string& module, bool checked)
{
    for (int k = 0; k < 3000; ++k) {
        if (IsChecked(module) == checked) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

TEST(Validate, EndsItsTestWhenItIsEnded)
{
    const TemporaryFolder folder;
    const std::string module = folder.path() / "neverAnswers.so";
    std::filesystem::copy_file(TestModule("neverAnswers"), module);
    for (const auto& [signal, code] : {std::pair(SIGINT, 128 + SIGINT), {SIGKILL, -SIGKILL}}) {
        const programResult result =
            RunOrvWhile({"validate", "--plugin", module, "--only", "answers.about"}, ".",
                        [&, signal = signal](pid_t orv) {
                            EXPECT_TRUE(BecomesChecked(module, true));
                            kill(orv, signal);
                        });
        EXPECT_EQ(result.code, code) << result.out;
        EXPECT_TRUE(BecomesChecked(module, false));
    }
}

TEST(Validate, OnlyOneWordMeansAllItsTests)
{
    const json all =
        Reported(Validate({"--plugin", TestModule("plain"), "--only", "loading", "--json"}));
    ASSERT_GT(all["tests"].size(), 1U);
    for (const json& test : all["tests"]) EXPECT_EQ(test["level"], 1);
    const programResult list = Validate({"--list", "--strictness", "1"});
    EXPECT_EQ(list.code, 0);
    EXPECT_NE(list.out.find(" 1  loading.exports "), std::string::npos) << list.out;
    EXPECT_EQ(list.out.find(" 2  "), std::string::npos) << list.out;
}

}  // namespace
}  // namespace orv
