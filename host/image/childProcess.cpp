#include "image/childProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

extern char** environ;

namespace orv {

namespace {

void Check(bool good, int code, const char* what)
{
    if (!good) throw std::system_error(code, std::generic_category(), what);
}

/// posix_spawn's two records.
class SpawnSettings {
public:
    SpawnSettings()
    {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
    }
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    /// A group of its own, and signals as a fresh program expects them, whatever we block or
    /// ignore.
    void UseFreshSignals()
    {
        sigset_t none, usual;
        sigemptyset(&none);
        sigemptyset(&usual);
        for (const int each : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) sigaddset(&usual, each);
        posix_spawnattr_setpgroup(&attributes, 0);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &usual);
        posix_spawnattr_setflags(&attributes,
                                 static_cast<short>(POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK |
                                                    POSIX_SPAWN_SETSIGDEF));
    }

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

}  // namespace

std::string SignalName(int signal)
{
    const char* const name = ::sigabbrev_np(signal);
    return name != nullptr ? std::string("SIG") + name : "signal " + std::to_string(signal);
}

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, childOutput output)
{
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (const std::string& each : arguments) argv.push_back(const_cast<char*>(each.c_str()));
    argv.push_back(nullptr);

    // A socket instead of a pipe: only there can a write be told to raise no SIGPIPE.
    std::array<int, 2> ends{-1, -1};
    Check(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0, errno,
          "socketpair");
    inputSocket_ = ends[0];

    SpawnSettings settings;
    posix_spawn_file_actions_adddup2(&settings.actions, ends[1], STDIN_FILENO);
    const bool keep = output == childOutput::kept;
    if (keep) {
        outputFile_ = ::memfd_create("output", MFD_CLOEXEC);
        errorFile_ = ::memfd_create("errors", MFD_CLOEXEC);
        posix_spawn_file_actions_adddup2(&settings.actions, outputFile_, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&settings.actions, errorFile_, STDERR_FILENO);
    }
    settings.UseFreshSignals();
    const int code = keep && (outputFile_ < 0 || errorFile_ < 0)
                         ? EMFILE
                         : ::posix_spawnp(&process_, argv[0], &settings.actions,
                                          &settings.attributes, argv.data(), environ);
    ::close(ends[1]);
    if (code != 0) {
        process_ = -1;
        CloseAll();
    }
    Check(code == 0, code, argv[0]);
}

ChildProcess::~ChildProcess()
{
    (void)Finish();
    CloseAll();
}

bool ChildProcess::Feed(std::span<const std::uint8_t> data)
{
    while (!data.empty()) {
        const ssize_t sent = ::send(inputSocket_, data.data(), data.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent < 0) return false;
        data = data.subspan(static_cast<std::size_t>(sent));
    }
    return true;
}

int ChildProcess::Finish()
{
    CloseInput();
    if (process_ < 0) return 0;
    const childEnd end = Reap();
    return end.signal != 0 ? 128 + end.signal : end.exitCode;
}

childEnd ChildProcess::EndWithin(std::chrono::milliseconds limit)
{
    constexpr std::chrono::milliseconds kNap(2);
    CloseInput();
    if (process_ < 0) return {};
    const auto end = std::chrono::steady_clock::now() + limit;
    while (IsRunning() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(kNap);
    const bool timedOut = IsRunning();
    childEnd how = EndGroup();
    how.timedOut = timedOut;
    return how;
}

childEnd ChildProcess::EndNow()
{
    return process_ < 0 ? childEnd{} : EndGroup();
}

void ChildProcess::EndInput()
{
    if (inputSocket_ >= 0) ::shutdown(inputSocket_, SHUT_WR);
}

childEnd ChildProcess::EndGroup()
{
    // While its leader waits to be reaped, the group's number cannot mean another one.
    ::kill(-process_, SIGKILL);
    return Reap();
}

childEnd ChildProcess::Reap()
{
    int status = 0;
    pid_t ended = -1;
    do {
        ended = ::waitpid(process_, &status, 0);
    } while (ended < 0 && errno == EINTR);
    process_ = -1;
    if (ended < 0) return {.exitCode = 127};
    if (WIFSIGNALED(status)) return {.signal = WTERMSIG(status)};
    return {.exitCode = WEXITSTATUS(status)};
}

bool ChildProcess::IsRunning() const
{
    if (process_ < 0) return false;
    siginfo_t info{};
    const int code =
        ::waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOHANG | WNOWAIT);
    return code == 0 ? info.si_pid == 0 : errno == EINTR;
}

std::string ChildProcess::ReadBack(int file)
{
    std::string text;
    std::array<char, 4096> part{};
    for (off_t at = 0;;) {
        const ssize_t got = ::pread(file, part.data(), part.size(), at);
        if (got <= 0) return text;
        text.append(part.data(), static_cast<std::size_t>(got));
        at += got;
    }
}

void ChildProcess::CloseInput()
{
    if (inputSocket_ >= 0) ::close(std::exchange(inputSocket_, -1));
}

void ChildProcess::CloseAll()
{
    for (int* each : {&inputSocket_, &outputFile_, &errorFile_}) {
        if (*each >= 0) ::close(std::exchange(*each, -1));
    }
}

}  // namespace orv
