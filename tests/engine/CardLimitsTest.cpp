// Cards that try to take their host down: each crosses one limit. With
// debugMode set the crossing escapes with its message; with it clear the
// card reports it once, carries on, and its next event works. All of them
// run on a 512 KiB stack, half what a JVM thread has, so that the deepest
// nesting the limits allow is shown to fit (the sanitizer build too).
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "engine/MeroInstance.h"
#include "render/RenderTree.h"
#include "runtime/RuntimeEngine.h"
#include "support/HostileCards.h"
#include "support/ReportedErrors.h"
#include "value/ErrorReporting.h"

namespace {

using namespace MeroTest;

struct HostileCard {
    const char* name;
    std::string templateText;
    std::string message;
    std::string data = "{}";
};

std::string manyItems(int count)
{
    std::string items = R"({"items":[)";
    for (int i = 0; i < count; ++i) {
        items += i == 0 ? R"("x")" : R"(,"x")";
    }
    return items + "]}";
}

// A function whose body returns a call of itself from inside `depth`
// nested conditionals: the deepest stack the limits allow.
std::string deepRecursion(int depth)
{
    const std::string body =
        R"([{"$":11,"returnValue":)" + nestedConditional(depth, R"({"$":5,"n":"f","a":[]})") + "}]";
    return hostileTemplate(R"([{"$":5,"n":"f","a":[]}])", R"(,"functions":[{"n":"f","a":[],"b":)" + body + "}]");
}

std::vector<HostileCard> hostileCards()
{
    const std::string forever = R"([{"$":8,"c":true,"b":[]}])";
    const std::string doubleString =
        R"([{"$":2,"n":"s","value":"ab"},{"$":7,"startIndex":0,"endIndex":48,"index":"i","b":[
            {"$":2,"n":"s","value":{"$":5,"n":"1","a":[[0],[{"$":1,"n":"s"},{"$":1,"n":"s"}]]}}]}])";
    const std::string doubleArray =
        R"([{"$":2,"n":"a","value":[1]},{"$":7,"startIndex":0,"endIndex":48,"index":"i","b":[
            {"$":5,"n":"j","a":[{"$":1,"n":"a"},{"$":1,"n":"a"}]}]}])";
    const std::string selfCallingCallback =
        R"([{"$":2,"n":"again","value":{"$":14,"a":[],"b":[{"$":5,"n":"again","a":[]}]}},
            {"$":5,"n":"again","a":[]}])";
    // Each round shares the array twice: 2^48 leaves behind 49 small arrays.
    const std::string sharedArrayPrinted =
        R"([{"$":2,"n":"a","value":[1]},{"$":7,"startIndex":0,"endIndex":48,"index":"i","b":[
            {"$":2,"n":"a","value":[{"$":1,"n":"a"},{"$":1,"n":"a"}]}]},
            {"$":4,"n":"pinged","value":{"$":5,"n":"m","a":[{"$":1,"n":"a"}]}}])";
    const std::string timersInALoop = R"([{"$":7,"startIndex":0,"endIndex":2000,"index":"i","b":[
            {"$":5,"n":"p","a":[1000,{"$":14,"a":[],"b":[]}]}]}])";
    return {
        {"elements nested 1,000 deep", hostileTemplate("[]", "", nestedElements(1000)),
         "element nesting exceeds the limit of 64 levels"},
        {"elements nested 100,000 deep", hostileTemplate("[]", "", nestedElements(100000)),
         "element nesting exceeds the limit of 64 levels"},
        {"an expression nested 100,000 deep",
         hostileTemplate(R"([{"$":4,"n":"x","value":)" + nestedConditional(100000) + "}]"),
         "script node nesting exceeds the limit of 64 levels"},
        {"a function that calls itself",
         hostileTemplate(R"([{"$":5,"n":"f","a":[]}])", R"(,"functions":[{"n":"f","a":[],"b":[{"$":5,"n":"f","a":[]}]}])"),
         "call depth exceeds the limit of 64"},
        {"a callback in a local that calls itself", hostileTemplate(selfCallingCallback),
         "call depth exceeds the limit of 64"},
        {"calls nested in deep expressions", deepRecursion(60), "script nesting exceeds the limit of 512 levels"},
        {"a while loop whose condition is true", hostileTemplate(forever),
         "script step count exceeds the limit of 1000000 for one entry"},
        {"a string doubled in 48 rounds", hostileTemplate(doubleString),
         "string length exceeds the limit of 1048576 bytes"},
        {"an array doubled in 48 rounds", hostileTemplate(doubleArray),
         "collection size exceeds the limit of 100000 elements"},
        {"a list node over 100,000 items",
         hostileTemplate("[]", "", R"({"$":2,"nodeId":"list","list":{"$":19,"n":"items"},"index":"i",
                                      "children":[{"$":0,"nodeId":"item"}]})"),
         "render node count exceeds the limit of 5000", manyItems(100001)},
        {"an array shared 2^48 times written as text", hostileTemplate(sharedArrayPrinted),
         "string length exceeds the limit of 1048576 bytes"},
        {"timeouts set in a loop", hostileTemplate(timersInALoop), "pending job count exceeds the limit of 1000"},
    };
}

// The set-up natives' work and then the event "go", as a host drives a card.
void drive(Mero::MeroInstance& instance, const HostileCard& card)
{
    Mero::RuntimeServices& services = instance.runtime().services;
    services.setTimeout = [&instance](double, Mero::PendingJob job) { instance.addTimeoutJob(std::move(job)); };
    instance.loadTemplate(card.templateText);
    instance.setData(card.data, "{}");
    instance.initContainerSize(750.0F, 1334.0F, 1, 1);
    instance.initNode();
    instance.triggerInitEvent();
    instance.applyLayout();
    instance.sendEvent("go", "{}");
}

TEST(CardLimits, EachCrossingEscapesInDebugModeOrIsReportedOnceAndTheCardGoesOn)
{
    runOnStack(512 * 1024, [] {
        for (const HostileCard& card : hostileCards()) {
            SCOPED_TRACE(card.name);
            Mero::MeroInstance debugging;
            EXPECT_EQ(thrownMessage([&] { drive(debugging, card); }), card.message);

            Mero::MeroInstance instance;
            const std::string printed = printedOutput([&] { drive(instance, card); });
            EXPECT_EQ(printed.find(card.message), printed.rfind(card.message)) << printed.substr(0, 400);
            EXPECT_NE(printed.find(card.message + "\n"), std::string::npos) << printed.substr(0, 400);
            printedOutput([&] { instance.sendEvent("ping", "{}"); });
            EXPECT_TRUE(instance.runtime().uiVariables->at("pinged").boolean()) << "the next event runs";
        }
    });
}

TEST(CardLimits, WhatFitsIsKept)
{
    Mero::debugMode = false;
    Mero::MeroInstance nested;
    printedOutput([&] { drive(nested, {"", hostileTemplate("[]", "", nestedElements(100)), ""}); });
    Mero::ViewRenderNode* deepest = nested.renderTree().find("n63");
    ASSERT_NE(deepest, nullptr) << "elements down to depth 64 are built";
    EXPECT_EQ(nested.renderTree().find("n64"), nullptr);

    Mero::MeroInstance list;
    printedOutput([&] {
        drive(list, {"", hostileTemplate("[]", "", R"({"$":2,"nodeId":"list","list":{"$":19,"n":"items"},
                                          "index":"i","children":[{"$":0,"nodeId":"item"}]})"),
                     "", manyItems(6000)});
    });
    EXPECT_EQ(list.renderTree().nodeCount(), Mero::Limits::kMaxRenderNodes);
    EXPECT_NE(list.renderTree().find("item#4998"), nullptr);
    Mero::debugMode = true;
}

TEST(CardLimits, ACrossingWhileANodeBindsLeavesNothingOfIt)
{
    // The root's width calls a function that calls itself: in debug mode the
    // crossing escapes from the middle of the root's constructor.
    const std::string card = hostileTemplate(
        "[]", R"(,"functions":[{"n":"f","a":[],"b":[{"$":11,"returnValue":{"$":5,"n":"f","a":[]}}]}])",
        R"({"$":3,"nodeId":"root","width":{"sizeType":1,"value":{"$":5,"n":"f","a":[]}}})");
    Mero::MeroInstance instance;
    EXPECT_EQ(thrownMessage([&] { drive(instance, {"", card, ""}); }), "call depth exceeds the limit of 64");
    EXPECT_EQ(instance.renderTree().nodeCount(), 0U);
    EXPECT_EQ(instance.renderTree().find("root"), nullptr);
}

TEST(CardLimits, EachEntryHasItsOwnBudget)
{
    // 600,000 steps each: two entries pass where one with both would not.
    const std::string halfBudget = hostileTemplate(
        R"([{"$":7,"startIndex":0,"endIndex":200000,"index":"i","b":[{"$":4,"n":"pinged","value":true}]}])");
    Mero::MeroInstance instance;
    DebugModeScope quiet(false);  // no trace lines, and nothing may be reported
    EXPECT_EQ(printedOutput([&] {
                  drive(instance, {"", halfBudget, ""});
                  instance.sendEvent("go", "{}");
              }),
              "");
}

}  // namespace
