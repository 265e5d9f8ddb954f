// childProcess.h: a program that is fed through its standard input.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orv {

/// Runs a program of the search path in a process group of its own, so that a terminal's interrupt
/// reaches us first. What it prints is kept in unnamed files: it can never block on us reading.
class ChildProcess {
public:
    /// Throws std::system_error when the program cannot be started (ENOENT: there is none).
    explicit ChildProcess(const std::vector<std::string>& arguments);
    ~ChildProcess();  ///< closes the input and waits
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// False when the program has stopped reading. Never raises SIGPIPE.
    bool Feed(std::span<const std::uint8_t> data);
    /// Closes the input and waits for the end. 0: it ended well; else its exit code, or 128 +
    /// signal.
    int Finish();
    /// The same, but a program that is still running after `limit` is killed: none then.
    std::optional<int> FinishWithin(std::chrono::milliseconds limit);
    /// What it printed, after Finish.
    [[nodiscard]] std::string Output() const { return ReadBack(outputFile_); }
    [[nodiscard]] std::string Errors() const { return ReadBack(errorFile_); }

private:
    [[nodiscard]] bool IsRunning() const;
    static std::string ReadBack(int file);
    void CloseAll();

    pid_t process_ = -1;
    int inputSocket_ = -1;
    int outputFile_ = -1, errorFile_ = -1;
};

}  // namespace orv
