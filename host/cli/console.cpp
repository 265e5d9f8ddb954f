#include "cli/console.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace orv {
namespace {

constexpr int kBarWidth = 30;
constexpr const char* kEraseLine = "\r\x1b[K";

}  // namespace

std::string ClockText(double seconds)
{
    const auto whole = static_cast<long>(std::ceil(std::clamp(seconds, 0.0, 1e9)));
    const long hours = whole / 3600, minutes = whole / 60 % 60, rest = whole % 60;
    return hours > 0 ? fmt::format("{}:{:02}:{:02}", hours, minutes, rest)
                     : fmt::format("{}:{:02}", minutes, rest);
}

std::string ProgressBar(std::size_t done, std::size_t total, double seconds, int barWidth)
{
    const auto cells = static_cast<std::size_t>(barWidth);
    const std::size_t filled = total > 0 ? cells * std::min(done, total) / total : cells;
    std::string text =
        fmt::format("[{:#>{}}{:.>{}}] {}/{}", "", filled, "", cells - filled, done, total);
    if (done == 0 || seconds <= 0.0) return text;
    const double rate = static_cast<double>(done) / seconds;
    text += fmt::format("  {:.3g} frames/s", rate);
    if (done < total) text += "  " + ClockText(static_cast<double>(total - done) / rate) + " left";
    return text;
}

bool StderrIsTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}

Console::Console(std::FILE* out, bool terminal, bool quiet)
    : out_(out), terminal_(terminal), quiet_(quiet), start_(std::chrono::steady_clock::now())
{
}

Console::~Console()
{
    if (barShown_) fmt::print(out_, "\n");
}

void Console::Warn(const std::string& text)
{
    Line("warning: " + text);
}

void Console::Note(const std::string& text)
{
    if (!quiet_) Line(text);
}

void Console::Error(const std::string& text)
{
    Line("error: " + text);
}

void Console::StartFrames(std::size_t total)
{
    total_ = total;
    done_ = 0;
    start_ = std::chrono::steady_clock::now();
    DrawBar();
}

void Console::FrameDone(int frame, const std::string& what, double seconds)
{
    ++done_;
    if (quiet_) return;
    if (terminal_)
        DrawBar();
    else
        Line(fmt::format("frame {} ({}/{}) {:.3f} s  {}", frame, done_, total_, seconds, what));
}

// A line goes above the bar, which then is drawn again.
void Console::Line(const std::string& text)
{
    const bool redraw = barShown_;
    if (redraw) fmt::print(out_, "{}", kEraseLine);
    barShown_ = false;
    fmt::print(out_, "{}\n", text);
    if (redraw) DrawBar();
    std::fflush(out_);
}

void Console::DrawBar()
{
    if (quiet_ || !terminal_ || total_ == 0) return;
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start_;
    fmt::print(out_, "{}{}", kEraseLine, ProgressBar(done_, total_, passed.count(), kBarWidth));
    std::fflush(out_);
    barShown_ = true;
}

}  // namespace orv
