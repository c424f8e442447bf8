// Expression nodes: literals, spreads, the four reads, callbacks and calls.
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

RuntimeObjectPtr expression(std::string_view text)
{
    return createRuntimeObject(json(text));
}

// Standard output written while `action` runs with debugMode set.
std::string traced(const std::function<void()>& action)
{
    MeroTest::DebugModeScope debug(true);
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

}  // namespace

TEST(Literals, EvaluateToFreshValues)
{
    TemplateHarness card(R"({"variables": {"v": 2}})");
    EXPECT_EQ(canonicalJson(card.eval(R"([1, "a", null, true, {"$": 3, "n": "v"}])")), R"([1,"a",null,true,2])");
    EXPECT_EQ(canonicalJson(card.eval(R"({"x": {"$": 3, "n": "v"}, "y": [{"k": 1}]})")), R"({"x":2,"y":[{"k":1}]})");

    // Each evaluation makes a new container.
    RuntimeObjectPtr literal = expression("[1]");
    Value first = literal->value(card.scope, card.weak());
    first.array().push_back(Value(2));
    EXPECT_EQ(canonicalJson(literal->value(card.scope, card.weak())), "[1]");
}

TEST(Spreads, ConcatenateArraysAndMergeObjects)
{
    TemplateHarness card;
    card.scope->emplace("two", json("[2, 3]"));
    EXPECT_EQ(canonicalJson(card.eval(R"({"$": 16, "value": [null, [1], {"$": 1, "n": "two"}]})")), "[1,2,3]");
    EXPECT_EQ(canonicalJson(card.eval(R"({"$": 15, "value": [{"a": 1}, null, {"a": 2, "b": 3}]})")),
              R"({"a":2,"b":3})");
    EXPECT_EQ(canonicalJson(card.eval(R"({"$": 16})")), "[]");
}

TEST(Spreads, ReportPartsOfTheWrongKindAndSkipThem)
{
    TemplateHarness card;
    EXPECT_EQ(MeroTest::thrownMessage([&] { card.eval(R"({"$": 16, "value": [[1], 5]})"); }),
              "RuntimeSpreadArray value is not array");
    EXPECT_EQ(MeroTest::thrownMessage([&] { card.eval(R"({"$": 15, "value": [{"a": 1}, [1]]})"); }),
              "RuntimeSpreadObject value is not object");

    Value array;
    EXPECT_EQ(MeroTest::printedOutput([&] { array = card.eval(R"({"$": 16, "value": [[1], "x", false, [2]]})"); }),
              "RuntimeSpreadArray value is not array\nRuntimeSpreadArray value is not array\n");
    EXPECT_EQ(canonicalJson(array), "[1,2]");
    Value object;
    EXPECT_EQ(MeroTest::printedOutput([&] { object = card.eval(R"({"$": 15, "value": [{"a": 1}, 0, {"b": 2}]})"); }),
              "RuntimeSpreadObject value is not object\n");
    EXPECT_EQ(canonicalJson(object), R"({"a":1,"b":2})");
}

TEST(VariableReads, EachCodeReadsItsOwnTable)
{
    TemplateHarness card(R"({"variables": {"x": "ui"}})");
    card.engine->globalVariables->emplace("x", Value("global"));
    card.setData(R"({"x": "data"})");
    card.scope->emplace("x", Value("local"));
    EXPECT_EQ(card.eval(R"({"$": 1, "n": "x"})").string(), "local");
    EXPECT_EQ(card.eval(R"({"$": 3, "n": "x"})").string(), "ui");
    EXPECT_EQ(card.eval(R"({"$": 17, "n": "x"})").string(), "global");
    EXPECT_EQ(card.eval(R"({"$": 19, "n": "x"})").string(), "data");

    // No fallback between tables.
    EXPECT_TRUE(card.eval(R"({"$": 1, "n": "y"})").isNull());
    card.scope.reset();
    EXPECT_TRUE(card.eval(R"({"$": 1, "n": "x"})").isNull());
    EXPECT_TRUE(card.eval(R"({"$": 3, "n": "y"})").isNull());
    EXPECT_TRUE(card.eval(R"({"$": 17, "n": "y"})").isNull());
    EXPECT_TRUE(card.eval(R"({"$": 19, "n": "y"})").isNull());
}

TEST(VariableReads, RootIsTheLiveDataObject)
{
    TemplateHarness card;
    card.setData(R"({"a": 1})");
    Value root = card.eval(R"({"$": 19, "n": "$root"})");
    EXPECT_EQ(root.objectPtr(), card.engine->data);

    // A built-in that sets a member through it changes the engine's data.
    card.eval(R"({"$": 5, "n": "w", "a": [{"$": 19, "n": "$root"}, "b", 2]})");
    EXPECT_EQ(canonicalJson(Value(card.engine->data)), R"({"a":1,"b":2})");
}

TEST(VariableReads, ReportAGoneEngine)
{
    LocalScope scope = makeLocalScope();
    for (const char* node : {R"({"$": 3, "n": "x"})", R"({"$": 17, "n": "x"})", R"({"$": 19, "n": "x"})",
                             R"({"$": 19, "n": "$root"})"}) {
        RuntimeObjectPtr read = expression(node);
        EXPECT_EQ(MeroTest::thrownMessage([&] { read->value(scope, EngineRef()); }), "runtimeEngine is null") << node;
        Value result = Value(1.0);
        EXPECT_EQ(MeroTest::printedOutput([&] { result = read->value(scope, EngineRef()); }),
                  "runtimeEngine is null\n");
        EXPECT_TRUE(result.isNull());
    }
    // A local read needs no engine.
    scope->emplace("x", Value(4));
    EXPECT_EQ(expression(R"({"$": 1, "n": "x"})")->value(scope, EngineRef()).number(), 4);
}

TEST(Callbacks, BindParametersInACopyOfTheDefiningScope)
{
    TemplateHarness card;
    card.scope->emplace("base", Value(10));
    Value callback = card.eval(R"({"$": 14, "a": ["x", "y"], "b": [
        {"$": 2, "n": "base", "value": {"$": 1, "n": "x"}},
        {"$": 11, "returnValue": [{"$": 1, "n": "base"}, {"$": 1, "n": "y"}]}]})");
    ASSERT_TRUE(callback.is(Kind::Callback));

    // A third argument is ignored; writes stay inside the call.
    EXPECT_EQ(canonicalJson((*callback.callbackPtr())({Value(1), Value(2), Value(3)})), "[1,2]");
    EXPECT_EQ(card.local("base").number(), 10);

    // The captured scope is copied at call time, not at creation.
    (*card.scope)["base"] = Value(20);
    Value peek = card.eval(R"({"$": 14, "a": [], "b": [{"$": 11, "returnValue": {"$": 1, "n": "base"}}]})");
    (*card.scope)["base"] = Value(30);
    EXPECT_EQ((*peek.callbackPtr())({}).number(), 30);
}

TEST(Callbacks, ReportTooFewArguments)
{
    TemplateHarness card;
    Value callback = card.eval(R"({"$": 14, "a": ["x", "y"], "b": [{"$": 11, "returnValue": 1}]})");
    ValueCallback& call = *callback.callbackPtr();
    EXPECT_EQ(MeroTest::thrownMessage([&] { call({Value(1)}); }), "callback args size not match");
    Value result = Value(1.0);
    EXPECT_EQ(MeroTest::printedOutput([&] { result = call({Value(1)}); }), "callback args size not match\n");
    EXPECT_TRUE(result.isNull());
}

TEST(Callbacks, HandBackCompletionsAndNullForAnExhaustedBody)
{
    TemplateHarness card;
    EXPECT_EQ((*card.eval(R"({"$": 14, "a": [], "b": [{"$": 12}]})").callbackPtr())({}).kind(), Kind::Break);
    EXPECT_EQ((*card.eval(R"({"$": 14, "a": [], "b": [{"$": 13}]})").callbackPtr())({}).kind(), Kind::Continue);
    EXPECT_EQ((*card.eval(R"({"$": 14, "a": [], "b": [{"$": 2, "n": "q", "value": 1}]})").callbackPtr())({}).kind(),
              Kind::Null);
    EXPECT_EQ((*card.eval(R"({"$": 14})").callbackPtr())({Value(1)}).kind(), Kind::Null);
}

TEST(Callbacks, OutliveTheirNodeAndDefiningScope)
{
    TemplateHarness card;
    Value callback;
    {
        LocalScope defining = makeLocalScope();
        defining->emplace("k", Value(5));
        callback = expression(R"({"$": 14, "a": [], "b": [{"$": 11, "returnValue": {"$": 1, "n": "k"}}]})")
                       ->value(defining, card.weak());
    }
    EXPECT_EQ((*callback.callbackPtr())({}).number(), 5);
}

TEST(InvokeFunction, LocalCallbackShadowsAFunctionOfTheSameName)
{
    TemplateHarness card(R"({"functions": [
        {"n": "apply", "a": ["fn", "v"], "b": [{"$": 11, "returnValue": {"$": 5, "n": "fn", "a": [{"$": 1, "n": "v"}]}}]},
        {"n": "fn", "a": ["v"], "b": [{"$": 11, "returnValue": "table"}]}]})");
    Value doubler = card.eval(R"({"$": 14, "a": ["n"], "b": [
        {"$": 11, "returnValue": {"$": 5, "n": "1", "a": [[2], [{"$": 1, "n": "n"}, 2]]}}]})");
    EXPECT_EQ(card.call("apply", {doubler, Value(21)}).number(), 42);
    // A local that is not a callback does not shadow.
    EXPECT_EQ(card.call("apply", {Value(1), Value(21)}).string(), "table");
    card.scope.reset();
    EXPECT_EQ(card.eval(R"({"$": 5, "n": "fn", "a": [1]})").string(), "table");
}

TEST(InvokeFunction, UnknownNameGivesNullWithoutReport)
{
    TemplateHarness card;
    Value result = Value(1.0);
    EXPECT_EQ(MeroTest::printedOutput([&] { result = card.eval(R"({"$": 5, "n": "nope", "a": [1]})"); }), "");
    EXPECT_TRUE(result.isNull());
    EXPECT_EQ(MeroTest::thrownMessage([&] { card.eval(R"({"$": 5, "n": "nope"})"); }), "<nothing thrown>");
}

TEST(InvokeFunction, EvaluatesArgumentsLeftToRight)
{
    TemplateHarness card(R"({"variables": {"order": ""}, "functions": [
        {"n": "mark", "a": ["m"], "b": [
            {"$": 4, "n": "order", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 3, "n": "order"}, {"$": 1, "n": "m"}]]}},
            {"$": 11, "returnValue": {"$": 1, "n": "m"}}]}]})");
    Value result = card.eval(R"({"$": 5, "n": "9", "a": [{"$": 5, "n": "mark", "a": ["a"]}, {"$": 5, "n": "mark", "a": ["b"]}]})");
    EXPECT_EQ(card.ui("order").string(), "ab");
    EXPECT_EQ(result.string(), "ab");
}

TEST(InvokeFunction, TraceLinesSurroundEveryCallButLog)
{
    TemplateHarness card;
    EXPECT_EQ(traced([&] { card.eval(R"({"$": 5, "n": "9", "a": [[1, "a"], [null]]})"); }),
              "Mero_log-> invoke func: 9 args:[[1,a,],[null,],]\n"
              "Mero_log-> func result: [1,a,null,]\n\n");
    EXPECT_EQ(traced([&] { card.eval(R"({"$": 5, "n": "nothing", "a": []})"); }),
              "Mero_log-> invoke func: nothing args:[]\n"
              "Mero_log-> func result: null\n\n");
    EXPECT_EQ(traced([&] { card.eval(R"({"$": 5, "n": "LOG", "a": [1]})"); }), "");
    EXPECT_EQ(MeroTest::printedOutput([&] { card.eval(R"({"$": 5, "n": "9", "a": ["a", "b"]})"); }), "");
}

TEST(Dynamism, OnlyVariableReadsObserveAndLiteralsDoNotPassItOn)
{
    struct Case {
        const char* node;
        bool dynamic;
        size_t observers;
    };
    const Case cases[] = {
        {R"({"$": 3, "n": "v"})", true, 1},
        {R"({"$": 5, "n": "f", "a": [{"$": 3, "n": "v"}, {"$": 5, "n": "g", "a": [{"$": 3, "n": "v"}]}]})", true, 2},
        {R"([1, {"$": 3, "n": "v"}])", true, 0},
        {R"({"k": {"$": 3, "n": "v"}})", true, 0},
        {R"({"$": 16, "value": [{"$": 3, "n": "v"}]})", true, 0},
        {R"({"$": 15, "value": [{"$": 3, "n": "v"}]})", true, 0},
        {R"({"$": 5, "n": "f", "a": [[{"$": 3, "n": "v"}]]})", true, 0},
        {R"({"$": 1, "n": "v"})", false, 0},
        {R"({"$": 17, "n": "v"})", false, 0},
        {R"({"$": 19, "n": "v"})", false, 0},
        {R"({"$": 14, "a": [], "b": [{"$": 11, "returnValue": {"$": 3, "n": "v"}}]})", false, 0},
        {R"("v")", false, 0},
    };
    for (const Case& c : cases) {
        TemplateHarness card;
        RuntimeObjectPtr node = expression(c.node);
        EXPECT_EQ(node->isDynamic(), c.dynamic) << c.node;
        node->observe(card.weak(), std::make_shared<ObserverCallback>([] {}));
        auto found = card.engine->observers.find("v");
        size_t registered = found == card.engine->observers.end() ? 0 : found->second->size();
        EXPECT_EQ(registered, c.observers) << c.node;
    }
}

TEST(Dynamism, ObservingWithAGoneEngineRegistersNothing)
{
    auto callback = std::make_shared<ObserverCallback>([] {});
    expression(R"({"$": 3, "n": "v"})")->observe(EngineRef(), callback);
    EXPECT_EQ(callback.use_count(), 1);
}
