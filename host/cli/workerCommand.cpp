// A worker process of `orv render`.
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "cli/frameWork.h"
#include "cli/renderRun.h"
#include "cli/workerMessages.h"

namespace orv {
namespace {

/// Our side of the socket that is the standard input. When the parent is gone, what is sent gets
/// lost and there are no more frames.
class Parent {
public:
    /// Waits for the next frame; none: there are no more.
    std::optional<int> NextFrame()
    {
        std::size_t end = 0;
        while ((end = pending_.find('\n')) == std::string::npos) {
            std::array<char, 4096> part{};
            const ssize_t got = ::recv(STDIN_FILENO, part.data(), part.size(), 0);
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) return std::nullopt;
            pending_.append(part.data(), static_cast<std::size_t>(got));
        }
        int frame = 0;
        std::from_chars(pending_.data(), pending_.data() + end, frame);
        pending_.erase(0, end + 1);
        return frame;
    }

    void Send(const workerMessage& message) { SendBytes(MessageLine(message)); }

    void Send(frameAnswer answer)
    {
        const workerMessage message = frameMessage{std::move(answer)};
        Send(message);
        const std::vector<std::uint8_t>& picture =
            std::get<frameMessage>(message).answer.picture.bytes;
        SendBytes({reinterpret_cast<const char*>(picture.data()), picture.size()});
    }

private:
    static void SendBytes(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const ssize_t sent = ::send(STDIN_FILENO, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent < 0 && errno == EINTR) continue;
            if (sent < 0) return;
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
    }

    std::string pending_;
};

/// Whether a parent of ours can be at the other end.
bool InputIsSocket()
{
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(STDIN_FILENO, SOL_SOCKET, SO_TYPE, &type, &size) == 0;
}

/// Runs a step; what it throws is sent.
template <class Step>
void RunSending(Parent& parent, const Step& step)
{
    try {
        step();
    } catch (const failure& problem) {
        parent.Send(failureMessage{problem.kind(), problem.what()});
    } catch (const std::bad_alloc&) {
        parent.Send(failureMessage{failureKind::frame, "out of memory"});
    } catch (const std::exception& problem) {
        parent.Send(failureMessage{failureKind::frame, problem.what()});
    }
}

void RenderFrames(const renderOptions& options, RenderSession& session, Parent& parent)
{
    session.Prepare();
    std::optional<FrameOutput> output;  // of a video the parent has the only one
    if (options.output.kind != outputKind::video)
        output.emplace(options.output, session.start().format);
    FrameWork work(options, session, output ? &*output : nullptr);
    while (const std::optional<int> frame = parent.NextFrame()) parent.Send(work.Do(*frame));
}

void Work(const renderOptions& options, Parent& parent)
{
    RenderSession session(
        options, {.warn = [&](const std::string& text) { parent.Send(warningMessage{text}); },
                  .interrupted = {},
                  .pluginLoaded = [&] { parent.Send(pluginLoadedMessage{}); },
                  .observe =
                      [&](const std::string& command, bool answered) {
                          parent.Send(commandMessage{command, answered});
                      }});
    parent.Send(readyMessage{session.start()});
    RunSending(parent, [&] { RenderFrames(options, session, parent); });
    session.Close();
}

}  // namespace

int RunRenderWorker(const renderOptions& options)
{
    if (!InputIsSocket())
        throw failure(failureKind::usage, "render-worker is for 'orv render --jobs' to start");
    // A parent that is killed cannot end us, and one that was gone before this line sends nothing.
    (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
    (void)prctl(PR_SET_NAME, "orv-worker");
    Parent parent;
    RunSending(parent, [&] { Work(options, parent); });
    parent.Send(closedMessage{});
    return 0;
}

}  // namespace orv
