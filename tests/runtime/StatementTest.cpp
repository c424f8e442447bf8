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

std::string describe(const Value& result)
{
    switch (result.kind()) {
    case Kind::Completed: return "completed";
    case Kind::Break: return "break";
    case Kind::Continue: return "continue";
    default: return canonicalJson(result);
    }
}

struct Run {
    const char* script;  // a statement list, run in an empty scope
    const char* result;
    const char* seen = "[]";
    const char* locals = "{}";
};

void expectRuns(std::initializer_list<Run> runs)
{
    for (const Run& run : runs) {
        TemplateHarness card(recorder);
        std::string result = describe(card.run(expand(run.script)));
        EXPECT_EQ(result + " seen=" + canonicalJson(card.ui("seen")) + " locals=" + canonicalJson(Value(card.scope)),
                  std::string(run.result) + " seen=" + run.seen + " locals=" + run.locals)
            << run.script;
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
        {R"([{"$": 2, "n": "a", "value": 1}, {"$": 11, "returnValue": [1]}, {"$": 2, "n": "b", "value": 2}])", "[1]",
         "[]", R"({"a":1})"},
        {R"([{"$": 5, "n": "stop", "a": []}, {"$": 2, "n": "after", "value": 1}])", "completed", "[]",
         R"({"after":1})"},
        // Malformed statements do nothing; a list that is not an array is empty.
        {R"(["text", 3, null, [1], {"$": 3, "n": "x"}, {"$": 0}, {}, {"$": 19}, {"$": 4294967298}, {"$": -7},
            {"$": true}, {"$": 2, "n": "x", "value": 2}])", "completed", "[]", R"({"x":2})"},
        {R"({"$": 12})", "completed"},
    });
}

TEST(Condition, RunsTheFirstTruthyBranchOrTheElse)
{
    TemplateHarness card;
    const char* chain = R"([{"$": 6, "c": [{"$": 1, "n": "a"}, {"$": 1, "n": "b"}], "bs": [
        [{"$": 11, "returnValue": "first"}], [{"$": 11, "returnValue": "second"}], [{"$": 11, "returnValue": "else"}]]}])";
    const char* cases[][3] = {{"1", "1", "first"},     {"0", "\"x\"", "second"}, {"0", "\"\"", "else"},
                              {"null", "false", "else"}, {"[]", "0", "first"},     {"{}", "0", "first"}};
    for (const auto& [a, b, expected] : cases) {
        (*card.scope)["a"] = json(a);
        (*card.scope)["b"] = json(b);
        EXPECT_EQ(card.run(chain).string(), expected) << a << " " << b;
    }
}

TEST(Condition, MissingBranchesEndTheChainAndABranchCompletionIsHandedUp)
{
    expectRuns({
        {R"([{"$": 6, "c": [0, SEE(1)], "bs": [[{"$": 12}]]}])", "completed"},
        {R"([{"$": 6, "c": [0], "bs": [[{"$": 12}]]}])", "completed"},
        {R"([{"$": 6, "c": [1], "bs": [[]]}])", "completed"},
        {R"([{"$": 6, "c": [1], "bs": [[{"$": 13}]]}])", "continue"},
    });
}

TEST(While, OnlyARealTrueGoesOn)
{
    TemplateHarness card;
    for (const char* condition : {"1", "\"yes\"", "{}", "[1]", "null"}) {
        std::string loop = std::string(R"([{"$": 8, "b": [{"$": 11, "returnValue": "ran"}], "c": )") + condition + "}]";
        EXPECT_TRUE(card.run(loop).isNull()) << condition;
    }
}

// A While always ends with null, a non-normal completion: the list stops.
TEST(While, EndsWithNullSoTheListStops)
{
    expectRuns({
        {R"([{"$": 2, "n": "go", "value": true}, {"$": 8, "c": {"$": 1, "n": "go"}, "b": [
            SEE(go), {"$": 2, "n": "go", "value": false}]}, {"$": 2, "n": "after", "value": 1}])",
         "null", "[true]", R"({"go":false})"},
        {R"([{"$": 8, "isDoWhile": true, "c": false, "b": [SEE(1)]}])", "null", "[1]"},
        // continue goes back to the test; break ends with null; return is handed up.
        {R"([{"$": 2, "n": "go", "value": true}, {"$": 8, "c": {"$": 1, "n": "go"}, "b": [
            {"$": 2, "n": "go", "value": false}, {"$": 13}, SEE(go)]}])", "null", "[]", R"({"go":false})"},
        {R"([{"$": 8, "c": true, "b": [{"$": 12}]}])", "null"},
        {R"([{"$": 8, "c": true, "b": [{"$": 11, "returnValue": 7}]}])", "7"},
    });
}

TEST(ForRange, CountsFromTheTruncatedStartReReadingTheEndAndErasesItsIndex)
{
    expectRuns({
        {R"([{"$": 7, "startIndex": 2.9, "endIndex": 5, "index": "v", "b": [SEE(v)]}])", "completed", "[2,3,4]"},
        {R"([{"$": 2, "n": "end", "value": 10}, {"$": 7, "startIndex": 0, "endIndex": {"$": 1, "n": "end"},
            "index": "v", "b": [SEE(v), {"$": 2, "n": "end", "value": 3}]}])", "completed", "[0,1,2]", R"({"end":3})"},
        // A NaN end (0 / 0) does not end the loop; here the body leaves at 1.
        {R"([{"$": 7, "startIndex": 0, "endIndex": {"$": 5, "n": "1", "a": [[3], [0, 0]]}, "index": "v",
            "b": [SEE(v), {"$": 6, "c": [{"$": 1, "n": "v"}], "bs": [[{"$": 12}]]}]}])", "completed", "[0,1]"},
        // An empty body evaluates neither bound.
        {R"([{"$": 7, "startIndex": SEE(0), "endIndex": SEE(3), "index": "i", "b": []}])", "completed"},
        // The index is erased however the loop ends, even a local it replaced.
        {R"([{"$": 2, "n": "i", "value": "before"}, {"$": 7, "startIndex": 0, "endIndex": 3, "index": "i", "b": [
            {"$": 12}]}])", "completed"},
        {R"([{"$": 2, "n": "i", "value": "before"}, {"$": 7, "startIndex": 0, "endIndex": 3, "index": "i", "b": [
            {"$": 11, "returnValue": 9}]}])", "9"},
        // A start that is not a number counts from 0; continue and break.
        {R"([{"$": 7, "startIndex": "x", "endIndex": 5, "index": "v", "b": [
            {"$": 6, "c": [{"$": 5, "n": "0", "a": [0, {"$": 1, "n": "v"}, 1]}], "bs": [[{"$": 13}]]},
            {"$": 6, "c": [{"$": 5, "n": "0", "a": [0, {"$": 1, "n": "v"}, 3]}], "bs": [[{"$": 12}]]},
            SEE(v)]}])", "completed", "[0,2]"},
        // A break inside a switch leaves only the switch.
        {R"([{"$": 7, "startIndex": 0, "endIndex": 3, "index": "v", "b": [
            {"$": 9, "t": {"$": 1, "n": "v"}, "c": [1], "bs": [[{"$": 12}]], "default": []}, SEE(v)]}])",
         "completed", "[0,1,2]"},
    });
}

TEST(ForOf, WalksBytesOrALiveArrayEvaluatingTheTargetTwice)
{
    expectRuns({
        // Five letters, one of them two bytes in UTF-8: six rounds.
        {R"([{"$": 10, "t": "cafés", "index": "i", "item": "v", "b": [SEE(v)]}])", "completed",
         "[99,97,102,195,169,115]"},
        // The first round appends to the array being walked.
        {R"([{"$": 2, "n": "list", "value": [1, 2]}, {"$": 10, "t": {"$": 1, "n": "list"}, "index": "i", "item": "v",
            "b": [SEE(v), {"$": 6, "c": [{"$": 1, "n": "i"}], "bs": [[], [
                {"$": 5, "n": "j", "a": [{"$": 1, "n": "list"}, [3]]}]]}]}])", "completed", "[1,2,3]",
         R"({"list":[1,2,3]})"},
        {R"([{"$": 10, "t": SEE([1]), "index": "i", "item": "v", "b": [{"$": 12}]}])", "completed", "[[1],[1]]"},
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
            "default": [SEE(0)]}])", "completed", "[2,3]"},
        {R"([{"$": 9, "t": 1, "c": [1], "bs": [[SEE(1)]], "default": [SEE(0)]}])", "completed", "[1,0]"},
        {R"([{"$": 9, "t": 5, "c": [1], "bs": [[SEE(1)]], "default": [SEE(0)]}])", "completed", "[0]"},
        // continue is handed up; a break in the default reaches the enclosing list.
        {R"([{"$": 9, "t": 1, "c": [1], "bs": [[{"$": 13}]]}])", "continue"},
        {R"([{"$": 9, "t": 5, "c": [1], "bs": [[]], "default": [{"$": 12}]}])", "break"},
        // More cases than bodies: the switch ends and the default is skipped.
        {R"([{"$": 9, "t": 5, "c": [1, 2], "bs": [[]], "default": [{"$": 12}]}])", "completed"},
        // The subject is evaluated for every comparison up to the match.
        {R"([{"$": 9, "t": SEE(3), "c": [1, 2, 3, 4], "bs": [[], [], [], []]}])", "completed", "[3,3,3]"},
    });
}

TEST(Switch, MatchesOnlyNumbersAndStrings)
{
    TemplateHarness card;
    const char* cases[][3] = {{"1", "1", "case"},         {"\"a\"", "\"a\"", "case"}, {"true", "true", "default"},
                              {"null", "null", "default"}, {"1", "\"1\"", "default"}, {"[1]", "[1]", "default"}};
    for (const auto& [subject, label, expected] : cases) {
        std::string sw = std::string(R"([{"$": 9, "t": )") + subject + R"(, "c": [)" + label +
                         R"(], "bs": [[{"$": 11, "returnValue": "case"}]], "default": [{"$": 11, "returnValue": "default"}]}])";
        EXPECT_EQ(card.run(sw).string(), expected) << subject << " " << label;
    }
}

TEST(Assignments, StoreIntoTheirTablesAndOnlyUiWritesAreObservedOrNeedNoEngine)
{
    TemplateHarness card(recorder);
    card.run(R"([{"$": 2, "n": "l", "value": 1}, {"$": 4, "n": "u", "value": 2}, {"$": 18, "n": "g", "value": 3},
                 {"$": 2, "n": "l", "value": [{"$": 1, "n": "l"}]}])");
    EXPECT_EQ(canonicalJson(card.local("l")), "[1]");
    EXPECT_EQ(card.ui("u").number(), 2);
    EXPECT_EQ(card.global("g").number(), 3);
    EXPECT_FALSE(card.engine->observers.contains("g"));

    // With the engine gone, UI and global writes do not even evaluate.
    Value statements = json(R"({"b": [{"$": 4, "n": "x", "value": {"$": 5, "n": "tick", "a": [1]}},
        {"$": 18, "n": "y", "value": 1}, {"$": 2, "n": "z", "value": 1}]})");
    EXPECT_EQ(runStatements(buildStatementList(statements, "b"), card.scope, EngineRef()).kind(), Kind::Completed);
    EXPECT_EQ(canonicalJson(card.ui("seen")), "[]");
    EXPECT_FALSE(card.hasUi("x"));
    EXPECT_TRUE(card.global("y").isNull());
    EXPECT_EQ(card.local("z").number(), 1);
}

TEST(Assignments, TraceLinesNameTheTable)
{
    TemplateHarness card;
    MeroTest::DebugModeScope debug(true);
    testing::internal::CaptureStdout();
    card.run(R"([{"$": 2, "n": "a", "value": [1, "x"]}, {"$": 4, "n": "b", "value": {"k": null}},
                 {"$": 18, "n": "c", "value": 2.5}])");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Mero_log-> set localRef, name: a value: [1,x,]\n"
              "Mero_log-> set uiRef, name: b value: {k:null,}\n"
              "Mero_log-> set globalRef, name: c value: 2.5\n");
    EXPECT_EQ(MeroTest::printedOutput([&] { card.run(R"([{"$": 4, "n": "b", "value": 1}])"); }), "");
}
