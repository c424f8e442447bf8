// The node base: identity, transitions, visibility, queueing and lifetime.
#include <gtest/gtest.h>

#include "render/FlexRenderNode.h"
#include "render/RenderCard.h"

using Mero::ViewRenderNode;
using MeroTest::Calls;
using MeroTest::RenderCard;

namespace {

// A row of three views a, b, c, each 100 wide; b's visibility follows "showB".
constexpr const char* threeChildren = R"({
    "variables": {"showB": true, "showRoot": true},
    "elements": {"$": 3, "nodeId": "root", "visible": {"$": 3, "n": "showRoot"}, "children": [
        {"$": 0, "nodeId": "a", "width": {"sizeType": 1, "value": 100}},
        {"$": 0, "nodeId": "b", "width": {"sizeType": 1, "value": 100}, "visible": {"$": 3, "n": "showB"}},
        {"$": 0, "nodeId": "c", "width": {"sizeType": 1, "value": 100}}
    ]}
})";

}  // namespace

TEST(RenderNodeIdentity, ScopeNumbersBecomeHashSuffixes)
{
    RenderCard card("{}");
    Mero::LocalScope scope = Mero::makeLocalScope();
    (*scope)["i"] = 3.0;
    (*scope)["name"] = "skip";
    ViewRenderNode single(MeroTest::json(R"({"$": 0, "nodeId": "card"})"), nullptr, card.engine, scope);
    EXPECT_EQ(single.nodeId, "card#3");

    // Equal numbers, so the map's order does not matter; truncated toward 0.
    (*scope)["i"] = 7.9;
    (*scope)["j"] = 7.2;
    ViewRenderNode unnamed(MeroTest::json(R"({"$": 0})"), nullptr, card.engine, scope);
    EXPECT_EQ(unnamed.nodeId, "#7#7");

    ViewRenderNode unscoped(MeroTest::json(R"({"$": 0, "nodeId": "card"})"), nullptr, card.engine, nullptr);
    EXPECT_EQ(unscoped.nodeId, "card");
}

TEST(RenderNodeTransitions, EntriesAreReadAndAllIsKeptApart)
{
    RenderCard card("{}");
    ViewRenderNode node(MeroTest::json(R"({"$": 0, "transition": {
                            "opacity": {"timing": 2.7, "duration": 300, "delay": 10},
                            "all": {"timing": 1, "duration": 150}}})"),
                        nullptr, card.engine, nullptr);
    ASSERT_EQ(node.transitions.size(), 1U);
    const Mero::Transition& opacity = node.transitions.at("opacity");
    EXPECT_EQ(opacity.timing, 2U);
    EXPECT_EQ(opacity.duration, 300.0);
    EXPECT_EQ(opacity.delay, 10.0);
    ASSERT_TRUE(node.allTransition.has_value());
    EXPECT_EQ(node.allTransition->timing, 1U);
    EXPECT_EQ(node.allTransition->duration, 150.0);
    EXPECT_EQ(node.allTransition->delay, 0.0);
    EXPECT_EQ(node.transitionFor("opacity"), &opacity);
    EXPECT_EQ(node.transitionFor("scaleX"), &*node.allTransition);
}

TEST(RenderNodeTransitions, NonObjectTransitionIsIgnored)
{
    RenderCard card("{}");
    ViewRenderNode node(MeroTest::json(R"({"$": 0, "transition": [{"all": {"duration": 1}}]})"), nullptr, card.engine,
                        nullptr);
    EXPECT_TRUE(node.transitions.empty());
    EXPECT_FALSE(node.allTransition.has_value());
    EXPECT_EQ(node.transitionFor("opacity"), nullptr);
}

TEST(RenderNodeLoopAnimation, IsEvaluatedOnceAtConstruction)
{
    RenderCard card(R"({"variables": {"spin": "slow"}})");
    ViewRenderNode node(MeroTest::json(R"({"$": 0, "loopAnimation": {"kind": {"$": 3, "n": "spin"}}})"), nullptr,
                        card.engine, nullptr);
    card.set("spin", R"("fast")");
    EXPECT_EQ(node.loopAnimation.object().at("kind").string(), "slow");
}

TEST(RenderNodeQueue, MarkPendingEnlistsOnceAndRefusesWhatCannotBeShown)
{
    RenderCard card("{}");
    ViewRenderNode node(MeroTest::json(R"({"$": 0})"), nullptr, card.engine, nullptr);
    EXPECT_TRUE(node.markPending());
    EXPECT_TRUE(node.markPending());
    EXPECT_EQ(card.engine->pendingNodes.size(), 1U);
    EXPECT_TRUE(node.queued);

    ViewRenderNode empty(MeroTest::json(R"({"$": 0, "isEmpty": true})"), nullptr, card.engine, nullptr);
    EXPECT_FALSE(empty.markPending());
    empty.queuePropertyUpdate(8, 0.5);
    EXPECT_TRUE(empty.propertyUpdates.empty());

    ViewRenderNode hidden(MeroTest::json(R"({"$": 0, "visible": false})"), nullptr, card.engine, nullptr);
    EXPECT_FALSE(hidden.markPending());

    ViewRenderNode orphan(MeroTest::json(R"({"$": 0})"), nullptr, card.engine, nullptr);
    card.engine->pendingNodes.clear();
    node.queued = false;
    card.release();
    EXPECT_FALSE(orphan.markPending());
    orphan.queueChildChange(0, &orphan);
    EXPECT_TRUE(orphan.childChanges.empty());
}

TEST(RenderNodeQueue, ANodeDestroyedWhileQueuedLeavesThePendingList)
{
    RenderCard card("{}");
    auto doomed = std::make_unique<ViewRenderNode>(MeroTest::json(R"({"$": 0})"), nullptr, card.engine, nullptr);
    ViewRenderNode kept(MeroTest::json(R"({"$": 0})"), nullptr, card.engine, nullptr);
    doomed->queuePropertyUpdate(8, 1.0);
    kept.queuePropertyUpdate(8, 1.0);
    doomed.reset();
    ASSERT_EQ(card.engine->pendingNodes.size(), 1U);
    EXPECT_EQ(card.engine->pendingNodes.front(), &kept);
    card.engine->flush();  // must not reach the destroyed node
    EXPECT_TRUE(card.engine->pendingNodes.empty());
}

TEST(RenderNodeVisibility, SameValueQueuesNothing)
{
    RenderCard card(threeChildren);
    card.start();
    card.set("showB", "true");
    EXPECT_EQ(card.flush(), Calls{});
}

TEST(RenderNodeVisibility, HidingAndShowingTheMiddleChildMovesItsYogaNode)
{
    RenderCard card(threeChildren);
    ViewRenderNode& root = card.start();
    ViewRenderNode* b = card.find("b");
    ASSERT_EQ(YGNodeGetChildCount(root.yogaNode), 3U);

    card.set("showB", "false");
    EXPECT_EQ(card.flush(), (Calls{"root children 1:b", "c set 2=100"}));
    EXPECT_EQ(YGNodeGetChildCount(root.yogaNode), 2U);
    EXPECT_EQ(YGNodeGetOwner(b->yogaNode), nullptr);

    card.set("showB", "true");
    EXPECT_EQ(card.flush(), (Calls{"root children 1:b", "c set 2=200"}));
    ASSERT_EQ(YGNodeGetChildCount(root.yogaNode), 3U);
    EXPECT_EQ(YGNodeGetChild(root.yogaNode, 1), b->yogaNode);
}

TEST(RenderNodeVisibility, RepeatedTogglingKeepsYogaConsistent)
{
    RenderCard card(threeChildren);
    ViewRenderNode& root = card.start();
    for (int i = 0; i < 5; ++i) {
        card.set("showB", "false");
        card.set("showB", "true");
    }
    card.set("showB", "false");
    EXPECT_EQ(YGNodeGetChildCount(root.yogaNode), 2U);
    EXPECT_EQ(card.find("b")->childChanges.size(), 0U);
    EXPECT_EQ(root.childChanges.size(), 11U);
}

TEST(RenderNodeVisibility, OnlyShowingTheRootQueuesMinusOne)
{
    RenderCard card(threeChildren);
    ViewRenderNode& root = card.start();
    card.set("showRoot", "false");
    EXPECT_TRUE(root.childChanges.empty());
    EXPECT_EQ(card.flush(), Calls{});

    card.set("showRoot", "true");
    EXPECT_EQ(card.flush(), Calls{"root children -1:root"});
}

TEST(RenderNodeVisibility, ChangesWhileHiddenOnlyReachTheCache)
{
    RenderCard card(R"({"variables": {"shown": true, "alpha": 1},
        "elements": {"$": 0, "nodeId": "n", "visible": {"$": 3, "n": "shown"}, "opacity": {"$": 3, "n": "alpha"}}})");
    ViewRenderNode& node = card.start();
    card.set("shown", "false");
    card.set("alpha", "0.25");
    EXPECT_EQ(node.style.opacity, 0.25);
    card.set("shown", "true");
    EXPECT_EQ(card.flush(), Calls{"n children -1:n"});
}

TEST(RenderNodeHostNodes, FlattenedContainersHandUpTheirShownChildren)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "nodeId": "a"},
        {"$": 3, "nodeId": "group", "isEmpty": true, "children": [
            {"$": 0, "nodeId": "g1"}, {"$": 0, "nodeId": "g2", "visible": false}, {"$": 0, "nodeId": "g3"}]},
        {"$": 3, "nodeId": "none", "isEmpty": true},
        {"$": 4, "nodeId": "flatText", "isEmpty": true},
        {"$": 0, "nodeId": "hidden", "visible": false}]}})");
    ViewRenderNode& root = card.build();
    auto ids = [](const std::optional<Mero::HostNodeList>& nodes) {
        std::vector<std::string> result;
        for (ViewRenderNode* node : *nodes) {
            result.push_back(node->nodeId);
        }
        return result;
    };
    EXPECT_EQ(ids(root.collectHostNodes()), std::vector<std::string>{"root"});
    EXPECT_EQ(ids(card.find("group")->collectHostNodes()), (std::vector<std::string>{"g1", "g3"}));
    EXPECT_FALSE(card.find("none")->collectHostNodes().has_value());
    EXPECT_FALSE(card.find("flatText")->collectHostNodes().has_value());
    EXPECT_FALSE(card.find("hidden")->collectHostNodes().has_value());
    EXPECT_EQ(ids(card.find("a")->collectHostNodes()), std::vector<std::string>{"a"});
}

TEST(RenderNodeLifetime, BindingsOutliveTheirNodesHarmlessly)
{
    RenderCard card(R"({"variables": {"w": 100, "label": "x", "shown": true},
        "elements": {"$": 3, "nodeId": "root", "children": [
            {"$": 4, "nodeId": "t", "text": {"$": 3, "n": "label"}, "visible": {"$": 3, "n": "shown"},
             "width": {"sizeType": 1, "value": {"$": 3, "n": "w"}}, "opacity": {"$": 3, "n": "w"}}]}})");
    card.start();
    card.engine->rootNode.reset();
    card.set("w", "50");
    card.set("label", R"("y")");
    card.set("shown", "false");
    EXPECT_TRUE(card.engine->pendingNodes.empty());
    EXPECT_EQ(card.flush(), Calls{});
}
