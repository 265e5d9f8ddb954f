// workerProcess.h: one worker process of `orv render`, as its parent sees it.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "cli/renderRun.h"
#include "cli/workerMessages.h"
#include "image/childProcess.h"

namespace orv {

enum class workerState {
    loadingPlugin,
    loadingScene,
    idle,
    rendering,
    closing,  ///< there is nothing more for it to do
    gone
};

/// What a worker is rendering.
struct workerJob {
    std::size_t position = 0;  ///< in the list of frames
    int frame = 0;
};

/// Never blocks, but for Give. The process and its group end with the object.
class WorkerProcess {
public:
    /// Starts it; borrows the options. Throws std::system_error.
    explicit WorkerProcess(const workerOptions& options);
    ~WorkerProcess() { End(); }
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    [[nodiscard]] workerState state() const { return state_; }
    [[nodiscard]] const workerJob& job() const { return job_; }
    [[nodiscard]] pid_t process() const { return process_; }
    /// Readable when there is something to take in; -1: nothing comes any more.
    [[nodiscard]] int socket() const { return inputEnded_ ? -1 : child_.socket(); }
    /// Since the last job was given.
    [[nodiscard]] double jobSeconds() const;

    /// Only while idle.
    void Give(const workerJob& job);
    void Close();

    /// Takes in what has come, and ends a worker that passed one of its limits.
    std::vector<workerMessage> Update();
    /// Why it ended before its time; none: it did not. Its state is still that of its end.
    [[nodiscard]] const std::optional<std::string>& loss() const { return loss_; }

    /// Kills it.
    void End();

private:
    using clock = std::chrono::steady_clock;
    struct deadline {
        clock::time_point at;
        std::string missed;  ///< what is said then
    };

    void SetDeadline(double seconds, const char* task);
    void SetLoadDeadline(const char* task);
    void Receive();
    void TakeIn(workerMessage message);
    void NoteEnd(const childEnd& end);
    void StopPastLimits();
    void Lose(const std::string& what);
    [[nodiscard]] std::string LastCommand() const;

    const workerOptions& options_;
    ChildProcess child_;
    pid_t process_;
    MessageReader reader_;
    std::vector<workerMessage> news_;
    workerState state_ = workerState::loadingPlugin;
    workerJob job_;
    clock::time_point jobStart_;
    std::optional<deadline> deadline_;
    clock::time_point memoryCheck_;  ///< the next one
    commandMessage lastCommand_;
    bool inputEnded_ = false, closed_ = false;
    std::optional<std::string> loss_;
};

}  // namespace orv
