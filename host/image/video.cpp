#include "image/video.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "image/childProcess.h"
#include "scene/errors.h"

namespace orv {

namespace {

// ------------------------------------------------------------------ formats

struct videoFormat {
    std::string_view extension;
    bool alpha;
    std::string_view pixelFormat;  ///< of the encoder; empty: a palette for each frame
    std::string_view encoding;     ///< options, separated by spaces
};

constexpr std::array kFormats{
    videoFormat{".mp4", false, "yuv420p",
                "-c:v libx264 -preset medium -crf 16 -movflags +faststart"},
    videoFormat{".mov", true, "yuva444p10le",
                "-c:v prores_ks -profile:v 4444 -alpha_bits 16 -vendor apl0"},
    videoFormat{".webm", true, "yuva420p",
                "-c:v libvpx-vp9 -crf 18 -b:v 0 -auto-alt-ref 0 -row-mt 1"},
    videoFormat{".gif", true, "", "-loop 0"},
};

/// What ffmpeg does between our frames and the encoder.
std::string FilterText(const videoFormat& format)
{
    // One palette for all frames would hold them all in memory.
    if (format.pixelFormat.empty()) {
        return "split[seen][used];[seen]palettegen=stats_mode=single[palette];"
               "[used][palette]paletteuse=new=1";
    }
    return fmt::format(
        "pad=ceil(iw/2)*2:ceil(ih/2)*2:color=black@0,"
        "scale=out_color_matrix=bt709:out_range=tv:flags=accurate_rnd+full_chroma_int,format={},"
        "setparams=colorspace=bt709:color_primaries=bt709:color_trc=bt709:range=tv",
        format.pixelFormat);
}

const videoFormat* FormatOf(const std::string& file)
{
    std::string extension = std::filesystem::path(file).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto* found = std::find_if(kFormats.begin(), kFormats.end(), [&](const videoFormat& f) {
        return f.extension == extension;
    });
    return found == kFormats.end() ? nullptr : found;
}

/// As a fraction: 29.97 and its like mean 30000/1001.
std::string RateText(double frameRate)
{
    const double whole = std::round(frameRate), film = std::round(frameRate * 1.001);
    if (std::abs(frameRate - whole) <= 0.0001) return fmt::format("{:.0f}", whole);
    if (std::abs(frameRate * 1.001 - film) <= 0.005) return fmt::format("{:.0f}000/1001", film);
    return fmt::format("{:.0f}/1000", std::round(frameRate * 1000.0));
}

std::vector<std::string> Words(std::string_view text)
{
    std::vector<std::string> words;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return words;
}

const char* RawPixelFormat(bool alpha, int depth)
{
    if (!alpha) return "rgb24";
    return depth == 16 ? "rgba64le" : "argb";
}

std::vector<std::string> EncoderCommand(const videoFormat& format, const std::string& partial,
                                        int width, int height, int depth, double frameRate)
{
    std::vector<std::string> command{"ffmpeg",
                                     "-hide_banner",
                                     "-loglevel",
                                     "error",
                                     "-nostats",
                                     "-nostdin",
                                     "-progress",
                                     "pipe:1",
                                     "-f",
                                     "rawvideo",
                                     "-pixel_format",
                                     RawPixelFormat(format.alpha, depth),
                                     "-video_size",
                                     fmt::format("{}x{}", width, height),
                                     "-framerate",
                                     RateText(frameRate),
                                     "-i",
                                     "pipe:0",
                                     "-fps_mode",
                                     "passthrough",
                                     "-vf",
                                     FilterText(format)};
    for (std::string& each : Words(format.encoding)) command.push_back(std::move(each));
    command.insert(command.end(), {"-y", "file:" + partial});
    return command;
}

// ------------------------------------------------------------------ raw frames

template <class Channel>
void OverBlack(const Channel* argb, std::uint64_t fullScale, std::span<std::uint8_t> rgb)
{
    const std::uint64_t scale = fullScale * fullScale;
    for (std::size_t i = 0; i < rgb.size(); i += 3, argb += 4) {
        for (std::size_t c = 0; c < 3; ++c) {
            const std::uint64_t seen = std::uint64_t{argb[0]} * argb[c + 1];
            rgb[i + c] = static_cast<std::uint8_t>(
                std::min<std::uint64_t>((seen * 255 + scale / 2) / scale, 255));
        }
    }
}

/// R, G, B, A over the whole range of 16 bits.
void WidenTo65535(const image& frame, std::span<std::uint8_t> rgba)
{
    const std::uint16_t* p = frame.row16(0);
    for (std::size_t i = 0; i < rgba.size(); i += 8, p += 4) {
        for (std::size_t c = 0; c < 4; ++c) {
            const std::uint32_t v = std::min<std::uint32_t>(p[(c + 1) % 4], 32768);
            const std::uint32_t wide = (v * 65535U + 16384U) / 32768U;
            rgba[i + 2 * c] = static_cast<std::uint8_t>(wide & 0xff);
            rgba[i + 2 * c + 1] = static_cast<std::uint8_t>(wide >> 8);
        }
    }
}

// ------------------------------------------------------------------ the file

std::string PartialName(const std::string& file)
{
    std::filesystem::path path(file);
    const std::filesystem::path extension = path.extension();
    path.replace_extension(".partial");
    path += extension;
    return path.string();
}

[[noreturn]] void Refuse(const std::string& file, const std::string& reason)
{
    throw failure(failureKind::output, fmt::format("{}: cannot be written: {}", file, reason));
}

/// Keeps two runs from writing one video; ffmpeg empties and fills the same file.
class FileClaim {
public:
    FileClaim(const std::string& name, const std::string& file)
        : descriptor_(::open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666))
    {
        if (descriptor_ < 0) Refuse(file, std::strerror(errno));
        if (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
            ::close(descriptor_);
            Refuse(file, fmt::format("another run is writing {}", name));
        }
    }
    ~FileClaim() { ::close(descriptor_); }
    FileClaim(const FileClaim&) = delete;
    FileClaim& operator=(const FileClaim&) = delete;

private:
    int descriptor_;
};

/// The last "frame=N" of ffmpeg's progress report.
long FramesReported(const std::string& progress)
{
    const std::size_t at = progress.rfind("frame=");
    return at == std::string::npos ? 0 : std::strtol(progress.c_str() + at + 6, nullptr, 10);
}

std::string LastLine(std::string text)
{
    while (!text.empty() && text.back() == '\n') text.pop_back();
    const std::size_t at = text.rfind('\n');
    return at == std::string::npos ? text : text.substr(at + 1);
}

}  // namespace

struct VideoWriter::state {
    std::string file, partial;
    const videoFormat* format;
    int width, height, depth;
    FileClaim claim;
    std::unique_ptr<ChildProcess> encoder;
    std::vector<std::uint8_t> raw;  ///< one frame as ffmpeg gets it
    long added = 0;
    bool ended = false;

    /// Ends ffmpeg and gives its exit code.
    int EndEncoder()
    {
        ended = true;
        return encoder->Finish();
    }
    /// What a failed encoder leaves need not play.
    void Discard() { ::unlink(partial.c_str()); }
    /// Throws what ffmpeg had to say at its end.
    [[noreturn]] void RefuseEncoder(const char* what, int code)
    {
        const std::string said = LastLine(encoder->Errors());
        Discard();
        Refuse(file,
               fmt::format("{} (exit code {}){}{}", what, code, said.empty() ? "" : ": ", said));
    }
    /// What was encoded stays as a .partial file that plays; without a frame there is nothing.
    void EndQuietly()
    {
        if (!ended) (void)EndEncoder();
        if (added == 0) Discard();
    }
};

VideoWriter::VideoWriter(const std::string& file, int width, int height, int depth,
                         double frameRate)
{
    const videoFormat* format = FormatOf(file);
    if (format == nullptr) Refuse(file, "not a video format that is written here");
    struct stat existing {};
    if (::stat(file.c_str(), &existing) == 0 && !S_ISREG(existing.st_mode)) {
        Refuse(file, "it exists and is not a regular file");
    }
    const std::string partial = PartialName(file);
    state_.reset(new state{
        file, partial, format, width, height, depth, FileClaim(partial, file), nullptr, {}});
    try {
        state_->encoder = std::make_unique<ChildProcess>(
            EncoderCommand(*format, partial, width, height, depth, frameRate));
    } catch (const std::system_error& error) {
        ::unlink(partial.c_str());
        const bool missing = error.code() == std::errc::no_such_file_or_directory;
        Refuse(file, missing ? "the program ffmpeg, which encodes videos, is not installed"
                             : fmt::format("ffmpeg cannot be started: {}", error.what()));
    }
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (!format->alpha) state_->raw.resize(pixels * 3);
    if (format->alpha && depth == 16) state_->raw.resize(pixels * 8);
}

VideoWriter::~VideoWriter()
{
    state_->EndQuietly();
}

void VideoWriter::Add(const image& frame)
{
    state& s = *state_;
    if (s.ended) Refuse(s.file, "the video has been ended");
    if (frame.width != s.width || frame.height != s.height || frame.depth != s.depth) {
        Refuse(s.file,
               fmt::format("a frame of {} x {} at {} bits in a video of {} x {} at {} bits",
                           frame.width, frame.height, frame.depth, s.width, s.height, s.depth));
    }

    // 8-bit frames with alpha go out as they are.
    std::span<const std::uint8_t> raw = s.raw;
    if (!s.format->alpha && s.depth == 16) {
        OverBlack(frame.row16(0), 32768, s.raw);
    } else if (!s.format->alpha) {
        OverBlack(frame.row(0), 255, s.raw);
    } else if (s.depth == 16) {
        WidenTo65535(frame, s.raw);
    } else {
        raw = frame.bytes;
    }
    if (!s.encoder->Feed(raw)) s.RefuseEncoder("ffmpeg stopped early", s.EndEncoder());
    ++s.added;
}

void VideoWriter::Finish()
{
    state& s = *state_;
    if (s.ended) return;
    const int code = s.EndEncoder();
    if (s.added == 0) Refuse(s.file, "a video without frames");
    if (code != 0) s.RefuseEncoder("ffmpeg failed", code);
    const long encoded = FramesReported(s.encoder->Output());
    if (encoded != s.added) {
        s.Discard();
        Refuse(s.file, fmt::format("ffmpeg wrote {} frames of {}", encoded, s.added));
    }
    if (std::rename(s.partial.c_str(), s.file.c_str()) != 0) Refuse(s.file, std::strerror(errno));
}

bool IsVideoFile(const std::string& file)
{
    return FormatOf(file) != nullptr;
}

bool VideoKeepsAlpha(const std::string& file)
{
    const videoFormat* format = FormatOf(file);
    return format != nullptr && format->alpha;
}

}  // namespace orv
