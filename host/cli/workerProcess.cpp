#include "cli/workerProcess.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <utility>

#include <fmt/format.h>

namespace orv {
namespace {

/// Loading is done once for many frames, so it has at least so long where there is a limit.
constexpr double kLeastLoadSeconds = 30.0;
/// A worker that has hung up but does not end.
constexpr double kLastSeconds = 10.0;
constexpr std::chrono::milliseconds kMemoryChecks(20);

std::vector<std::string> CommandLine(const workerOptions& options)
{
    // This very program, even if another has taken its name since.
    std::vector<std::string> line{"/proc/self/exe", "render-worker"};
    line.insert(line.end(), options.arguments.begin(), options.arguments.end());
    return line;
}

/// A figure in kB of /proc/PID/status.
std::uint64_t Kilobytes(const char* status, const char* name)
{
    const char* const line = std::strstr(status, name);
    return line != nullptr ? std::strtoull(line + std::strlen(name), nullptr, 10) : 0;
}

/// Bytes that the process has in memory or swapped out. Address space is no measure: drivers
/// reserve plenty that they never touch.
std::uint64_t MemoryOf(pid_t process)
{
    std::array<char, 4096> status{};
    const int file = ::open(fmt::format("/proc/{}/status", process).c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return 0;
    (void)!::read(file, status.data(), status.size() - 1);
    ::close(file);
    return (Kilobytes(status.data(), "VmRSS:") + Kilobytes(status.data(), "VmSwap:")) * 1024;
}

std::string SizeText(std::uint64_t bytes)
{
    constexpr std::uint64_t kMega = 1U << 20, kGiga = 1U << 30;
    if (bytes % kGiga == 0) return fmt::format("{} GB", bytes / kGiga);
    return fmt::format("{:.4g} MB", static_cast<double>(bytes) / kMega);
}

}  // namespace

WorkerProcess::WorkerProcess(const workerOptions& options)
    : options_(options),
      child_(CommandLine(options), childOutput::inherited),
      process_(child_.process()),
      jobStart_(clock::now()),
      memoryCheck_(clock::now())
{
    SetLoadDeadline("loaded");
}

double WorkerProcess::jobSeconds() const
{
    return std::chrono::duration<double>(clock::now() - jobStart_).count();
}

void WorkerProcess::Give(const workerJob& job)
{
    job_ = job;
    jobStart_ = clock::now();
    state_ = workerState::rendering;
    deadline_.reset();
    if (options_.frameTimeout) SetDeadline(*options_.frameTimeout, "done");
    const std::string line = fmt::format("{}\n", job.frame);
    // A worker that is gone is found out by Update.
    (void)child_.Feed({reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});
}

void WorkerProcess::Close()
{
    state_ = workerState::closing;
    SetLoadDeadline("closed");
    child_.EndInput();
}

void WorkerProcess::End()
{
    (void)child_.EndNow();
    state_ = workerState::gone;
}

std::vector<workerMessage> WorkerProcess::Update()
{
    // What it sent before its end is read after the end was seen, so that nothing gets lost.
    const bool running = child_.IsRunning();
    try {
        Receive();
    } catch (const std::exception& problem) {
        Lose(fmt::format("the worker sent what cannot be read ({})", problem.what()));
    }
    if (!running) NoteEnd(child_.EndNow());
    if (!loss_ && state_ != workerState::gone) StopPastLimits();
    return std::exchange(news_, {});
}

void WorkerProcess::Receive()
{
    // One that talks without end must not keep us from its limits.
    constexpr int kMostParts = 256;
    std::array<char, 65536> part{};
    for (int parts = 0; parts < kMostParts && !inputEnded_; ++parts) {
        const ssize_t got = ::recv(child_.socket(), part.data(), part.size(), MSG_DONTWAIT);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0 && errno == EAGAIN) return;
        if (got <= 0) {
            inputEnded_ = true;
            SetDeadline(kLastSeconds, "ended");
            return;
        }
        reader_.Append({part.data(), static_cast<std::size_t>(got)});
        while (std::optional<workerMessage> message = reader_.Next()) TakeIn(std::move(*message));
    }
}

void WorkerProcess::TakeIn(workerMessage message)
{
    if (const auto* const command = std::get_if<commandMessage>(&message)) {
        lastCommand_ = *command;
        return;
    }
    if (std::holds_alternative<pluginLoadedMessage>(message)) state_ = workerState::loadingScene;
    if (std::holds_alternative<closedMessage>(message)) closed_ = true;
    if (std::holds_alternative<readyMessage>(message)) {
        state_ = workerState::idle;
        deadline_.reset();
    }
    if (const auto* const frame = std::get_if<frameMessage>(&message)) {
        if (state_ != workerState::rendering || frame->answer.figures.frame != job_.frame)
            throw std::runtime_error("a frame that it was not given");
        state_ = workerState::idle;
        deadline_.reset();
    }
    if (std::holds_alternative<failureMessage>(message)) {
        state_ = workerState::closing;
        SetLoadDeadline("closed");
    }
    news_.push_back(std::move(message));
}

void WorkerProcess::NoteEnd(const childEnd& end)
{
    inputEnded_ = true;
    if (end.signal != 0) {
        Lose(fmt::format("the worker was killed by {}", SignalName(end.signal)));
    } else if (end.exitCode != 0 || !closed_) {
        Lose(fmt::format("the worker ended with exit code {}", end.exitCode));
    } else {
        state_ = workerState::gone;
    }
}

void WorkerProcess::StopPastLimits()
{
    const auto now = clock::now();
    if (deadline_ && now >= deadline_->at) {
        (void)child_.EndNow();
        Lose(deadline_->missed);
    } else if (now >= memoryCheck_) {
        memoryCheck_ = now + kMemoryChecks;
        if (MemoryOf(process_) <= options_.memoryLimit) return;
        (void)child_.EndNow();
        Lose(fmt::format("needs more than {}; stopped", SizeText(options_.memoryLimit)));
    }
}

void WorkerProcess::SetDeadline(double seconds, const char* task)
{
    deadline_ = {clock::now() + std::chrono::duration_cast<clock::duration>(
                                    std::chrono::duration<double>(seconds)),
                 fmt::format("not {} after {:g} s; stopped", task, seconds)};
}

void WorkerProcess::SetLoadDeadline(const char* task)
{
    if (options_.frameTimeout)
        SetDeadline(std::max(*options_.frameTimeout, kLeastLoadSeconds), task);
}

void WorkerProcess::Lose(const std::string& what)
{
    if (!loss_) loss_ = what + LastCommand();
}

std::string WorkerProcess::LastCommand() const
{
    if (lastCommand_.command.empty()) return " before any command";
    if (!lastCommand_.answered) return " in " + lastCommand_.command;
    return fmt::format(" after the last command, {}", lastCommand_.command);
}

}  // namespace orv
