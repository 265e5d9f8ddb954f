// childProcess.h: a program that is fed through its standard input, and ended with all that it
// started.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orv {

/// How a program ended.
struct childEnd {
    bool timedOut = false;  ///< it was killed when its time was up
    int exitCode = 0;       ///< unless a signal ended it
    int signal = 0;         ///< 0: it ended by itself
};

/// "SIGSEGV"; "signal 40" for one without a name.
std::string SignalName(int signal);

enum class childOutput {
    kept,      ///< in unnamed files: the program can never block on us reading
    inherited  ///< it prints where we print
};

/// Runs a program of the search path in a process group of its own, so that a terminal's interrupt
/// reaches us first. Its standard input is a socket; it may answer there.
class ChildProcess {
public:
    /// Throws std::system_error when the program cannot be started (ENOENT: there is none).
    explicit ChildProcess(const std::vector<std::string>& arguments,
                          childOutput output = childOutput::kept);
    ~ChildProcess();  ///< closes the input and waits
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// False when the program has stopped reading. Never raises SIGPIPE.
    bool Feed(std::span<const std::uint8_t> data);
    /// Closes the input and waits for the end. 0: it ended well; else its exit code, or 128 +
    /// signal.
    int Finish();
    /// The same, but a program that is still running after `limit` is killed. Whatever it started
    /// and left running in its group is killed with it, and also after a timely end.
    childEnd EndWithin(std::chrono::milliseconds limit);
    /// Kills the group at once. An earlier end of the program's own is told as it was.
    childEnd EndNow();
    [[nodiscard]] bool IsRunning() const;
    [[nodiscard]] pid_t process() const { return process_; }
    /// Our end of its standard input, which is also where it may answer.
    [[nodiscard]] int socket() const { return inputSocket_; }
    /// Ends its input; what it answers can still be read.
    void EndInput();
    /// What it printed, after its end, when that is kept.
    [[nodiscard]] std::string Output() const { return ReadBack(outputFile_); }
    [[nodiscard]] std::string Errors() const { return ReadBack(errorFile_); }

private:
    childEnd EndGroup();
    childEnd Reap();
    static std::string ReadBack(int file);
    void CloseInput();
    void CloseAll();

    pid_t process_ = -1;
    int inputSocket_ = -1;
    int outputFile_ = -1, errorFile_ = -1;
};

}  // namespace orv
