// The node base: identity, transitions, visibility, queueing and lifetime.
#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <optional>

#include "render/RenderCard.h"

using Mero::ViewRenderNode;
using MeroTest::Calls;
using MeroTest::RenderCard;

namespace {

// A row of three views a, b, c, each 100 wide; b's visibility follows "showB".
constexpr const char* threeChildren = R"({"variables": {"showB": true}, "elements": {"$": 3, "nodeId": "root",
    "children": [{"$": 0, "nodeId": "a", "width": {"sizeType": 1, "value": 100}},
    {"$": 0, "nodeId": "b", "width": {"sizeType": 1, "value": 100}, "visible": {"$": 3, "n": "showB"}},
    {"$": 0, "nodeId": "c", "width": {"sizeType": 1, "value": 100}}]}})";

ViewRenderNode view(RenderCard& card, std::string_view element, Mero::LocalScope scope = nullptr)
{
    return ViewRenderNode(MeroTest::json(element), nullptr, card.tree, std::move(scope));
}

}  // namespace

TEST(RenderNodeIdentity, ScopeNumbersBecomeHashSuffixes)
{
    RenderCard card("{}");
    Mero::LocalScope scope = Mero::makeLocalScope();
    (*scope)["i"] = 3.0;
    (*scope)["name"] = "skip";
    EXPECT_EQ(view(card, R"({"$": 0, "nodeId": "card"})", scope).nodeId, "card#3");
    // In the order the locals were first set; truncated toward 0.
    (*scope)["j"] = 7.2;
    (*scope)["i"] = 3.9;
    EXPECT_EQ(view(card, R"({"$": 0})", scope).nodeId, "#3#7");
    EXPECT_EQ(view(card, R"({"$": 0, "nodeId": "card"})").nodeId, "card");
}

TEST(RenderNodeLoopAnimation, IsEvaluatedOnceAtConstruction)
{
    RenderCard card(R"({"variables": {"spin": "slow"}})");
    ViewRenderNode node = view(card, R"({"$": 0, "loopAnimation": {"kind": {"$": 3, "n": "spin"}}})");
    card.set("spin", R"("fast")");
    EXPECT_EQ(node.loopAnimation().object().at("kind").string(), "slow");
}

TEST(RenderNodeQueue, NodesEnlistOnceAnEmptyOneNeverAndADestroyedOneLeavesThePendingList)
{
    RenderCard card(R"({"elements": {"$": 3, "children": [{"$": 0, "isEmpty": true}]}})");
    ViewRenderNode& empty = *RenderCard::childrenOf(card.build()).front();
    empty.queuePropertyUpdate(8, 0.5);
    EXPECT_TRUE(empty.propertyUpdates().empty());
    // The root always has a view of its own: it cannot be flattened.
    EXPECT_FALSE(view(card, R"({"$": 0, "isEmpty": true})").flattened());
    auto doomed = std::make_unique<ViewRenderNode>(MeroTest::json(R"({"$": 0})"), nullptr, card.tree, nullptr);
    ViewRenderNode kept = view(card, R"({"$": 0})");
    doomed->queuePropertyUpdate(8, 1.0);
    kept.queuePropertyUpdate(8, 1.0);
    kept.queuePropertyUpdate(9, 1.0);
    doomed.reset();
    ASSERT_EQ(card.tree.pendingNodes(), std::vector<ViewRenderNode*>{&kept});
    card.engine->flush();  // must not reach the destroyed node
    EXPECT_TRUE(card.tree.pendingNodes().empty());
}

TEST(RenderNodeVisibility, HidingAndShowingTheMiddleChildMovesItsYogaNodeAtItsIndex)
{
    RenderCard card(threeChildren);
    ViewRenderNode& root = card.start();
    ViewRenderNode* b = card.find("b");
    card.set("showB", "true");
    EXPECT_EQ(card.flush(), Calls{});

    card.set("showB", "false");
    EXPECT_EQ(card.flush(), (Calls{"root children 1:x", "c set 2=100"}));
    EXPECT_EQ(YGNodeGetChildCount(root.yogaNode), 2U);
    EXPECT_EQ(YGNodeGetOwner(b->yogaNode), nullptr);

    card.set("showB", "true");
    EXPECT_EQ(card.flush(), (Calls{"root children 1:b", "c set 2=200"}));
    EXPECT_EQ(YGNodeGetChild(root.yogaNode, 1), b->yogaNode);

    for (int i = 0; i < 5; ++i) {
        card.set("showB", "false");
        card.set("showB", "true");
    }
    card.set("showB", "false");
    EXPECT_EQ(YGNodeGetChildCount(root.yogaNode), 2U);
    EXPECT_EQ(root.childChanges().size(), 11U);
}

TEST(RenderNodeVisibility, TheRootQueuesMinusOneAndWhileHiddenChangesOnlyReachTheCache)
{
    RenderCard card(R"({"variables": {"shown": true, "alpha": 1},
        "elements": {"$": 0, "nodeId": "n", "visible": {"$": 3, "n": "shown"}, "opacity": {"$": 3, "n": "alpha"}}})");
    ViewRenderNode& node = card.start();
    card.set("shown", "false");
    card.set("alpha", "0.25");
    EXPECT_TRUE(node.childChanges().empty());
    EXPECT_EQ(card.flush(), Calls{});
    EXPECT_EQ(node.style().opacity, 0.25);
    card.set("shown", "true");
    EXPECT_EQ(card.flush(), Calls{"n children -1:n"});
}

TEST(RenderNodeHostNodes, FlattenedContainersHandUpTheirShownChildren)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [{"$": 0, "nodeId": "a"},
        {"$": 3, "nodeId": "group", "isEmpty": true, "children": [
            {"$": 0, "nodeId": "g1"}, {"$": 0, "nodeId": "g2", "visible": false}, {"$": 0, "nodeId": "g3"}]},
        {"$": 3, "nodeId": "none", "isEmpty": true}, {"$": 4, "nodeId": "flatText", "isEmpty": true},
        {"$": 0, "nodeId": "hidden", "visible": false}]}})");
    card.build();
    auto ids = [&](std::string_view id) {
        std::optional<Mero::HostNodeList> nodes = card.find(id)->collectHostNodes();
        std::vector<std::string> result;
        for (ViewRenderNode* node : nodes.value_or(Mero::HostNodeList{})) {
            result.push_back(node->nodeId);
        }
        return nodes ? result : std::vector<std::string>{"<none>"};
    };
    using Ids = std::vector<std::string>;
    EXPECT_EQ(ids("root"), Ids{"root"});
    EXPECT_EQ(ids("a"), Ids{"a"});
    EXPECT_EQ(ids("group"), (Ids{"g1", "g3"}));
    for (const char* id : {"none", "flatText", "hidden"}) {
        EXPECT_EQ(ids(id), Ids{"<none>"}) << id;
    }
    // Only shown children enter Yoga, in order.
    ASSERT_EQ(YGNodeGetChildCount(card.find("group")->yogaNode), 2U);
    EXPECT_EQ(YGNodeGetChild(card.find("group")->yogaNode, 1), card.find("g3")->yogaNode);
}

TEST(RenderNodeLifetime, ANodeTakesItsBindingsWithItAndTheEngineForgetsThem)
{
    RenderCard card(R"({"variables": {"label": "x"}, "elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 4, "nodeId": "t", "text": {"$": 3, "n": "label"}}]}})");
    for (int build = 0; build < 1000; ++build) {
        card.build();
    }
    const std::vector<std::weak_ptr<Mero::ObserverCallback>>& callbacks =
        card.engine->observers().at("label")->callbacks;
    const auto alive = std::count_if(callbacks.begin(), callbacks.end(), [](const auto& entry) { return !entry.expired(); });
    EXPECT_EQ(alive, 1);
    EXPECT_LE(callbacks.size(), 16U) << "a thousand builds leave a list as short as a few";
}

