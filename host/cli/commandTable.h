// commandTable.h: the subcommands of `orv`. Each lives in a file of its own and has one row here.
#pragma once

#include <functional>
#include <span>
#include <string_view>

namespace CLI {
class App;
}

namespace orv {

/// Declares the options on `command` and returns what runs it once they are read. The runner
/// returns the exit code or throws failure.
using commandSetUp = std::function<int()> (*)(CLI::App& command);

struct commandRow {
    std::string_view name;
    std::string_view summary;  ///< "": for our own use, in no help
    commandSetUp setUp;
};

std::span<const commandRow> Commands();

/// The whole program. Loads neither a plug-in nor OpenGL unless a command asks for it.
int RunCommandLine(int argc, char* argv[]);

std::function<int()> SetUpRender(CLI::App& command);
std::function<int()> SetUpRenderWorker(CLI::App& command);
std::function<int()> SetUpParams(CLI::App& command);
std::function<int()> SetUpInspect(CLI::App& command);
std::function<int()> SetUpMesh(CLI::App& command);
std::function<int()> SetUpPanel(CLI::App& command);
std::function<int()> SetUpValidate(CLI::App& command);

}  // namespace orv
