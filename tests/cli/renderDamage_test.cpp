// Damaged scenes that still are JSON, rendered by the program: a picture, or a reason, and never a
// crash. ORV_DAMAGE_PICTURES asks for more than the few of each example that a usual run takes, and
// ORV_DAMAGE_SEED for others.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/exitCodes.h"
#include "cli/runProgram.h"
#include "support/damage.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

std::uint64_t Asked(const char* variable, std::uint64_t usual)
{
    const char* const asked = std::getenv(variable);
    return asked != nullptr ? std::strtoull(asked, nullptr, 10) : usual;
}

fs::path ExamplesFolder()
{
    const char* const source = std::getenv("ORV_SOURCE_DIR");
    return fs::path(source != nullptr ? source : ".") / "examples";
}

std::vector<std::string> ExampleNames()
{
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& each : fs::directory_iterator(ExamplesFolder(), ignored)) {
        if (each.path().extension() == ".json") names.push_back(each.path().stem());
    }
    std::ranges::sort(names);
    return names;
}

/// Whether the exit code is one that is documented. An interrupt's is not: nobody interrupted.
bool IsDocumented(int code)
{
    return std::ranges::any_of(kExitCodes,
                               [=](const exitCodeRow& row) { return row.code == code; });
}

/// Whether the program tells of a process that ended in no way of its own.
bool TellsOfACrash(const std::string& said)
{
    constexpr std::array kSigns{"killed by", "ended with exit code", "sent what cannot be read"};
    return std::ranges::any_of(
        kSigns, [&](const char* sign) { return said.find(sign) != std::string::npos; });
}

class DamagedScene : public testing::TestWithParam<std::string> {
protected:
    DamagedScene() { fs::copy(ExamplesFolder() / "images", folder_.path() / "images"); }

    void RenderAndCheck(const std::string& text, const std::string& which)
    {
        const std::string scene = folder_.Write("scene.json", text);
        fs::remove(folder_.path() / "f.png");
        const programResult result =
            RunOrv({"render", scene, "-o", "f.png", "--frames", "20", "--downsample", "4",
                    "--frame-timeout", "10", "--memory-limit", "2G", "--quiet"},
                   folder_.path());
        const bool there = fs::exists(folder_.path() / "f.png");
        const bool stopped = result.err.find("; stopped") != std::string::npos;
        if (stopped) fmt::print("{}: {}", which, result.err);
        ++outcomes_[stopped ? "stopped" : fmt::format("exit code {}", result.code)];
        if (IsDocumented(result.code) && !TellsOfACrash(result.err) &&
            there == (result.code == 0) && (there || !result.err.empty()))
            return;
        const fs::path kept = fs::path(std::getenv("ORV_BINARY_DIR")) / (which + ".json");
        std::ofstream(kept, std::ios::binary) << text;
        ADD_FAILURE() << kept << " ended with " << result.code << ": " << result.err;
    }

    TemporaryFolder folder_;
    std::map<std::string, int> outcomes_;
};

TEST_P(DamagedScene, IsAPictureOrAReason)
{
    // Prime to the damages of a pass: neighbours differ in kind and place.
    constexpr std::uint64_t kStep = 37, kMostTries = 100000;
    const std::uint64_t pictures = Asked("ORV_DAMAGE_PICTURES", 3);
    const std::uint64_t seed = Asked("ORV_DAMAGE_SEED", 1);
    std::ostringstream whole;
    whole << std::ifstream(ExamplesFolder() / (GetParam() + ".json")).rdbuf();

    // What is no JSON any more is refused while it is read, and tried there.
    std::uint64_t rendered = 0;
    for (std::uint64_t i = 0; i < kMostTries && rendered < pictures; ++i) {
        const std::string text = DamagedText(whole.str(), seed, i * kStep);
        if (!nlohmann::json::accept(text) || text == whole.str()) continue;
        RenderAndCheck(text, fmt::format("{}-{}-{}", GetParam(), seed, i * kStep));
        ++rendered;
    }
    EXPECT_EQ(rendered, pictures);
    for (const auto& [outcome, times] : outcomes_)
        fmt::print("{}: {} of {}\n", outcome, times, rendered);
}
INSTANTIATE_TEST_SUITE_P(Examples, DamagedScene, testing::ValuesIn(ExampleNames()),
                         [](const auto& each) { return each.param; });

}  // namespace
}  // namespace orv
