// Level 10: GL that is missing or refuses. A module that needs none works on.
#include <memory>
#include <optional>

#include "validate/abuse.h"
#include "validate/bench.h"
#include "validate/frameCheck.h"
#include "validate/watch.h"

namespace orv {
namespace {

constexpr double kTime = 1.0;

void CheckWatch(Checks& checks)
{
    checks.That(WatchIsInPlace(), "calls of GL cannot be refused in this program");
}

void CheckObjects(Checks& checks, const std::string& where, const glObjects& expected)
{
    const glObjects now = LiveGLObjects();
    checks.That(now == expected, "{}: GL has {} where it had {}", where, TextOf(now),
                TextOf(expected));
}

/// One module's life with one frame. Throws what the bench does.
image LiveOnce(const testSetting& setting)
{
    ValidationBench bench(setting.module);
    bench.Show(EverythingSketch(bench.declaration()));
    image picture = bench.Render(kTime);
    bench.host().Close();
    return picture;
}

/// A set-up that is refused says so with a code and a message: "... with error 512: no display".
bool TellsWhy(const std::string& text)
{
    const std::string_view codeIs = "GLOBAL_SETUP failed with error ";
    const std::size_t at = text.find(codeIs);
    if (at == std::string::npos) return false;
    const std::size_t behind = text.find_first_not_of("0123456789", at + codeIs.size());
    return behind != std::string::npos && text.compare(behind, 2, ": ") == 0;
}

/// A life while GL refuses, between two lives in which it does not.
void LiveWithout(const testSetting& setting, Checks& checks, const glRefusals& refusals,
                 const std::string& what)
{
    CheckWatch(checks);
    const glObjects before = LiveGLObjects();
    const auto live = [&](const std::string& where) {
        std::optional<image> picture;
        Attempt(checks, where, [&] { picture = LiveOnce(setting); });
        CheckObjects(checks, where, before);
        return picture;
    };
    const auto refuse = [&] {
        const GLRefused refused(refusals);
        std::optional<image> picture;
        checks.Doing("without {}", what);
        try {
            picture = LiveOnce(setting);
        } catch (const failure& problem) {
            checks.That(TellsWhy(problem.what()), "without {}: {}", what, problem.what());
        }
        CheckObjects(checks, "without " + what, before);
        return picture;
    };
    const std::optional<image> without = refuse();
    const std::optional<image> first = live("with " + what + " again");
    const std::optional<image> withoutAgain = refuse();
    const std::optional<image> second = live("with " + what + " once more");
    for (const auto* const picture : {&without, &withoutAgain})
        if (*picture) checks.That(*picture == first, "the frame is another one without {}", what);
    checks.That(first == second, "the frame is another one after {} was missing", what);
}

/// A bench that is made while storage is refused: none when the set-up fails, which has to say why.
std::unique_ptr<ValidationBench> BenchRefused(const testSetting& setting, Checks& checks,
                                              const std::string& where)
{
    try {
        return std::make_unique<ValidationBench>(setting.module);
    } catch (const failure& problem) {
        checks.That(TellsWhy(problem.what()), "{}: {}", where, problem.what());
        return nullptr;
    }
}

/// Renders while the storage of that number is refused (-1: every one): the set-up or the frame
/// fails with a message or is right, and the next is right. Returns how many storages were asked
/// for.
std::int64_t RenderRefused(const testSetting& setting, Checks& checks, std::int64_t number,
                           const image& expected)
{
    const std::string where =
        number < 0 ? "all storage refused" : fmt::format("storage {} refused", number);
    std::int64_t asked = 0;
    Attempt(checks, where, [&] {
        std::optional<GLRefused> refused(glRefusals{.storage = number});
        const auto made = BenchRefused(setting, checks, where);
        if (!made) {
            refused.reset();
            checks.That(LiveOnce(setting) == expected, "{}, then granted: another picture", where);
            return;
        }
        ValidationBench& bench = *made;
        bench.Show(EverythingSketch(bench.declaration()));
        const sentFrame answer = SendFrame(bench, kTime, kOneFill);
        asked = GLRefused::storagesAsked();
        refused.reset();
        const bool told = IsKnownResult(answer.result) && answer.result != PF_Interrupt_CANCEL &&
                          !answer.message.empty();
        const bool right = answer.result == PF_Err_NONE && answer.output == expected;
        checks.That(told || right, "{}: {} answered {} \"{}\"{}", where, answer.command,
                    answer.result, answer.message,
                    answer.result == PF_Err_NONE ? " with another picture" : "");
        CheckPicture(checks, bench, where + ", then granted", kTime, expected);
        bench.host().Close();
    });
    return asked;
}

}  // namespace

void DoesWithoutGL(const testSetting& setting, Checks& checks)
{
    LiveWithout(setting, checks, {.displays = true}, "GL");
}

void DoesWithoutContext(const testSetting& setting, Checks& checks)
{
    LiveWithout(setting, checks, {.contexts = true}, "a GL context");
}

void DoesWithoutTextures(const testSetting& setting, Checks& checks)
{
    constexpr std::int64_t kSample = 6;
    CheckWatch(checks);
    const glObjects before = LiveGLObjects();
    const image expected = LiveOnce(setting);
    const std::int64_t asked = RenderRefused(setting, checks, 0, expected);
    checks.Figure("storages of a frame", static_cast<double>(asked));
    (void)RenderRefused(setting, checks, -1, expected);
    const std::int64_t refused = setting.full ? asked : std::min(asked, kSample);
    for (std::int64_t number = 1; number <= refused; ++number)
        (void)RenderRefused(setting, checks, number, expected);
    CheckObjects(checks, "after all refusals", before);
}

}  // namespace orv
