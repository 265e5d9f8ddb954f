#include "cli/workerMessages.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

#include "cli/exitCodes.h"

namespace orv {
namespace {

using json = nlohmann::json;

constexpr int kLongestEdge = 1 << 16;
// The longest that is meant lists the frames: a million of them are 8 MB.
constexpr std::size_t kLongestLine = std::size_t{16} << 20;

// ---- out

json Json(const commandMessage& m)
{
    return {{"is", "command"}, {"command", m.command}, {"answered", m.answered}};
}

json Json(const warningMessage& m)
{
    return {{"is", "warning"}, {"text", m.text}};
}

json Json(const pluginLoadedMessage&)
{
    return {{"is", "pluginLoaded"}};
}

json Json(const readyMessage& m)
{
    const pictureFormat& format = m.start.format;
    return {{"is", "ready"},
            {"composition", m.start.composition},
            {"frames", m.start.frames},
            {"width", format.width},
            {"height", format.height},
            {"depth", format.depth},
            {"frameRate", format.frameRate},
            {"exr", format.exr == exrPixel::full},
            {"pluginSeconds", m.start.pluginSeconds},
            {"sceneSeconds", m.start.sceneSeconds},
            {"glRenderer", m.start.glRenderer},
            {"glVersion", m.start.glVersion}};
}

json Json(const frameMessage& m)
{
    const frameStats& f = m.answer.figures;
    return {{"is", "frame"},
            {"frame", f.frame},
            {"skipped", f.result == frameResult::skipped},
            {"load", f.load},
            {"effect", f.effect},
            {"draw", f.draw},
            {"write", f.write},
            {"total", f.total},
            {"uploads", f.uploads},
            {"done", m.answer.done},
            {"problem", m.answer.problem},
            {"notes", m.answer.notes},
            {"picture", !m.answer.picture.bytes.empty()}};
}

json Json(const failureMessage& m)
{
    return {{"is", "failure"}, {"kind", ExitCode(m.kind)}, {"text", m.text}};
}

json Json(const closedMessage&)
{
    return {{"is", "closed"}};
}

// ---- in; json::exception for what is missing or of another type

runStart ReadStart(const json& m)
{
    runStart start;
    start.composition = m.at("composition").get<std::string>();
    start.frames = m.at("frames").get<std::vector<int>>();
    start.format = {.width = m.at("width").get<int>(),
                    .height = m.at("height").get<int>(),
                    .depth = m.at("depth").get<int>(),
                    .exr = m.at("exr").get<bool>() ? exrPixel::full : exrPixel::half,
                    .frameRate = m.at("frameRate").get<double>()};
    const auto isSize = [](int size) { return size > 0 && size <= kLongestEdge; };
    if (!isSize(start.format.width) || !isSize(start.format.height) || start.frames.empty())
        throw std::runtime_error("a picture of no size");
    start.pluginSeconds = m.at("pluginSeconds").get<double>();
    start.sceneSeconds = m.at("sceneSeconds").get<double>();
    start.glRenderer = m.at("glRenderer").get<std::string>();
    start.glVersion = m.at("glVersion").get<std::string>();
    return start;
}

frameAnswer ReadAnswer(const json& m)
{
    frameAnswer answer;
    answer.figures = {.frame = m.at("frame").get<int>(),
                      .load = m.at("load").get<double>(),
                      .effect = m.at("effect").get<double>(),
                      .draw = m.at("draw").get<double>(),
                      .write = m.at("write").get<double>(),
                      .total = m.at("total").get<double>(),
                      .uploads = m.at("uploads").get<std::int64_t>()};
    answer.done = m.at("done").get<std::string>();
    answer.problem = m.at("problem").get<std::string>();
    answer.notes = m.at("notes").get<std::vector<std::string>>();
    if (m.at("skipped").get<bool>()) answer.figures.result = frameResult::skipped;
    if (!answer.problem.empty()) answer.figures.result = frameResult::failed;
    return answer;
}

failureMessage ReadFailure(const json& m)
{
    const int kind = m.at("kind").get<int>();
    if (kind < ExitCode(failureKind::frame) || kind > ExitCode(failureKind::output))
        throw std::runtime_error("an unknown kind of failure");
    return {static_cast<failureKind>(kind), m.at("text").get<std::string>()};
}

workerMessage ReadMessage(const json& m)
{
    const auto is = m.at("is").get<std::string>();
    if (is == "command")
        return commandMessage{m.at("command").get<std::string>(), m.at("answered").get<bool>()};
    if (is == "warning") return warningMessage{m.at("text").get<std::string>()};
    if (is == "pluginLoaded") return pluginLoadedMessage{};
    if (is == "ready") return readyMessage{ReadStart(m)};
    if (is == "frame") return frameMessage{ReadAnswer(m)};
    if (is == "failure") return ReadFailure(m);
    if (is == "closed") return closedMessage{};
    throw std::runtime_error("an unknown message");
}

}  // namespace

std::string MessageLine(const workerMessage& message)
{
    const json line = std::visit([](const auto& m) { return Json(m); }, message);
    // Names come from files: what is not UTF-8 is replaced instead of refused here.
    return line.dump(-1, ' ', false, json::error_handler_t::replace) + "\n";
}

std::optional<workerMessage> MessageReader::Next()
{
    if (!unfinished_) {
        const std::size_t end = pending_.find('\n');
        if (end == std::string::npos) {
            if (pending_.size() > kLongestLine) throw std::runtime_error("a line without an end");
            return std::nullopt;
        }
        const json line = json::parse(pending_.begin(), pending_.begin() + static_cast<long>(end));
        pending_.erase(0, end + 1);
        workerMessage message = ReadMessage(line);
        if (const auto* const ready = std::get_if<readyMessage>(&message))
            format_ = ready->start.format;
        auto* const frame = std::get_if<frameMessage>(&message);
        if (frame == nullptr || !line.at("picture").get<bool>()) return message;
        unfinished_ = std::move(frame->answer);
    }

    // Most calls find a part of it only: it gets its memory when it is whole.
    image picture;
    picture.width = format_.width;
    picture.height = format_.height;
    picture.depth = format_.depth;
    const std::size_t size = picture.rowBytes() * static_cast<std::size_t>(picture.height);
    if (pending_.size() < size) return std::nullopt;
    const auto end = pending_.begin() + static_cast<long>(size);
    picture.bytes.assign(pending_.begin(), end);
    pending_.erase(pending_.begin(), end);
    unfinished_->picture = std::move(picture);
    return frameMessage{*std::exchange(unfinished_, std::nullopt)};
}

}  // namespace orv
