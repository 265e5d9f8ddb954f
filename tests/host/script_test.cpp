// Scripts in their own process: what they see, what they change, and how they are stopped.
#include "script/scriptProcess.h"
#include "support/caseName.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace orv {
namespace {

paramDeclaration Param(int index, paramKind kind, double low = 0.0, double high = 0.0)
{
    paramDeclaration made;
    made.index = index;
    made.id = 100 + index;
    made.kind = kind;
    made.validMin = low;
    made.validMax = high;
    return made;
}

/// A slider, a colour, a mask, a group, and as the last one a checkbox.
const effectDeclaration& Declaration()
{
    static const effectDeclaration declaration{
        "KAL_Orv",
        "KAL Orv",
        {Param(0, paramKind::layer), Param(1, paramKind::floatSlider, -10, 10),
         Param(2, paramKind::color), Param(3, paramKind::path), Param(4, paramKind::groupStart),
         Param(5, paramKind::checkbox)}};
    return declaration;
}

scriptEffect Instance(double box)
{
    return {
        .matchName = "KAL_Orv", .values = {{}, {2.5}, {1, 0, 0, 1}, {0}, {}, {box}}, .keyed = {}};
}
scriptEffect Foreign()
{
    return {.matchName = "other", .values = {}, .keyed = {}};
}

/// Two compositions and a picture: [foreign, off], [] and [on, off].
scriptProject TwoCompositions()
{
    scriptProject project;
    project.declaration = &Declaration();
    project.pictures = 1;
    project.compositions = {{{{.masks = 2, .effects = {Foreign(), Instance(0)}}, {}}},
                            {{{.masks = 0, .effects = {Instance(1), Instance(0)}}}}};
    return project;
}

scriptOutcome RunScript(const std::string& script, const scriptProject& project = TwoCompositions())
{
    return ScriptsThrough(std::string(std::getenv("ORV_BINARY_DIR")) + "/orv-script")(script,
                                                                                      project);
}

/// The walk of the effect's own script, with carriage returns for line breaks.
std::string SwitchAll(const std::string& value)
{
    return "try{items = app.project.numItems;\r"
           "for (i = 1; i <= items; i++) { comp = app.project.item(i);\r"
           "if (comp instanceof CompItem) for (l = 1; l <= comp.numLayers; l++) {\r"
           "fx = comp.layer(l).Effects;\r"
           "for (e = 1; e <= fx.numProperties; e++) { f = fx.property(e);\r"
           "if (f.matchName == \"KAL_Orv\") {\r"
           "if (f.property(f.numProperties-1).value != " +
           value + ") {f.property(f.numProperties-1).setValue(" + value + ");}\r}}}}}catch(e){}";
}

TEST(Script, SwitchesABoxInEveryInstanceThatHasItOtherwise)
{
    const scriptOutcome on = RunScript(SwitchAll("true"));
    EXPECT_EQ(on.end, scriptEnd::done) << on.message;
    ASSERT_EQ(on.assignments.size(), 2u);
    const scriptAssignment& first = on.assignments[0];
    EXPECT_EQ(std::tuple(first.composition, first.layer, first.effect, first.index),
              std::tuple(0, 0, 1, 5));
    EXPECT_EQ(first.value, std::vector<double>{1});
    EXPECT_EQ(on.assignments[1].composition, 1);
    EXPECT_EQ(on.assignments[1].effect, 1);

    const scriptOutcome off = RunScript(SwitchAll("false"));
    ASSERT_EQ(off.assignments.size(), 1u);
    EXPECT_EQ(off.assignments[0].composition, 1);
    EXPECT_EQ(off.assignments[0].effect, 0);
}

struct sightCase {
    const char* name;
    const char* expression;
    const char* expected;
};
class ScriptSees : public testing::TestWithParam<sightCase> {};
TEST_P(ScriptSees, TheProject)
{
    // What is thrown and not caught comes back as text.
    const scriptOutcome outcome = RunScript(
        std::string("var p = app.project, fx = p.item(1).layer(1).Effects; throw '' + (") +
        GetParam().expression + ")");
    EXPECT_EQ(outcome.end, scriptEnd::failed);
    EXPECT_EQ(outcome.message, GetParam().expected);
}
const sightCase kExpressions[] = {
    {"Items", "p.numItems", "3"},
    {"PicturesAreNoCompositions", "p.item(3) instanceof CompItem", "false"},
    {"Layers", "p.item(1).numLayers + ',' + p.item(2).numLayers", "2,1"},
    {"EmptyLayer", "p.item(1).layer(2).Effects.numProperties", "0"},
    {"HostGroupIsLast", "fx.property(2).numProperties", "6"},
    {"ForeignEffect", "fx.property(1).matchName + fx.property(1).numProperties", "other1"},
    {"ParameterName", "fx.property(2).property(5).matchName", "KAL_Orv-0105"},
    {"Number", "fx.property(2).property(1).value", "2.5"},
    {"List", "fx.property(2).property(2).value", "1,0,0,1"},
    {"Group", "fx.property(2).property(4).value", "undefined"},
    {"PositionZero", "(function () { try { p.item(0); } catch (e) { return e; } })()",
     "RangeError: item 0 is not one of 1 to 3"},
    {"NothingOutside", "[typeof require, typeof print, typeof File, typeof system, typeof process]",
     "undefined,undefined,undefined,undefined,undefined"}};
INSTANTIATE_TEST_SUITE_P(Expressions, ScriptSees, testing::ValuesIn(kExpressions), caseName{});

struct refusalCase {
    const char* name;
    const char* statement;  ///< on `f`, an instance
    const char* message;
};
class SetValue : public testing::TestWithParam<refusalCase> {};
TEST_P(SetValue, RefusesWhatAParameterCannotHold)
{
    scriptProject project = TwoCompositions();
    project.compositions[0].layers[0].effects[1].keyed = {1};
    const scriptOutcome outcome =
        RunScript(std::string("var f = app.project.item(1).layer(1).Effects.property(2), "
                              "g = app.project.item(2).layer(1).Effects.property(1); ") +
                      GetParam().statement,
                  project);
    EXPECT_EQ(outcome.end, scriptEnd::failed);
    EXPECT_EQ(outcome.message, GetParam().message);
    EXPECT_TRUE(outcome.assignments.empty());
}
const refusalCase kStatements[] = {
    {"OutOfRange", "g.property(1).setValue(11)", "RangeError: 11 is outside -10 to 10"},
    {"NoNumber", "g.property(1).setValue('x')",
     "TypeError: a value must be a number, a switch or a list of numbers"},
    {"WrongCount", "g.property(2).setValue([1, 1])", "TypeError: the value needs 4 numbers"},
    {"NoSuchMask", "f.property(3).setValue(3)", "RangeError: 3 is outside 0 to 2"},
    {"KeyFrames", "f.property(1).setValue(3)", "TypeError: a value with key frames cannot be set"},
    {"Group", "f.property(4).setValue(1)", "TypeError: a group has no value"}};
INSTANTIATE_TEST_SUITE_P(Statements, SetValue, testing::ValuesIn(kStatements), caseName{});

TEST(Script, KeepsWhatWasSetBeforeAnErrorAndReadsItBack)
{
    const scriptOutcome outcome = RunScript(
        "var s = app.project.item(2).layer(1).Effects.property(1).property(1);"
        "s.setValue(4); throw 'now ' + s.value;");
    EXPECT_EQ(outcome.end, scriptEnd::failed);
    EXPECT_EQ(outcome.message, "now 4");
    ASSERT_EQ(outcome.assignments.size(), 1u);
    EXPECT_EQ(outcome.assignments[0].value, std::vector<double>{4});
}

TEST(Script, SyntaxErrorsAndMissingProgramsAreFailures)
{
    EXPECT_EQ(RunScript("for (").end, scriptEnd::failed);
    const scriptOutcome missing = ScriptsThrough("/no/such/program")("1", TwoCompositions());
    EXPECT_EQ(missing.end, scriptEnd::failed);
    EXPECT_EQ(missing.message, "/no/such/program: No such file or directory");
}

TEST(Script, OneThatNeverEndsIsStopped)
{
    const scriptOutcome outcome = RunScript("for (;;) { try { for (;;) {} } catch (e) {} }");
    EXPECT_EQ(outcome.end, scriptEnd::stopped);
    EXPECT_EQ(outcome.message, "stopped after 5 seconds");
}

TEST(Script, OneThatAsksForTooMuchMemoryIsStoppedWhateverItCatches)
{
    const scriptOutcome outcome = RunScript(
        "var kept = []; for (;;) { try { kept.push(new Uint8Array(1 << 20)); } catch (e) {} }");
    EXPECT_EQ(outcome.end, scriptEnd::outOfMemory);
    EXPECT_EQ(outcome.message, "asked for more than 64 MB");
    EXPECT_NE(RunScript("new Uint8Array(1e10)").end, scriptEnd::done);
}

}  // namespace
}  // namespace orv
