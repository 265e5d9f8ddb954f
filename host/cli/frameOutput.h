// frameOutput.h: where finished frames go: one picture each, or a video.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cli/outputPattern.h"
#include "image/imageFile.h"
#include "image/video.h"

namespace orv {

struct pictureFormat {
    int width = 0, height = 0, depth = 8;
    exrPixel exr = exrPixel::half;
    double frameRate = 25.0;  ///< videos
};

/// Makes the folder when it is missing ("" is the working folder); throws failure(output) when that
/// fails or when nothing can be written there.
void PrepareFolder(const std::string& folder);

enum class existingPicture { none, whole, other };

class FrameOutput {
public:
    /// A video's file is opened here.
    FrameOutput(const outputPattern& pattern, const pictureFormat& format);

    /// Whether the frame's file is there, and is a whole picture of the format. Not for videos.
    [[nodiscard]] existingPicture Existing(int frame) const;
    /// Writes the frame and returns the file's name. Throws failure(output).
    std::string Write(const image& picture, int frame);
    /// Ends a video well; what never gets here keeps ".partial" in its name, and plays.
    void Finish();

private:
    outputPattern pattern_;
    pictureFormat format_;
    std::unique_ptr<VideoWriter> video_;
};

}  // namespace orv
