#include "cli/commandTable.h"

#include <array>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "cli/exitCodes.h"

namespace orv {
namespace {

constexpr std::array kCommands{
    commandRow{"render", "Render a scene to pictures or a video", SetUpRender},
    commandRow{"params", "List the effect's parameters", SetUpParams},
    commandRow{"inspect", "Show what a scene file holds", SetUpInspect},
    commandRow{"mesh", "Write the ribbon of a frame for 3D programs", SetUpMesh},
    commandRow{"panel", "Show the effect's controls as a user sees them", SetUpPanel},
    commandRow{"validate", "Test whether an effect module keeps its contract", SetUpValidate},
    commandRow{"render-worker", "", SetUpRenderWorker},
};

constexpr const char* kExamples =
    "Examples:\n"
    "  orv render scene.json\n"
    "  orv render scene.json -o out/f.####.png --frames 0-47\n"
    "  orv render scene.json -o banner.mov --depth 16\n"
    "  orv params\n"
    "  orv inspect scene.json\n"
    "  orv mesh scene.json --frame 12 -o ribbon.obj\n"
    "  orv panel scene.json\n"
    "  orv validate --plugin Effect.so\n"
    "'orv COMMAND --help' lists a command's options.\n";

int Report(const std::string& text, int code)
{
    fmt::print(stderr, "error: {}\n", text);
    return code;
}

/// Runs a command; whatever it throws becomes a line on stderr and an exit code.
int RunGuarded(const std::function<int()>& run)
{
    try {
        return run();
    } catch (const failure& problem) {
        return Report(problem.what(), ExitCode(problem.kind()));
    } catch (const std::bad_alloc&) {
        return Report("out of memory", ExitCode(failureKind::frame));
    } catch (const std::exception& problem) {
        return Report(problem.what(), ExitCode(failureKind::frame));
    }
}

}  // namespace

std::span<const commandRow> Commands()
{
    return kCommands;
}

int RunCommandLine(int argc, char* argv[])
{
    CLI::App app("orv: renders scene files through the effect KAL Orv.", "orv");
    app.set_version_flag("--version", "orv " ORV_VERSION);
    app.require_subcommand(1);
    app.failure_message([](const CLI::App* failed, const CLI::Error& problem) {
        return "error: " + CLI::FailureMessage::simple(failed, problem);
    });
    app.footer(kExamples + ("\n" + ExitCodeHelp()));

    int code = 0;
    for (const commandRow& row : Commands()) {
        CLI::App* const command =
            app.add_subcommand(std::string(row.name), std::string(row.summary));
        if (row.summary.empty()) command->group("");  // in no help
        command->callback([&code, run = row.setUp(*command)] { code = RunGuarded(run); });
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::RequiredError& problem) {
        const std::vector<std::string> unknown = app.remaining();
        if (!unknown.empty())
            return Report(
                fmt::format("there is no command '{}'; 'orv --help' lists them", unknown.front()),
                ExitCode(failureKind::usage));
        app.exit(problem);
        return ExitCode(failureKind::usage);
    } catch (const CLI::ParseError& problem) {
        // Help and version come as errors of code 0; everything else is wrong usage.
        return app.exit(problem) == 0 ? 0 : ExitCode(failureKind::usage);
    }
    return code;
}

}  // namespace orv
