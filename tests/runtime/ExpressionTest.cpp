// Expression nodes: literals, spreads, the four reads and callbacks.
#include <gtest/gtest.h>

#include "runtime/RuntimeEngine.h"
#include "support/CanonicalJson.h"
#include "support/TemplateHarness.h"

using namespace Mero;
using MeroTest::canonicalJson;
using MeroTest::json;
using MeroTest::TemplateHarness;

namespace {

Value callWith(const Value& callback, std::vector<Value> args = {})
{
    return (*callback.callbackPtr())(std::move(args));
}

}  // namespace

TEST(Literals, EvaluateToFreshValuesAndSpreadsSkipNull)
{
    TemplateHarness card(R"({"variables": {"v": 2}})");
    EXPECT_EQ(canonicalJson(card.eval(R"([1, "a", null, true, {"$": 3, "n": "v"}])")), R"([1,"a",null,true,2])");
    EXPECT_EQ(canonicalJson(card.eval(R"({"x": {"$": 3, "n": "v"}, "y": [{"k": 1}]})")), R"({"x":2,"y":[{"k":1}]})");
    card.scope->emplace("two", json("[2, 3]"));
    EXPECT_EQ(canonicalJson(card.eval(R"({"$": 16, "value": [null, [1], {"$": 1, "n": "two"}]})")), "[1,2,3]");
    EXPECT_EQ(canonicalJson(card.eval(R"({"$": 15, "value": [{"a": 1}, null, {"a": 2, "b": 3}]})")),
              R"({"a":2,"b":3})");
    EXPECT_EQ(canonicalJson(card.eval(R"({"$": 16})")), "[]");

    RuntimeObjectPtr literal = createRuntimeObject(json("[1]"));
    literal->value(card.scope, card.weak()).array().push_back(Value(2));
    EXPECT_EQ(canonicalJson(literal->value(card.scope, card.weak())), "[1]");
}

TEST(VariableReads, EachCodeReadsItsOwnTableWithoutFallback)
{
    TemplateHarness card(R"({"variables": {"x": "ui"}})");
    card.engine->globalVariables->emplace("x", Value("global"));
    card.setData(R"({"x": "data"})");
    card.scope->emplace("x", Value("local"));
    const char* reads[][2] = {{"1", "local"}, {"3", "ui"}, {"17", "global"}, {"19", "data"}};
    for (const auto& [code, table] : reads) {
        EXPECT_EQ(card.eval(std::string(R"({"n": "x", "$": )") + code + "}").string(), table);
        EXPECT_TRUE(card.eval(std::string(R"({"n": "y", "$": )") + code + "}").isNull()) << code;
    }
    // Without a scope nothing is local, and a call goes to the function table.
    card.scope.reset();
    EXPECT_TRUE(card.eval(R"({"$": 1, "n": "x"})").isNull());
    EXPECT_EQ(canonicalJson(card.eval(R"({"$": 5, "n": "9", "a": [[1], [2]]})")), "[1,2]");
}

// A call works on a copy, taken at call time, of the scope the callback was
// made in; the callback outlives that scope and its own node.
TEST(Callbacks, BindParametersInACopyOfTheDefiningScopeTakenAtCallTime)
{
    TemplateHarness card;
    card.scope->emplace("base", Value(10));
    Value callback = card.eval(R"({"$": 14, "a": ["x", "y"], "b": [
        {"$": 2, "n": "base", "value": {"$": 1, "n": "x"}},
        {"$": 11, "returnValue": [{"$": 1, "n": "base"}, {"$": 1, "n": "y"}]}]})");
    Value peek = card.eval(R"({"$": 14, "a": [], "b": [{"$": 11, "returnValue": {"$": 1, "n": "base"}}]})");
    // A third argument is ignored; writes stay inside the call.
    EXPECT_EQ(canonicalJson(callWith(callback, {Value(1), Value(2), Value(3)})), "[1,2]");
    EXPECT_EQ(card.local("base").number(), 10);
    (*card.scope)["base"] = Value(30);
    card.scope.reset();
    EXPECT_EQ(callWith(peek).number(), 30);
    EXPECT_TRUE(callWith(card.eval(R"({"$": 14})"), {Value(1)}).isNull());
}
