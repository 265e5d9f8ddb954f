// Scripts as effects meet them: what the engine is shown, what its answer changes, the codes.
#include <gtest/gtest.h>

#include "host/plugin_fixture.h"
#include "plugin/scriptedProject.h"
#include "support/caseName.h"

namespace orv::test {
namespace {

/// A host with an engine that answers as the test says and notes what it was shown.
class ScriptStage {
public:
    ScriptStage()
    {
        pluginOptions options;
        options.runScript = [this](const std::string& script, const scriptProject& project) {
            text = script;
            shown = project;
            return answer;
        };
        stage = std::make_unique<Stage>(options);
        stage->scene.compositions[0].layers[0].effects[0].matchName = "scripted";
    }

    PF_Err Execute(const char* script)
    {
        PF_Err code = PF_Err_NONE;
        stage->With(10, {}, [&](PF_InData& in, PF_ParamDef*[]) {
            const Acquired<AEGP_UtilitySuite11> registration(in, kAEGPUtilitySuite, 11);
            AEGP_PluginID id = 0;
            EXPECT_EQ(registration->AEGP_RegisterWithAEGP(nullptr, "scripted", &id), 0);
            const Acquired<AEGP_UtilitySuite13> scripts(in, kAEGPUtilitySuite, 13);
            code = scripts->AEGP_ExecuteScript(id, script, 1, nullptr, nullptr);
        });
        return code;
    }
    double AmountAt(double t)
    {
        double value = -1.0;
        stage->With(t, {}, [&](PF_InData&, PF_ParamDef* params[]) {
            value = params[kAmount]->u.fs_d.value;
        });
        return value;
    }

    scriptOutcome answer;
    std::string text;
    scriptProject shown;
    std::unique_ptr<Stage> stage;
};

TEST(ExecuteScript, ShowsTheProjectAndKeepsWhatIsSet)
{
    ScriptStage host;
    const double before = host.AmountAt(10);
    ASSERT_NE(before, 40.0);
    host.answer.assignments = {{0, 0, 0, kAmount, {40}}};
    EXPECT_EQ(host.Execute("one"), PF_Err_NONE);
    EXPECT_EQ(host.text, "one");
    EXPECT_EQ(host.shown.compositions.size(), host.stage->scene.compositions.size());
    const scriptLayer& wave = host.shown.compositions[0].layers[0];
    EXPECT_EQ(wave.masks, 2);
    EXPECT_EQ(wave.effects[0].values[kAmount], std::vector<double>{before});

    EXPECT_EQ(host.AmountAt(10), 40.0);
    EXPECT_EQ(host.AmountAt(12), 40.0);
    // Setting it again changes nothing.
    EXPECT_EQ(host.Execute("two"), PF_Err_NONE);
    EXPECT_EQ(host.shown.compositions[0].layers[0].effects[0].values[kAmount],
              std::vector<double>{40});
    ASSERT_EQ(host.stage->host->ScriptChanges().size(), 1u);
    const scriptChange& change = host.stage->host->ScriptChanges()[0];
    EXPECT_EQ(change.index, kAmount);
    EXPECT_EQ(change.from, std::vector<double>{before});
    EXPECT_EQ(change.to, std::vector<double>{40});
}

struct endCase {
    const char* name;
    scriptEnd end;
    PF_Err code;
};
class ScriptEnds : public testing::TestWithParam<endCase> {};
TEST_P(ScriptEnds, AreToldToEffectAndUser)
{
    ScriptStage host;
    host.answer = {GetParam().end, "why", {{0, 0, 0, kAmount, {41}}}};
    EXPECT_EQ(host.Execute("x"), GetParam().code);
    EXPECT_EQ(host.stage->warnings, std::vector<std::string>{"script: why"});
    EXPECT_EQ(host.AmountAt(10), 41.0) << "set before the end";
}
const endCase kEnds[] = {{"Failed", scriptEnd::failed, PF_Err_BAD_CALLBACK_PARAM},
                         {"Stopped", scriptEnd::stopped, PF_Err_INTERNAL_STRUCT_DAMAGED},
                         {"OutOfMemory", scriptEnd::outOfMemory, PF_Err_OUT_OF_MEMORY}};
INSTANTIATE_TEST_SUITE_P(Ends, ScriptEnds, testing::ValuesIn(kEnds), caseName{});

TEST(ExecuteScript, RefusesAssignmentsToWhatIsNotThere)
{
    const scriptAssignment nonsense[] = {{9, 0, 0, kAmount, {1}}, {0, 9, 0, kAmount, {1}},
                                         {0, 0, 9, kAmount, {1}}, {0, 0, 0, kParamCount, {1}},
                                         {0, 0, 0, -1, {1}},      {0, 0, 0, kAmount, {1, 2}},
                                         {0, 0, 0, kGroup, {1}},  {0, 1, 0, kAmount, {1}}};
    for (const scriptAssignment& each : nonsense) {
        ScriptStage host;
        host.answer.assignments = {each};
        EXPECT_EQ(host.Execute("x"), PF_Err_BAD_CALLBACK_PARAM)
            << each.composition << each.layer << each.effect << each.index;
        EXPECT_TRUE(host.stage->host->ScriptChanges().empty());
    }
}

}  // namespace
}  // namespace orv::test
