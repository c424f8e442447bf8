// The built-ins that reach outside the script: bridge calls, timeouts,
// video-time points and events, seen through the recording host services.
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "runtime/functions/BuiltinTestSupport.h"
#include "support/ReportedErrors.h"
#include "support/TemplateHarness.h"

namespace {

using namespace Mero;
using namespace MeroTest;
using Strings = std::vector<std::string>;

TEST(CallBridge, startsTheHostCallAndRunsTheCallbackWithTheReplyWhileSyncGivesTheReplyGivenBeforeReturning)
{
    TemplateHarness card;
    RecordingCallback callback;
    EXPECT_TRUE(card.call("k", {Value("getUser"), json("{\"id\":7}"), callback.value()}).isNull());
    card.call("k", {Value("m"), Value(), Value(5)});
    EXPECT_TRUE(callback.calls.empty());
    card.bridgeCalls[0].reply(json("{\"name\":\"ada\"}"));
    card.bridgeCalls[1].reply(Value(1));  // a non-callback is skipped: only the flush runs
    EXPECT_EQ(callback.calls, Strings{"[{\"name\":\"ada\"}]"});

    card.immediateBridgeReply = json("{\"ok\":true}");
    EXPECT_EQ(canonicalJson(card.call("l", {Value("check"), json("[1]")})), "{\"ok\":true}");
    EXPECT_EQ(canonicalJson(card.call("G", {Value("get"), json("{}"), json("[\"data\",\"x\"]")})), "{\"ok\":true}");
    Strings seen;
    for (const RecordedBridgeCall& call : card.bridgeCalls) {
        seen.push_back(call.name + " " + canonicalJson(call.params) + " " + canonicalJson(call.keyPath));
    }
    EXPECT_EQ(seen, (Strings{"getUser {\"id\":7} null", "m null null", "check [1] null", "get {} [\"data\",\"x\"]"}));
}

TEST(CallBridgeSync, aLateOrMissingReplyIsReportedAsNotSyncAndALateOneDropped)
{
    for (const char* args : {"[\"m\",{}]", "[\"m\",{},\"path\"]"}) {
        SCOPED_TRACE(args);
        TemplateHarness card;
        const char* key = argsOf(args).size() == 2 ? "l" : "G";
        EXPECT_EQ(thrownMessage([&] { card.call(key, argsOf(args)); }), "call bridge sync not sync");
        Value result = Value("untouched");
        EXPECT_EQ(printedOutput([&] { result = card.call(key, argsOf(args)); }), "call bridge sync not sync\n");
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
    TemplateHarness unhooked;
    unhooked.engine->services.callBridge = nullptr;
    EXPECT_EQ(thrownMessage([&] { unhooked.call("l", {Value("m"), Value()}); }), "call bridge sync not sync");
}

TEST(SetTimeout, handsTheDelayAndAJobThatRunsTheCallbackWithNoArguments)
{
    TemplateHarness card;
    RecordingCallback callback;
    EXPECT_TRUE(card.call("p", {Value(250.5), callback.value()}).isNull());
    ASSERT_EQ(card.timeouts.size(), 1u);
    EXPECT_EQ(card.timeouts[0].delay, 250.5);
    EXPECT_TRUE(callback.calls.empty());
    int flushes = 0;
    card.engine->setFlushHook([&flushes] { ++flushes; });
    card.timeouts[0].job();
    EXPECT_EQ(callback.calls, Strings{"[]"});

    card.call("p", {Value("soon"), Value(3)});  // a non-number delay reads 0; a non-callback only flushes
    EXPECT_EQ(card.timeouts[1].delay, 0);
    card.timeouts[1].job();
    EXPECT_EQ(flushes, 2);
    card.engine->services.setTimeout = nullptr;
    EXPECT_THROW(card.call("p", {Value(10), Value()}), std::bad_function_call);
}

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
    EXPECT_EQ(std::pair(started.first, started.second), std::pair(3.0, 4.0));
    ASSERT_EQ(started.entries.size(), 2u);
    EXPECT_EQ(std::pair(started.entries[0].first, started.entries[1].first), std::pair(5.0, 1.5));
    started.entries[1].second();
    EXPECT_TRUE(first.calls.empty());
    EXPECT_EQ(second.calls, Strings{"[]"});

    card.call("y", {Value(3), Value(4)});  // the list was emptied: nothing to pass
    EXPECT_EQ(card.videoTimers.size(), 1u);
    auto hook = std::exchange(card.engine->services.startVideoTimer, nullptr);
    card.call("x", {Value(1), Value()});
    card.call("y", {Value(0), Value(0)});  // without a host start, what was pending is dropped
    card.engine->services.startVideoTimer = hook;
    card.call("y", {Value(0), Value(0)});
    EXPECT_EQ(card.videoTimers.size(), 1u);
}

constexpr const char* kTemplateWithTap = R"({"events": [
    {"n": "tap", "a": ["e"], "b": [{"$": 4, "n": "tapped", "value": {"$": 1, "n": "e"}}]}]})";

TEST(OnEvent, registersACallbackThatSendEventReachesButNeverReplacesAHandlerUntilItIsRemoved)
{
    TemplateHarness card(kTemplateWithTap);
    RecordingCallback callback;
    EXPECT_EQ(printedOutput([&] { card.call("A", {Value("ping"), Value(1)}); }), "");  // a non-callback: nothing
    card.call("A", {Value("tap"), callback.value()});
    card.send("tap", Value(1));
    EXPECT_EQ(canonicalJson(card.ui("tapped")), "1");
    EXPECT_TRUE(callback.calls.empty());

    card.call("B", {Value("other")});  // an absent name changes nothing
    card.call("B", {Value("tap")});
    EXPECT_TRUE(card.engine->eventTable().empty());
    card.call("A", {Value("tap"), callback.value()});
    RecordingCallback later;
    card.call("A", {Value("tap"), later.value()});  // an earlier registration wins too
    EXPECT_TRUE(card.call("z", {Value("tap"), json("[2]")}).isNull());  // SendEvent, with its payload
    card.call("z", {Value("nobody"), Value(3)});                        // an unhandled name does nothing
    EXPECT_EQ(canonicalJson(card.ui("tapped")), "1");
    EXPECT_EQ(callback.calls, Strings{"[[2]]"});
    EXPECT_TRUE(later.calls.empty());
}

TEST(HostFunctions, aGoneEngineRunsNoReplyOrJobAndAsksNothingOfTheHost)
{
    TemplateHarness card;
    EngineRef weak = card.weak();
    RecordingCallback callback;
    card.call("k", {Value("m"), Value(), callback.value()});
    card.call("p", {Value(10), callback.value()});
    card.call("x", {Value("not a number"), callback.value()});  // a non-number time reads 0
    card.call("y", {Value(0), Value(0)});
    ASSERT_EQ(card.videoTimers.size(), 1u);
    EXPECT_EQ(card.videoTimers[0].entries[0].first, 0);
    BridgeReply reply = card.bridgeCalls[0].reply;
    PendingJob timeout = card.timeouts[0].job;
    PendingJob videoPoint = card.videoTimers[0].entries[0].second;
    card.release();
    reply(Value(1));
    timeout();
    videoPoint();
    EXPECT_TRUE(callback.calls.empty());

    // Built-ins called for a gone engine ask nothing of the host and report nothing.
    const std::pair<const char*, ArgList> calls[] = {
        {"CallBridge", {Value("m"), Value(), callback.value()}},
        {"CallBridgeSync", {Value("m"), Value()}},
        {"CallBridgeSyncWithKeyPath", {Value("m"), Value(), Value()}},
        {"SetTimeout", {Value(1), callback.value()}},
        {"VideoTimeOnce", {Value(1), callback.value()}},
        {"VideoTimeStart", {Value(1), Value(2)}},
        {"SendEvent", {Value("tap"), Value()}},
        {"OnEvent", {Value("tap"), callback.value()}},
        {"RemoveEvent", {Value("tap")}},
    };
    for (const auto& [name, args] : calls) {
        Value result;
        EXPECT_EQ(printedOutput([&] { result = callBuiltin(name, args, weak); }), "");
        EXPECT_TRUE(result.isNull());
    }
    EXPECT_EQ(card.bridgeCalls.size() + card.timeouts.size() + card.videoTimers.size(), 3u);
}

}  // namespace
