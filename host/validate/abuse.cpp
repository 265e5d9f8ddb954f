// Level 10: what no sensible host does, and what a poor one may.
#include "validate/abuse.h"

#include <algorithm>
#include <array>
#include <limits>
#include <random>

#include "plugin/command.h"
#include "validate/bench.h"
#include "validate/frameCheck.h"

namespace orv {
namespace {

/// What a command is given besides its instance.
struct given {
    bool frame, input, output;
    std::string_view name;
};
constexpr std::array kGiven{given{false, false, false, "nothing"},
                            given{true, false, false, "a scene"},
                            given{true, true, false, "a scene and an input"},
                            given{true, false, true, "a scene and an output"},
                            given{true, true, true, "a scene, input and output"}};

/// Sends the command with what is given; the output must stay as it was.
void SendWith(Checks& checks, ValidationBench& bench, PF_Cmd cmd, const given& what)
{
    const std::string where = fmt::format("{} with {}", CommandName(cmd), what.name);
    Attempt(checks, where, [&] {
        const effectFrame frame = bench.Frame();
        const image input = bench.Input();
        image output = bench.EmptyOutput();
        std::ranges::fill(output.bytes, kOneFill);
        const image before = output;
        std::string message;
        const PF_Err result =
            bench.host().Send(cmd, what.frame ? &frame : nullptr, what.input ? &input : nullptr,
                              what.output ? &output : nullptr, message);
        checks.That(IsKnownResult(result), "{} is answered with {}, which means nothing", where,
                    result);
        checks.That(output == before, "{} changes the output", where);
    });
}

// ---- unknown commands

std::vector<PF_Cmd> UnknownCommands(const testSetting& setting)
{
    std::vector<PF_Cmd> commands;
    for (PF_Cmd cmd = -1; cmd < 32; ++cmd)
        if (IsUnknownCommand(cmd)) commands.push_back(cmd);
    for (const PF_Cmd cmd :
         {255, 256, 65536, std::numeric_limits<PF_Cmd>::max(), std::numeric_limits<PF_Cmd>::min()})
        commands.push_back(cmd);
    constexpr int kRandom = 200;
    std::mt19937_64 random(setting.seed);
    for (int k = 0; k < (setting.full ? kRandom : 0); ++k) {
        const auto cmd = static_cast<PF_Cmd>(random());
        if (IsUnknownCommand(cmd)) commands.push_back(cmd);
    }
    return commands;
}

void TakesUnknownCommands(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module);
    bench.Show(UsualSketch(bench.declaration()));
    const image expected = bench.Render(1.0);
    for (const PF_Cmd cmd : UnknownCommands(setting)) {
        const auto flags = bench.host().Flags(bench.Frame());
        for (const given& what : kGiven) SendWith(checks, bench, cmd, what);
        checks.That(bench.host().Flags(bench.Frame()) == flags, "command {} changes the flags",
                    cmd);
    }
    CheckPicture(checks, bench, "after unknown commands", 1.0, expected);
    Attempt(checks, "closing", [&] { bench.host().Close(); });
}

// ---- known commands with less than usual

void TakesLess(const testSetting& setting, Checks& checks)
{
    // In an order that a host may send; set-downs twice, and of frames that were not set up.
    constexpr std::array kCommands{PF_Cmd_ABOUT,
                                   PF_Cmd_QUERY_DYNAMIC_FLAGS,
                                   PF_Cmd_UPDATE_PARAMS_UI,
                                   PF_Cmd_FRAME_SETUP,
                                   PF_Cmd_FRAME_SETDOWN,
                                   PF_Cmd_FRAME_SETDOWN,
                                   PF_Cmd_SEQUENCE_FLATTEN,
                                   PF_Cmd_SEQUENCE_RESETUP,
                                   PF_Cmd_SEQUENCE_SETDOWN,
                                   PF_Cmd_SEQUENCE_SETDOWN,
                                   PF_Cmd_SEQUENCE_SETUP};
    ValidationBench bench(setting.module);
    bench.Show(UsualSketch(bench.declaration()));
    const image expected = bench.Render(1.0);
    for (const given& what : kGiven) {
        if (!what.frame) continue;
        for (const auto cmd : kCommands) SendWith(checks, bench, cmd, what);
        CheckPicture(checks, bench, fmt::format("after commands with {}", what.name), 1.0,
                     expected);
    }
    SendWith(checks, bench, PF_Cmd_ABOUT, kGiven.front());
    Attempt(checks, "closing", [&] { bench.host().Close(); });
}

constexpr std::array kTests{
    validationTest{"abuse.commands", 10, "Unknown commands change nothing", 60, 120,
                   TakesUnknownCommands},
    validationTest{"abuse.pointers", 10, "Commands without pictures that they do not need", 60, 60,
                   TakesLess},
    validationTest{"abuse.noGL", 10, "Without OpenGL it works or says why not", 60, 60,
                   DoesWithoutGL},
    validationTest{"abuse.noContext", 10, "Without a GL context it works or says why not", 60, 60,
                   DoesWithoutContext},
    validationTest{"abuse.noTextures", 10, "GL out of memory costs frames, nothing else", 120, 300,
                   DoesWithoutTextures},
    validationTest{"abuse.fuzz", 10, "Random scenes, values, commands, failures and aborts", 120,
                   400, SurvivesAnything},
};

}  // namespace

bool IsKnownResult(PF_Err result)
{
    return std::ranges::find(kKnownResults, result) != kKnownResults.end();
}

bool IsUnknownCommand(PF_Cmd cmd)
{
    constexpr std::array kKnown{PF_Cmd_ABOUT,
                                PF_Cmd_GLOBAL_SETUP,
                                PF_Cmd_GLOBAL_SETDOWN,
                                PF_Cmd_PARAMS_SETUP,
                                PF_Cmd_SEQUENCE_SETUP,
                                PF_Cmd_SEQUENCE_RESETUP,
                                PF_Cmd_SEQUENCE_FLATTEN,
                                PF_Cmd_SEQUENCE_SETDOWN,
                                PF_Cmd_FRAME_SETUP,
                                PF_Cmd_RENDER,
                                PF_Cmd_FRAME_SETDOWN,
                                PF_Cmd_USER_CHANGED_PARAM,
                                PF_Cmd_UPDATE_PARAMS_UI,
                                PF_Cmd_QUERY_DYNAMIC_FLAGS};
    return std::ranges::none_of(kKnown, [cmd](auto known) { return known == cmd; });
}

std::span<const validationTest> AbuseTests()
{
    return kTests;
}

}  // namespace orv
