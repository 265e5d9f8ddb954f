// moduleTrial.h: a module's set-up (GLOBAL_SETUP and PARAMS_SETUP) and set-down while its host
// misbehaves. Each try takes a host of its own, as a set-up that failed is the end of a host's
// dealings with a module; after it the module works under another host as it always did.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "validate/commandTrial.h"

namespace orv {

class ModuleTrial {
public:
    /// Borrows `checks`.
    ModuleTrial(std::string module, Checks& checks);

    /// False, with a failed check, when the module does not work as it is.
    bool Learn();
    [[nodiscard]] std::int64_t setUpCalls() const { return setUpGate_.made; }
    [[nodiscard]] std::int64_t setDownCalls() const { return setDownGate_.made; }
    [[nodiscard]] const callLog& setUpNotes() const { return setUpNotes_; }
    [[nodiscard]] const callLog& setDownNotes() const { return setDownNotes_; }

    /// Check all that has to be right, the fault being met with it, and return whether it was.
    bool TrySetUp(const callGate& gate);
    bool TrySetDown(const callGate& gate);

private:
    image FrameUnder(ValidationBench& bench) const;
    void JudgeMet(std::string_view step, const trialOutcome& outcome);
    void JudgeAnswer(std::string_view step, const trialOutcome& outcome);
    void CheckFrame(ValidationBench& bench, std::string_view step, const trialOutcome& outcome);
    void CheckFrameWithoutRecord(ValidationBench& bench, const trialOutcome& outcome);
    void CheckUnderNewHost(std::string_view step, const trialOutcome& outcome);

    std::string module_;
    Checks& checks_;
    image frame_;
    effectDeclaration declaration_;
    callGate setUpGate_, setDownGate_;
    callLog setUpNotes_, setDownNotes_;
};

}  // namespace orv
