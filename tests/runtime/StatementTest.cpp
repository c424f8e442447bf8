// Statements and control flow: completions, assignments, branches, loops.
#include <gtest/gtest.h>

#include "runtime/RuntimeEngine.h"
#include "support/CanonicalJson.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

using namespace Mero;
using MeroTest::canonicalJson;
using MeroTest::json;
using MeroTest::TemplateHarness;

namespace {

std::string traced(const std::function<void()>& action)
{
    MeroTest::DebugModeScope debug(true);
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

// Appends the local "v" to the UI variable "seen" (an array), so a test can
// read what a loop body saw, in order.
constexpr const char* recordV = R"({"$": 4, "n": "seen",
    "value": {"$": 16, "value": [{"$": 3, "n": "seen"}, [{"$": 1, "n": "v"}]]}})";

std::string withRecord(std::string statements)
{
    std::string::size_type at;
    while ((at = statements.find("RECORD")) != std::string::npos) {
        statements.replace(at, 6, recordV);
    }
    return statements;
}

}  // namespace

TEST(Completions, SimpleStatementsMakeTheirKinds)
{
    TemplateHarness card;
    EXPECT_EQ(card.run("[]").kind(), Kind::Completed);
    EXPECT_EQ(card.run(R"([{"$": 12}])").kind(), Kind::Break);
    EXPECT_EQ(card.run(R"([{"$": 13}])").kind(), Kind::Continue);
    EXPECT_EQ(card.run(R"([{"$": 11, "returnValue": [1]}])").kind(), Kind::Array);
    EXPECT_EQ(card.run(R"([{"$": 11}])").kind(), Kind::Null);
    // Completion payloads are 0.
    EXPECT_EQ(std::get<double>(card.run(R"([{"$": 12}])").payload()), 0.0);
}

TEST(Completions, AListStopsAtTheFirstNonNormalCompletion)
{
    TemplateHarness card;
    Value result = card.run(R"([{"$": 2, "n": "a", "value": 1}, {"$": 11, "returnValue": "r"},
                                {"$": 2, "n": "b", "value": 2}])");
    EXPECT_EQ(result.string(), "r");
    EXPECT_EQ(card.local("a").number(), 1);
    EXPECT_TRUE(card.local("b").isNull());
}

TEST(Completions, ACallAsStatementNeverStopsTheList)
{
    TemplateHarness card(R"({"functions": [{"n": "r", "a": [], "b": [{"$": 12}]}]})");
    EXPECT_EQ(card.run(R"([{"$": 5, "n": "r", "a": []}, {"$": 2, "n": "after", "value": 1}])").kind(),
              Kind::Completed);
    EXPECT_EQ(card.local("after").number(), 1);
}

TEST(Assignments, StoreIntoTheirTables)
{
    TemplateHarness card(R"({"variables": {}})");
    card.run(R"([{"$": 2, "n": "l", "value": 1}, {"$": 4, "n": "u", "value": 2}, {"$": 18, "n": "g", "value": 3},
                 {"$": 2, "n": "l", "value": [{"$": 1, "n": "l"}]}])");
    EXPECT_EQ(canonicalJson(card.local("l")), "[1]");
    EXPECT_EQ(card.ui("u").number(), 2);
    EXPECT_EQ(card.global("g").number(), 3);
    EXPECT_FALSE(card.engine->observers.contains("g"));
}

TEST(Assignments, SetVariableWithAGoneEngineDoesNotEvaluate)
{
    TemplateHarness card(R"({"functions": [{"n": "touch", "a": [], "b": [{"$": 18, "n": "touched", "value": 1}]}]})");
    Value node = json(R"({"$": 4, "n": "x", "value": {"$": 5, "n": "touch", "a": []}})");
    RuntimeExecutePtr statement = createRuntimeExecute(node);
    std::shared_ptr<RuntimeEngine> kept = card.engine;
    EngineRef gone;
    EXPECT_EQ(statement->execute(card.scope, gone).kind(), Kind::Completed);
    EXPECT_TRUE(card.global("touched").isNull());
    EXPECT_FALSE(card.hasUi("x"));

    RuntimeExecutePtr global = createRuntimeExecute(json(R"({"$": 18, "n": "y", "value": 1})"));
    EXPECT_EQ(global->execute(card.scope, gone).kind(), Kind::Completed);
    EXPECT_TRUE(card.global("y").isNull());
    // A local assignment needs no engine.
    createRuntimeExecute(json(R"({"$": 2, "n": "z", "value": 1})"))->execute(card.scope, gone);
    EXPECT_EQ(card.local("z").number(), 1);
}

TEST(Assignments, TraceLinesNameTheTable)
{
    TemplateHarness card(R"({"variables": {}})");
    EXPECT_EQ(traced([&] {
                  card.run(R"([{"$": 2, "n": "a", "value": [1, "x"]}, {"$": 4, "n": "b", "value": {"k": null}},
                               {"$": 18, "n": "c", "value": 2.5}])");
              }),
              "Mero_log-> set localRef, name: a value: [1,x,]\n"
              "Mero_log-> set uiRef, name: b value: {k:null,}\n"
              "Mero_log-> set globalRef, name: c value: 2.5\n");
    EXPECT_EQ(MeroTest::printedOutput([&] { card.run(R"([{"$": 4, "n": "b", "value": 1}])"); }), "");
}

TEST(Condition, RunsTheFirstTruthyBranchOrTheElse)
{
    TemplateHarness card;
    const char* chain = R"([{"$": 6, "c": [{"$": 1, "n": "a"}, {"$": 1, "n": "b"}], "bs": [
        [{"$": 11, "returnValue": "first"}], [{"$": 11, "returnValue": "second"}], [{"$": 11, "returnValue": "else"}]]}])";
    struct Case {
        const char* a;
        const char* b;
        const char* expected;
    };
    for (const Case& c : {Case{"1", "1", "first"}, Case{"0", "\"x\"", "second"}, Case{"0", "\"\"", "else"},
                          Case{"null", "false", "else"}, Case{"[]", "0", "first"}, Case{"{}", "0", "first"}}) {
        (*card.scope)["a"] = json(c.a);
        (*card.scope)["b"] = json(c.b);
        EXPECT_EQ(card.run(chain).string(), c.expected) << c.a << " " << c.b;
    }
}

TEST(Condition, MissingBranchesEndTheChainNormally)
{
    TemplateHarness card;
    // Second condition has no branch: the chain ends without testing it.
    EXPECT_EQ(card.run(R"([{"$": 6, "c": [0, {"$": 5, "n": "nothing"}], "bs": [[{"$": 12}]]}])").kind(),
              Kind::Completed);
    EXPECT_EQ(card.run(R"([{"$": 6, "c": [0], "bs": [[{"$": 12}]]}])").kind(), Kind::Completed);
    EXPECT_EQ(card.run(R"([{"$": 6, "c": [1], "bs": [[]]}])").kind(), Kind::Completed);
    // A branch's completion is handed up.
    EXPECT_EQ(card.run(R"([{"$": 6, "c": [1], "bs": [[{"$": 13}]]}])").kind(), Kind::Continue);
}

TEST(While, OnlyARealTrueGoesOn)
{
    TemplateHarness card;
    for (const char* condition : {"1", "\"yes\"", "{}", "[1]", "null"}) {
        card.scope->clear();
        std::string loop = std::string(R"([{"$": 8, "c": )") + condition +
                           R"(, "b": [{"$": 2, "n": "ran", "value": true}]}])";
        EXPECT_EQ(card.run(loop).kind(), Kind::Null) << condition;
        EXPECT_TRUE(card.local("ran").isNull()) << condition;
    }
}

TEST(While, CountsAndEndsWithNullSoTheListStops)
{
    TemplateHarness card(R"({"functions": [{"n": "count", "a": [], "b": [
        {"$": 2, "n": "i", "value": 0},
        {"$": 8, "c": {"$": 5, "n": "0", "a": [4, {"$": 1, "n": "i"}, 3]}, "b": [
            {"$": 2, "n": "i", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 1, "n": "i"}, 1]]}}]},
        {"$": 11, "returnValue": 5}]}]})");
    // The statements after a While never run: the function returns null.
    EXPECT_EQ(card.call("count").kind(), Kind::Null);
}

TEST(While, DoWhileRunsTheBodyFirst)
{
    TemplateHarness card;
    EXPECT_EQ(card.run(R"([{"$": 8, "isDoWhile": true, "c": false, "b": [{"$": 2, "n": "ran", "value": 1}]}])").kind(),
              Kind::Null);
    EXPECT_EQ(card.local("ran").number(), 1);
}

TEST(While, BreakContinueAndReturn)
{
    TemplateHarness card;
    // continue goes to the test; break ends with null; return hands its value up.
    (*card.scope)["go"] = Value(true);
    EXPECT_EQ(card.run(R"([{"$": 8, "c": {"$": 1, "n": "go"}, "b": [
        {"$": 2, "n": "go", "value": false}, {"$": 13}, {"$": 2, "n": "skipped", "value": 1}]}])").kind(),
              Kind::Null);
    EXPECT_TRUE(card.local("skipped").isNull());
    EXPECT_EQ(card.run(R"([{"$": 8, "c": true, "b": [{"$": 12}]}])").kind(), Kind::Null);
    EXPECT_EQ(card.run(R"([{"$": 8, "c": true, "b": [{"$": 11, "returnValue": 7}]}])").number(), 7);
}

TEST(ForRange, TruncatesTheStartAndCountsToTheEnd)
{
    TemplateHarness card(R"({"variables": {"seen": []}})");
    EXPECT_EQ(card.run(withRecord(R"([{"$": 7, "startIndex": 2.9, "endIndex": 5, "index": "v", "b": [RECORD]}])")).kind(),
              Kind::Completed);
    EXPECT_EQ(canonicalJson(card.ui("seen")), "[2,3,4]");
}

TEST(ForRange, ReReadsTheEndEveryRound)
{
    TemplateHarness card(R"({"variables": {"seen": [], "end": 10}})");
    card.run(withRecord(R"([{"$": 7, "startIndex": 0, "endIndex": {"$": 3, "n": "end"}, "index": "v", "b": [
        RECORD, {"$": 4, "n": "end", "value": 3}]}])"));
    EXPECT_EQ(canonicalJson(card.ui("seen")), "[0,1,2]");
}

TEST(ForRange, ANaNEndDoesNotEndTheLoop)
{
    TemplateHarness card(R"({"variables": {"seen": []}})");
    // 0 / 0 as the end; the body leaves by itself after three rounds.
    card.run(withRecord(R"([{"$": 7, "startIndex": 0, "endIndex": {"$": 5, "n": "1", "a": [[3], [0, 0]]}, "index": "v",
        "b": [RECORD, {"$": 6, "c": [{"$": 5, "n": "0", "a": [0, {"$": 1, "n": "v"}, 2]}], "bs": [[{"$": 12}]]}]}])"));
    EXPECT_EQ(canonicalJson(card.ui("seen")), "[0,1,2]");
}

TEST(ForRange, EmptyBodyEvaluatesNothing)
{
    TemplateHarness card(R"({"functions": [{"n": "touch", "a": [], "b": [{"$": 18, "n": "touched", "value": 1}]}]})");
    card.run(R"([{"$": 7, "startIndex": {"$": 5, "n": "touch", "a": []}, "endIndex": {"$": 5, "n": "touch", "a": []},
                  "index": "i", "b": []}])");
    EXPECT_TRUE(card.global("touched").isNull());
}

TEST(ForRange, EraseTheIndexHoweverTheLoopEnds)
{
    TemplateHarness card;
    for (const char* body : {R"({"$": 2, "n": "x", "value": 1})", R"({"$": 12})", R"({"$": 11, "returnValue": 9})"}) {
        (*card.scope)["i"] = Value("before");
        card.run(std::string(R"([{"$": 7, "startIndex": 0, "endIndex": 3, "index": "i", "b": [)") + body + "]}]");
        EXPECT_FALSE(card.scope->contains("i")) << body;
    }
    EXPECT_EQ(card.run(R"([{"$": 7, "startIndex": 0, "endIndex": 3, "index": "i", "b": [{"$": 11, "returnValue": 9}]}])")
                  .number(),
              9);
}

TEST(ForRange, ContinueAndBreak)
{
    TemplateHarness card(R"({"variables": {"seen": []}})");
    EXPECT_EQ(card.run(withRecord(R"([{"$": 7, "startIndex": "x", "endIndex": 5, "index": "v", "b": [
        {"$": 6, "c": [{"$": 5, "n": "0", "a": [0, {"$": 1, "n": "v"}, 1]}], "bs": [[{"$": 13}]]},
        {"$": 6, "c": [{"$": 5, "n": "0", "a": [0, {"$": 1, "n": "v"}, 3]}], "bs": [[{"$": 12}]]},
        RECORD]}])")).kind(),
              Kind::Completed);
    EXPECT_EQ(canonicalJson(card.ui("seen")), "[0,2]");
}

TEST(ForOf, WalksTheBytesOfAString)
{
    TemplateHarness card(R"({"variables": {"seen": []}})");
    // Five letters, one of them two bytes in UTF-8: six rounds.
    card.run(withRecord(std::string(R"([{"$": 10, "t": "caf)") + "\xc3\xa9" +
                        R"(s", "index": "i", "item": "v", "b": [RECORD]}])"));
    EXPECT_EQ(canonicalJson(card.ui("seen")), "[99,97,102,195,169,115]");
    EXPECT_FALSE(card.scope->contains("i"));
    EXPECT_FALSE(card.scope->contains("v"));
}

TEST(ForOf, WalksAnArrayThatGrowsWhileWalking)
{
    TemplateHarness card(R"({"variables": {"seen": []}})");
    (*card.scope)["list"] = json("[1, 2]");
    card.run(withRecord(R"([{"$": 10, "t": {"$": 1, "n": "list"}, "index": "i", "item": "v", "b": [
        RECORD,
        {"$": 6, "c": [{"$": 5, "n": "0", "a": [0, {"$": 1, "n": "i"}, 0]}], "bs": [[
            {"$": 5, "n": "j", "a": [{"$": 1, "n": "list"}, [3]]}]]}]}])"));
    EXPECT_EQ(canonicalJson(card.ui("seen")), "[1,2,3]");
}

TEST(ForOf, EvaluatesTheTargetTwice)
{
    TemplateHarness card(R"({"functions": [{"n": "target", "a": [], "b": [
        {"$": 18, "n": "calls", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 17, "n": "calls"}, 1]]}},
        {"$": 11, "returnValue": [1]}]}]})");
    card.run(R"([{"$": 10, "t": {"$": 5, "n": "target", "a": []}, "index": "i", "item": "v", "b": [{"$": 12}]}])");
    EXPECT_EQ(card.global("calls").number(), 2);
    // Neither evaluation happens when the body is empty.
    card.run(R"([{"$": 10, "t": {"$": 5, "n": "target", "a": []}, "index": "i", "item": "v", "b": []}])");
    EXPECT_EQ(card.global("calls").number(), 2);
}

TEST(ForOf, NonArraysWalkNothingAndReturnsArePassedUp)
{
    TemplateHarness card;
    EXPECT_EQ(card.run(R"([{"$": 10, "t": {"a": 1}, "index": "i", "item": "v", "b": [{"$": 11, "returnValue": 1}]}])")
                  .kind(),
              Kind::Completed);
    EXPECT_EQ(card.run(R"([{"$": 10, "t": [5, 6], "index": "i", "item": "v", "b": [{"$": 11, "returnValue": {"$": 1, "n": "v"}}]}])")
                  .number(),
              5);
    EXPECT_FALSE(card.scope->contains("v"));
}

TEST(Switch, FallsThroughAndRunsTheDefault)
{
    TemplateHarness card(R"({"variables": {"seen": []}})");
    (*card.scope)["v"] = Value(0);
    std::string sw = withRecord(R"([{"$": 9, "t": 1, "c": [1, 2, 3], "bs": [
        [{"$": 2, "n": "v", "value": "one"}, RECORD],
        [{"$": 2, "n": "v", "value": "two"}, RECORD],
        [{"$": 2, "n": "v", "value": "three"}, RECORD, {"$": 12}]],
      "default": [{"$": 2, "n": "v", "value": "default"}, RECORD]}])");
    EXPECT_EQ(card.run(sw).kind(), Kind::Completed);
    EXPECT_EQ(canonicalJson(card.ui("seen")), R"(["one","two","three"])");
}

TEST(Switch, MatchesOnlyNumbersAndStrings)
{
    TemplateHarness card;
    struct Case {
        const char* subject;
        const char* label;
        bool matches;
    };
    for (const Case& c : {Case{"1", "1", true}, Case{"\"a\"", "\"a\"", true}, Case{"true", "true", false},
                          Case{"null", "null", false}, Case{"1", "\"1\"", false}, Case{"[1]", "[1]", false}}) {
        std::string sw = std::string(R"([{"$": 9, "t": )") + c.subject + R"(, "c": [)" + c.label +
                         R"(], "bs": [[{"$": 11, "returnValue": "case"}]], "default": [{"$": 11, "returnValue": "default"}]}])";
        EXPECT_EQ(card.run(sw).string(), c.matches ? "case" : "default") << c.subject;
    }
}

TEST(Switch, CompletionsOfBodiesAndDefault)
{
    TemplateHarness card;
    // break in a case ends the switch normally; continue is handed up.
    EXPECT_EQ(card.run(R"([{"$": 9, "t": 1, "c": [1], "bs": [[{"$": 12}]], "default": [{"$": 11, "returnValue": 1}]}])")
                  .kind(),
              Kind::Completed);
    EXPECT_EQ(card.run(R"([{"$": 9, "t": 1, "c": [1], "bs": [[{"$": 13}]]}])").kind(), Kind::Continue);
    // break in the default reaches the enclosing list.
    EXPECT_EQ(card.run(R"([{"$": 9, "t": 5, "c": [1], "bs": [[]], "default": [{"$": 12}]}])").kind(), Kind::Break);
    // More cases than bodies: the switch ends and the default is skipped.
    EXPECT_EQ(card.run(R"([{"$": 9, "t": 5, "c": [1, 2], "bs": [[]], "default": [{"$": 12}]}])").kind(),
              Kind::Completed);
}

TEST(Switch, EvaluatesTheSubjectForEveryComparison)
{
    TemplateHarness card(R"({"functions": [{"n": "subject", "a": [], "b": [
        {"$": 18, "n": "calls", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 17, "n": "calls"}, 1]]}},
        {"$": 11, "returnValue": 3}]}]})");
    card.run(R"([{"$": 9, "t": {"$": 5, "n": "subject", "a": []}, "c": [1, 2, 3, 4], "bs": [[], [], [], []]}])");
    EXPECT_EQ(card.global("calls").number(), 3);
}

TEST(Loops, BreakInsideASwitchInsideALoopLeavesOnlyTheSwitch)
{
    TemplateHarness card(R"({"variables": {"seen": []}})");
    card.run(withRecord(R"([{"$": 7, "startIndex": 0, "endIndex": 3, "index": "v", "b": [
        {"$": 9, "t": {"$": 1, "n": "v"}, "c": [1], "bs": [[{"$": 12}]], "default": []},
        RECORD]}])"));
    EXPECT_EQ(canonicalJson(card.ui("seen")), "[0,1,2]");
}
