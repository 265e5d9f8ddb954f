#include "cli/workerRun.h"

#include <poll.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "cli/exitCodes.h"
#include "cli/interrupt.h"
#include "cli/pluginPath.h"
#include "cli/workerProcess.h"
#include "image/wholeFile.h"

namespace orv {
namespace {

/// How long to wait for news before limits and interrupts are looked at again.
constexpr int kTickMilliseconds = 20;
/// Replacements that may be lost before they have loaded, one after the other.
constexpr int kMostLoadLosses = 3;

class WorkerRun final : public FrameRun {
public:
    WorkerRun(const renderOptions& options, Console& console) : options_(options), console_(console)
    {
        workers_.push_back(std::make_unique<WorkerProcess>(*options.workers));
    }
    ~WorkerRun() override { EndAll(); }

    /// False when an interrupt came first. Throws failure.
    bool WaitForStart()
    {
        while (!start_) {
            if (InterruptGuard::signal() != 0) return false;
            WaitForNews();
            Serve(*workers_.front());
        }
        return true;
    }

    [[nodiscard]] const runStart& start() const override { return *start_; }

    int Run(std::vector<frameStats>& figures) override
    {
        figures_.resize(start().frames.size());
        console_.StartFrames(start().frames.size());
        const bool video = options_.output.kind == outputKind::video;
        Attempt([&] {
            if (video) video_.emplace(options_.output, start().format);
        });
        while (InterruptGuard::signal() == 0 && Step()) continue;
        EndAll();
        if (video_ && nextToWrite_ == start().frames.size()) Attempt([&] { video_->Finish(); });
        for (const std::optional<frameStats>& each : figures_) {
            if (each) figures.push_back(*each);
        }
        return code_;
    }

private:
    // ---- the run

    /// False when there is nothing left to do.
    bool Step()
    {
        StartMissing();
        if (workers_.empty()) return false;
        WaitForNews();
        for (const auto& each : workers_) {
            Serve(*each);
            if (each->state() == workerState::idle) GiveWork(*each);
            if (IsLoading(*each) && NothingToGive()) EndWorker(*each);
        }
        std::erase_if(workers_, [](const auto& w) { return w->state() == workerState::gone; });
        return true;
    }

    static bool IsLoading(const WorkerProcess& worker)
    {
        return worker.state() == workerState::loadingPlugin ||
               worker.state() == workerState::loadingScene;
    }

    [[nodiscard]] bool NothingToGive() const { return stopping_ || next_ == start().frames.size(); }

    void WaitForNews()
    {
        std::vector<pollfd> sockets;
        for (const auto& each : workers_)
            sockets.push_back({.fd = each->socket(), .events = POLLIN, .revents = 0});
        (void)::poll(sockets.data(), sockets.size(), kTickMilliseconds);
    }

    void Serve(WorkerProcess& worker)
    {
        for (workerMessage& each : worker.Update()) TakeIn(worker, each);
        if (worker.loss()) TakeLoss(worker);
    }

    /// As many workers as there are jobs, or frames that nobody will come to otherwise.
    void StartMissing()
    {
        if (NothingToGive()) return;
        const auto busy = std::ranges::count_if(
            workers_, [](const auto& each) { return each->state() == workerState::rendering; });
        const auto closing = std::ranges::count_if(
            workers_, [](const auto& each) { return each->state() == workerState::closing; });
        const auto free = std::ssize(workers_) - busy - closing;
        const auto left = static_cast<std::ptrdiff_t>(start().frames.size() - next_);
        const std::ptrdiff_t jobs = options_.workers->jobs;
        for (auto missing = std::min(left, jobs - busy) - free; missing > 0; --missing) StartOne();
    }

    void StartOne()
    {
        try {
            workers_.push_back(std::make_unique<WorkerProcess>(*options_.workers));
        } catch (const std::system_error& problem) {
            // Those that there are do the work.
            if (workers_.empty())
                Fail(failureKind::frame,
                     fmt::format("no worker can be started: {}", problem.code().message()));
        }
    }

    void GiveWork(WorkerProcess& worker)
    {
        if (NothingToGive()) {
            worker.Close();
            return;
        }
        // A video's pictures wait in memory for the ones before them.
        const std::size_t most = 2 * static_cast<std::size_t>(options_.workers->jobs);
        if (video_ && next_ >= nextToWrite_ + most) return;
        worker.Give({next_, start().frames[next_]});
        ++next_;
    }

    // ---- what workers say

    void TakeIn(WorkerProcess& worker, workerMessage& message)
    {
        if (const auto* const warning = std::get_if<warningMessage>(&message)) {
            if (warned_.insert(warning->text).second) console_.Warn(warning->text);
        } else if (const auto* const ready = std::get_if<readyMessage>(&message)) {
            loadLosses_ = 0;
            if (!start_) start_ = ready->start;
        } else if (auto* const frame = std::get_if<frameMessage>(&message)) {
            TakeAnswer(worker.job().position, std::move(frame->answer));
        } else if (const auto* const problem = std::get_if<failureMessage>(&message)) {
            if (!start_) throw failure(problem->kind, problem->text);
            Fail(problem->kind, problem->text);
        }
    }

    void TakeAnswer(std::size_t position, frameAnswer answer)
    {
        if (!video_ || !answer.problem.empty()) {
            Note(position, answer);
            return;
        }
        unwritten_.emplace(position, std::move(answer));
        for (auto next = unwritten_.find(nextToWrite_); next != unwritten_.end();
             next = unwritten_.find(++nextToWrite_)) {
            if (!Attempt([&] { AddToVideo(next->second); })) return;
            Note(next->first, next->second);
            unwritten_.erase(next);
        }
    }

    void AddToVideo(frameAnswer& answer)
    {
        Stopwatch writing;
        answer.done = video_->Write(answer.picture, answer.figures.frame);
        answer.figures.write = writing.lap();
        answer.figures.total += answer.figures.write;
    }

    void Note(std::size_t position, const frameAnswer& answer)
    {
        if (!Record(position, answer) && !options_.keepGoing) stopping_ = true;
    }

    /// Tells how a frame went and keeps its figures. Returns whether it is there.
    bool Record(std::size_t position, const frameAnswer& answer)
    {
        figures_[position] = answer.figures;
        if (Tell(answer, console_)) return true;
        NoteCode(failureKind::frame);
        return false;
    }

    // ---- what goes wrong

    void TakeLoss(WorkerProcess& worker)
    {
        const workerState state = worker.state();
        const std::string reason = *worker.loss();
        EndWorker(worker);
        switch (state) {
            case workerState::loadingPlugin:
            case workerState::loadingScene:
                TakeLoadLoss(state, reason);
                break;
            case workerState::rendering:
                LoseFrame(worker, reason);
                break;
            case workerState::closing:
                Fail(failureKind::plugin, reason);
                break;
            case workerState::idle:
            case workerState::gone:
                console_.Warn(reason);
                break;
        }
    }

    void TakeLoadLoss(workerState state, const std::string& reason)
    {
        const bool plugin = state == workerState::loadingPlugin;
        const failure problem(
            plugin ? failureKind::plugin : failureKind::scene,
            fmt::format("{}: loading it: {}", plugin ? PluginPath(options_.plugin) : options_.scene,
                        reason));
        if (!start_) throw problem;
        if (++loadLosses_ >= kMostLoadLosses)
            Fail(problem.kind(), problem.what());
        else
            console_.Warn(problem.what());
    }

    void LoseFrame(const WorkerProcess& worker, const std::string& reason)
    {
        frameAnswer answer;
        answer.figures.frame = worker.job().frame;
        answer.figures.result = frameResult::failed;
        answer.figures.total = worker.jobSeconds();
        answer.problem = reason;
        (void)Record(worker.job().position, answer);
        // A video cannot leave a frame out; pictures can.
        if (video_) stopping_ = true;
    }

    void Fail(failureKind kind, const std::string& text)
    {
        console_.Error(text);
        NoteCode(kind);
        stopping_ = true;
    }

    /// What ends the run says more than a frame that failed.
    void NoteCode(failureKind kind)
    {
        if (code_ <= ExitCode(failureKind::frame)) code_ = ExitCode(kind);
    }

    /// False when the step failed, which ends the run.
    template <class Action>
    bool Attempt(const Action& step)
    {
        try {
            step();
            return true;
        } catch (const failure& problem) {
            Fail(problem.kind(), problem.what());
            return false;
        }
    }

    void EndWorker(WorkerProcess& worker)
    {
        const bool writing = worker.state() == workerState::rendering && !video_;
        worker.End();
        if (writing)
            RemoveUnfinished(FrameFile(options_.output, worker.job().frame), worker.process());
    }

    void EndAll()
    {
        for (const auto& each : workers_) EndWorker(*each);
        workers_.clear();
    }

    const renderOptions& options_;
    Console& console_;
    std::optional<runStart> start_;
    std::vector<std::unique_ptr<WorkerProcess>> workers_;
    std::size_t next_ = 0;  ///< position of the next frame to give
    std::vector<std::optional<frameStats>> figures_;
    std::set<std::string> warned_;
    std::optional<FrameOutput> video_;
    std::map<std::size_t, frameAnswer> unwritten_;  ///< of a video
    std::size_t nextToWrite_ = 0;
    int loadLosses_ = 0;
    int code_ = 0;
    bool stopping_ = false;
};

}  // namespace

std::unique_ptr<FrameRun> StartWorkers(const renderOptions& options, Console& console)
{
    auto run = std::make_unique<WorkerRun>(options, console);
    if (!run->WaitForStart()) return nullptr;
    return run;
}

}  // namespace orv
