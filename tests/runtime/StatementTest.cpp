// Statements and control flow: completions, assignments, branches, loops.
#include <gtest/gtest.h>

#include <cctype>

#include "runtime/RuntimeEngine.h"
#include "support/CanonicalJson.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

using namespace Mero;
using MeroTest::canonicalJson;
using MeroTest::json;
using MeroTest::TemplateHarness;

namespace {

// tick(x) appends x to the UI variable "seen" and returns it; stop() breaks.
constexpr const char* recorder = R"({"variables": {"seen": []}, "functions": [
    {"n": "tick", "a": ["x"], "b": [
        {"$": 4, "n": "seen", "value": {"$": 16, "value": [{"$": 3, "n": "seen"}, [{"$": 1, "n": "x"}]]}},
        {"$": 11, "returnValue": {"$": 1, "n": "x"}}]},
    {"n": "stop", "a": [], "b": [{"$": 12}]}]})";

// SEE(v) calls tick on the local v; SEE(1) or SEE("a") on a literal.
std::string expand(std::string script)
{
    for (auto at = script.find("SEE("); at != std::string::npos; at = script.find("SEE(")) {
        auto end = script.find(')', at);
        std::string argument = script.substr(at + 4, end - at - 4);
        if (std::isalpha(static_cast<unsigned char>(argument[0]))) {
            argument = R"({"$": 1, "n": ")" + argument + "\"}";
        }
        script.replace(at, end + 1 - at, R"({"$": 5, "n": "tick", "a": [)" + argument + "]}");
    }
    return script;
}

// What a run left: its result (completions by name), then "seen" and the
// locals when not empty.
std::string outcome(const Value& result, const Value& seen, const LocalScope& locals)
{
    const char* names[] = {"completed", "break", "continue"};
    int kind = result.kindNumber() - static_cast<int>(Kind::Completed);
    std::string text = kind >= 0 && kind < 3 ? names[kind] : canonicalJson(result);
    text += seen.array().empty() ? "" : " seen=" + canonicalJson(seen);
    return text + (locals->empty() ? "" : " locals=" + canonicalJson(Value(locals)));
}

// Each row: a statement list run in an empty scope, and its outcome.
void expectRuns(std::initializer_list<std::pair<const char*, const char*>> runs)
{
    for (const auto& [script, expected] : runs) {
        TemplateHarness card(recorder);
        Value result = card.run(expand(script));
        EXPECT_EQ(outcome(result, card.ui("seen"), card.scope), expected) << script;
        card.scope->clear();  // a callback stored in the scope it was made in holds it
    }
}

}  // namespace

TEST(Completions, AListStopsAtTheFirstNonNormalCompletionButACallNeverStopsIt)
{
    expectRuns({
        {"[]", "completed"},
        {R"([{"$": 12}])", "break"},
        {R"([{"$": 13}])", "continue"},
        {R"([{"$": 11}])", "null"},
        {R"([{"$": 2, "n": "a", "value": 1}, {"$": 11, "returnValue": [1]}, {"$": 2, "n": "b", "value": 2}])",
         R"([1] locals={"a":1})"},
        {R"([{"$": 5, "n": "stop", "a": []}, {"$": 2, "n": "after", "value": 1}])", R"(completed locals={"after":1})"},
        // Arguments are evaluated left to right; a local callback shadows a
        // function of its name, a local of another kind does not.
        {R"([{"$": 5, "n": "none", "a": [SEE(1), SEE(2)]}])", "completed seen=[1,2]"},
        {R"([{"$": 2, "n": "tick", "value": {"$": 14, "a": ["x"], "b": [{"$": 11, "returnValue": {"$": 1, "n": "x"}}]}},
            {"$": 11, "returnValue": {"$": 5, "n": "tick", "a": [1]}}])",
         R"(1 locals={"tick":callback})"},
        {R"([{"$": 2, "n": "tick", "value": 0}, {"$": 11, "returnValue": SEE(1)}])", R"(1 seen=[1] locals={"tick":0})"},
        // Malformed statements do nothing; a list that is not an array is empty.
        {R"(["text", 3, null, [1], {"$": 3, "n": "x"}, {"$": 0}, {}, {"$": 19}, {"$": 4294967298}, {"$": -7},
            {"$": true}, {"$": 2, "n": "x", "value": 2}])",
         R"(completed locals={"x":2})"},
        {R"({"$": 12})", "completed"},
    });
}

TEST(Condition, RunsTheFirstTruthyBranchOrTheElse)
{
    expectRuns({
        {R"([{"$": 6, "c": [1, 1], "bs": [[SEE(1)], [SEE(2)], [SEE(3)]]}])", "completed seen=[1]"},
        {R"([{"$": 6, "c": [0, "x"], "bs": [[SEE(1)], [SEE(2)], [SEE(3)]]}])", "completed seen=[2]"},
        {R"([{"$": 6, "c": [0, ""], "bs": [[SEE(1)], [SEE(2)], [SEE(3)]]}])", "completed seen=[3]"},
        {R"([{"$": 6, "c": [null, false], "bs": [[SEE(1)], [SEE(2)], [SEE(3)]]}])", "completed seen=[3]"},
        {R"([{"$": 6, "c": [[], {}], "bs": [[SEE(1)], [SEE(2)], [SEE(3)]]}])", "completed seen=[1]"},
        {R"([{"$": 6, "c": [0, {}], "bs": [[SEE(1)], [SEE(2)], [SEE(3)]]}])", "completed seen=[2]"},
        // A condition without a branch ends the chain untested.
        {R"([{"$": 6, "c": [0, SEE(1)], "bs": [[{"$": 12}]]}])", "completed"},
        {R"([{"$": 6, "c": [1], "bs": [[]]}])", "completed"},
        {R"([{"$": 6, "c": [1], "bs": [[{"$": 13}]]}])", "continue"},
    });
}

// A While ends with null, a completion that is not normal: the list stops.
TEST(While, GoesOnOnlyOnARealTrueAndEndsWithNull)
{
    expectRuns({
        {R"([{"$": 8, "c": 1, "b": [SEE(1)]}])", "null"},
        {R"([{"$": 8, "c": "yes", "b": [SEE(1)]}])", "null"},
        {R"([{"$": 8, "c": {}, "b": [SEE(1)]}])", "null"},
        {R"([{"$": 8, "c": [1], "b": [SEE(1)]}])", "null"},
        {R"([{"$": 2, "n": "go", "value": true}, {"$": 8, "c": {"$": 1, "n": "go"}, "b": [
            SEE(go), {"$": 2, "n": "go", "value": false}]}, {"$": 2, "n": "after", "value": 1}])",
         R"(null seen=[true] locals={"go":false})"},
        {R"([{"$": 8, "isDoWhile": true, "c": false, "b": [SEE(1)]}])", "null seen=[1]"},
        // continue goes back to the test; break ends with null; return is handed up.
        {R"([{"$": 2, "n": "go", "value": true}, {"$": 8, "c": {"$": 1, "n": "go"}, "b": [
            {"$": 2, "n": "go", "value": false}, {"$": 13}, SEE(go)]}])",
         R"(null locals={"go":false})"},
        {R"([{"$": 8, "c": true, "b": [{"$": 12}]}])", "null"},
        {R"([{"$": 8, "c": true, "b": [{"$": 11, "returnValue": 7}]}])", "7"},
    });
}

TEST(ForRange, CountsFromTheTruncatedStartReReadingTheEndAndErasesItsIndex)
{
    expectRuns({
        {R"([{"$": 7, "startIndex": 2.9, "endIndex": 5, "index": "v", "b": [SEE(v)]}])", "completed seen=[2,3,4]"},
        {R"([{"$": 2, "n": "end", "value": 10}, {"$": 7, "startIndex": 0, "endIndex": {"$": 1, "n": "end"},
            "index": "v", "b": [SEE(v), {"$": 2, "n": "end", "value": 3}]}])",
         R"(completed seen=[0,1,2] locals={"end":3})"},
        // A NaN end (0 / 0) does not end the loop; here the body leaves at 1.
        {R"([{"$": 7, "startIndex": 0, "endIndex": {"$": 5, "n": "1", "a": [[3], [0, 0]]}, "index": "v",
            "b": [SEE(v), {"$": 6, "c": [{"$": 1, "n": "v"}], "bs": [[{"$": 12}]]}]}])",
         "completed seen=[0,1]"},
        // An empty body evaluates neither bound.
        {R"([{"$": 7, "startIndex": SEE(0), "endIndex": SEE(3), "index": "i", "b": []}])", "completed"},
        // The index is erased however the loop ends, even a local it replaced.
        {R"([{"$": 2, "n": "i", "value": 0}, {"$": 7, "startIndex": 0, "endIndex": 3, "index": "i", "b": [
            {"$": 12}]}])",
         "completed"},
        {R"([{"$": 7, "startIndex": 0, "endIndex": 3, "index": "i", "b": [{"$": 11, "returnValue": 9}]}])", "9"},
        // A start that is not a number counts from 0; continue and break.
        {R"([{"$": 7, "startIndex": "x", "endIndex": 5, "index": "v", "b": [
            {"$": 6, "c": [{"$": 5, "n": "0", "a": [0, {"$": 1, "n": "v"}, 1]}], "bs": [[{"$": 13}]]},
            {"$": 6, "c": [{"$": 5, "n": "0", "a": [0, {"$": 1, "n": "v"}, 3]}], "bs": [[{"$": 12}]]}, SEE(v)]}])",
         "completed seen=[0,2]"},
        // A break inside a switch leaves only the switch.
        {R"([{"$": 7, "startIndex": 0, "endIndex": 3, "index": "v", "b": [
            {"$": 9, "t": {"$": 1, "n": "v"}, "c": [1], "bs": [[{"$": 12}]], "default": []}, SEE(v)]}])",
         "completed seen=[0,1,2]"},
    });
}

TEST(ForOf, WalksBytesOrALiveArrayEvaluatingTheTargetTwice)
{
    expectRuns({
        // Five letters, one of them two bytes in UTF-8: six rounds.
        {R"([{"$": 10, "t": "cafés", "index": "i", "item": "v", "b": [SEE(v)]}])",
         "completed seen=[99,97,102,195,169,115]"},
        // The first round appends to the array being walked.
        {R"([{"$": 2, "n": "list", "value": [1, 2]}, {"$": 10, "t": {"$": 1, "n": "list"}, "index": "i", "item": "v",
            "b": [SEE(v), {"$": 6, "c": [{"$": 1, "n": "i"}], "bs": [[], [
                {"$": 5, "n": "j", "a": [{"$": 1, "n": "list"}, [3]]}]]}]}])",
         R"(completed seen=[1,2,3] locals={"list":[1,2,3]})"},
        {R"([{"$": 10, "t": SEE([1]), "index": "i", "item": "v", "b": [{"$": 12}]}])", "completed seen=[[1],[1]]"},
        {R"([{"$": 10, "t": SEE([1]), "index": "i", "item": "v", "b": []}])", "completed"},
        {R"([{"$": 10, "t": {"a": 1}, "index": "i", "item": "v", "b": [{"$": 11, "returnValue": 1}]}])", "completed"},
        {R"([{"$": 10, "t": [5, 6], "index": "i", "item": "v", "b": [{"$": 11, "returnValue": {"$": 1, "n": "v"}}]}])",
         "5"},
    });
}

TEST(Switch, FallsThroughFromTheMatchUntilABreak)
{
    expectRuns({
        {R"([{"$": 9, "t": 2, "c": [1, 2, 3, 4], "bs": [[SEE(1)], [SEE(2)], [SEE(3), {"$": 12}], [SEE(4)]],
            "default": [SEE(0)]}])",
         "completed seen=[2,3]"},
        {R"([{"$": 9, "t": 1, "c": [1], "bs": [[SEE(1)]], "default": [SEE(0)]}])", "completed seen=[1,0]"},
        {R"([{"$": 9, "t": 5, "c": [1], "bs": [[SEE(1)]], "default": [SEE(0)]}])", "completed seen=[0]"},
        // continue is handed up; a break in the default reaches the enclosing list.
        {R"([{"$": 9, "t": 1, "c": [1], "bs": [[{"$": 13}]]}])", "continue"},
        {R"([{"$": 9, "t": 5, "c": [1], "bs": [[]], "default": [{"$": 12}]}])", "break"},
        // More cases than bodies: the switch ends and the default is skipped.
        {R"([{"$": 9, "t": 5, "c": [1, 2], "bs": [[]], "default": [{"$": 12}]}])", "completed"},
        // The subject is evaluated for every comparison up to the match.
        {R"([{"$": 9, "t": SEE(3), "c": [1, 2, 3, 4], "bs": [[], [], [], []]}])", "completed seen=[3,3,3]"},
        // Only numbers and strings match.
        {R"([{"$": 9, "t": "a", "c": ["a"], "bs": [[SEE(1)]]}])", "completed seen=[1]"},
        {R"([{"$": 9, "t": true, "c": [true], "bs": [[SEE(1)]]}])", "completed"},
        {R"([{"$": 9, "t": null, "c": [null], "bs": [[SEE(1)]]}])", "completed"},
        {R"([{"$": 9, "t": 1, "c": ["1"], "bs": [[SEE(1)]]}])", "completed"},
        {R"([{"$": 9, "t": [1], "c": [[1]], "bs": [[SEE(1)]]}])", "completed"},
    });
}

TEST(Assignments, StoreIntoTheirTablesAndOnlyUiWritesAreObservedOrNeedNoEngine)
{
    TemplateHarness card(recorder);
    card.run(R"([{"$": 2, "n": "l", "value": 1}, {"$": 4, "n": "u", "value": 2}, {"$": 18, "n": "g", "value": 3},
                 {"$": 2, "n": "l", "value": [{"$": 1, "n": "l"}]}])");
    EXPECT_EQ(canonicalJson(card.local("l")), "[1]");
    EXPECT_EQ(card.ui("u").number(), 2);
    EXPECT_EQ(card.global("g").number(), 3);
    EXPECT_FALSE(card.engine->observers().contains("g"));

    // With the engine gone, UI and global writes do not even evaluate.
    Value statements = json(R"({"b": [{"$": 4, "n": "x", "value": {"$": 5, "n": "tick", "a": [1]}},
        {"$": 18, "n": "y", "value": 1}, {"$": 2, "n": "z", "value": 1}]})");
    EXPECT_EQ(runStatements(buildStatementList(statements, "b"), card.scope, EngineRef()).kind(), Kind::Completed);
    EXPECT_EQ(canonicalJson(card.ui("seen")), "[]");
    EXPECT_FALSE(card.hasUi("x"));
    EXPECT_TRUE(card.global("y").isNull());
    EXPECT_EQ(card.local("z").number(), 1);
}

// With debugMode set, every assignment and every call but LOG's is traced.
TEST(TraceLines, NameTheTableOrSurroundTheCall)
{
    TemplateHarness card;
    auto traced = [&](const char* statements) {
        MeroTest::DebugModeScope debug(true);
        testing::internal::CaptureStdout();
        card.run(statements);
        return testing::internal::GetCapturedStdout();
    };
    EXPECT_EQ(traced(R"([{"$": 2, "n": "a", "value": [1, "x"]}, {"$": 4, "n": "b", "value": {"k": null}},
                        {"$": 18, "n": "c", "value": 2.5}])"),
              "Mero_log-> set localRef, name: a value: [1,x,]\n"
              "Mero_log-> set uiRef, name: b value: {k:null,}\n"
              "Mero_log-> set globalRef, name: c value: 2.5\n");
    EXPECT_EQ(traced(R"([{"$": 5, "n": "9", "a": [[1, "a"], [null]]}, {"$": 5, "n": "nothing", "a": []}])"),
              "Mero_log-> invoke func: 9 args:[[1,a,],[null,],]\n"
              "Mero_log-> func result: [1,a,null,]\n\n"
              "Mero_log-> invoke func: nothing args:[]\n"
              "Mero_log-> func result: null\n\n");
    EXPECT_EQ(traced(R"([{"$": 5, "n": "LOG", "a": [1]}])"), "");
    EXPECT_EQ(MeroTest::printedOutput(
                  [&] { card.run(R"([{"$": 4, "n": "b", "value": 1}, {"$": 5, "n": "nothing", "a": []}])"); }),
              "");
}
