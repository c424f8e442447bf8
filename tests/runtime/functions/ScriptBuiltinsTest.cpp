// Built-ins as templates use them: called by key from script, with script
// callbacks, on the engine's own variables and data.
#include <gtest/gtest.h>

#include "support/CanonicalJson.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

namespace {

using namespace Mero;
using namespace MeroTest;

TEST(ScriptBuiltins, anIncrementFunctionWithADefaultStep)
{
    TemplateHarness card(R"({
        "variables": {"count": 0},
        "functions": [{"n": "inc", "a": ["step"], "defaultArgs": [1], "b": [
            {"$": 4, "n": "count", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 3, "n": "count"}, {"$": 1, "n": "step"}]]}}
        ]}],
        "events": [{"n": "tap", "a": [], "b": [{"$": 5, "n": "inc", "a": []}]}]
    })");
    DebugModeScope quiet(false);
    card.send("tap");
    card.send("tap");
    card.call("inc", {Value(10)});
    EXPECT_EQ(canonicalJson(card.ui("count")), "12");
}

TEST(ScriptBuiltins, mapAndFilterWithScriptCallbacks)
{
    TemplateHarness card;
    DebugModeScope quiet(false);
    // [1,2,3].map((x, i) => x * 10 + i)
    Value mapped = card.eval(R"({"$": 5, "n": "b", "a": [[1, 2, 3], {"$": 14, "a": ["x", "i"], "b": [
        {"$": 11, "returnValue": {"$": 5, "n": "1", "a": [[2, 0], [{"$": 1, "n": "x"}, 10, {"$": 1, "n": "i"}]]}}]}]})");
    EXPECT_EQ(canonicalJson(mapped), "[10,21,32]");
    // [5,1,7,2].filter(x => x > 2): the compare result is a real boolean.
    Value kept = card.eval(R"({"$": 5, "n": "a", "a": [[5, 1, 7, 2], {"$": 14, "a": ["x"], "b": [
        {"$": 11, "returnValue": {"$": 5, "n": "0", "a": [2, {"$": 1, "n": "x"}, 2]}}]}]})");
    EXPECT_EQ(canonicalJson(kept), "[5,7]");
    // A callback that returns the element itself keeps nothing: 5 is not true.
    Value none = card.eval(R"({"$": 5, "n": "a", "a": [[5, 1], {"$": 14, "a": ["x"], "b": [
        {"$": 11, "returnValue": {"$": 1, "n": "x"}}]}]})");
    EXPECT_EQ(canonicalJson(none), "[]");
}

TEST(ScriptBuiltins, pushChangesTheUiVariableInPlace)
{
    TemplateHarness card(R"({"variables": {"list": [1, 2]}})");
    DebugModeScope quiet(false);
    card.run(R"([{"$": 5, "n": "j", "a": [{"$": 3, "n": "list"}, [3, 4]]}])");
    EXPECT_EQ(canonicalJson(card.ui("list")), "[1,2,3,4]");
}

TEST(ScriptBuiltins, jsonSetOnTheWholeDataChangesTheEnginesData)
{
    TemplateHarness card;
    card.setData(R"({"title": "old"})");
    DebugModeScope quiet(false);
    card.run(R"([{"$": 5, "n": "w", "a": [{"$": 19, "n": "$root"}, "title", "new"]}])");
    EXPECT_EQ(canonicalJson(Value(card.engine->data)), R"({"title":"new"})");
    EXPECT_EQ(card.eval(R"({"$": 5, "n": "3", "a": [{"$": 19, "n": "$root"}, "title", "none"]})").string(), "new");
}

TEST(ScriptBuiltins, dictForEachWalksEveryMember)
{
    TemplateHarness card(R"({"variables": {"sum": 0}})");
    DebugModeScope quiet(false);
    card.run(R"([{"$": 5, "n": "q", "a": [{"a": 1, "b": 2, "c": 4}, {"$": 14, "a": ["k", "v"], "b": [
        {"$": 4, "n": "sum", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 3, "n": "sum"}, {"$": 1, "n": "v"}]]}}]}]}])");
    EXPECT_EQ(canonicalJson(card.ui("sum")), "7");
}

TEST(ScriptBuiltins, aBridgeReplyReachesTheScriptCallback)
{
    TemplateHarness card(R"({"events": [{"n": "go", "a": [], "b": [
        {"$": 5, "n": "k", "a": ["getUser", {"id": 1}, {"$": 14, "a": ["reply"], "b": [
            {"$": 4, "n": "user", "value": {"$": 5, "n": "3", "a": [{"$": 1, "n": "reply"}, "name"]}}]}]}]}]})");
    DebugModeScope quiet(false);
    card.send("go");
    ASSERT_EQ(card.bridgeCalls.size(), 1u);
    card.bridgeCalls[0].reply(json(R"({"name": "ada"})"));
    EXPECT_EQ(card.ui("user").string(), "ada");
}

TEST(ScriptBuiltins, eventsRegisteredFromScriptReceiveScriptPayloads)
{
    TemplateHarness card(R"({"events": [{"n": "setup", "a": [], "b": [
        {"$": 5, "n": "A", "a": ["ping", {"$": 14, "a": ["p"], "b": [{"$": 4, "n": "pinged", "value": {"$": 1, "n": "p"}}]}]},
        {"$": 5, "n": "z", "a": ["ping", [1, 2]]},
        {"$": 5, "n": "B", "a": ["ping"]},
        {"$": 5, "n": "z", "a": ["ping", "after removal"]}
    ]}]})");
    DebugModeScope quiet(false);
    card.send("setup");
    EXPECT_EQ(canonicalJson(card.ui("pinged")), "[1,2]");
    EXPECT_FALSE(card.engine->eventTable.contains("ping"));
}

TEST(ScriptBuiltins, aHandlerMayRemoveItsOwnEventWhileItRuns)
{
    TemplateHarness card(R"({"events": [{"n": "once", "a": [], "b": [
        {"$": 5, "n": "B", "a": ["once"]},
        {"$": 4, "n": "ran", "value": true}
    ]}]})");
    DebugModeScope quiet(false);
    card.send("once");
    EXPECT_TRUE(card.ui("ran").boolean());
    EXPECT_FALSE(card.engine->eventTable.contains("once"));
}

TEST(ScriptBuiltins, aMisuseInsideAHandlerIsThrownOutOfTheDispatch)
{
    TemplateHarness card(R"({"events": [{"n": "bad", "a": [], "b": [{"$": 5, "n": "e", "a": ["a,b", ", "]}]}]})");
    EXPECT_EQ(thrownMessage([&] { card.send("bad"); }), "Splitter must be one character");
}

}  // namespace
