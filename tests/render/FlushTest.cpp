// The engine's flush: the owed layout first, then each pending node's
// children, properties and animations, in the order the nodes first queued.
#include <gtest/gtest.h>

#include "render/RenderCard.h"

using MeroTest::Calls;
using MeroTest::RenderCard;

namespace {

constexpr const char* twoNodes = R"({"variables": {"v": 1, "showA": true}, "elements": {
    "$": 3, "nodeId": "root", "children": [
    {"$": 0, "nodeId": "a", "visible": {"$": 3, "n": "showA"}, "opacity": {"$": 3, "n": "v"},
     "scaleX": {"$": 3, "n": "v"}, "transition": {"transform": {"timing": 1, "duration": 10}}},
    {"$": 0, "nodeId": "b", "opacity": {"$": 3, "n": "v"}}]}})";

}  // namespace

TEST(EngineFlush, SendsChildrenThenPropertiesThenAnimationsInEnlistingOrder)
{
    RenderCard card(twoNodes);
    card.start();
    card.set("v", "0.5");
    card.set("showA", "false");
    card.set("showA", "true");
    // Hidden and shown again: removed, then made anew at its place.
    EXPECT_EQ(card.flush(), (Calls{"a set 8=0.5", "a animate 9=0.5@1/10/0", "b set 8=0.5", "root children 0:x 0:a"}));
    EXPECT_TRUE(card.tree.pendingNodes().empty());
    EXPECT_FALSE(card.find("a")->queued());
    EXPECT_EQ(card.flush(), Calls{});
}

TEST(EngineFlush, ANodeWithoutAComponentSendsAndKeepsNothing)
{
    RenderCard card(twoNodes);
    card.build();
    card.set("v", "0.5");
    ASSERT_EQ(card.tree.pendingNodes().size(), 2U);
    EXPECT_EQ(card.flush(), Calls{});
    EXPECT_TRUE(card.find("a")->propertyUpdates().empty());
    EXPECT_TRUE(card.find("a")->animatedUpdates().empty());

    card.attachComponents();
    card.set("v", "0.25");
    EXPECT_EQ(card.flush(), (Calls{"a set 8=0.25", "a animate 9=0.25@1/10/0", "b set 8=0.25"}));
}

TEST(EngineFlush, AnOwedLayoutRunsFirstAndIsPushedOnlyOnceTheRootIsShown)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "nodeId": "a", "width": {"sizeType": 1, "value": 10}}]}})");
    card.build();
    card.tree.requestLayout();
    card.engine->flush();
    EXPECT_FALSE(card.tree.layoutRequested());
    EXPECT_EQ(YGNodeLayoutGetWidth(card.find("a")->yogaNode), 10.0F);
    EXPECT_EQ(card.find("a")->layout().width, 0.0);  // root not shown: nothing read

    card.layout();
    card.attachComponents();
    card.engine->containerWidth = 500.0F;
    card.tree.requestLayout();
    EXPECT_EQ(card.flush(), (Calls{"root set 0=500"}));

    card.tree.build(Mero::Value());  // without a root an owed layout is just cleared
    card.tree.requestLayout();
    card.engine->flush();
    EXPECT_FALSE(card.tree.layoutRequested());
}

TEST(EngineFlush, AGoneEngineLeavesBindingsQuiet)
{
    RenderCard card(twoNodes);
    Mero::ViewRenderNode& root = card.start();
    card.release();
    EXPECT_FALSE(root.markPending());
    root.applyLayout();
    EXPECT_TRUE(root.propertyUpdates().empty());
}

TEST(EngineFlush, ACardBuiltAnewWithoutAFlushKeepsThePendingListToItsLiveNodes)
{
    // Every layout enlists the nodes it lays out; the nodes of the tree
    // before leave their places empty, and those are taken back.
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "nodeId": "a", "width": {"sizeType": 1, "value": 10}, "height": {"sizeType": 1, "value": 10}},
        {"$": 0, "nodeId": "b", "width": {"sizeType": 1, "value": 10}, "height": {"sizeType": 1, "value": 10}}]}})");
    for (int i = 0; i < 200; ++i) {
        card.build();
        card.layout();
    }
    ASSERT_EQ(card.tree.pendingNodes(),
              (std::vector<Mero::ViewRenderNode*>{&card.root(), card.find("a"), card.find("b")}));
    EXPECT_LE(card.tree.pendingPlaces(), 2U * 64U + 2U);
    // The node left listed still takes its place in the flush.
    card.attachComponents();
    card.find("b")->queuePropertyUpdate(8, 0.5);
    EXPECT_EQ(card.flush(), Calls{"b set 8=0.5"});
    EXPECT_EQ(card.tree.pendingPlaces(), 0U);
}

TEST(EngineFlush, AViewMadeAnewDropsWhatItsNodeQueuedForTheOldOne)
{
    // Shown again, "c" gets new views made from current values; what "n"
    // queued after that is already in its new view and is not sent again.
    RenderCard card(R"({"variables": {"v": 1, "show": true}, "elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 3, "nodeId": "c", "visible": {"$": 3, "n": "show"}, "children": [
            {"$": 0, "nodeId": "n", "opacity": {"$": 3, "n": "v"}}]}]}})");
    card.start();
    card.set("show", "false");
    card.set("show", "true");
    card.set("v", "0.5");
    EXPECT_EQ(card.flush(), (Calls{"root children 0:x 0:c"}));
    EXPECT_EQ(card.find("n")->style().opacity, 0.5F);
}
