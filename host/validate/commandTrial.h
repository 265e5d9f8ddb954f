// commandTrial.h: one command of an instance, sent again and again while its host misbehaves.
//
// Right is: the code of what failed, or all the work done without it (callContract.h has the
// exceptions); nothing left out; and the next frame is what it always was.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "validate/bench.h"
#include "validate/checks.h"
#include "validate/commandWork.h"

namespace orv {

/// What an instance that is set up again finds as its record.
enum class oldRecord { own, foreign, withoutMemory };

struct triedCommand {
    std::string_view name;
    PF_Cmd cmd;
    oldRecord record = oldRecord::own;
};

/// Every command of an instance but RENDER.
std::span<const triedCommand> InstanceCommands();
inline constexpr triedCommand kTriedRender{"RENDER", PF_Cmd_RENDER};

/// For a bench on which commands are tried: scripts run, to no effect.
pluginOptions TrialOptions(const callGate& gate = {});

/// What a command did.
struct trialOutcome {
    PF_Err answer = PF_Err_NONE;
    std::string fault{};  ///< rules that it broke, things that it left out; "" if none
    callGate gate{};      ///< as the command left it
    commandWork work{};

    /// The call that failed, "abort" for an abort.
    [[nodiscard]] std::string call() const;
    /// "PF_NewWorld failed with 4", "abort answered 518": what the host did.
    [[nodiscard]] std::string hostsPart() const;
    /// The code that it was to come back with.
    [[nodiscard]] PF_Err code() const;
    /// Whether the command met its fault at all.
    [[nodiscard]] bool met() const;
    /// Whether it may come back with what it came back with, which is not 0.
    [[nodiscard]] bool MayAnswer(PF_Cmd cmd) const;
};

/// Each try sends what belongs before and after the command without a fault. Tries alternate
/// between two frames of different sources, so that nothing kept from the one is right for the
/// other.
class CommandTrial {
public:
    /// Shows the sketch. Borrows bench and checks.
    CommandTrial(ValidationBench& bench, Checks& checks, const sceneSketch& sketch,
                 const triedCommand& command);

    /// Sends the command without a fault. False, with a failed check, when it cannot be tried: it
    /// fails or breaks a rule as it is.
    bool Learn();
    /// The most of the usual commands.
    [[nodiscard]] std::int64_t calls() const;
    [[nodiscard]] std::int64_t abortChecks() const;
    /// Of the usual commands, both frames together.
    [[nodiscard]] callLog notes() const;

    /// Sends the command through this gate, at a frame whose usual command would meet the fault,
    /// and checks all that has to be right. Returns whether the fault was met: a failed check when
    /// it was not.
    bool Try(const callGate& gate);

private:
    [[nodiscard]] double time() const { return turn_ == 0 ? 1.0 : 2.0; }
    [[nodiscard]] bool UsuallyMeets(const callGate& gate) const;
    void ChooseTurn(const callGate& gate);
    bool LearnTurn();
    void Prepare();
    trialOutcome Send(const callGate& gate);
    void Finish(const trialOutcome& outcome);
    void JudgeAnswer(const trialOutcome& outcome);
    void JudgeWork(const trialOutcome& outcome);
    /// "" when the outcome is the usual one; else what is another.
    [[nodiscard]] std::string WorkNotDone(const trialOutcome& outcome);
    [[nodiscard]] std::string RecordDifference(const trialOutcome& outcome);
    void CheckNextFrame(const trialOutcome& outcome);
    PF_Err SendPlainly(PF_Cmd cmd);
    void LearnFrames();

    ValidationBench& bench_;
    Checks& checks_;
    sceneSketch sketch_;
    triedCommand command_;
    std::size_t turn_ = 0;  ///< of the two frames
    std::array<image, 2> frames_, unblurred_;
    std::array<trialOutcome, 2> usual_;
    std::array<callLog, 2> notes_;
    GoodRecords goodRecords_;
};

}  // namespace orv
