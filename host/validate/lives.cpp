// Level 5: the lives of instances and of the module, in every order that a host may send. Whatever
// came before, an ordinary frame is as it always is.
#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/command.h"
#include "validate/bench.h"
#include "validate/frameCheck.h"
#include "validate/paramCases.h"
#include "validate/testTable.h"

namespace orv {
namespace {

constexpr double kTime = 1.0;

/// Sends a command to the instance on the bench; one check: it is answered with 0.
void Send(Checks& checks, ValidationBench& bench, PF_Cmd cmd, const std::string& where)
{
    Attempt(checks, where, [&] {
        const effectFrame frame = bench.Frame(kTime);
        std::string message;
        const PF_Err result = bench.host().Send(cmd, &frame, nullptr, nullptr, message);
        checks.That(result == PF_Err_NONE, "{}: {} answered {}: {}", where, CommandName(cmd),
                    result, message);
    });
}

/// The bytes of a project that another program wrote.
std::vector<std::uint8_t> RandomBytes(randomSource& random, std::size_t count)
{
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t& each : bytes) each = static_cast<std::uint8_t>(random());
    return bytes;
}

// ---- orders

enum class life { absent, live, flat };

enum class step { setUp, fromElsewhere, reSetUp, flatten, setDown, frame, panel };

struct move {
    step what;
    const char* name;
    life from, to;
};
/// What a host may send next. A set-down of an instance that was never set up is one of them.
constexpr std::array kMoves{
    move{step::setUp, "set-up", life::absent, life::live},
    move{step::fromElsewhere, "re-set-up of a foreign record", life::absent, life::live},
    move{step::setDown, "set-down", life::absent, life::absent},
    move{step::frame, "frame", life::live, life::live},
    move{step::panel, "panel", life::live, life::live},
    move{step::reSetUp, "re-set-up", life::live, life::live},
    move{step::flatten, "flatten", life::live, life::flat},
    move{step::setDown, "set-down", life::live, life::absent},
    move{step::reSetUp, "re-set-up", life::flat, life::live},
    move{step::setDown, "set-down", life::flat, life::absent},
};

using order = std::vector<const move*>;

/// Every order of `length` moves.
std::vector<order> OrdersOf(std::size_t length)
{
    std::vector<order> orders{{}};
    for (std::size_t k = 0; k < length; ++k) {
        std::vector<order> longer;
        for (const order& each : orders) {
            const life now = each.empty() ? life::absent : each.back()->to;
            for (const move& next : kMoves) {
                if (next.from != now) continue;
                longer.push_back(each);
                longer.back().push_back(&next);
            }
        }
        orders = std::move(longer);
    }
    return orders;
}

std::string Text(const order& moves)
{
    std::vector<std::string_view> names;
    for (const move* each : moves) names.emplace_back(each->name);
    return fmt::format("{}", fmt::join(names, ", "));
}

/// Sends orders to one instance and compares the frames.
class OrderRun {
public:
    OrderRun(const testSetting& setting, Checks& checks)
        : checks_(checks), bench_(setting.module), random_(setting.seed)
    {
        bench_.Show(UsualSketch(bench_.declaration()));
        expected_ = bench_.Render(kTime);
        Send(checks_, bench_, PF_Cmd_SEQUENCE_SETDOWN, "set-down after the first frame");
    }

    void Try(const order& moves)
    {
        const std::string where = Text(moves);
        for (const move* each : moves) Take(*each, where);
        if (moves.back()->to == life::flat) Send(checks_, bench_, PF_Cmd_SEQUENCE_RESETUP, where);
        CheckPicture(checks_, bench_, where, kTime, expected_);
        Send(checks_, bench_, PF_Cmd_SEQUENCE_SETDOWN, where);
        checks_.Figure("orders", 1);
    }
    void Close() { bench_.host().Close(); }

private:
    void Take(const move& next, const std::string& where)
    {
        switch (next.what) {
            case step::setUp:
                return Send(checks_, bench_, PF_Cmd_SEQUENCE_SETUP, where);
            case step::fromElsewhere:
                bench_.host().ReplaceSequenceData(bench_.Frame(kTime), RandomBytes(random_, 48));
                return Send(checks_, bench_, PF_Cmd_SEQUENCE_RESETUP, where);
            case step::reSetUp:
                return Send(checks_, bench_, PF_Cmd_SEQUENCE_RESETUP, where);
            case step::flatten:
                return Send(checks_, bench_, PF_Cmd_SEQUENCE_FLATTEN, where);
            case step::setDown:
                return Send(checks_, bench_, PF_Cmd_SEQUENCE_SETDOWN, where);
            case step::frame:
                CheckPicture(checks_, bench_, where, kTime, expected_);
                return;
            case step::panel:
                return Panel(where);
        }
    }

    void Panel(const std::string& where)
    {
        const PF_OutFlags flags = bench_.host().Flags(bench_.Frame(kTime)).first;
        if ((flags & PF_OutFlag_SEND_UPDATE_PARAMS_UI) == 0) return;
        Send(checks_, bench_, PF_Cmd_UPDATE_PARAMS_UI, where);
    }

    Checks& checks_;
    ValidationBench bench_;
    randomSource random_;
    image expected_;
};

void Orders(const testSetting& setting, Checks& checks)
{
    const std::size_t longest = setting.full ? 5 : 3;
    OrderRun run(setting, checks);
    for (std::size_t length = 1; length <= longest; ++length)
        for (const order& each : OrdersOf(length)) run.Try(each);
    run.Close();
}

// ---- records from elsewhere

struct foreignRecord {
    std::string name;
    std::vector<std::uint8_t> bytes;
};

/// `own`: a record of this module's, of an instance that is still there.
std::vector<foreignRecord> ForeignRecords(const std::vector<std::uint8_t>& own, bool full,
                                          randomSource& random)
{
    const std::size_t size = std::max<std::size_t>(own.size(), 16);
    std::vector<foreignRecord> records{
        {"a handle without memory", {}},
        {"one byte", {0x5A}},
        {"zeros", std::vector<std::uint8_t>(size, 0)},
        {"bytes of 255", std::vector<std::uint8_t>(size, 0xFF)},
        {"another instance's bytes", own},
        {"half of another instance's bytes", {own.begin(), own.begin() + std::ssize(own) / 2}},
        {"64 KiB at random", RandomBytes(random, 65536)}};
    const int count = full ? 200 : 10;
    for (int k = 0; k < count; ++k) {
        records.push_back({fmt::format("random bytes, record {}", k),
                           RandomBytes(random, 1 + random() % (2 * size))});
        // The own record with some bytes changed: what a check of its first bytes lets pass.
        foreignRecord damaged{fmt::format("another instance's bytes damaged, record {}", k), own};
        for (int n = 0; n < 4 && !own.empty(); ++n)
            damaged.bytes[random() % own.size()] = static_cast<std::uint8_t>(random());
        records.push_back(std::move(damaged));
    }
    return records;
}

void Elsewhere(const testSetting& setting, Checks& checks)
{
    ValidationBench bench(setting.module);
    const sceneSketch usual = UsualSketch(bench.declaration());
    const std::size_t neighbour = bench.Show(usual);
    const image expected = bench.Render(kTime);
    randomSource random(setting.seed);
    const std::vector<foreignRecord> records =
        ForeignRecords(bench.host().SequenceData(bench.Frame(kTime)), setting.full, random);
    const std::size_t given = bench.Show(usual);
    for (const foreignRecord& each : records) {
        bench.ShowAgain(given);
        bench.host().ReplaceSequenceData(bench.Frame(kTime), each.bytes);
        Send(checks, bench, PF_Cmd_SEQUENCE_RESETUP, each.name);
        CheckPicture(checks, bench, each.name, kTime, expected);
        Send(checks, bench, PF_Cmd_SEQUENCE_SETDOWN, each.name);
        // A project may also be closed before anything is drawn.
        bench.host().ReplaceSequenceData(bench.Frame(kTime), each.bytes);
        Send(checks, bench, PF_Cmd_SEQUENCE_SETDOWN, fmt::format("{}, set down unused", each.name));
        bench.ShowAgain(neighbour);
        CheckPicture(checks, bench, fmt::format("the neighbour of {}", each.name), kTime, expected);
        checks.Figure("records", 1);
    }
    bench.host().Close();
}

// ---- several instances

/// Scenes that differ in all that an instance may keep: sizes, depths, values.
std::vector<sceneSketch> NeighbourSketches(const effectDeclaration& declaration, std::uint64_t seed)
{
    randomSource random(seed);
    std::vector<sceneSketch> sketches(3, UsualSketch(declaration));
    sketches.resize(6, EverythingSketch(declaration));
    sketches[1].width = 51;
    sketches[1].depth = 16;
    ChooseValues(sketches[2], declaration, random);
    sketches[4].onLayer.clear();
    sketches[4].depth = 16;
    ChooseValues(sketches[5], declaration, random);
    return sketches;
}

constexpr std::array kTimes{0.0, 3.0, 8.0};
using pictureList = std::vector<std::optional<image>>;  ///< by kTimes; none: refused

/// The frames of a scene that has the module for itself.
pictureList PicturesAlone(Checks& checks, const std::string& module, const sceneSketch& sketch,
                          std::size_t number)
{
    ValidationBench bench(module);
    bench.Show(sketch);
    pictureList pictures;
    for (const double t : kTimes)
        pictures.push_back(CheckFrame(checks, bench, fmt::format("scene {} alone", number), t,
                                      refusal::withMessage));
    bench.host().Close();
    return pictures;
}

/// Frames of several instances in turn, some of which go and come back on the way.
void Together(const testSetting& setting, Checks& checks)
{
    std::vector<sceneSketch> sketches;
    {
        ValidationBench bench(setting.module);
        sketches = NeighbourSketches(bench.declaration(), setting.seed);
    }
    std::vector<pictureList> alone;
    for (std::size_t k = 0; k < sketches.size(); ++k)
        alone.push_back(PicturesAlone(checks, setting.module, sketches[k], k));

    ValidationBench bench(setting.module);
    for (const sceneSketch& each : sketches) bench.Show(each);
    randomSource random(setting.seed);
    const int turns = setting.full ? 400 : 40;
    for (int turn = 0; turn < turns; ++turn) {
        const std::size_t scene = random() % sketches.size(), at = random() % kTimes.size();
        bench.ShowAgain(scene);
        const std::string where =
            fmt::format("turn {}, scene {} among others, frame {}", turn, scene, kTimes[at]);
        if (alone[scene][at]) CheckPicture(checks, bench, where, kTimes[at], *alone[scene][at]);
        if (random() % 8 == 0) Send(checks, bench, PF_Cmd_SEQUENCE_SETDOWN, where);
    }
    bench.host().Close();
}

// ---- the module

/// GLOBAL_SETDOWN when the instances are gone, and everything from the start.
void StartAgain(Checks& checks, ValidationBench& bench, const std::string& where)
{
    Send(checks, bench, PF_Cmd_SEQUENCE_SETDOWN, where);
    for (const PF_Cmd cmd : {PF_Cmd_GLOBAL_SETDOWN, PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP})
        Attempt(checks, where, [&] {
            std::string message;
            const PF_Err result = bench.host().Send(cmd, nullptr, nullptr, nullptr, message);
            checks.That(result == PF_Err_NONE, "{}: {} answered {}: {}", where, CommandName(cmd),
                        result, message);
        });
}

void Module(const testSetting& setting, Checks& checks)
{
    const int times = setting.full ? 20 : 3;
    std::optional<image> expected;
    for (int k = 0; k < times; ++k) {
        ValidationBench bench(setting.module);
        Attempt(checks, fmt::format("the module's life {}", k), [&] {
            bench.Show(UsualSketch(bench.declaration()));
            if (k % 3 == 1)
                Send(checks, bench, PF_Cmd_SEQUENCE_SETUP, "an instance without frames");
            if (k % 3 == 2) return;  // no instance at all
            if (!expected) expected = bench.Render(kTime);
            for (const char* where : {"a fresh module", "the module set up again"}) {
                CheckPicture(checks, bench, fmt::format("{}, life {}", where, k), kTime, *expected);
                StartAgain(checks, bench, fmt::format("{}, life {}", where, k));
            }
        });
        Attempt(checks, fmt::format("the end of life {}", k), [&] { bench.host().Close(); });
        checks.Figure("lives", 1);
    }
}

constexpr std::array kTests{
    validationTest{"lives.orders", 5, "Every order of an instance's commands", 60, 300, Orders},
    validationTest{"lives.elsewhere", 5, "Records that this instance did not make", 60, 120,
                   Elsewhere},
    validationTest{"lives.together", 5, "Several instances in turn", 60, 120, Together},
    validationTest{"lives.module", 5, "The module set down and up again", 60, 120, Module},
};

}  // namespace

std::span<const validationTest> LifeTests()
{
    return kTests;
}

}  // namespace orv
