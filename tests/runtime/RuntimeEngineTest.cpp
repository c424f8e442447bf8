// The engine: function calls, custom functions, event dispatch, observers,
// size conversion, property binding and reported errors.
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

RuntimeObjectPtr node(std::string_view text)
{
    return createRuntimeObject(json(text));
}

// Numbers and flags are shown as the Value they make.
std::string text(const Value& value)
{
    return value.is(Kind::Break) ? "break" : value.is(Kind::Continue) ? "continue" : canonicalJson(value);
}
std::string text(YGValue size)
{
    const char* unit = size.unit == YGUnitPoint ? "pt" : size.unit == YGUnitPercent ? "%" : "?";
    return size.unit == YGUnitAuto ? "auto" : numberToString(size.value) + unit;
}

// A property setter that appends what it is handed, as text after `label`.
template <typename T>
std::shared_ptr<std::function<void(T)>> recorder(std::vector<std::string>& seen, std::string label = "")
{
    return std::make_shared<std::function<void(T)>>([&seen, label](T value) { seen.push_back(label + text(value)); });
}

// The engine holds binding callbacks weakly: whoever binds keeps them.
std::vector<ObserverPtr> kept;

void bindValue(TemplateHarness& card, const char* expression, std::vector<std::string>& seen, std::string label = "")
{
    kept.push_back(RuntimeEngine::getValueData(card.scope, node(expression), card.weak(), recorder<Value>(seen, label),
                                               Value("default")));
}

}  // namespace

// With debugMode set a report is thrown; with it clear it is printed and the
// evaluation goes on to its fallback.
TEST(ReportedErrors, AreThrownOrPrintedBeforeTheFallback)
{
    struct Report {
        const char* expression;
        bool engineGone;
        const char* message;
        int times;  // printed
        const char* fallback;
    };
    const Report reports[] = {
        {R"({"$": 5, "n": "ab", "a": [1]})", false, "custom args size not match", 1, "null"},
        // An empty defaults list counts as none.
        {R"({"$": 5, "n": "abEmpty", "a": [1, 2, 3]})", false, "custom args size not match", 1, "null"},
        {R"({"$": 5, "n": "cb", "a": [1]})", false, "callback args size not match", 1, "null"},
        {R"({"$": 16, "value": [[1], "x", false, [2]]})", false, "RuntimeSpreadArray value is not array", 2, "[1,2]"},
        {R"({"$": 15, "value": [{"a": 1}, 0, {"b": 2}]})", false, "RuntimeSpreadObject value is not object", 1,
         R"({"a":1,"b":2})"},
        // Operands given as plain values, not as a code and an operand list.
        {R"({"$": 5, "n": "1", "a": [5, 1]})", false, "number operation args type not match", 1, "0"},
        {R"({"$": 3, "n": "x"})", true, "runtimeEngine is null", 1, "null"},
        {R"({"$": 17, "n": "x"})", true, "runtimeEngine is null", 1, "null"},
        {R"({"$": 19, "n": "x"})", true, "runtimeEngine is null", 1, "null"},
        {R"({"$": 19, "n": "$root"})", true, "runtimeEngine is null", 1, "null"},
        // Unknown functions are not reported.
        {R"({"$": 5, "n": "nope", "a": [1]})", false, "<nothing thrown>", 0, "null"},
    };
    TemplateHarness card(R"({"functions": [{"n": "ab", "a": ["a", "b"], "b": []},
                                           {"n": "abEmpty", "a": ["a", "b"], "defaultArgs": [], "b": []}]})");
    (*card.scope)["cb"] = node(R"({"$": 14, "a": ["x", "y"], "b": []})")->value(nullptr, card.weak());
    for (const Report& report : reports) {
        auto evaluate = [&] {
            return node(report.expression)->value(card.scope, report.engineGone ? EngineRef() : card.weak());
        };
        EXPECT_EQ(MeroTest::thrownMessage([&] { evaluate(); }), report.message) << report.expression;
        std::string printed;
        for (int i = 0; i < report.times; ++i) {
            printed += std::string(report.message) + "\n";
        }
        Value fallback;
        EXPECT_EQ(MeroTest::printedOutput([&] { fallback = evaluate(); }), printed) << report.expression;
        EXPECT_EQ(canonicalJson(fallback), report.fallback) << report.expression;
    }
}

TEST(CustomFunction, DefaultsFillMissingParametersFromTheFront)
{
    TemplateHarness card(R"({"functions": [
        {"n": "abc", "a": ["a", "b", "c"], "defaultArgs": [7, 8],
         "b": [{"$": 11, "returnValue": [{"$": 1, "n": "a"}, {"$": 1, "n": "b"}, {"$": 1, "n": "c"}]}]}]})");
    EXPECT_EQ(canonicalJson(card.call("abc", {Value(1)})), "[1,7,8]");
    EXPECT_EQ(canonicalJson(card.call("abc", {Value(1), Value(2)})), "[1,2,7]");
    EXPECT_EQ(canonicalJson(card.call("abc", {})), "[7,8,null]");
    EXPECT_EQ(canonicalJson(card.call("abc", {Value(1), Value(2), Value(3), Value(4)})), "[1,2,3]");
}

// A function and a callback hand back the first completion that is not
// normal; running to the end, or a While (which ends with null), gives null.
TEST(CustomFunction, FunctionsAndCallbacksHandBackTheSameCompletions)
{
    const char* bodies[][2] = {
        {R"([{"$": 12}, {"$": 11, "returnValue": 1}])", "break"},
        {R"([{"$": 13}])", "continue"},
        {R"([{"$": 11, "returnValue": "r"}])", R"("r")"},
        {R"([{"$": 2, "n": "x", "value": 1}])", "null"},
        {R"([{"$": 8, "c": false, "b": []}, {"$": 11, "returnValue": 5}])", "null"},
    };
    for (const auto& [body, expected] : bodies) {
        TemplateHarness card(std::string(R"({"functions": [{"n": "f", "a": [], "b": )") + body + "}]}");
        EXPECT_EQ(text(card.call("f")), expected) << body;
        Value callback = card.eval(std::string(R"({"$": 14, "a": [], "b": )") + body + "}");
        EXPECT_EQ(text((*callback.callbackPtr())({})), expected) << body;
    }
}

TEST(CustomFunction, OneScopeIsSharedByNestedCalls)
{
    // The nested call f("inner", 0) overwrites the caller's x: kept on purpose.
    TemplateHarness card(R"({"functions": [{"n": "f", "a": ["x", "depth"], "b": [
        {"$": 6, "c": [{"$": 1, "n": "depth"}], "bs": [[{"$": 5, "n": "f", "a": ["inner", 0]}]]},
        {"$": 11, "returnValue": {"$": 1, "n": "x"}}]}]})");
    EXPECT_EQ(card.call("f", {Value("outer"), Value(1)}).string(), "inner");
}

TEST(DispatchEvent, BindsThePayloadOverACopyOfTheOuterScope)
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
    card.engine->eventTable().at("e")->scope->emplace("stale", Value(1));
    card.send("e", Value(2));
    EXPECT_EQ(canonicalJson(card.ui("got")), R"([2,null,null])");
    card.send("unknown");
}

TEST(DispatchEvent, CallbackHandlersGetThePayloadAndHandlersMayRemoveThemselves)
{
    TemplateHarness card(R"({"events": [{"n": "once", "a": [], "b": [
        {"$": 5, "n": "B", "a": ["once"]}, {"$": 18, "n": "after", "value": 1}]}]})");
    std::vector<std::string> seen;
    auto callable = std::make_shared<ValueCallback>([&](std::vector<Value>&& args) {
        seen.push_back(std::to_string(args.size()) + ":" + canonicalJson(args[0]));
        return Value();
    });
    card.engine->registerEvent("cb", std::make_shared<EventHandler>("cb", callable));
    card.send("cb", json(R"({"k": 1})"), std::make_shared<ValueObject>(ValueObject{{"x", Value(1)}}));
    EXPECT_EQ(seen, (std::vector<std::string>{R"(1:{"k":1})"}));

    card.send("once");
    EXPECT_EQ(card.global("after").number(), 1);
    EXPECT_FALSE(card.engine->eventTable().contains("once"));
}

// Only reads of UI variables register; literals and spreads evaluate them
// once but do not pass the registration on, so they are never re-evaluated.
TEST(Observers, ReEvaluateABoundExpressionOncePerRegisteredRead)
{
    struct Binding {
        const char* expression;
        std::vector<std::string> seen;  // bound with v = 1, then after v := 2
    };
    const Binding bindings[] = {
        {R"({"$": 3, "n": "v"})", {"1", "2"}},
        {R"({"$": 5, "n": "nope", "a": [{"$": 3, "n": "v"}, {"$": 5, "n": "nope", "a": [{"$": 3, "n": "v"}]}]})",
         {"null", "null", "null"}},
        {R"([1, {"$": 3, "n": "v"}])", {"[1,1]"}},
        {R"({"k": {"$": 3, "n": "v"}})", {R"({"k":1})"}},
        {R"({"$": 16, "value": [[{"$": 3, "n": "v"}]]})", {"[1]"}},
        {R"({"$": 15, "value": [{"k": {"$": 3, "n": "v"}}]})", {R"({"k":1})"}},
        {R"({"$": 5, "n": "nope", "a": [[{"$": 3, "n": "v"}]]})", {"null"}},
        {R"({"$": 5, "n": "nope", "a": [{"$": 1, "n": "v"}, {"$": 17, "n": "v"}, {"$": 19, "n": "v"}]})", {"null"}},
        {R"({"$": 14, "a": [], "b": [{"$": 11, "returnValue": {"$": 3, "n": "v"}}]})", {"callback"}},
    };
    for (const Binding& binding : bindings) {
        TemplateHarness card(R"({"variables": {"v": 1}, "events": [{"n": "set", "a": [], "b": [
            {"$": 4, "n": "v", "value": 2}]}]})");
        std::vector<std::string> seen;
        bindValue(card, binding.expression, seen);
        card.send("set");
        EXPECT_EQ(seen, binding.seen) << binding.expression;
    }
}

// The list is walked as it was when the change came: a property bound while
// it is walked updates from the next change on.
TEST(Observers, APropertyBoundDuringAnUpdateJoinsFromTheNextChange)
{
    TemplateHarness card(R"({"variables": {"v": 1}, "events": [{"n": "set", "a": ["x"], "b": [
        {"$": 4, "n": "v", "value": {"$": 1, "n": "x"}}]}]})");
    std::vector<std::string> seen;
    auto outer = std::make_shared<ValueSetter>([&](Value value) {
        seen.push_back("outer=" + text(value));
        if (seen.size() == 2) {
            bindValue(card, R"({"$": 3, "n": "v"})", seen, "inner=");
        }
    });
    kept.push_back(RuntimeEngine::getValueData(card.scope, node(R"({"$": 3, "n": "v"})"), card.weak(), outer, Value()));
    card.send("set", Value(2));
    card.send("set", Value(3));
    EXPECT_EQ(seen, (std::vector<std::string>{"outer=1", "outer=2", "inner=2", "outer=3", "inner=3"}));
}

// Properties bound to one variable update in binding order, each converted
// for its setter; a typed read of another kind gives the default.
TEST(Binding, PropertiesOfOneVariableUpdateInBindingOrderWithTheCapturedScope)
{
    TemplateHarness card(R"({"variables": {"v": 10}, "events": [{"n": "set", "a": ["x"], "b": [
        {"$": 4, "n": "v", "value": {"$": 1, "n": "x"}}]}], "functions": [{"n": "pair", "a": ["a", "b"], "b": [
        {"$": 11, "returnValue": [{"$": 1, "n": "a"}, {"$": 1, "n": "b"}]}]}]})");
    card.engine->screenScale = 2.0;
    card.scope->emplace("k", Value(1));
    const char* v = R"({"$": 3, "n": "v"})";
    const char* scaled = R"({"sizeType": 4.9, "value": {"$": 3, "n": "v"}})";
    std::vector<std::string> seen;
    bindValue(card, v, seen, "value=");
    bindValue(card, R"({"$": 5, "n": "pair", "a": [{"$": 1, "n": "k"}, {"$": 3, "n": "v"}]})", seen, "pair=");
    kept.push_back(RuntimeEngine::getTypeData(card.scope, node(v), card.weak(), recorder<double>(seen, "number="), -1.0));
    kept.push_back(RuntimeEngine::getTypeData(card.scope, node(v), card.weak(), recorder<bool>(seen, "flag="), true));
    kept.push_back(RuntimeEngine::getSizeData(card.scope, parseSizeProperty(json(scaled)), card.weak(),
                               recorder<double>(seen, "size="), 100.0, -5.0));
    kept.push_back(RuntimeEngine::getYGValueData(card.scope, parseSizeProperty(json(scaled)), card.weak(),
                                  recorder<YGValue>(seen, "yoga="), YGValue{}));
    (*card.scope)["k"] = Value(2);
    card.send("set", Value(false));
    card.send("set", Value());
    EXPECT_EQ(seen, (std::vector<std::string>{"value=10", "pair=[1,10]", "number=10", "flag=true", "size=20",
                                              "yoga=20pt", "value=false", "pair=[2,false]", "number=-1", "flag=false",
                                              "size=0", "yoga=0pt", "value=null", "pair=[2,null]", "number=-1",
                                              "flag=true", "size=0", "yoga=0pt"}));
}

TEST(Binding, AGoneEngineGivesTheDefaultOnceAndAReleasedOneIsNeverCalledBack)
{
    std::vector<std::string> seen;
    LocalScope scope = makeLocalScope();
    const char* size = R"({"sizeType": 1, "value": 3})";
    kept.push_back(RuntimeEngine::getValueData(scope, node(R"({"$": 3, "n": "v"})"), EngineRef(), recorder<Value>(seen), "gone"));
    kept.push_back(RuntimeEngine::getSizeData(scope, parseSizeProperty(json(size)), EngineRef(), recorder<double>(seen), 100.0, 7.0));
    kept.push_back(RuntimeEngine::getYGValueData(scope, parseSizeProperty(json(size)), EngineRef(), recorder<YGValue>(seen),
                                  YGValue{5.0f, YGUnitPercent}));
    EXPECT_EQ(seen, (std::vector<std::string>{R"("gone")", "7", "5%"}));

    auto callback = std::make_shared<ObserverCallback>([] {});
    node(R"({"$": 3, "n": "v"})")->observe(EngineRef(), callback);
    EXPECT_EQ(callback.use_count(), 1);

    auto card = std::make_unique<TemplateHarness>(R"({"variables": {"v": 1}})");
    bindValue(*card, R"({"$": 3, "n": "v"})", seen);
    ObserverPtr observer = card->engine->observers().at("v")->callbacks.front().lock();
    card->release();
    (*observer)();
    EXPECT_EQ(seen.back(), "1");
    EXPECT_EQ(seen.size(), 4u);
}

TEST(SizeConversion, ToYogaValuesAndNumbers)
{
    RuntimeEngine engine;
    engine.screenScale = 0.5;
    engine.containerWidth = 300.0f;
    engine.containerHeight = 200.0f;
    struct Case {
        int32_t type, widthMode, heightMode;
        const char* yoga;
        double number;  // of 10 on a base of 50, fallback -7
    };
    const Case cases[] = {
        {1, 0, 0, "10pt", 10.0},
        // The single-precision 0.01, widened: not 5.
        {2, 0, 0, "10%", 500.0 * 0.009999999776482582},
        {3, 1, 1, "auto", -1.0},
        {4, 0, 0, "5pt", 5.0},
        // The container percentages use the double 0.01; only an exact mode counts.
        {5, 0, 1, "20pt", (10.0 * 0.01) * 200.0},
        {5, 1, 2, "auto", 0.0},
        {6, 1, 0, "30pt", (10.0 * 0.01) * 300.0},
        {6, 2, 1, "auto", 0.0},
        {0, 1, 1, "9%", -7.0},
        {-1, 1, 1, "9%", -7.0},
        {7, 1, 1, "9%", -7.0},
    };
    for (const Case& c : cases) {
        engine.widthMode = c.widthMode;
        engine.heightMode = c.heightMode;
        EXPECT_EQ(text(engine.convertSize(c.type, 10.0, YGValue{9.0f, YGUnitPercent})), c.yoga) << c.type;
        EXPECT_EQ(engine.convertSizeToNumber(c.type, 10.0, 50.0, -7.0), c.number) << c.type;
    }
    // With -1 the whole property object is the expression.
    SizeProperty whole = parseSizeProperty(json(R"({"sizeType": -1, "value": 3})"));
    EXPECT_EQ(canonicalJson(whole.expression->value(nullptr, EngineRef())), R"({"sizeType":-1,"value":3})");
}

TEST(Lifetime, CallbacksKeptInTheirOwnScopeAreReleasedWithTheEngine)
{
    auto card = std::make_unique<TemplateHarness>(R"({
        "functions": [{"n": "keep", "a": [], "b": [{"$": 2, "n": "self", "value": {"$": 14, "a": [], "b": []}}]}],
        "events": [{"n": "e", "a": [], "b": [{"$": 2, "n": "self", "value": {"$": 14, "a": [], "b": []}}]}]})");
    card->send("e");
    card->call("keep");
    std::weak_ptr<ScopeMap> handlerScope = card->engine->eventTable().at("e")->scope;
    card->release();
    EXPECT_TRUE(handlerScope.expired());
}
