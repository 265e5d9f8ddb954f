// Frames in worker processes: the same pictures, and what goes wrong costs one of them.
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/runProgram.h"
#include "image/imageFile.h"

namespace orv {
namespace {

namespace fs = std::filesystem;
using strings = std::vector<std::string>;

/// Half-transparent red through the faulty effect.
std::string FaultyScene(int frames)
{
    return fmt::format(
        R"({{"fr": 25, "ip": 0, "op": {0}, "w": 64, "h": 64, "layers": [
            {{"ty": 1, "ind": 1, "nm": "red", "sw": 64, "sh": 64, "sc": "#ff0000", "ip": 0,
              "op": {0}, "ks": {{"o": {{"k": 40}}}}, "ef": [{{"ty": 5, "mn": "faultyEffect",
              "ef": []}}]}}]}})",
        frames);
}

std::string ReadText(const fs::path& file)
{
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

strings FilesIn(const fs::path& folder)
{
    strings names;
    for (const auto& each : fs::directory_iterator(folder)) names.push_back(each.path().filename());
    std::ranges::sort(names);
    return names;
}

/// Whether it comes true, for which it is given more time than it could need.
template <class Condition>
bool Eventually(const Condition& condition)
{
    for (int i = 0; i < 6000; ++i) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

/// Whether a process has that text in its command line.
bool SomeoneRuns(const std::string& text)
{
    for (const auto& each : fs::directory_iterator("/proc")) {
        const std::string name = each.path().filename();
        if (!std::ranges::all_of(name, [](unsigned char c) { return std::isdigit(c) != 0; }))
            continue;
        if (ReadText(each.path() / "cmdline").find(text) != std::string::npos) return true;
    }
    return false;
}

class Workers : public testing::Test {
protected:
    Workers() { unsetenv("ORV_TEST_FAULT"); }
    ~Workers() override { unsetenv("ORV_TEST_FAULT"); }

    static void SetFault(const char* fault) { setenv("ORV_TEST_FAULT", fault, 1); }
    static strings Faulty(const std::string& scene, const std::string& output, const strings& more)
    {
        strings all{"render", scene, "--plugin", FAULTY_EFFECT, "-o", output};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }
    programResult Render(const strings& more, const std::string& output = "f.#.png")
    {
        return RunOrv(Faulty(scenes_.Write("s.json", FaultyScene(4)), output, more),
                      output_.path());
    }
    [[nodiscard]] std::string Example(const char* name) const
    {
        return std::string(std::getenv("ORV_SOURCE_DIR")) + "/examples/" + name;
    }
    [[nodiscard]] strings Results(const fs::path& stats) const
    {
        strings results;
        const auto all = nlohmann::json::parse(ReadText(output_.path() / stats));
        for (const auto& each : all["frames"])
            results.push_back(
                fmt::format("{} {}", each["frame"].get<int>(), each["result"].get<std::string>()));
        return results;
    }

    TemporaryFolder scenes_, output_;
};

struct lossCase {
    const char* name;
    const char* fault;
    strings options;
    const char* reason;
};
class Loss : public Workers, public testing::WithParamInterface<lossCase> {};
TEST_P(Loss, CostsItsFrameOnly)
{
    SetFault(GetParam().fault);
    strings options = GetParam().options;
    options.insert(options.end(), {"--quiet", "--stats", "s.json"});
    const programResult result = Render(options);
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.err, fmt::format("error: frame 2: {} in PF_Cmd_RENDER to faultyEffect on "
                                      "layer \"red\"\n",
                                      GetParam().reason));
    EXPECT_EQ(Results("s.json"), (strings{"0 rendered", "1 rendered", "2 failed", "3 rendered"}));
    for (const char* name : {"f.0.png", "f.1.png", "f.3.png"})
        EXPECT_EQ(ProbePicture(output_.path() / name).width, 64) << name;
    EXPECT_FALSE(fs::exists(output_.path() / "f.2.png"));
}
INSTANTIATE_TEST_SUITE_P(
    Faults, Loss,
    testing::Values(
        lossCase{"Crash", "crash 2", {"--isolate"}, "the worker was killed by SIGSEGV"},
        lossCase{
            "CrashAmongOthers", "crash 2", {"--jobs", "3"}, "the worker was killed by SIGSEGV"},
        lossCase{"Exit", "exit 2", {"--isolate"}, "the worker ended with exit code 7"},
        lossCase{"Hang", "hang 2", {"--frame-timeout", "20"}, "not done after 20 s; stopped"},
        lossCase{
            "Memory", "memory 2", {"--memory-limit", "800M"}, "needs more than 800 MB; stopped"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(Workers, AnOrdinaryFailureEndsTheRunAsWithoutThem)
{
    SetFault("error 2");
    const programResult own = Render({"--quiet"});
    const strings left = FilesIn(output_.path());
    EXPECT_EQ(left, (strings{"f.0.png", "f.1.png"}));
    const programResult isolated = Render({"--quiet", "--isolate"});
    EXPECT_EQ(isolated.code, own.code);
    EXPECT_EQ(isolated.err, own.err);
    EXPECT_EQ(FilesIn(output_.path()), left);
    EXPECT_EQ(Render({"--jobs", "2", "--continue"}).code, 1);
    EXPECT_TRUE(fs::exists(output_.path() / "f.3.png"));
}

TEST_F(Workers, AModuleThatCannotBeLoadedIsNamed)
{
    SetFault("crash -1");
    const programResult result = Render({"--jobs", "2"});
    EXPECT_EQ(result.code, 4);
    EXPECT_EQ(result.err, fmt::format("error: {}: loading it: the worker was killed by SIGSEGV in "
                                      "PF_Cmd_GLOBAL_SETUP to faultyEffect\n",
                                      FAULTY_EFFECT));
}

TEST_F(Workers, WhatCannotBeStartedIsToldAsWithoutThem)
{
    const strings refused{"render", Example("demo.json"), "--comp", "nowhere"};
    strings isolated = refused;
    isolated.push_back("--isolate");
    const programResult own = RunOrv(refused), other = RunOrv(isolated);
    EXPECT_EQ(own.code, 2);
    EXPECT_EQ(other.code, own.code);
    EXPECT_EQ(other.err, own.err);
}

TEST_F(Workers, AWarningIsSaidOnce)
{
    SetFault("warn always");
    const programResult result = Render({"--jobs", "2", "--quiet"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err, "warning: faultyEffect: not so well\n");
}

TEST_F(Workers, PicturesAreTheSameByteForByte)
{
    const strings common{"render", Example("demo.json"), "--downsample", "8", "--frames", "0-5"};
    const auto render = [&](const strings& more) {
        strings all = common;
        all.insert(all.end(), more.begin(), more.end());
        const programResult result = RunOrv(all, output_.path());
        EXPECT_EQ(result.code, 0) << result.err;
    };
    render({"-o", "own/f.#.png"});
    render({"-o", "jobs/f.#.png", "--jobs", "2"});
    render({"-o", "own.mov", "--depth", "16"});
    render({"-o", "jobs.mov", "--depth", "16", "--jobs", "3"});
    ASSERT_EQ(FilesIn(output_.path() / "own").size(), 6U);
    for (const std::string& each : FilesIn(output_.path() / "own"))
        EXPECT_TRUE(ReadText(output_.path() / "own" / each) ==
                    ReadText(output_.path() / "jobs" / each))
            << each;
    EXPECT_TRUE(ReadText(output_.path() / "own.mov") == ReadText(output_.path() / "jobs.mov"));
}

TEST_F(Workers, ALostFrameEndsAVideo)
{
    SetFault("crash 2");
    const programResult result = Render({"--isolate", "--quiet"}, "v.mp4");
    EXPECT_EQ(result.code, 1);
    EXPECT_NE(result.err.find("error: frame 2: the worker was killed by SIGSEGV"),
              std::string::npos)
        << result.err;
    EXPECT_EQ(FilesIn(output_.path()), (strings{"v.partial.mp4"}));
}

TEST_F(Workers, ResumeSkipsWhatIsThere)
{
    ASSERT_EQ(Render({"--jobs", "2"}).code, 0);
    fs::remove(output_.path() / "f.1.png");
    fs::resize_file(output_.path() / "f.2.png", 50);
    const programResult result = Render({"--jobs", "2", "--resume", "--stats", "s.json"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(Results("s.json"), (strings{"0 skipped", "1 rendered", "2 rendered", "3 skipped"}));
    EXPECT_NE(result.err.find("f.2.png is not a whole picture"), std::string::npos) << result.err;
    EXPECT_EQ(ProbePicture(output_.path() / "f.2.png").width, 64);

    // A flag that was switched off stays so on the workers' command lines.
    ASSERT_EQ(Render({"--isolate", "--resume=false", "--stats", "s.json"}).code, 0);
    EXPECT_EQ(Results("s.json"), (strings{"0 rendered", "1 rendered", "2 rendered", "3 rendered"}));
}

TEST_F(Workers, TwoRunsAtOnceHarmNothing)
{
    constexpr int kFrames = 40;
    const std::string scene = scenes_.Write("two.json", FaultyScene(kFrames));
    const strings words = Faulty(scene, "f.##.png", {"--jobs", "2", "--resume"});
    programResult other;
    std::thread second([&] { other = RunOrv(words, output_.path()); });
    const programResult first = RunOrv(words, output_.path());
    second.join();
    EXPECT_EQ(first.code, 0) << first.err;
    EXPECT_EQ(other.code, 0) << other.err;
    const strings files = FilesIn(output_.path());
    EXPECT_EQ(files.size(), static_cast<std::size_t>(kFrames));
    const std::string picture = ReadText(output_.path() / "f.00.png");
    for (const std::string& each : files)
        EXPECT_TRUE(ReadText(output_.path() / each) == picture) << each;
}

TEST_F(Workers, OneThatIsKilledFromOutsideIsReplaced)
{
    SetFault("hang 1");
    const std::string scene = scenes_.Write("s.json", FaultyScene(4));
    const programResult result =
        RunOrvWhile(Faulty(scene, "f.#.png", {"--isolate", "--quiet"}), output_.path(), [&](pid_t) {
            const fs::path hanging = output_.path() / "hanging";
            if (!Eventually([&] { return fs::exists(hanging); })) return;
            const pid_t worker = std::stoi(ReadText(hanging));
            // As if it had come to write its picture.
            std::ofstream(output_.path() / fmt::format("f.1.png.{}-0.partial", worker)) << "half";
            kill(worker, SIGKILL);
        });
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(
        result.err,
        "error: frame 1: the worker was killed by SIGKILL in PF_Cmd_RENDER to faultyEffect on "
        "layer \"red\"\n");
    EXPECT_EQ(FilesIn(output_.path()), (strings{"f.0.png", "f.2.png", "f.3.png", "hanging"}));
}

TEST_F(Workers, AnInterruptLeavesNeitherProcessesNorHalfFiles)
{
    SetFault("child 5");
    const std::string scene = scenes_.Write("long.json", FaultyScene(100000));
    for (const int signal : {SIGINT, SIGTERM}) {
        const TemporaryFolder folder;
        const programResult result = RunOrvUntil(Faulty(scene, "f.######.png", {"--jobs", "3"}),
                                                 folder.path(), "hanging", signal);
        EXPECT_EQ(result.code, 128 + signal) << result.err;
        EXPECT_FALSE(SomeoneRuns(scene));
        const pid_t child = std::stoi(ReadText(folder.path() / "child"));
        EXPECT_TRUE(Eventually([&] { return kill(child, 0) != 0; }));
        for (const std::string& each : FilesIn(folder.path())) {
            EXPECT_EQ(each.find(".partial"), std::string::npos) << each;
            if (each.front() == 'f') {
                EXPECT_EQ(ProbePicture(folder.path() / each).width, 64) << each;
            }
        }
    }
}

TEST_F(Workers, NoneOutlivesAParentThatIsKilled)
{
    SetFault("hang 3");
    const std::string scene = scenes_.Write("long.json", FaultyScene(100000));
    const programResult result = RunOrvUntil(Faulty(scene, "f.######.png", {"--jobs", "2"}),
                                             output_.path(), "hanging", SIGKILL);
    EXPECT_EQ(result.code, -SIGKILL);
    EXPECT_TRUE(Eventually([&] { return !SomeoneRuns(scene); }));
}

TEST_F(Workers, AnEndlessBlurIsStopped)
{
    // The taps of a depth of field grow with the aperture without a bound.
    nlohmann::json scene = nlohmann::json::parse(ReadText(Example("focus.json")));
    scene["layers"][0]["kal"]["aperture"] = 1e9;
    scene["layers"][0]["kal"]["blurLevel"] = 10000;
    fs::copy(Example("images"), scenes_.path() / "images");
    const programResult result = RunOrv({"render", scenes_.Write("blur.json", scene.dump()), "-o",
                                         "f.#.png", "--frames", "3", "--frame-timeout", "2"},
                                        output_.path());
    EXPECT_EQ(result.code, 1);
    // A busy machine may need the time for the frame's earlier commands.
    EXPECT_TRUE(result.err.starts_with("error: frame 3: not done after 2 s; stopped"))
        << result.err;
    EXPECT_TRUE(FilesIn(output_.path()).empty());
}

}  // namespace
}  // namespace orv
