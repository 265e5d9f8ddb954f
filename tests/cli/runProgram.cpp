#include "cli/runProgram.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace orv {
namespace {

std::string ReadText(const std::filesystem::path& file)
{
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

/// The child: from here to exec only calls that are safe after a fork.
[[noreturn]] void BecomeOrv(const char* program, char* const* arguments, const char* folder,
                            int out, int err)
{
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    if (chdir(folder) == 0) execv(program, arguments);
    _exit(127);
}

}  // namespace

programResult RunOrvWhile(const std::vector<std::string>& arguments,
                          const std::filesystem::path& folder,
                          const std::function<void(pid_t)>& meanwhile)
{
    const char* const program = std::getenv("ORV_PROGRAM");
    if (!program) throw std::runtime_error("ORV_PROGRAM is not set");
    const TemporaryFolder logs;
    const std::string outFile = logs.path() / "out", errFile = logs.path() / "err";
    std::vector<std::string> words = {program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);

    const int out = open(outFile.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const int err = open(errFile.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const pid_t child = fork();
    if (child == 0) BecomeOrv(program, pointers.data(), folder.c_str(), out, err);
    close(out);
    close(err);
    meanwhile(child);
    int status = 0;
    waitpid(child, &status, 0);

    programResult result;
    result.code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    result.out = ReadText(outFile);
    result.err = ReadText(errFile);
    return result;
}

programResult RunOrv(const std::vector<std::string>& arguments, const std::filesystem::path& folder)
{
    return RunOrvWhile(arguments, folder, [](pid_t) {});
}

programResult RunOrvUntil(const std::vector<std::string>& arguments,
                          const std::filesystem::path& folder, const std::string& file, int signal)
{
    return RunOrvWhile(arguments, folder, [&](pid_t child) {
        while (!std::filesystem::exists(folder / file)) {
            siginfo_t ended{};
            waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOHANG | WNOWAIT);
            if (ended.si_pid == child) return;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        kill(child, signal);
    });
}

}  // namespace orv
