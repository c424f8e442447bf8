// Loading a template: tables, first-definition-wins, the factories' reading of
// type codes, and malformed script.
#include <gtest/gtest.h>

#include "runtime/RuntimeEngine.h"
#include "support/CanonicalJson.h"
#include "support/HostileCards.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

using namespace Mero;
using MeroTest::canonicalJson;
using MeroTest::json;
using MeroTest::TemplateHarness;

TEST(TemplateLoader, TopLevelMembersFillTheTablesAfterWhichTheBuiltinsAreAdded)
{
    TemplateHarness card(R"({"elements": {"$": 1}, "variables": {"a": 1}, "other": 5,
        "events": [{"n": "go", "a": [], "b": [{"$": 4, "n": "b", "value": 2}]}]})");
    EXPECT_EQ(canonicalJson(card.engine->elementsForBuild()), R"({"$":1})");
    // Script writes land in the card's own table, made from "variables".
    std::shared_ptr<ValueObject> table = card.engine->uiVariables;
    card.send("go");
    EXPECT_EQ(card.engine->uiVariables, table);
    EXPECT_EQ(canonicalJson(Value(table)), R"({"a":1,"b":2})");
    std::string keys = "kpistlGxyzAB01248uvCDgFhon7m6fed9rEj5cba3qw";
    for (char key : keys) {
        EXPECT_NE(card.engine->findFunction(std::string(1, key)), nullptr) << key;
    }
    EXPECT_EQ(card.engine->findFunction("H"), nullptr);
}

// Kept on purpose: every mismatched object access then sees what the script wrote.
// Cards of one template share its reading, never their variables, whatever
// "variables" is.
TEST(TemplateLoader, EachCardOfATemplateHasAVariableTableOfItsOwn)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "null"}, {R"("variables": [1, 2], )", "null"}, {R"("variables": {"v": {"k": 1}}, )", R"({"k":1})"}};
    for (const auto& [variables, startValue] : cases) {
        const std::string text = std::string("{") + variables + R"("events": [{"n": "go", "a": [], "b": [
            {"$": 4, "n": "leak", "value": 7}, {"$": 4, "n": "v", "value": 2}]}]})";
        TemplateHarness writer(text);
        TemplateHarness other(text);
        writer.send("go");
        EXPECT_EQ(writer.engine->uiVariables->at("leak").number(), 7);
        EXPECT_FALSE(other.engine->uiVariables->contains("leak"));
        EXPECT_EQ(canonicalJson(other.ui("v")), startValue);
        EXPECT_FALSE(Value(1.0).object().contains("leak"));
        TemplateHarness later(text);
        EXPECT_FALSE(later.engine->uiVariables->contains("leak"));
    }
}

// Script changes arrays and objects in place; such a change stays with its
// card, in its variables and in its functions' defaults alike.
TEST(TemplateLoader, ChangesMadeInPlaceStayWithTheCard)
{
    const std::string text = R"({"variables": {"list": [1], "box": {"k": 1}}, "functions": [
        {"n": "grow", "a": ["into"], "defaultArgs": [[0]], "b": [
            {"$": 5, "n": "j", "a": [{"$": 1, "n": "into"}, [9]]}, {"$": 11, "returnValue": {"$": 1, "n": "into"}}]}],
        "events": [{"n": "go", "a": [], "b": [{"$": 5, "n": "j", "a": [{"$": 3, "n": "list"}, [2]]},
            {"$": 5, "n": "w", "a": [{"$": 3, "n": "box"}, "k", 2]}]}]})";
    TemplateHarness changed(text);
    TemplateHarness other(text);
    changed.send("go");
    EXPECT_EQ(canonicalJson(changed.call("grow")), "[0,9]");
    EXPECT_EQ(canonicalJson(changed.call("grow")), "[0,9,9]") << "a default changed in place stays changed";
    EXPECT_EQ(canonicalJson(changed.ui("list")), "[1,2]");
    EXPECT_EQ(canonicalJson(changed.ui("box")), R"({"k":2})");
    TemplateHarness later(text);
    for (const TemplateHarness* card : {&other, &later}) {
        EXPECT_EQ(canonicalJson(card->ui("list")), "[1]");
        EXPECT_EQ(canonicalJson(card->ui("box")), R"({"k":1})");
    }
    EXPECT_EQ(canonicalJson(other.call("grow")), "[0,9]");
}

TEST(TemplateLoader, TheFirstDefinitionWinsEvenAcrossLoadsAndOverBuiltins)
{
    TemplateHarness card(R"({"variables": {"v": 1}, "functions": [
        {"n": "f", "a": [], "b": [{"$": 11, "returnValue": 1}]}, {"n": "f", "a": [], "b": []},
        {"n": "1", "a": ["x", "y"], "b": [{"$": 11, "returnValue": "mine"}]}], "events": [
        {"n": "e", "a": [], "b": [{"$": 18, "n": "g", "value": 1}]}, {"n": "e", "a": [], "b": []}]})");
    EXPECT_EQ(card.call("f").number(), 1);
    EXPECT_EQ(card.eval(R"({"$": 5, "n": "1", "a": [[0], [1, 2]]})").string(), "mine");
    card.send("e");
    EXPECT_EQ(card.global("g").number(), 1);

    // A second load replaces variables and globals but only adds new names.
    card.engine->loadTemplate(R"({"variables": {"v": 2}, "functions": [{"n": "f", "a": [], "b": []},
        {"n": "later", "a": [], "b": [{"$": 11, "returnValue": 3}]}], "events": [{"n": "e", "a": [], "b": []}]})");
    EXPECT_TRUE(card.global("g").isNull());
    EXPECT_EQ(card.ui("v").number(), 2);
    EXPECT_EQ(card.call("f").number() + card.call("later").number(), 4);
    card.send("e");
    EXPECT_EQ(card.global("g").number(), 1);
}

TEST(TemplateLoader, OnlyAOneElementListNamesTheEventPayload)
{
    TemplateHarness card(R"({"events": [{"n": "one", "a": ["p"], "b": []}, {"n": "two", "a": ["p", "q"], "b": []},
        {"n": "none", "b": []}, {"n": "number", "a": [5], "b": []}]})");
    for (const char* name : {"one", "two", "none", "number"}) {
        EXPECT_EQ(card.engine->eventTable().at(name)->parameterName, name == std::string("one") ? "p" : "") << name;
    }
}

// Statement codes are truncated, expression codes compared exactly.
TEST(ScriptFactory, FractionalCodeIsACallAsStatementAndAnObjectLiteralAsExpression)
{
    TemplateHarness card(R"({"functions": [{"n": "f", "a": [], "b": [{"$": 18, "n": "calls", "value": 1}]}]})");
    EXPECT_EQ(canonicalJson(card.eval(R"({"$": 5.7, "n": "f", "a": []})")), R"({"$":5.7,"a":[],"n":"f"})");
    EXPECT_TRUE(card.global("calls").isNull());
    card.run(R"([{"$": 5.7, "n": "f", "a": []}])");
    EXPECT_EQ(card.global("calls").number(), 1);
}

// Broken templates load what can be read, and nothing more is reported.
TEST(TemplateLoader, BrokenTemplatesLoadWhatCanBeRead)
{
    const char* templates[][2] = {
        {"", "Syntax error: '{' expected."},
        {"[", "Syntax error: '{' expected."},
        {R"({"functions": 5, "events": {}, "variables": null})", ""},
        {R"({"functions": [1, "x", {"n": 3}], "events": [null, {"b": 1}]})", ""},
        {R"({"functions": [{"n": "fn", "a": 1, "defaultArgs": 2, "b": [{"$": 9}]}]})", ""},
    };
    for (const auto& [text, message] : templates) {
        auto load = [&] {
            TemplateHarness card(text);
            card.send("");
            card.call("fn");
        };
        EXPECT_EQ(MeroTest::thrownMessage(load), *message ? message : "<nothing thrown>") << text;
        EXPECT_EQ(MeroTest::printedOutput(load), *message ? std::string(message) + "\n" : "") << text;
    }
}

// The cards of a template share its built functions and events, unless
// building them reports: then every card builds its own and reports alike,
// once, and in debug mode each throws.
TEST(TemplateLoader, EveryCardOfATemplateReportsItsScriptAlike)
{
    const std::string text = R"({"events": [{"n": "go", "a": [], "b": [{"$": 4, "n": "x", "value": )" +
                             MeroTest::nestedConditional(70) + "}]}]}";
    const std::string message = "script node nesting exceeds the limit of 64 levels";
    for (int card = 0; card < 2; ++card) {
        EXPECT_EQ(MeroTest::printedOutput([&] { TemplateHarness loaded(text); }), message + "\n") << card;
        EXPECT_EQ(MeroTest::thrownMessage([&] { TemplateHarness loaded(text); }), message) << card;
    }
}
