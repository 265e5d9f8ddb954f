// Level 10: random scenes, values, commands, failures and aborts, in any order. Everything comes
// from the seed; time decides only where it ends.
#include <array>
#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "validate/abuse.h"
#include "validate/bench.h"
#include "validate/frameCheck.h"
#include "validate/paramCases.h"

namespace orv {
namespace {

constexpr std::chrono::seconds kSampleTime(5), kFullTime(30);

/// Suites that a module may want.
constexpr std::array<const char*, 8> kSuites{kPFHandleSuite, kPFPathQuerySuite,  kPFPathDataSuite,
                                             kPFWorldSuite,  kPFParamUtilsSuite, kAEGPLayerSuite,
                                             kAEGPMaskSuite, kAEGPStreamSuite};

/// What a module can do nothing about when it gets no suite: its instance is not set up, and a
/// set-down gives nothing back.
bool MayHappen(const failure& problem, const callGate& gate)
{
    if (gate.missingSuite.empty() && gate.failedCall != "AcquireSuite") return false;
    return problem.kind() == failureKind::frame ||
           std::string_view(problem.what()).find("SETDOWN: not given back") !=
               std::string_view::npos;
}

/// One module under random use. A step that throws ends it: what the module is like then, nobody
/// knows.
class Fuzzer {
public:
    Fuzzer(const testSetting& setting, Checks& checks)
        : setting_(setting), checks_(checks), random_(setting.seed)
    {
        Reload();
    }

    /// False when something was wrong.
    bool Step()
    {
        ++step_;
        const std::string where = fmt::format("seed {}, step {}", setting_.seed, step_);
        const std::int64_t failed = checks_.failed();
        const auto chosen = Below(kSteps.size());
        Attempt(checks_, fmt::format("{}: {}", where, kSteps[chosen].name), [&] {
            where_ = where;
            (this->*kSteps[chosen].run)();
        });
        bench_->host().gate() = {};
        return checks_.failed() == failed;
    }
    void Close()
    {
        Attempt(checks_, "closing", [this] { bench_->host().Close(); });
    }
    [[nodiscard]] std::int64_t steps() const { return step_; }

private:
    struct stepKind {
        std::string_view name;
        void (Fuzzer::*run)();
    };

    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(random_() % count); }
    int Between(int least, int most)
    {
        return least + static_cast<int>(Below(static_cast<std::size_t>(most - least) + 1));
    }

    // ---- scenes

    /// Loads the module anew once in a while: scenes stay known for as long as it lives.
    void Reload()
    {
        if (bench_) bench_->host().Close();
        bench_.reset();
        bench_.emplace(setting_.module);
        scenes_ = 0;
        ShowAnother();
    }

    std::string RandomMask(const sceneSketch& sketch)
    {
        std::vector<std::pair<double, double>> vertices;
        for (int k = Between(0, 6); k >= 0; --k)
            vertices.emplace_back(Between(-8, sketch.width + 8), Between(-8, sketch.height + 8));
        return StraightMask(vertices, Below(2) == 0);
    }

    void ShowAnother()
    {
        const effectDeclaration& declaration = bench_->declaration();
        sceneSketch sketch =
            Below(4) == 0 ? EverythingSketch(declaration) : UsualSketch(declaration);
        sketch.width = Between(1, 64);
        sketch.height = Between(1, 64);
        sketch.sourceWidth = Between(2, 48);
        sketch.sourceHeight = Between(2, 48);
        sketch.depth = Below(2) == 0 ? 8 : 16;
        // Path parameters name masks by their number: none goes, some come.
        for (int k = Between(0, 2); k > 0; --k) sketch.masks.emplace_back();
        for (std::string& mask : sketch.masks) mask = RandomMask(sketch);
        ChooseValues(sketch, declaration, random_);
        bench_->Show(sketch);
        bench_->SetQuality({Between(1, 3), Between(1, 3), sketch.depth});
        ++scenes_;
        t_ = 0.0;
    }

    void NextScene()
    {
        constexpr int kMostScenes = 24;
        if (scenes_ < kMostScenes)
            ShowAnother();
        else
            Reload();
    }

    // ---- frames

    void ChooseTime() { t_ = Between(-2 * 8, 12 * 8) / 8.0; }

    void Frame()
    {
        ChooseTime();
        (void)CheckFrame(checks_, *bench_, where_, t_, refusal::withMessage);
    }

    /// A frame with a fault between two without: whatever it answers, the third is the first.
    void FrameWith(const callGate& gate)
    {
        const auto expected =
            CheckFrame(checks_, *bench_, where_ + ", before a fault", t_, refusal::withMessage);
        bench_->host().gate() = gate;
        try {
            checks_.That(IsKnownResult(SendFrame(*bench_, t_, kOneFill).result),
                         "{}: a result that means nothing", where_);
        } catch (const failure& problem) {
            if (!MayHappen(problem, bench_->host().gate())) throw;
        }
        bench_->host().gate() = {};
        if (!expected) return;
        const auto after = CheckFrame(checks_, *bench_, where_ + ", after a fault", t_);
        const std::string difference = after ? Difference(*expected, *after) : "";
        checks_.That(difference.empty(), "{}: a fault changes the next frame: {}", where_,
                     difference);
    }

    void FailingCall()
    {
        callGate gate;
        gate.failOn = Between(1, 200);
        gate.code =
            Below(2) == 0 ? PF_Err{PF_Err_OUT_OF_MEMORY} : PF_Err{PF_Err_INTERNAL_STRUCT_DAMAGED};
        FrameWith(gate);
    }
    void Abort()
    {
        callGate gate;
        gate.abortOn = Between(1, 20);
        FrameWith(gate);
    }
    void MissingSuite()
    {
        callGate gate;
        gate.missingSuite = kSuites[Below(kSuites.size())];
        FrameWith(gate);
    }

    // ---- commands

    void Send(PF_Cmd cmd)
    {
        const effectFrame frame = bench_->Frame(t_);
        const image input = bench_->Input();
        std::string message;
        const PF_Err result =
            bench_->host().Send(cmd, &frame, Below(2) == 0 ? &input : nullptr, nullptr, message);
        checks_.That(IsKnownResult(result), "{}: {} is answered with {}, which means nothing",
                     where_, cmd, result);
    }

    void UnknownCommand()
    {
        const auto cmd = static_cast<PF_Cmd>(random_());
        if (IsUnknownCommand(cmd)) Send(cmd);
    }
    void Reopen()
    {
        // A frame before: an instance that was never set up is not saved either.
        Frame();
        Send(PF_Cmd_SEQUENCE_FLATTEN);
        Send(PF_Cmd_SEQUENCE_RESETUP);
    }
    void ReopenAnothers()
    {
        Frame();
        std::vector<std::uint8_t> bytes(Below(400));
        for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random_());
        bench_->host().ReplaceSequenceData(bench_->Frame(t_), bytes);
        Send(PF_Cmd_SEQUENCE_RESETUP);
    }
    void EndInstance() { Send(PF_Cmd_SEQUENCE_SETDOWN); }
    void Panel()
    {
        Frame();
        Send(PF_Cmd_UPDATE_PARAMS_UI);
    }

    static constexpr std::array kSteps{stepKind{"another scene", &Fuzzer::NextScene},
                                       stepKind{"another scene again", &Fuzzer::NextScene},
                                       stepKind{"a frame", &Fuzzer::Frame},
                                       stepKind{"another frame", &Fuzzer::Frame},
                                       stepKind{"a failing call", &Fuzzer::FailingCall},
                                       stepKind{"an abort", &Fuzzer::Abort},
                                       stepKind{"a missing suite", &Fuzzer::MissingSuite},
                                       stepKind{"an unknown command", &Fuzzer::UnknownCommand},
                                       stepKind{"saving", &Fuzzer::Reopen},
                                       stepKind{"another's record", &Fuzzer::ReopenAnothers},
                                       stepKind{"an instance's end", &Fuzzer::EndInstance},
                                       stepKind{"the panel", &Fuzzer::Panel}};

    const testSetting& setting_;
    Checks& checks_;
    randomSource random_;
    std::optional<ValidationBench> bench_;
    std::string where_;
    std::int64_t step_ = 0;
    int scenes_ = 0;
    double t_ = 0.0;
};

}  // namespace

void SurvivesAnything(const testSetting& setting, Checks& checks)
{
    const auto end = std::chrono::steady_clock::now() + (setting.full ? kFullTime : kSampleTime);
    Fuzzer fuzzer(setting, checks);
    bool good = true;
    while (good && std::chrono::steady_clock::now() < end) good = fuzzer.Step();
    checks.Figure("steps", static_cast<double>(fuzzer.steps()));
    if (good) fuzzer.Close();
}

}  // namespace orv
