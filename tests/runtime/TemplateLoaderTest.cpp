// Loading a template: tables, first-definition-wins, the factories' reading of
// type codes, and malformed script.
#include <gtest/gtest.h>

#include "runtime/RuntimeEngine.h"
#include "runtime/expressions/InvokeFunction.h"
#include "runtime/expressions/Literals.h"
#include "runtime/functions/CustomFunction.h"
#include "runtime/statements/BasicStatements.h"
#include "support/CanonicalJson.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

using namespace Mero;
using MeroTest::canonicalJson;
using MeroTest::json;
using MeroTest::TemplateHarness;

namespace {

// count := count + step, with step defaulting to 1, run by the event "tap".
constexpr const char* incrementCard = R"({
    "variables": {"count": 0},
    "functions": [{"n": "inc", "a": ["step"], "defaultArgs": [1], "b": [
        {"$": 4, "n": "count", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 3, "n": "count"}, {"$": 1, "n": "step"}]]}}
    ]}],
    "events": [{"n": "tap", "a": [], "b": [{"$": 5, "n": "inc", "a": []}]}]
})";

}  // namespace

TEST(TemplateLoader, IncrementExampleRunsEndToEnd)
{
    MeroTest::DebugModeScope quiet(false);
    TemplateHarness card(incrementCard);
    std::vector<double> seen;
    RuntimeEngine::getTypeData(card.scope, createRuntimeObject(json(R"({"$": 3, "n": "count"})")), card.weak(),
                               std::make_shared<DoubleSetter>([&](double count) { seen.push_back(count); }), -1.0);

    card.send("tap");
    card.send("tap");
    EXPECT_EQ(card.ui("count").number(), 2);
    EXPECT_EQ(card.call("inc", {Value(10)}).kindNumber(), 0);
    EXPECT_EQ(card.ui("count").number(), 12);
    EXPECT_EQ(seen, (std::vector<double>{0, 1, 2, 12}));
}

// Operands handed to the number operation as two plain values, not as the
// code and operand arrays it takes, are a type misuse of that built-in.
TEST(TemplateLoader, IncrementWithBareOperandsIsANumberOperationMisuse)
{
    constexpr const char* bare = R"({
        "variables": {"count": 5},
        "functions": [{"n": "inc", "a": ["step"], "defaultArgs": [1], "b": [
            {"$": 4, "n": "count", "value": {"$": 5, "n": "1", "a": [{"$": 3, "n": "count"}, {"$": 1, "n": "step"}]}}
        ]}],
        "events": [{"n": "tap", "a": [], "b": [{"$": 5, "n": "inc", "a": []}]}]
    })";
    TemplateHarness card(bare);
    EXPECT_EQ(MeroTest::thrownMessage([&] { card.send("tap"); }), "number operation args type not match");
    EXPECT_EQ(MeroTest::printedOutput([&] { card.send("tap"); }), "number operation args type not match\n");
    EXPECT_EQ(card.ui("count").number(), 0);
}

TEST(TemplateLoader, TopLevelMembersFillTheTables)
{
    TemplateHarness card(R"({"elements": {"$": 1, "children": []}, "variables": {"a": 1, "b": "x"},
                            "functions": [{"n": "own", "a": [], "b": []}], "events": [{"n": "e", "a": [], "b": []}],
                            "other": 5})");
    EXPECT_EQ(canonicalJson(card.engine->elements), R"({"$":1,"children":[]})");
    EXPECT_EQ(canonicalJson(Value(card.engine->uiVariables)), R"({"a":1,"b":"x"})");
    EXPECT_TRUE(card.engine->globalVariables->empty());
    EXPECT_EQ(card.engine->functionTable.size(), 44u);
    EXPECT_EQ(card.engine->eventTable.size(), 1u);
    EXPECT_FALSE(card.engine->eventTable.at("e")->isCallback);
}

TEST(TemplateLoader, AnEmptyTemplateStillRegistersTheBuiltins)
{
    TemplateHarness card("{}");
    EXPECT_EQ(card.engine->functionTable.size(), 43u);
    EXPECT_TRUE(card.engine->eventTable.empty());
    EXPECT_TRUE(card.engine->elements.isNull());
    for (const char* key : {"k", "p", "i", "s", "t", "l", "G", "x", "y", "z", "A", "B", "0", "1", "2",
                            "4", "8", "u", "v", "C", "D", "g", "F", "h", "o", "n", "7", "m", "6", "f",
                            "e", "d", "9", "r", "E", "j", "5", "c", "b", "a", "3", "q", "w"}) {
        EXPECT_TRUE(card.engine->functionTable.contains(key)) << key;
    }
}

TEST(TemplateLoader, VariablesTableIsTheTemplatesOwnObject)
{
    // Script writes land in the same map the template was read into.
    TemplateHarness card(R"({"variables": {"n": 1}, "events": [{"n": "go", "a": [], "b": [
        {"$": 4, "n": "n", "value": 2}, {"$": 4, "n": "m", "value": 3}]}]})");
    std::shared_ptr<ValueObject> table = card.engine->uiVariables;
    card.send("go");
    EXPECT_EQ(card.engine->uiVariables, table);
    EXPECT_EQ(canonicalJson(Value(table)), R"({"m":3,"n":2})");
}

TEST(TemplateLoader, WithoutVariablesTheSharedEmptyObjectIsUsed)
{
    TemplateHarness card(R"({"events": [{"n": "go", "a": [], "b": [{"$": 4, "n": "leak", "value": 7}]}]})");
    Value mismatched;
    EXPECT_EQ(card.engine->uiVariables.get(), &mismatched.object());

    card.send("go");
    // Every mismatched object access now sees the member: kept on purpose.
    EXPECT_EQ(Value(1.0).object().at("leak").number(), 7);
}

TEST(TemplateLoader, VariablesThatAreNotAnObjectAlsoUseTheSharedEmptyObject)
{
    TemplateHarness card(R"({"variables": [1, 2]})");
    Value mismatched;
    EXPECT_EQ(card.engine->uiVariables.get(), &mismatched.object());
}

TEST(TemplateLoader, FirstFunctionAndEventDefinitionsWin)
{
    TemplateHarness card(R"({"variables": {"log": ""}, "functions": [
        {"n": "f", "a": [], "b": [{"$": 11, "returnValue": "first"}]},
        {"n": "f", "a": [], "b": [{"$": 11, "returnValue": "second"}]}],
      "events": [
        {"n": "e", "a": [], "b": [{"$": 4, "n": "log", "value": "first"}]},
        {"n": "e", "a": [], "b": [{"$": 4, "n": "log", "value": "second"}]}]})");
    EXPECT_EQ(card.call("f").string(), "first");
    card.send("e");
    EXPECT_EQ(card.ui("log").string(), "first");
}

TEST(TemplateLoader, TemplateFunctionShadowsTheBuiltinOfTheSameKey)
{
    TemplateHarness card(R"({"functions": [{"n": "1", "a": ["x", "y"], "b": [{"$": 11, "returnValue": "mine"}]}]})");
    EXPECT_NE(dynamic_cast<CustomFunction*>(card.engine->functionTable.at("1").get()), nullptr);
    EXPECT_EQ(card.eval(R"({"$": 5, "n": "1", "a": [[0], [1, 2]]})").string(), "mine");
}

TEST(TemplateLoader, SecondLoadKeepsEarlierTablesAndResetsGlobals)
{
    TemplateHarness card(R"({"variables": {"v": 1}, "functions": [{"n": "f", "a": [], "b": [{"$": 11, "returnValue": 1}]}],
                            "events": [{"n": "e", "a": [], "b": [{"$": 18, "n": "g", "value": 1}]}]})");
    card.send("e");
    EXPECT_EQ(card.global("g").number(), 1);

    card.engine->loadTemplate(R"({"variables": {"v": 2}, "functions": [
        {"n": "f", "a": [], "b": [{"$": 11, "returnValue": 2}]}, {"n": "later", "a": [], "b": [{"$": 11, "returnValue": 3}]}],
        "events": [{"n": "e", "a": [], "b": []}]})");
    EXPECT_TRUE(card.global("g").isNull());
    EXPECT_EQ(card.ui("v").number(), 2);
    EXPECT_EQ(card.call("f").number(), 1);
    EXPECT_EQ(card.call("later").number(), 3);
    card.send("e");
    EXPECT_EQ(card.global("g").number(), 1);
}

TEST(TemplateLoader, EventParameterIsNamedOnlyByAOneElementList)
{
    TemplateHarness card(R"({"events": [
        {"n": "one", "a": ["p"], "b": []},
        {"n": "two", "a": ["p", "q"], "b": []},
        {"n": "none", "b": []},
        {"n": "number", "a": [5], "b": []}]})");
    EXPECT_EQ(card.engine->eventTable.at("one")->parameterName, "p");
    EXPECT_EQ(card.engine->eventTable.at("two")->parameterName, "");
    EXPECT_EQ(card.engine->eventTable.at("none")->parameterName, "");
    EXPECT_EQ(card.engine->eventTable.at("number")->parameterName, "");
}

TEST(TemplateLoader, FunctionParameterNamesAreReadAsStrings)
{
    TemplateHarness card(R"({"functions": [{"n": "f", "a": ["a", 7, "c"], "defaultArgs": [], "b": []}]})");
    auto* function = dynamic_cast<CustomFunction*>(card.engine->functionTable.at("f").get());
    ASSERT_NE(function, nullptr);
    EXPECT_EQ(function->parameters(), (std::vector<std::string>{"a", "", "c"}));
}

// Statement codes are truncated, expression codes compared exactly.
TEST(ScriptFactory, FractionalCodeIsACallAsStatementAndAnObjectLiteralAsExpression)
{
    Value node = json(R"({"$": 5.7, "n": "f", "a": []})");
    RuntimeExecutePtr statement = createRuntimeExecute(node);
    RuntimeObjectPtr expression = createRuntimeObject(node);
    EXPECT_NE(dynamic_cast<InvokeFunction*>(statement.get()), nullptr);
    EXPECT_NE(dynamic_cast<RuntimeJson*>(expression.get()), nullptr);

    TemplateHarness card(R"({"variables": {"calls": 0}, "functions": [{"n": "f", "a": [], "b": [
        {"$": 4, "n": "calls", "value": 1}]}]})");
    EXPECT_EQ(canonicalJson(card.eval(R"({"$": 5.7, "n": "f", "a": []})")), R"({"$":5.7,"a":[],"n":"f"})");
    EXPECT_EQ(card.ui("calls").number(), 0);
    card.run(R"([{"$": 5.7, "n": "f", "a": []}])");
    EXPECT_EQ(card.ui("calls").number(), 1);
}

TEST(ScriptFactory, ExpressionShapesBuildTheirClasses)
{
    EXPECT_NE(dynamic_cast<RuntimeBasic*>(createRuntimeObject(json("null")).get()), nullptr);
    EXPECT_NE(dynamic_cast<RuntimeBasic*>(createRuntimeObject(json("\"s\"")).get()), nullptr);
    EXPECT_NE(dynamic_cast<RuntimeArray*>(createRuntimeObject(json("[1]")).get()), nullptr);
    EXPECT_NE(dynamic_cast<RuntimeJson*>(createRuntimeObject(json(R"({"a": 1})")).get()), nullptr);
    EXPECT_NE(dynamic_cast<RuntimeJson*>(createRuntimeObject(json(R"({"$": "5", "n": "f"})")).get()), nullptr);
    EXPECT_NE(dynamic_cast<RuntimeSpreadArray*>(createRuntimeObject(json(R"({"$": 16, "value": []})")).get()), nullptr);
    EXPECT_NE(dynamic_cast<RuntimeSpreadObject*>(createRuntimeObject(json(R"({"$": 15, "value": []})")).get()),
              nullptr);
}

TEST(ScriptFactory, MalformedStatementsDoNothing)
{
    for (const char* node : {R"("text")", "3", "null", "[1]", R"({"$": 3, "n": "x"})", R"({"$": 0})", R"({})",
                             R"({"$": 19})", R"({"$": 1e300})", R"({"$": -7})", R"({"$": true})"}) {
        RuntimeExecutePtr statement = createRuntimeExecute(json(node));
        EXPECT_NE(dynamic_cast<RuntimeExecuteNull*>(statement.get()), nullptr) << node;
    }
    TemplateHarness card(R"({"variables": {"x": 1}, "events": [{"n": "e", "a": [], "b": [
        "text", {"$": 3, "n": "x"}, {"$": 14}, {"$": 4, "n": "x", "value": 2}]}]})");
    card.send("e");
    EXPECT_EQ(card.ui("x").number(), 2);
}

TEST(ScriptFactory, StatementListsThatAreNotArraysAreEmpty)
{
    Value node = json(R"({"b": {"$": 12}, "c": [{"$": 12}, 5]})");
    EXPECT_TRUE(buildStatementList(node, "b").empty());
    EXPECT_TRUE(buildStatementList(node, "missing").empty());
    StatementList list = buildStatementList(node, "c");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_NE(dynamic_cast<BreakValue*>(list[0].get()), nullptr);
    EXPECT_NE(dynamic_cast<RuntimeExecuteNull*>(list[1].get()), nullptr);
}

TEST(ScriptFactory, SizePropertiesReadTypeAndValue)
{
    TemplateHarness card;
    SizeProperty plain = parseSizeProperty(json(R"({"sizeType": 4.9, "value": 3})"));
    EXPECT_EQ(plain.sizeType, 4);
    EXPECT_EQ(plain.expression->value(card.scope, card.weak()).number(), 3);

    SizeProperty none = parseSizeProperty(json(R"({"value": 3})"));
    EXPECT_EQ(none.sizeType, 0);

    // With -1 the whole object is the expression, here an object literal.
    SizeProperty whole = parseSizeProperty(json(R"({"sizeType": -1, "value": 3})"));
    EXPECT_EQ(whole.sizeType, -1);
    EXPECT_EQ(canonicalJson(whole.expression->value(card.scope, card.weak())), R"({"sizeType":-1,"value":3})");
}

TEST(TemplateLoader, BrokenTemplatesLoadWithoutCrashing)
{
    MeroTest::DebugModeScope quiet(false);
    testing::internal::CaptureStdout();
    for (const char* text : {"", "[", "{\"functions\": 5}", "{\"functions\": [1, \"x\", {\"n\": 3}]}",
                             "{\"events\": [null, {\"b\": 1}]}", "{\"variables\": null, \"events\": {}}",
                             "{\"functions\": [{\"n\": \"f\", \"a\": 1, \"defaultArgs\": 2, \"b\": [{\"$\": 9}]}]}"}) {
        TemplateHarness card(text);
        card.send("");
        card.call("f");
    }
    testing::internal::GetCapturedStdout();
}
