// console.h: everything that `orv render` says on stderr: warnings, and progress as a bar on a
// terminal or as one line a frame elsewhere.
#pragma once

#include <chrono>
#include <cstdio>
#include <string>

namespace orv {

/// "[#####.....] 12/48  3.4 frames/s  0:11 left", `width` characters at most for the bar itself.
/// Without a finished frame there is neither a rate nor a time left.
std::string ProgressBar(std::size_t done, std::size_t total, double seconds, int barWidth);

/// "0:07", "12:30", "3:05:00".
std::string ClockText(double seconds);

class Console {
public:
    /// `quiet` silences progress; warnings and errors are always said.
    Console(std::FILE* out, bool terminal, bool quiet);
    ~Console();  ///< leaves the cursor on a fresh line
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    void Warn(const std::string& text);   ///< "warning: ..."
    void Note(const std::string& text);   ///< as it is; not when quiet
    void Error(const std::string& text);  ///< "error: ..."

    void StartFrames(std::size_t total);
    /// `what` is the file that was written, or why there is none.
    void FrameDone(int frame, const std::string& what, double seconds);

private:
    void Line(const std::string& text);
    void DrawBar();

    std::FILE* out_;
    bool terminal_, quiet_;
    bool barShown_ = false;
    std::size_t done_ = 0, total_ = 0;
    std::chrono::steady_clock::time_point start_;
};

/// Whether a bar can be drawn there.
bool StderrIsTerminal();

}  // namespace orv
