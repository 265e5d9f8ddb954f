// orv-check: runs one validation test in a process of its own, for `orv validate`.
//
// The report goes to the standard output, after a line of fixed length that always holds what the
// test is doing. Whatever a module prints is kept off it.
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "validate/bench.h"
#include "validate/protocol.h"
#include "validate/testReport.h"
#include "validate/testRun.h"
#include "validate/testTable.h"

namespace {

/// `orv validate` may be killed, and then cannot end us: its end is ours. A starter that was gone
/// before that was asked for has left a socket without another end as our input.
void EndWithStarter()
{
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    char next = 0;
    if (recv(STDIN_FILENO, &next, 1, MSG_PEEK | MSG_DONTWAIT) != 0) return;
    fmt::print(stderr, "orv-check: the program that started it is gone\n");
    std::exit(orv::kCheckBroken);
}

/// Takes the standard output for itself; what is printed from now on goes to the errors.
int TakeOutput()
{
    const int output = dup(STDOUT_FILENO);
    if (output < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) std::exit(orv::kCheckBroken);
    return output;
}

class ReportFile {
public:
    explicit ReportFile(int file) : file_(file) {}

    void Doing(std::string_view what)
    {
        doing_ = what;
        Tell(what);
    }
    /// A command while it runs, behind what the test is doing.
    void Sending(const std::string& command, bool answered)
    {
        const std::string_view between = doing_.empty() ? "" : "; ";
        Tell(answered ? doing_ : fmt::format("{}{}{}", doing_, between, command));
    }
    void Finish(const orv::testReport& report)
    {
        WriteAt(ReportText(report) + "\n", orv::kActivityBytes);
    }

private:
    void Tell(std::string_view what)
    {
        std::string line(what.substr(0, orv::kActivityBytes - 1));
        std::ranges::replace(line, '\n', ' ');
        line.resize(orv::kActivityBytes - 1, ' ');
        line += '\n';
        WriteAt(line, 0);
    }

    /// By hand on a terminal there are no places to write to: the end is what counts there.
    void WriteAt(std::string_view text, std::size_t place)
    {
        const bool placed = pwrite(file_, text.data(), text.size(), static_cast<off_t>(place)) >= 0;
        if (!placed && place != 0 && write(file_, text.data(), text.size()) < 0)
            std::exit(orv::kCheckBroken);
    }

    int file_;
    std::string doing_;
};

}  // namespace

int main(int argc, char* argv[])
{
    EndWithStarter();
    CLI::App app("orv-check: runs one validation test; see 'orv validate'.", "orv-check");
    orv::testSetting setting;
    std::string name;
    app.add_option("--test", name)->required();
    app.add_option("--plugin", setting.module)->required();
    app.add_option("--strictness", setting.strictness)->check(CLI::Range(1, orv::kLevels));
    app.add_option("--seed", setting.seed);
    CLI11_PARSE(app, argc, argv);

    const std::vector<orv::validationTest> tests = orv::AllTests();
    const auto test = std::ranges::find(tests, name, &orv::validationTest::name);
    if (test == tests.end()) {
        fmt::print(stderr, "orv-check: there is no test '{}'\n", name);
        return orv::kCheckBroken;
    }
    setting.full = test->level <= setting.strictness;
    ReportFile file(TakeOutput());
    orv::Checks checks([&file](std::string_view what) { file.Doing(what); });
    orv::ValidationBench::OnEveryCommand(
        [&file](const std::string& command, bool answered) { file.Sending(command, answered); });
    file.Finish(orv::RunTest(*test, setting, checks));
    // What a module does at the program's end comes now: a crash there counts as the test's.
    std::fflush(nullptr);
    return 0;
}
