// Repeated lists and swipers: items from the first template, scoped ids,
// and pages laid out at the swiper's size.
#include <gtest/gtest.h>

#include <set>

#include "render/ForRenderNode.h"
#include "render/RenderCard.h"
#include "render/SwiperRenderNode.h"
#include "render/TextRenderNode.h"

using Mero::ViewRenderNode;
using MeroTest::Calls;
using MeroTest::RenderCard;

namespace {

std::vector<std::string> childIds(const Mero::ContainerRenderNode& node)
{
    std::vector<std::string> ids;
    for (const Mero::RenderNodePtr& child : node.children) {
        ids.push_back(child->nodeId);
    }
    return ids;
}

}  // namespace

TEST(ForRenderNode, BuildsOneItemPerEntryFromTheFirstTemplate)
{
    RenderCard card(R"({"elements": {"$": 2, "nodeId": "list", "list": {"$": 19, "n": "items"},
        "index": "i", "item": "word", "children": [
            {"$": 4, "nodeId": "cell", "text": {"$": 1, "n": "word"}},
            {"$": 0, "nodeId": "ignored"}]}})");
    card.setData(R"({"items": ["x", "y", "z"]})");
    auto& list = static_cast<Mero::ForRenderNode&>(card.build());
    EXPECT_EQ(childIds(list), (std::vector<std::string>{"cell#0", "cell#1", "cell#2"}));
    EXPECT_EQ(card.as<Mero::TextRenderNode>("cell#2").text(), "z");
    EXPECT_EQ(list.children[1]->parent, &list);
    EXPECT_EQ(YGNodeGetChildCount(list.yogaNode), 3U);
    EXPECT_EQ(list.indexName, "i");
    EXPECT_EQ(list.itemName, "word");
}

TEST(ForRenderNode, ItemsSeeACopyOfTheListsScope)
{
    RenderCard card(R"({"elements": {"$": 2, "nodeId": "list", "list": [10, 20], "index": "i", "item": "n",
        "children": [{"$": 0, "nodeId": "cell"}]}})");
    auto& list = static_cast<Mero::ForRenderNode&>(card.build());
    // Number items are numeric locals too, so they join the id.
    const std::vector<std::string> all = childIds(list);
    EXPECT_TRUE(all[0] == "cell#0#10" || all[0] == "cell#10#0") << all[0];
    EXPECT_EQ(list.children[1]->scope->at("n").number(), 20.0);
    EXPECT_EQ(list.children[1]->scope->at("i").number(), 1.0);
    EXPECT_NE(list.children[0]->scope, list.children[1]->scope);
}

TEST(ForRenderNode, EmptyOrMissingListsBuildNothing)
{
    RenderCard card("{}");
    for (const char* element :
         {R"({"$": 2, "list": [], "children": [{"$": 0}]})", R"({"$": 2, "children": [{"$": 0}]})",
          R"({"$": 2, "list": [1, 2]})", R"({"$": 2, "list": "ab", "children": [{"$": 0}]})"}) {
        Mero::RenderNodePtr node = Mero::createRenderNode(MeroTest::json(element), nullptr, card.engine, nullptr);
        const auto& list = static_cast<const Mero::ForRenderNode&>(*node);
        EXPECT_TRUE(list.children.empty()) << element;
        EXPECT_EQ(YGNodeGetChildCount(list.yogaNode), 0U) << element;
    }
}

TEST(ForRenderNode, NestedItemsCarryBothIndexesInTheirIds)
{
    RenderCard card(R"({"elements": {"$": 2, "nodeId": "rows", "list": [["a", "b"], ["c", "d"]],
        "index": "i", "item": "row", "children": [
            {"$": 2, "nodeId": "cols", "list": {"$": 1, "n": "row"}, "index": "j", "item": "letter", "children": [
                {"$": 4, "nodeId": "t", "text": {"$": 1, "n": "letter"}}]}]}})");
    auto& rows = static_cast<Mero::ForRenderNode&>(card.build());
    EXPECT_EQ(childIds(rows), (std::vector<std::string>{"cols#0", "cols#1"}));
    std::set<std::string> ids;
    const char* letters[2][2] = {{"a", "b"}, {"c", "d"}};
    for (const Mero::RenderNodePtr& row : rows.children) {
        for (const Mero::RenderNodePtr& cell : static_cast<Mero::ContainerRenderNode&>(*row).children) {
            ids.insert(cell->nodeId);
            const auto i = static_cast<std::size_t>(cell->scope->at("i").number());
            const auto j = static_cast<std::size_t>(cell->scope->at("j").number());
            EXPECT_EQ(static_cast<Mero::TextRenderNode&>(*cell).text(), letters[i][j]);
        }
    }
    EXPECT_EQ(ids, (std::set<std::string>{"t#0#0", "t#0#1", "t#1#0", "t#1#1"}));
}

TEST(ForRenderNode, ItemsToggledTogetherKeepYogaAndHostInStep)
{
    RenderCard card(R"({"variables": {"show": true}, "elements": {"$": 2, "nodeId": "list", "list": [1, 2, 3],
        "index": "i", "item": "v", "children": [{"$": 0, "nodeId": "c", "visible": {"$": 3, "n": "show"}}]}})");
    auto& list = static_cast<Mero::ForRenderNode&>(card.start());
    const std::vector<std::string> ids = childIds(list);
    for (int round = 0; round < 3; ++round) {
        card.set("show", "false");
        EXPECT_EQ(YGNodeGetChildCount(list.yogaNode), 0U);
        card.set("show", "true");
        EXPECT_EQ(YGNodeGetChildCount(list.yogaNode), 3U);
    }
    card.set("show", "false");
    card.set("show", "true");
    const Calls seen = card.flush();
    ASSERT_EQ(seen.size(), 1U);
    const std::string hideAll = " 0:" + ids[0] + " 0:" + ids[1] + " 0:" + ids[2];
    const std::string showAll = " 0:" + ids[0] + " 1:" + ids[1] + " 2:" + ids[2];
    std::string expected = "list children";
    for (int round = 0; round < 4; ++round) {
        expected += hideAll + showAll;
    }
    EXPECT_EQ(seen[0], expected);
    EXPECT_EQ(YGNodeGetChild(list.yogaNode, 2), list.children[2]->yogaNode);
}

namespace {

constexpr const char* swiperCard = R"({"variables": {"w": 40, "auto": true, "show": true}, "elements": {
    "$": 3, "nodeId": "root", "children": [
    {"$": 8, "nodeId": "swiper", "list": ["p", "q"], "index": "page", "item": "name",
     "width": {"sizeType": 1, "value": 300}, "height": {"sizeType": 1, "value": 200},
     "onSwiperChange": "pageChanged", "duration": 500, "interval": 3000, "autoplay": {"$": 3, "n": "auto"},
     "circular": true, "swiperDirection": 1,
     "children": [{"$": 3, "nodeId": "page", "visible": {"$": 3, "n": "show"}, "children": [
        {"$": 0, "nodeId": "box", "width": {"sizeType": 1, "value": {"$": 3, "n": "w"}},
         "height": {"sizeType": 2, "value": 50}}]}]}]}})";

}  // namespace

TEST(SwiperRenderNode, PagesAreLaidOutAtTheSwipersSizeOutsideItsYogaTree)
{
    RenderCard card(swiperCard);
    card.start();
    auto& swiper = card.as<Mero::SwiperRenderNode>("swiper");
    ASSERT_EQ(swiper.children.size(), 2U);
    ASSERT_EQ(YGNodeGetChildCount(swiper.yogaNode), 1U);
    EXPECT_EQ(YGNodeGetChild(swiper.yogaNode, 0), swiper.pageYogaNode);
    for (const Mero::RenderNodePtr& page : swiper.children) {
        EXPECT_EQ(YGNodeGetOwner(page->yogaNode), nullptr);
        EXPECT_EQ(page->layout.width, 300.0) << page->nodeId;
        EXPECT_EQ(page->layout.height, 200.0) << page->nodeId;
        EXPECT_EQ(page->layout.x, 0.0);
    }
    const auto& box = static_cast<Mero::ContainerRenderNode&>(*swiper.children[1]).children[0];
    EXPECT_EQ(box->layout.width, 40.0);
    EXPECT_EQ(box->layout.height, 100.0);
}

TEST(SwiperRenderNode, AChangeInsideAPageLaysThePagesOutAgain)
{
    RenderCard card(swiperCard);
    card.start();
    card.set("w", "80");
    const Calls seen = card.flush();
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_TRUE(seen[0].starts_with("box#") && seen[0].ends_with(" set 0=80")) << seen[0];
    EXPECT_TRUE(seen[1].starts_with("box#") && seen[1].ends_with(" set 0=80")) << seen[1];
}

TEST(SwiperRenderNode, TogglingPagesNeverTouchesTheSwipersYogaTree)
{
    RenderCard card(swiperCard);
    card.start();
    auto& swiper = card.as<Mero::SwiperRenderNode>("swiper");
    for (int round = 0; round < 3; ++round) {
        card.set("show", "false");
        card.set("show", "true");
    }
    EXPECT_EQ(YGNodeGetChildCount(swiper.yogaNode), 1U);
    EXPECT_EQ(swiper.childChanges.size(), 12U);
    EXPECT_EQ(swiper.childChanges[1].index, 0);
    EXPECT_EQ(swiper.childChanges[3].index, 1);
}

TEST(SwiperRenderNode, CarouselPropertiesAreStoredAndBound)
{
    RenderCard card(swiperCard);
    card.start();
    auto& swiper = card.as<Mero::SwiperRenderNode>("swiper");
    EXPECT_EQ(swiper.duration(), 500.0);
    EXPECT_EQ(swiper.interval(), 3000.0);
    EXPECT_TRUE(swiper.autoplay());
    EXPECT_TRUE(swiper.circular());
    EXPECT_EQ(swiper.swiperDirection(), 1.0);
    EXPECT_FALSE(swiper.touchable());
    EXPECT_EQ(swiper.onSwiperChange.string(), "pageChanged");
    card.set("auto", "false");
    EXPECT_EQ(card.flush(), Calls{"swiper set 301=false"});
}
