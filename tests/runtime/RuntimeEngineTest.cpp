// The engine: function calls, custom functions, event dispatch, observers,
// size conversion and property binding.
#include <gtest/gtest.h>

#include <cmath>

#include "runtime/RuntimeEngine.h"
#include "runtime/functions/CustomFunction.h"
#include "support/CanonicalJson.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

using namespace Mero;
using MeroTest::canonicalJson;
using MeroTest::json;
using MeroTest::TemplateHarness;

namespace {

// Returns its three parameters as an array.
constexpr const char* threeParams = R"({"functions": [
    {"n": "abc", "a": ["a", "b", "c"], "defaultArgs": [7, 8],
     "b": [{"$": 11, "returnValue": [{"$": 1, "n": "a"}, {"$": 1, "n": "b"}, {"$": 1, "n": "c"}]}]},
    {"n": "ab", "a": ["a", "b"], "defaultArgs": [],
     "b": [{"$": 11, "returnValue": [{"$": 1, "n": "a"}, {"$": 1, "n": "b"}]}]},
    {"n": "abDefault", "a": ["a", "b"], "defaultArgs": [0],
     "b": [{"$": 11, "returnValue": [{"$": 1, "n": "a"}, {"$": 1, "n": "b"}]}]}]})";

}  // namespace

TEST(CustomFunction, DefaultsFillMissingParametersFromTheFront)
{
    TemplateHarness card(threeParams);
    EXPECT_EQ(canonicalJson(card.call("abc", {Value(1)})), "[1,7,8]");
    EXPECT_EQ(canonicalJson(card.call("abc", {Value(1), Value(2)})), "[1,2,7]");
    EXPECT_EQ(canonicalJson(card.call("abc", {})), "[7,8,null]");
    EXPECT_EQ(canonicalJson(card.call("abc", {Value(1), Value(2), Value(3), Value(4)})), "[1,2,3]");
    // With defaults present, extra arguments are simply ignored.
    EXPECT_EQ(canonicalJson(card.call("abDefault", {Value(1), Value(2), Value(3)})), "[1,2]");
}

TEST(CustomFunction, ReportsACountMismatchWithoutDefaults)
{
    TemplateHarness card(threeParams);
    EXPECT_EQ(MeroTest::thrownMessage([&] { card.call("ab", {Value(1), Value(2), Value(3)}); }),
              "custom args size not match");
    Value result = Value(1.0);
    EXPECT_EQ(MeroTest::printedOutput([&] { result = card.call("ab", {Value(1)}); }), "custom args size not match\n");
    EXPECT_TRUE(result.isNull());
    EXPECT_EQ(canonicalJson(card.call("ab", {Value(1), Value(2)})), "[1,2]");
}

TEST(CustomFunction, ResultIsTheFirstNonNormalCompletion)
{
    TemplateHarness card(R"({"functions": [
        {"n": "brk", "a": [], "b": [{"$": 12}, {"$": 11, "returnValue": 1}]},
        {"n": "none", "a": [], "b": [{"$": 2, "n": "x", "value": 1}]},
        {"n": "whileThenReturn", "a": [], "b": [{"$": 8, "c": false, "b": []}, {"$": 11, "returnValue": 5}]}]})");
    EXPECT_EQ(card.call("brk").kind(), Kind::Break);
    EXPECT_EQ(card.call("none").kind(), Kind::Null);
    EXPECT_EQ(card.call("whileThenReturn").kind(), Kind::Null);
}

TEST(CustomFunction, OneScopeIsSharedByNestedCalls)
{
    // inner(x) called from outer overwrites outer's x: the scope is reused
    // by every call, on purpose.
    TemplateHarness card(R"({"functions": [
        {"n": "outer", "a": ["x"], "b": [
            {"$": 2, "n": "keep", "value": {"$": 1, "n": "x"}},
            {"$": 5, "n": "outer", "a": ["inner"]},
            {"$": 11, "returnValue": [{"$": 1, "n": "x"}, {"$": 1, "n": "keep"}]}]}]})");
    // The nested call clears the scope and returns [inner, inner]... then the
    // outer call reads what the nested one left.
    TemplateHarness guard(R"({"functions": [
        {"n": "f", "a": ["x", "depth"], "b": [
            {"$": 6, "c": [{"$": 1, "n": "depth"}], "bs": [[{"$": 5, "n": "f", "a": ["inner", 0]}]]},
            {"$": 11, "returnValue": {"$": 1, "n": "x"}}]}]})");
    EXPECT_EQ(guard.call("f", {Value("outer"), Value(1)}).string(), "inner");
}

TEST(CustomFunction, DefaultsAreReadFromTheSharedArrayAtCallTime)
{
    TemplateHarness card;
    ArrayPtr defaults = std::make_shared<ValueArray>(ValueArray{Value(1)});
    StatementList body;
    body.push_back(createRuntimeExecute(json(R"({"$": 11, "returnValue": {"$": 1, "n": "x"}})")));
    CustomFunction function("f", {"x"}, defaults, std::move(body));
    (*defaults)[0] = Value(9);
    EXPECT_EQ(function.invoke({}, card.weak()).number(), 9);
    // A null defaults pointer counts as no defaults.
    CustomFunction bare("g", {"x"}, nullptr, StatementList());
    EXPECT_EQ(MeroTest::thrownMessage([&] { bare.invoke({}, card.weak()); }), "custom args size not match");
}

TEST(InvokeFunctionByName, UnknownNamesGiveNullWithoutReport)
{
    TemplateHarness card;
    Value result = Value(1.0);
    EXPECT_EQ(MeroTest::printedOutput([&] { result = card.call("missing", {Value(1)}); }), "");
    EXPECT_TRUE(result.isNull());
}

TEST(InvokeFunctionByName, RegistrationNeverReplaces)
{
    TemplateHarness card;
    MRFunction* before = card.engine->functionTable.at("1").get();
    EXPECT_FALSE(card.engine->registerFunction("1", std::make_unique<CustomFunction>("1", std::vector<std::string>{},
                                                                                     nullptr, StatementList())));
    EXPECT_EQ(card.engine->functionTable.at("1").get(), before);
}

TEST(DispatchEvent, BindsThePayloadAndCopiesTheOuterScope)
{
    TemplateHarness card(R"({"variables": {}, "events": [{"n": "e", "a": ["p"], "b": [
        {"$": 4, "n": "got", "value": [{"$": 1, "n": "p"}, {"$": 1, "n": "outer"}, {"$": 1, "n": "stale"}]},
        {"$": 2, "n": "outer", "value": "changed"}]}]})");
    ObjectPtr extra = std::make_shared<ValueObject>(ValueObject{{"p", Value("loser")}, {"outer", Value(1)}});
    card.send("e", Value("payload"), extra);
    EXPECT_EQ(canonicalJson(card.ui("got")), R"(["payload",1,null])");
    // The outer scope is copied, never emptied or written.
    EXPECT_EQ(canonicalJson(Value(extra)), R"({"outer":1,"p":"loser"})");

    // The handler's scope is cleared before every dispatch.
    card.engine->eventTable.at("e")->scope->emplace("stale", Value(1));
    card.send("e", Value(2));
    EXPECT_EQ(canonicalJson(card.ui("got")), R"([2,null,null])");
}

TEST(DispatchEvent, UnknownNamesDoNothingAndResultsAreDropped)
{
    TemplateHarness card(R"({"events": [{"n": "e", "a": [], "b": [{"$": 11, "returnValue": 1}, {"$": 18, "n": "x", "value": 1}]}]})");
    card.send("nothing");
    card.send("e");
    EXPECT_TRUE(card.global("x").isNull());
}

TEST(DispatchEvent, CallbackHandlersGetThePayload)
{
    TemplateHarness card;
    std::vector<std::string> seen;
    auto callable = std::make_shared<ValueCallback>([&](std::vector<Value>&& args) {
        seen.push_back(std::to_string(args.size()) + ":" + canonicalJson(args[0]));
        return Value();
    });
    card.engine->registerEvent("cb", std::make_shared<EventHandler>("cb", callable));
    card.send("cb", json(R"({"k": 1})"), std::make_shared<ValueObject>(ValueObject{{"x", Value(1)}}));
    EXPECT_EQ(seen, (std::vector<std::string>{R"(1:{"k":1})"}));
}

TEST(DispatchEvent, AHandlerMayRemoveItselfWhileRunning)
{
    TemplateHarness card(R"({"events": [{"n": "once", "a": [], "b": [
        {"$": 5, "n": "B", "a": ["once"]}, {"$": 18, "n": "after", "value": 1}]}]})");
    card.send("once");
    EXPECT_EQ(card.global("after").number(), 1);
    EXPECT_FALSE(card.engine->eventTable.contains("once"));
}

TEST(Observers, RunInBindingOrderOnEverySet)
{
    TemplateHarness card(R"({"variables": {"v": 1}, "events": [{"n": "set", "a": ["x"], "b": [
        {"$": 4, "n": "v", "value": {"$": 1, "n": "x"}}]}]})");
    std::vector<std::string> calls;
    auto bind = [&](const std::string& label) {
        RuntimeEngine::getValueData(card.scope, createRuntimeObject(json(R"({"$": 3, "n": "v"})")), card.weak(),
                                    std::make_shared<ValueSetter>([&calls, label](Value value) {
                                        calls.push_back(label + "=" + canonicalJson(value));
                                    }),
                                    Value());
    };
    bind("first");
    bind("second");
    card.send("set", Value(2));
    EXPECT_EQ(calls, (std::vector<std::string>{"first=1", "second=1", "first=2", "second=2"}));
}

TEST(Observers, ArrayLiteralHoldingAVariableIsNotReEvaluated)
{
    TemplateHarness card(R"({"variables": {"v": 1}, "events": [{"n": "bump", "a": [], "b": [
        {"$": 4, "n": "v", "value": 2}]}]})");
    std::vector<std::string> literal;
    std::vector<std::string> call;
    RuntimeEngine::getValueData(card.scope, createRuntimeObject(json(R"([{"$": 3, "n": "v"}])")), card.weak(),
                                std::make_shared<ValueSetter>([&](Value value) { literal.push_back(canonicalJson(value)); }),
                                Value());
    RuntimeEngine::getValueData(card.scope, createRuntimeObject(json(R"({"$": 5, "n": "m", "a": [{"$": 3, "n": "v"}]})")),
                                card.weak(),
                                std::make_shared<ValueSetter>([&](Value value) { call.push_back(canonicalJson(value)); }),
                                Value());
    card.send("bump");
    EXPECT_EQ(literal, (std::vector<std::string>{"[1]"}));
    EXPECT_EQ(call, (std::vector<std::string>{"\"1\"", "\"2\""}));
    EXPECT_EQ(card.engine->observers.at("v")->size(), 1u);
}

TEST(Observers, ReEvaluateWithTheCapturedScope)
{
    TemplateHarness card(R"({"variables": {"v": 1}, "events": [{"n": "bump", "a": [], "b": [
        {"$": 4, "n": "v", "value": 5}]}], "functions": [{"n": "add", "a": ["x", "y"], "b": [
        {"$": 11, "returnValue": {"$": 5, "n": "1", "a": [[0], [{"$": 1, "n": "x"}, {"$": 1, "n": "y"}]]}}]}]})");
    card.scope->emplace("k", Value(10));
    std::vector<double> seen;
    RuntimeEngine::getTypeData(card.scope,
                               createRuntimeObject(json(R"({"$": 5, "n": "add", "a": [{"$": 3, "n": "v"}, {"$": 1, "n": "k"}]})")),
                               card.weak(), std::make_shared<DoubleSetter>([&](double v) { seen.push_back(v); }), -1.0);
    (*card.scope)["k"] = Value(100);
    card.send("bump");
    EXPECT_EQ(seen, (std::vector<double>{11, 105}));
}

TEST(Binding, TypedReadsFallBackToTheDefaultOnKindMismatch)
{
    TemplateHarness card;
    std::vector<double> numbers;
    std::vector<bool> flags;
    auto number = std::make_shared<DoubleSetter>([&](double v) { numbers.push_back(v); });
    auto flag = std::make_shared<BoolSetter>([&](bool v) { flags.push_back(v); });
    RuntimeEngine::getTypeData(card.scope, createRuntimeObject(json("\"1\"")), card.weak(), number, 4.0);
    RuntimeEngine::getTypeData(card.scope, createRuntimeObject(json("2")), card.weak(), number, 4.0);
    RuntimeEngine::getTypeData(card.scope, createRuntimeObject(json("1")), card.weak(), flag, false);
    RuntimeEngine::getTypeData(card.scope, createRuntimeObject(json("true")), card.weak(), flag, false);
    EXPECT_EQ(numbers, (std::vector<double>{4, 2}));
    EXPECT_EQ(flags, (std::vector<bool>{false, true}));
}

TEST(Binding, AGoneEngineGivesTheDefaultOnce)
{
    std::vector<std::string> seen;
    LocalScope scope = makeLocalScope();
    RuntimeEngine::getValueData(scope, createRuntimeObject(json(R"({"$": 3, "n": "v"})")), EngineRef(),
                                std::make_shared<ValueSetter>([&](Value v) { seen.push_back(canonicalJson(v)); }),
                                Value("fallback"));
    RuntimeEngine::getSizeData(scope, parseSizeProperty(json(R"({"sizeType": 1, "value": 3})")), EngineRef(),
                               std::make_shared<DoubleSetter>([&](double v) { seen.push_back(std::to_string(v)); }),
                               100.0, 7.0);
    YGValue size{};
    RuntimeEngine::getYGValueData(scope, parseSizeProperty(json(R"({"sizeType": 1, "value": 3})")), EngineRef(),
                                  std::make_shared<YGValueSetter>([&](YGValue v) { size = v; }),
                                  YGValue{5.0f, YGUnitPercent});
    EXPECT_EQ(seen, (std::vector<std::string>{"\"fallback\"", "7.000000"}));
    EXPECT_EQ(size.unit, YGUnitPercent);
    EXPECT_EQ(size.value, 5.0f);
}

TEST(Binding, ValueDataPassesTheResultUnchanged)
{
    TemplateHarness card(R"({"variables": {"v": "text"}, "events": [{"n": "clear", "a": [], "b": [
        {"$": 4, "n": "v", "value": null}]}]})");
    std::vector<std::string> seen;
    RuntimeEngine::getValueData(card.scope, createRuntimeObject(json(R"({"$": 3, "n": "v"})")), card.weak(),
                                std::make_shared<ValueSetter>([&](Value v) { seen.push_back(canonicalJson(v)); }),
                                Value(true));
    card.send("clear");
    EXPECT_EQ(seen, (std::vector<std::string>{"\"text\"", "null"}));
}

TEST(Binding, SizesAreConvertedOnEveryChange)
{
    TemplateHarness card(R"({"variables": {"w": 10}, "events": [{"n": "grow", "a": [], "b": [
        {"$": 4, "n": "w", "value": 20}]}]})");
    card.engine->screenScale = 2.0;
    std::vector<double> numbers;
    std::vector<float> points;
    RuntimeEngine::getSizeData(card.scope, parseSizeProperty(json(R"({"sizeType": 4, "value": {"$": 3, "n": "w"}})")),
                               card.weak(), std::make_shared<DoubleSetter>([&](double v) { numbers.push_back(v); }),
                               100.0, -5.0);
    RuntimeEngine::getYGValueData(card.scope, parseSizeProperty(json(R"({"sizeType": 4, "value": {"$": 3, "n": "w"}})")),
                                  card.weak(), std::make_shared<YGValueSetter>([&](YGValue v) { points.push_back(v.value); }),
                                  YGValue{0.0f, YGUnitUndefined});
    card.send("grow");
    EXPECT_EQ(numbers, (std::vector<double>{20, 40}));
    EXPECT_EQ(points, (std::vector<float>{20, 40}));
}

TEST(Binding, ObserversOfAReleasedEngineStayHarmless)
{
    auto card = std::make_unique<TemplateHarness>(R"({"variables": {"v": 1}})");
    int calls = 0;
    RuntimeEngine::getValueData(card->scope, createRuntimeObject(json(R"({"$": 3, "n": "v"})")), card->weak(),
                                std::make_shared<ValueSetter>([&](Value) { ++calls; }), Value());
    ObserverPtr observer = card->engine->observers.at("v")->front();
    card->release();
    (*observer)();
    EXPECT_EQ(calls, 1);
}

TEST(SizeConversion, ToYogaValues)
{
    RuntimeEngine engine;
    engine.screenScale = 0.5;
    engine.containerWidth = 300.0f;
    engine.containerHeight = 200.0f;
    const YGValue fallback{9.0f, YGUnitPercent};
    struct Case {
        int32_t type;
        int32_t widthMode;
        int32_t heightMode;
        float value;
        YGUnit unit;
    };
    const Case cases[] = {
        {1, 0, 0, 10.0f, YGUnitPoint},   {2, 0, 0, 10.0f, YGUnitPercent}, {3, 1, 1, NAN, YGUnitAuto},
        {4, 0, 0, 5.0f, YGUnitPoint},    {5, 0, 1, 20.0f, YGUnitPoint},   {5, 1, 2, NAN, YGUnitAuto},
        {6, 1, 0, 30.0f, YGUnitPoint},   {6, 2, 1, NAN, YGUnitAuto},      {0, 1, 1, 9.0f, YGUnitPercent},
        {-1, 1, 1, 9.0f, YGUnitPercent}, {7, 1, 1, 9.0f, YGUnitPercent},
    };
    for (const Case& c : cases) {
        engine.widthMode = c.widthMode;
        engine.heightMode = c.heightMode;
        YGValue size = engine.convertSize(c.type, 10.0, fallback);
        EXPECT_EQ(size.unit, c.unit) << c.type;
        if (std::isnan(c.value)) {
            EXPECT_TRUE(std::isnan(size.value)) << c.type;
        } else {
            EXPECT_EQ(size.value, c.value) << c.type;
        }
    }
}

TEST(SizeConversion, ToNumbers)
{
    RuntimeEngine engine;
    engine.screenScale = 0.5;
    engine.containerWidth = 300.0f;
    engine.containerHeight = 200.0f;
    engine.widthMode = 1;
    engine.heightMode = 1;
    EXPECT_EQ(engine.convertSizeToNumber(1, 10.0, 50.0, -7.0), 10.0);
    // The single-precision 0.01, widened, for percentages of the base.
    EXPECT_EQ(engine.convertSizeToNumber(2, 10.0, 50.0, -7.0), 500.0 * 0.009999999776482582);
    EXPECT_NE(engine.convertSizeToNumber(2, 10.0, 50.0, -7.0), 5.0);
    EXPECT_EQ(engine.convertSizeToNumber(3, 10.0, 50.0, -7.0), -1.0);
    EXPECT_EQ(engine.convertSizeToNumber(4, 10.0, 50.0, -7.0), 5.0);
    EXPECT_EQ(engine.convertSizeToNumber(5, 10.0, 50.0, -7.0), (10.0 * 0.01) * 200.0);
    EXPECT_EQ(engine.convertSizeToNumber(6, 10.0, 50.0, -7.0), (10.0 * 0.01) * 300.0);
    EXPECT_EQ(engine.convertSizeToNumber(0, 10.0, 50.0, -7.0), -7.0);
    EXPECT_EQ(engine.convertSizeToNumber(-1, 10.0, 50.0, -7.0), -7.0);
    engine.widthMode = 2;
    engine.heightMode = 0;
    EXPECT_EQ(engine.convertSizeToNumber(5, 10.0, 50.0, -7.0), 0.0);
    EXPECT_EQ(engine.convertSizeToNumber(6, 10.0, 50.0, -7.0), 0.0);
}

TEST(Lifetime, CallbacksKeptInTheirOwnScopeAreReleasedWithTheEngine)
{
    auto card = std::make_unique<TemplateHarness>(R"({
        "functions": [{"n": "keep", "a": [], "b": [{"$": 2, "n": "self", "value": {"$": 14, "a": [], "b": []}}]}],
        "events": [{"n": "e", "a": [], "b": [{"$": 2, "n": "self", "value": {"$": 14, "a": [], "b": []}}]}]})");
    card->send("e");
    card->call("keep");
    std::weak_ptr<ScopeMap> handlerScope = card->engine->eventTable.at("e")->scope;
    card->release();
    EXPECT_TRUE(handlerScope.expired());
}
