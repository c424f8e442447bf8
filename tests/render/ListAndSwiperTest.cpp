// Repeated lists and swipers: items from the first template, scoped ids,
// and pages laid out at the swiper's size.
#include <gtest/gtest.h>

#include "render/RenderCard.h"
#include "render/SwiperRenderNode.h"

using Mero::ViewRenderNode;
using MeroTest::Calls;
using MeroTest::RenderCard;
using Ids = std::vector<std::string>;

TEST(ForRenderNode, BuildsOneItemPerEntryFromTheFirstTemplateWithHashIds)
{
    RenderCard card(R"({"elements": {"$": 2, "nodeId": "list", "list": {"$": 19, "n": "items"},
        "index": "i", "item": "word", "children": [
            {"$": 4, "nodeId": "cell", "text": {"$": 1, "n": "word"}}, {"$": 0, "nodeId": "ignored"}]}})");
    card.setData(R"({"items": ["x", "y", "z"]})");
    ViewRenderNode& list = card.build();
    EXPECT_EQ(RenderCard::childIds(list), (Ids{"cell#0", "cell#1", "cell#2"}));
    EXPECT_EQ(card.find("cell#2")->kindValue(Mero::Property::Text).string(), "z");
    EXPECT_EQ(card.find("cell#1")->parent, &list);
    EXPECT_EQ(YGNodeGetChildCount(list.yogaNode), 3U);
}

TEST(ForRenderNode, NestedItemsCarryBothIndexesInTheirIds)
{
    RenderCard card(R"({"elements": {"$": 2, "nodeId": "rows", "list": [["a", "b"], ["c", "d"]],
        "index": "i", "item": "row", "children": [
            {"$": 2, "nodeId": "cols", "list": {"$": 1, "n": "row"}, "index": "j", "item": "letter", "children": [
                {"$": 4, "nodeId": "t", "text": {"$": 1, "n": "letter"}}]}]}})");
    ViewRenderNode& rows = card.build();
    EXPECT_EQ(RenderCard::childIds(rows), (Ids{"cols#0", "cols#1"}));
    EXPECT_NE(RenderCard::childrenOf(rows)[0]->scope(), RenderCard::childrenOf(rows)[1]->scope());
    Ids ids;  // the suffixes come in the order the locals were set: outer index first
    for (const Mero::RenderNodePtr& row : RenderCard::childrenOf(rows)) {
        for (const Mero::RenderNodePtr& cell : RenderCard::childrenOf(*row)) {
            ids.push_back(cell->nodeId);
            const int at = static_cast<int>(cell->scope()->at("i").number() * 2 + cell->scope()->at("j").number());
            EXPECT_EQ(cell->kindValue(Mero::Property::Text).string(), std::string(1, static_cast<char>('a' + at)));
        }
    }
    EXPECT_EQ(ids, (Ids{"t#0#0", "t#0#1", "t#1#0", "t#1#1"}));
}

TEST(ForRenderNode, ItemsToggledTogetherKeepYogaAndHostInStep)
{
    RenderCard card(
        R"({"variables": {"show": true}, "elements": {"$": 2, "nodeId": "list", "list": ["a", "b", "c"], "index": "i",
        "children": [{"$": 0, "nodeId": "c", "visible": {"$": 3, "n": "show"}}]}})");
    ViewRenderNode& list = card.start();
    std::string expected = "list children";
    for (int round = 0; round < 4; ++round) {
        card.set("show", "false");
        EXPECT_EQ(YGNodeGetChildCount(list.yogaNode), 0U);
        card.set("show", "true");
        EXPECT_EQ(YGNodeGetChildCount(list.yogaNode), 3U);
        expected += " 0:x 0:x 0:x 0:c#0 1:c#1 2:c#2";
    }
    EXPECT_EQ(card.flush(), Calls{expected});
    EXPECT_EQ(YGNodeGetChild(list.yogaNode, 2), card.find("c#2")->yogaNode);
}

namespace {

constexpr const char* swiperCard = R"({"variables": {"w": 40, "auto": true, "show": true}, "elements": {
    "$": 3, "nodeId": "root", "children": [
    {"$": 8, "nodeId": "swiper", "list": ["p", "q"], "index": "i", "autoplay": {"$": 3, "n": "auto"},
     "width": {"sizeType": 1, "value": 300}, "height": {"sizeType": 1, "value": 200},
     "children": [{"$": 3, "nodeId": "page", "visible": {"$": 3, "n": "show"}, "children": [
        {"$": 0, "nodeId": "box", "width": {"sizeType": 1, "value": {"$": 3, "n": "w"}},
         "height": {"sizeType": 2, "value": 50}}]}]}]}})";

}  // namespace

TEST(SwiperRenderNode, PagesAreLaidOutAtTheSwipersSizeOutsideItsYogaTree)
{
    RenderCard card(swiperCard);
    card.start();
    auto& swiper = static_cast<Mero::SwiperRenderNode&>(*card.find("swiper"));
    ASSERT_EQ(RenderCard::childIds(swiper), (Ids{"page#0", "page#1"}));
    ASSERT_EQ(YGNodeGetChildCount(swiper.yogaNode), 1U);
    EXPECT_EQ(YGNodeGetChild(swiper.yogaNode, 0), swiper.pageYogaNode);
    for (const Mero::RenderNodePtr& page : swiper.children) {
        EXPECT_EQ(YGNodeGetOwner(page->yogaNode), nullptr);
        EXPECT_EQ(std::tuple(page->layout().x, page->layout().width, page->layout().height), std::tuple(0.0, 300.0, 200.0));
    }
    EXPECT_EQ(std::pair(card.find("box#1")->layout().width, card.find("box#1")->layout().height), std::pair(40.0F, 100.0F));

    card.set("w", "80");  // a change inside a page lays the pages out again
    EXPECT_EQ(card.flush(), (Calls{"box#0 set 0=80", "box#1 set 0=80"}));
    card.set("auto", "false");
    EXPECT_EQ(card.flush(), Calls{"swiper set 301=false"});
}

TEST(SwiperRenderNode, TogglingPagesNeverTouchesTheSwipersYogaTree)
{
    RenderCard card(swiperCard);
    card.start();
    auto& swiper = static_cast<Mero::SwiperRenderNode&>(*card.find("swiper"));
    for (int round = 0; round < 3; ++round) {
        card.set("show", "false");
        card.set("show", "true");
    }
    EXPECT_EQ(YGNodeGetChildCount(swiper.yogaNode), 1U);
    const std::string round = " 0:x 0:x 0:page#0 1:page#1";
    EXPECT_EQ(card.flush(), Calls{"swiper children" + round + round + round});
}
