// video.h: frames into a video file, through the ffmpeg program.
#pragma once

#include <memory>
#include <string>

#include "image/image.h"

namespace orv {

/// MP4 (H.264, no alpha: over black), MOV (ProRes 4444 with alpha), WebM (VP9 with alpha), GIF
/// (alpha on or off), by the file's extension. Colours are BT.709. MP4, MOV and WebM get a
/// transparent last column or row where width or height is odd. Raw frames are piped into ffmpeg,
/// which runs in a process group of its own. The file is written as NAME.partial.EXT and renamed by
/// Finish. All throw failure(failureKind::output): ffmpeg missing, its exit code, a wrong frame
/// count, another run writing the same file.
class VideoWriter {
public:
    VideoWriter(const std::string& file, int width, int height, int depth, double frameRate);
    ~VideoWriter();  ///< without Finish: closes the stream so that the .partial file plays, quietly
    VideoWriter(const VideoWriter&) = delete;
    VideoWriter& operator=(const VideoWriter&) = delete;
    /// `frame` has the size and depth that the writer was made for.
    void Add(const image& frame);
    void Finish();

private:
    struct state;
    std::unique_ptr<state> state_;
};

/// Whether the extension (".mp4", ".mov", ".webm", ".gif", upper case too) is a video's, and
/// whether it keeps alpha.
bool IsVideoFile(const std::string& file);
bool VideoKeepsAlpha(const std::string& file);

}  // namespace orv
