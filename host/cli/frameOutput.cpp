#include "cli/frameOutput.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>

#include <fmt/format.h>

#include "scene/errors.h"

namespace orv {
namespace {

/// Bits per channel as ProbePicture reports them.
int StoredDepth(outputKind kind, const pictureFormat& format)
{
    if (kind != outputKind::exr) return format.depth;
    return format.exr == exrPixel::half ? 16 : 32;
}

}  // namespace

void PrepareFolder(const std::string& name)
{
    const std::filesystem::path folder = name.empty() ? "." : name;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!error && !std::filesystem::is_directory(folder))
        error = std::make_error_code(std::errc::not_a_directory);
    if (!error && access(folder.c_str(), W_OK) != 0)
        error = std::error_code(errno, std::generic_category());
    if (error)
        throw failure(failureKind::output,
                      fmt::format("{}: cannot be written: {}", folder.string(), error.message()));
}

FrameOutput::FrameOutput(const outputPattern& pattern, const pictureFormat& format)
    : pattern_(pattern), format_(format)
{
    if (pattern_.kind == outputKind::video)
        video_ = std::make_unique<VideoWriter>(FrameFile(pattern_, 0), format_.width,
                                               format_.height, format_.depth, format_.frameRate);
}

existingPicture FrameOutput::Existing(int frame) const
{
    const std::string file = FrameFile(pattern_, frame);
    std::error_code error;
    if (!std::filesystem::exists(file, error)) return existingPicture::none;
    const pictureInfo info = ProbePicture(file);
    const bool whole = info.width == format_.width && info.height == format_.height &&
                       info.depth == StoredDepth(pattern_.kind, format_);
    return whole ? existingPicture::whole : existingPicture::other;
}

std::string FrameOutput::Write(const image& picture, int frame)
{
    std::string file = FrameFile(pattern_, frame);
    switch (pattern_.kind) {
        case outputKind::png:
            WritePng(picture, file);
            break;
        case outputKind::exr:
            WriteExr(picture, file, format_.exr);
            break;
        case outputKind::video:
            video_->Add(picture);
            break;
    }
    return file;
}

void FrameOutput::Finish()
{
    if (video_) video_->Finish();
}

}  // namespace orv
