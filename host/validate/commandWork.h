// commandWork.h: what a command did, as far as its host sees it, and how that is compared with what
// it does when nothing fails.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "validate/bench.h"

namespace orv {

struct commandWork {
    image output{};
    std::string message{};
    std::vector<std::uint8_t> record{};  ///< the instance's
    bool frameData = false;
    std::pair<PF_OutFlags, PF_OutFlags2> flagsBefore{}, flags{};
    std::vector<controlState> controls{};
    std::vector<std::string> scripts{};  ///< that were to run
};

/// Runs no script, but notes it for the listener.
scriptOutcome NoteScript(const std::string& script, const scriptProject& project);

/// Hears the scripts of one command.
class ScriptListener {
public:
    explicit ScriptListener(std::vector<std::string>& scripts);
    ~ScriptListener();
    ScriptListener(const ScriptListener&) = delete;
    ScriptListener& operator=(const ScriptListener&) = delete;
};

/// "" when `work` is what the command is for: what it was in the usual run.
std::string WorkDifference(PF_Cmd cmd, const commandWork& work, const commandWork& usual);

/// The records that good runs of one command left.
class GoodRecords {
public:
    void Add(const std::vector<std::uint8_t>& record) { records_.push_back(record); }

    /// "" when the record says what the good ones say. An effect may keep in it what no two runs
    /// have alike: words that differ among the good ones, and addresses, are not compared.
    [[nodiscard]] std::string Difference(const std::vector<std::uint8_t>& record) const;

private:
    std::vector<std::vector<std::uint8_t>> records_;
};

}  // namespace orv
