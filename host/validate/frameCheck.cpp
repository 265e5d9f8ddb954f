#include "validate/frameCheck.h"

#include <algorithm>
#include <cstring>
#include <exception>

#include "plugin/command.h"
#include "scene/errors.h"

namespace orv {
namespace {

void EnsureInstance(PluginHost& host, const effectFrame& frame, const image& input)
{
    host.WithFrame(frame, input, [](PF_InData&, PF_OutData&, PF_ParamDef*[]) {});
}

bool AsksForQueries(const PluginHost& host, const effectFrame& frame)
{
    return (host.Flags(frame).second & PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS) != 0;
}

/// One pixel's channels in the order alpha, red, green, blue.
std::string PixelText(const image& picture, int x, int y)
{
    const auto at = static_cast<std::size_t>(x) * 4;
    const auto channels = [](const auto* c) {
        return fmt::format("({}, {}, {}, {})", c[0], c[1], c[2], c[3]);
    };
    return picture.depth == 16 ? channels(picture.row16(y) + at) : channels(picture.row(y) + at);
}

/// A frame in which little can go wrong.
bool IsPlain(const image& picture)
{
    const std::size_t pixel = picture.pixelBytes();
    return std::equal(picture.bytes.begin() + static_cast<std::ptrdiff_t>(pixel),
                      picture.bytes.end(), picture.bytes.begin());
}

/// Whether wherever the pictures differ both hold the bytes that stood there before.
bool KeepsFills(const image& one, const image& other)
{
    for (std::size_t k = 0; k < one.bytes.size(); ++k) {
        const bool kept = one.bytes[k] == kOneFill && other.bytes[k] == kOtherFill;
        if (one.bytes[k] != other.bytes[k] && !kept) return false;
    }
    return true;
}

/// What is wrong with a refused frame; "" when it may be.
std::string RefusalFault(const sentFrame& answer, refusal may)
{
    const std::string told =
        fmt::format("{} answered {}{}{}", answer.command, answer.result,
                    answer.message.empty() ? " without a message" : ": ", answer.message);
    if (may == refusal::never || answer.message.empty()) return told;
    return answer.result == PF_Interrupt_CANCEL ? told + ", and nobody asked to stop" : "";
}

/// What is wrong with two answers to one frame onto different pixels.
std::string AnswersFault(const sentFrame& one, const sentFrame& other, refusal may)
{
    if (one.result != other.result || one.message != other.message)
        return fmt::format("the same frame was answered {} (\"{}\") and then {} (\"{}\")",
                           one.result, one.message, other.result, other.message);
    if (one.result != PF_Err_NONE) return RefusalFault(one, may);
    const std::string difference = Difference(one.output, other.output);
    if (difference.empty()) return {};
    return fmt::format("{}: {}",
                       KeepsFills(one.output, other.output)
                           ? "pixels of the output are left as they were"
                           : "the same frame is another picture the second time",
                       difference);
}

}  // namespace

sentFrame SendFrame(ValidationBench& bench, double t, std::uint8_t fill)
{
    PluginHost& host = bench.host();
    const effectFrame frame = bench.Frame(t);
    const image input = bench.Input();
    sentFrame answer{.output = bench.EmptyOutput()};
    std::ranges::fill(answer.output.bytes, fill);
    const auto send = [&](PF_Cmd cmd) {
        std::string message;
        const PF_Err result = host.Send(cmd, &frame, &input, &answer.output, message);
        if (result == PF_Err_NONE || answer.result != PF_Err_NONE) return;
        answer.result = result;
        answer.command = CommandName(cmd);
        answer.message = message;
    };

    EnsureInstance(host, frame, input);
    if (AsksForQueries(host, frame)) send(PF_Cmd_QUERY_DYNAMIC_FLAGS);
    if (answer.result == PF_Err_NONE) send(PF_Cmd_FRAME_SETUP);
    if (answer.result != PF_Err_NONE) return answer;
    std::exception_ptr broken;
    try {
        send(PF_Cmd_RENDER);
    } catch (const failure&) {
        broken = std::current_exception();
    }
    try {
        send(PF_Cmd_FRAME_SETDOWN);
    } catch (const failure&) {
        if (!broken) broken = std::current_exception();
    }
    if (broken) std::rethrow_exception(broken);
    return answer;
}

std::optional<image> CheckFrame(Checks& checks, ValidationBench& bench, const std::string& where,
                                double t, refusal may)
{
    std::optional<image> picture;
    Attempt(checks, where, [&] {
        const sentFrame one = SendFrame(bench, t, kOneFill);
        const sentFrame other = SendFrame(bench, t, kOtherFill);
        checks.Figure("frames", 2);
        if (one.result != PF_Err_NONE) checks.Figure("frames refused", 2);
        const std::string fault = AnswersFault(one, other, may);
        if (checks.That(fault.empty(), "{}: {}", where, fault) && one.result == PF_Err_NONE)
            picture = one.output;
        if (picture && IsPlain(*picture)) checks.Figure("frames of one colour", 2);
    });
    return picture;
}

bool CheckPicture(Checks& checks, ValidationBench& bench, const std::string& where, double t,
                  const image& expected)
{
    std::string difference;
    const bool rendered = Attempt(checks, where, [&] {
        difference = Difference(expected, bench.Render(t));
        checks.Figure("frames", 1);
    });
    return rendered &&
           checks.That(difference.empty(), "{}: the picture changed: {}", where, difference);
}

bool Attempt(Checks& checks, const std::string& where, const std::function<void()>& step)
{
    checks.Doing("{}", where);
    try {
        step();
        return true;
    } catch (const failure& broken) {
        return checks.That(false, "{}: {}", where, broken.what());
    }
}

std::string Difference(const image& one, const image& other)
{
    if (one.width != other.width || one.height != other.height || one.depth != other.depth)
        return fmt::format("{} x {} pixels of {} bits and {} x {} of {}", one.width, one.height,
                           one.depth, other.width, other.height, other.depth);
    if (one == other) return {};
    std::string first;
    int count = 0;
    const std::size_t bytes = one.pixelBytes();
    for (int y = 0; y < one.height; ++y) {
        for (int x = 0; x < one.width; ++x) {
            const std::size_t at = static_cast<std::size_t>(x) * bytes;
            if (std::memcmp(one.row(y) + at, other.row(y) + at, bytes) == 0) continue;
            if (++count > 1) continue;
            first = fmt::format("pixel ({}, {}) is {} and {}", x, y, PixelText(one, x, y),
                                PixelText(other, x, y));
        }
    }
    return fmt::format("{}; {} of {} pixels differ", first, count, one.width * one.height);
}

}  // namespace orv
