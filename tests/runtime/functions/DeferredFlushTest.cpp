// A change made by a deferred script callback (timeout, video-time point,
// bridge reply) reaches the host through the flush that follows it, with no
// other call from the host.
#include <gtest/gtest.h>

#include "render/RenderCard.h"
#include "support/ReportedErrors.h"

namespace {

using namespace Mero;
using namespace MeroTest;

constexpr const char* kCard = R"({"variables": {"v": 1},
    "elements": {"$": 3, "nodeId": "root", "children": [{"$": 0, "nodeId": "a", "opacity": {"$": 3, "n": "v"}}]},
    "events": [{"n": "go", "a": [], "b": [
        {"$": 5, "n": "p", "a": [10, {"$": 14, "a": [], "b": [{"$": 4, "n": "v", "value": 0.5}]}]},
        {"$": 5, "n": "k", "a": ["m", null,
            {"$": 14, "a": ["r"], "b": [{"$": 4, "n": "v", "value": {"$": 1, "n": "r"}}]}]},
        {"$": 5, "n": "x", "a": [1, {"$": 14, "a": [], "b": [{"$": 4, "n": "v", "value": 0.75}]}]},
        {"$": 5, "n": "y", "a": [0, 0]},
        {"$": 5, "n": "p", "a": [20, "not a callback"]}
    ]}]})";

TEST(DeferredFlush, eachDeferredCallbackIsFollowedByAFlush)
{
    DebugModeScope quiet(false);
    RenderCard card(kCard);
    card.start();
    card.send("go");
    ASSERT_EQ(card.timeouts.size(), 2u);
    ASSERT_EQ(card.bridgeCalls.size(), 1u);
    ASSERT_EQ(card.videoTimers.size(), 1u);
    EXPECT_EQ(card.calls, Calls{});

    card.timeouts[0].job();
    EXPECT_EQ(card.calls, Calls{"a set 8=0.5"});
    card.bridgeCalls[0].reply(Value(0.25));
    EXPECT_EQ(card.calls, (Calls{"a set 8=0.5", "a set 8=0.25"}));
    card.videoTimers[0].entries[0].second();
    EXPECT_EQ(card.calls, (Calls{"a set 8=0.5", "a set 8=0.25", "a set 8=0.75"}));

    // A job without a callback only flushes what is pending.
    card.set("v", "0.125");
    card.timeouts[1].job();
    EXPECT_EQ(card.calls.back(), "a set 8=0.125");
}

}  // namespace
