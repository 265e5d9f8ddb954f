#include "validate/commandWork.h"

#include <algorithm>
#include <cstring>
#include <tuple>

#include <fmt/format.h>

#include "validate/frameCheck.h"

namespace orv {
namespace {

std::vector<std::string>*& Listening()
{
    static std::vector<std::string>* scripts = nullptr;
    return scripts;
}

bool SameControls(const std::vector<controlState>& one, const std::vector<controlState>& other)
{
    const auto same = [](const controlState& a, const controlState& b) {
        return std::tie(a.name, a.disabled, a.hidden) == std::tie(b.name, b.disabled, b.hidden);
    };
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), same);
}

/// Flags but the one that says how a message is shown: it outlives the failure that set it.
std::pair<PF_OutFlags, PF_OutFlags2> Meaning(std::pair<PF_OutFlags, PF_OutFlags2> flags)
{
    flags.first &= ~PF_OutFlags{PF_OutFlag_DISPLAY_ERROR_MESSAGE};
    return flags;
}

std::string FlagDifference(const commandWork& work, const commandWork& usual)
{
    const auto [one, two] = Meaning(work.flags);
    const auto [usualOne, usualTwo] = Meaning(usual.flags);
    if (one == usualOne && two == usualTwo) return {};
    return fmt::format("flags {:#x} and {:#x} instead of {:#x} and {:#x}", one, two, usualOne,
                       usualTwo);
}

/// A command that declares no flags leaves those that it found.
bool FoundTheSameFlags(const commandWork& work, const commandWork& usual)
{
    return Meaning(work.flagsBefore) == Meaning(usual.flagsBefore);
}

/// The word of the record at that place; the last one may be cut off.
std::uint64_t Word(const std::vector<std::uint8_t>& record, std::size_t at)
{
    std::uint64_t word = 0;
    std::memcpy(&word, record.data() + at, std::min(sizeof word, record.size() - at));
    return word;
}

/// Programs, libraries and what they allocate lie in this part of the address space.
bool LooksLikeAddress(std::uint64_t word)
{
    constexpr std::uint64_t kFirst = 0x50, kLast = 0x7F;
    constexpr int kLowBits = 40;
    return (word >> kLowBits) >= kFirst && (word >> kLowBits) <= kLast;
}

}  // namespace

scriptOutcome NoteScript(const std::string& script, const scriptProject& /*project*/)
{
    if (Listening() != nullptr) Listening()->push_back(script);
    return {};
}

ScriptListener::ScriptListener(std::vector<std::string>& scripts)
{
    Listening() = &scripts;
}

ScriptListener::~ScriptListener()
{
    Listening() = nullptr;
}

std::string WorkDifference(PF_Cmd cmd, const commandWork& work, const commandWork& usual)
{
    if (cmd == PF_Cmd_QUERY_DYNAMIC_FLAGS || FoundTheSameFlags(work, usual)) {
        if (std::string flags = FlagDifference(work, usual); !flags.empty()) return flags;
    }
    if (!SameControls(work.controls, usual.controls)) return "other controls";
    if (cmd == PF_Cmd_ABOUT && work.message != usual.message)
        return fmt::format("\"{}\" instead of \"{}\"", work.message, usual.message);
    if (work.frameData != usual.frameData)
        return usual.frameData ? "no frame data" : "frame data that there usually is not";
    if (work.scripts != usual.scripts)
        return fmt::format("\"{}\" was to run instead of \"{}\"", fmt::join(work.scripts, "; "),
                           fmt::join(usual.scripts, "; "));
    return Difference(work.output, usual.output);
}

std::string GoodRecords::Difference(const std::vector<std::uint8_t>& record) const
{
    const std::size_t size = records_.front().size();
    const auto hasSize = [size](const auto& each) { return each.size() == size; };
    if (!std::ranges::all_of(records_, hasSize)) return {};
    if (record.size() != size)
        return fmt::format("a record of {} bytes instead of {}", record.size(), size);
    for (std::size_t at = 0; at < size; at += sizeof(std::uint64_t)) {
        const std::uint64_t usual = Word(records_.front(), at), found = Word(record, at);
        const bool steady = std::ranges::all_of(
            records_, [&](const auto& each) { return Word(each, at) == usual; });
        if (found == usual || !steady || LooksLikeAddress(usual)) continue;
        return fmt::format("a record with {:#x} instead of {:#x} at byte {}", found, usual, at);
    }
    return {};
}

}  // namespace orv
