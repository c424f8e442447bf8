// The built-ins that reach outside the script: bridge calls, timeouts,
// video-time points and events, seen through the recording host hooks.
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "runtime/functions/BridgeFunctions.h"
#include "runtime/functions/BuiltinTestSupport.h"
#include "runtime/functions/EventFunctions.h"
#include "runtime/functions/TimerFunctions.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

namespace {

using namespace Mero;
using namespace MeroTest;

// ---- bridge ------------------------------------------------------------

TEST(CallBridge, startsTheHostCallAndRunsTheCallbackWithTheReply)
{
    TemplateHarness card;
    RecordingCallback callback;
    Value result = card.call("k", {Value("getUser"), json("{\"id\":7}"), callback.value()});
    EXPECT_TRUE(result.isNull());
    ASSERT_EQ(card.bridgeCalls.size(), 1u);
    EXPECT_EQ(card.bridgeCalls[0].name, "getUser");
    EXPECT_EQ(canonicalJson(card.bridgeCalls[0].params), "{\"id\":7}");
    EXPECT_TRUE(callback.calls.empty());

    card.bridgeCalls[0].reply(json("{\"name\":\"ada\"}"));
    EXPECT_EQ(callback.calls, (std::vector<std::string>{"[{\"name\":\"ada\"}]"}));

    card.call("k", {Value("m"), Value(), Value(5)});
    card.bridgeCalls[1].reply(Value(1));  // a non-callback is skipped: only the flush runs
}

TEST(CallBridgeSync, givesTheReplyTheHostGaveBeforeReturning)
{
    TemplateHarness card;
    card.immediateBridgeReply = json("{\"ok\":true}");
    EXPECT_EQ(canonicalJson(card.call("l", {Value("check"), json("[1]")})), "{\"ok\":true}");
    ASSERT_EQ(card.bridgeCalls.size(), 1u);
    EXPECT_EQ(card.bridgeCalls[0].name, "check");
    EXPECT_EQ(canonicalJson(card.bridgeCalls[0].params), "[1]");
    EXPECT_TRUE(card.bridgeCalls[0].keyPath.isNull());
}

TEST(CallBridgeSync, withKeyPathPassesTheKeyPathThroughUnchanged)
{
    TemplateHarness card;
    card.immediateBridgeReply = Value(42);
    EXPECT_EQ(canonicalJson(card.call("G", {Value("get"), json("{\"a\":1}"), json("[\"data\",\"x\"]")})), "42");
    ASSERT_EQ(card.bridgeCalls.size(), 1u);
    EXPECT_EQ(card.bridgeCalls[0].name, "get");
    EXPECT_EQ(canonicalJson(card.bridgeCalls[0].keyPath), "[\"data\",\"x\"]");
}

TEST(CallBridgeSync, aLateReplyIsReportedAsNotSyncAndThenDropped)
{
    for (const char* key : {"l", "G"}) {
        SCOPED_TRACE(key);
        TemplateHarness card;
        ArgList args = argsOf("[\"m\",{},\"path\"]");
        if (std::string(key) == "l") {
            args.pop_back();
        }
        EXPECT_EQ(thrownMessage([&] { card.call(key, ArgList(args)); }), "call bridge sync not sync");
        Value result = Value("untouched");
        EXPECT_EQ(printedOutput([&] { result = card.call(key, ArgList(args)); }), "call bridge sync not sync\n");
        EXPECT_TRUE(result.isNull());

        // The host answers on another thread after the call returned: the
        // reply has nowhere to go and is dropped.
        ASSERT_EQ(card.bridgeCalls.size(), 2u);
        std::thread host([&] {
            for (RecordedBridgeCall& call : card.bridgeCalls) {
                call.reply(Value("late"));
            }
        });
        host.join();
    }
}

TEST(CallBridgeSync, noBridgeHookMeansNoReply)
{
    TemplateHarness card;
    card.engine->hooks.callBridge = nullptr;
    EXPECT_EQ(thrownMessage([&] { card.call("l", {Value("m"), Value()}); }), "call bridge sync not sync");
}

// ---- timeouts ----------------------------------------------------------

TEST(SetTimeout, handsTheDelayAndAJobThatRunsTheCallbackWithNoArguments)
{
    TemplateHarness card;
    RecordingCallback callback;
    EXPECT_TRUE(card.call("p", {Value(250.5), callback.value()}).isNull());
    ASSERT_EQ(card.timeouts.size(), 1u);
    EXPECT_EQ(card.timeouts[0].delay, 250.5);
    EXPECT_TRUE(callback.calls.empty());
    card.timeouts[0].job();
    EXPECT_EQ(callback.calls, (std::vector<std::string>{"[]"}));

    card.call("p", {Value("soon"), Value(3)});  // a non-number delay reads 0; a non-callback only flushes
    EXPECT_EQ(card.timeouts[1].delay, 0);
    card.timeouts[1].job();
}

TEST(SetTimeout, withoutATimeoutHookTheCallFails)
{
    TemplateHarness card;
    card.engine->hooks.setTimeout = nullptr;
    EXPECT_THROW(card.call("p", {Value(10), Value()}), std::bad_function_call);
}

// ---- video time --------------------------------------------------------

TEST(VideoTime, pointsAreCollectedUntilStartHandsThemOverMoved)
{
    TemplateHarness card;
    RecordingCallback first;
    RecordingCallback second;
    card.call("x", {Value(5), first.value()});
    card.call("x", {Value(1.5), second.value()});
    EXPECT_TRUE(card.videoTimers.empty());

    card.call("y", {Value(3), Value(4)});
    ASSERT_EQ(card.videoTimers.size(), 1u);
    const RecordedVideoTimer& started = card.videoTimers[0];
    EXPECT_EQ(started.first, 3);
    EXPECT_EQ(started.second, 4);
    ASSERT_EQ(started.entries.size(), 2u);
    EXPECT_EQ(started.entries[0].first, 5);
    EXPECT_EQ(started.entries[1].first, 1.5);
    EXPECT_TRUE(card.engine->pendingVideoTimers == nullptr || card.engine->pendingVideoTimers->empty());

    started.entries[1].second();
    EXPECT_TRUE(first.calls.empty());
    EXPECT_EQ(second.calls, (std::vector<std::string>{"[]"}));

    // The list was emptied: a second start right after passes nothing.
    card.call("y", {Value(3), Value(4)});
    EXPECT_EQ(card.videoTimers.size(), 1u);
}

TEST(VideoTime, withoutAHostStartDropsWhatWasPending)
{
    TemplateHarness card;
    auto hook = card.engine->hooks.startVideoTimer;
    card.engine->hooks.startVideoTimer = nullptr;
    card.call("x", {Value(1), Value()});
    card.call("y", {Value(0), Value(0)});
    card.engine->hooks.startVideoTimer = hook;
    card.call("y", {Value(0), Value(0)});
    EXPECT_TRUE(card.videoTimers.empty());
}

// ---- events ------------------------------------------------------------

constexpr const char* kTemplateWithTap = R"({"events": [
    {"n": "tap", "a": ["e"], "b": [{"$": 4, "n": "tapped", "value": {"$": 1, "n": "e"}}]}
]})";

TEST(SendEvent, dispatchesTheNamedEventWithThePayload)
{
    TemplateHarness card(kTemplateWithTap);
    EXPECT_TRUE(card.call("z", {Value("tap"), json("{\"x\":1}")}).isNull());
    EXPECT_EQ(canonicalJson(card.ui("tapped")), "{\"x\":1}");
    card.call("z", {Value("nobody"), Value(1)});  // an unhandled name does nothing
    card.call("z", {Value(5), Value(1)});         // a non-string name reads as ""
    EXPECT_EQ(canonicalJson(card.ui("tapped")), "{\"x\":1}");
}

TEST(OnEvent, registersACallbackThatReceivesThePayload)
{
    TemplateHarness card;
    RecordingCallback callback;
    EXPECT_TRUE(card.call("A", {Value("ping"), callback.value()}).isNull());
    ASSERT_TRUE(card.engine->eventTable.contains("ping"));
    EXPECT_TRUE(card.engine->eventTable.at("ping")->isCallback);
    card.call("z", {Value("ping"), json("[1,2]")});
    EXPECT_EQ(callback.calls, (std::vector<std::string>{"[[1,2]]"}));
}

TEST(OnEvent, neverReplacesAHandlerUntilItIsRemoved)
{
    TemplateHarness card(kTemplateWithTap);
    RecordingCallback callback;
    card.call("A", {Value("tap"), callback.value()});
    EXPECT_FALSE(card.engine->eventTable.at("tap")->isCallback);
    card.send("tap", Value(1));
    EXPECT_EQ(canonicalJson(card.ui("tapped")), "1");
    EXPECT_TRUE(callback.calls.empty());

    card.call("B", {Value("tap")});
    EXPECT_FALSE(card.engine->eventTable.contains("tap"));
    card.call("A", {Value("tap"), callback.value()});
    RecordingCallback later;
    card.call("A", {Value("tap"), later.value()});  // an earlier registration wins too
    card.send("tap", Value(2));
    EXPECT_EQ(canonicalJson(card.ui("tapped")), "1");
    EXPECT_EQ(callback.calls, (std::vector<std::string>{"[2]"}));
    EXPECT_TRUE(later.calls.empty());
}

TEST(OnEvent, aNonCallbackRegistersNothingQuietly)
{
    TemplateHarness card;
    EXPECT_EQ(printedOutput([&] { card.call("A", {Value("ping"), Value(1)}); }), "");
    EXPECT_FALSE(card.engine->eventTable.contains("ping"));
}

TEST(RemoveEvent, anAbsentNameChangesNothing)
{
    TemplateHarness card(kTemplateWithTap);
    card.call("B", {Value("other")});
    EXPECT_EQ(card.engine->eventTable.size(), 1u);
}

// ---- a gone engine ----------------------------------------------------

TEST(HostFunctions, repliesAndJobsWhoseEngineIsGoneRunNothing)
{
    TemplateHarness card;
    RecordingCallback callback;
    card.call("k", {Value("m"), Value(), callback.value()});
    card.call("p", {Value(10), callback.value()});
    card.call("x", {Value("not a number"), callback.value()});  // a non-number time reads 0
    card.call("y", {Value(0), Value(0)});
    ASSERT_EQ(card.videoTimers.size(), 1u);
    EXPECT_EQ(card.videoTimers[0].entries[0].first, 0);
    BridgeReply reply = card.bridgeCalls[0].reply;
    HostJob timeout = card.timeouts[0].job;
    HostJob videoPoint = card.videoTimers[0].entries[0].second;
    card.release();
    reply(Value(1));
    timeout();
    videoPoint();
    EXPECT_TRUE(callback.calls.empty());
}

TEST(HostFunctions, aGoneEngineAsksNothingOfTheHostAndReportsNothing)
{
    TemplateHarness card;
    EngineRef weak = card.weak();
    const auto* bridgeCalls = &card.bridgeCalls;
    const auto* timeouts = &card.timeouts;
    card.release();
    Value callback = callbackValue([](ArgList&&) { return Value(1); });
    std::string printed = printedOutput([&] {
        EXPECT_TRUE(callBuiltin<CallBridgeFunction>(ArgList{Value("m"), Value(), callback}, weak).isNull());
        EXPECT_TRUE(callBuiltin<CallBridgeSyncFunction>(ArgList{Value("m"), Value()}, weak).isNull());
        EXPECT_TRUE(
            callBuiltin<CallBridgeSyncWithKeyPathFunction>(ArgList{Value("m"), Value(), Value()}, weak).isNull());
        EXPECT_TRUE(callBuiltin<SetTimeoutFunction>(ArgList{Value(1), callback}, weak).isNull());
        EXPECT_TRUE(callBuiltin<VideoTimeOnceFunction>(ArgList{Value(1), callback}, weak).isNull());
        EXPECT_TRUE(callBuiltin<VideoTimeStartFunction>(ArgList{Value(1), Value(2)}, weak).isNull());
        EXPECT_TRUE(callBuiltin<SendEventFunction>(ArgList{Value("tap"), Value()}, weak).isNull());
        EXPECT_TRUE(callBuiltin<OnEventFunction>(ArgList{Value("tap"), callback}, weak).isNull());
        EXPECT_TRUE(callBuiltin<RemoveEventFunction>(ArgList{Value("tap")}, weak).isNull());
    });
    EXPECT_EQ(printed, "");
    EXPECT_TRUE(bridgeCalls->empty());
    EXPECT_TRUE(timeouts->empty());
}

}  // namespace
