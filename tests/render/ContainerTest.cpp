// The factory, the flex container and the list container's empty cases.
#include <gtest/gtest.h>

#include <tuple>
#include <typeinfo>

#include "render/FlexRenderNode.h"
#include "render/RenderCard.h"
#include "support/ReportedErrors.h"

using Mero::ViewRenderNode;
using MeroTest::Calls;
using MeroTest::RenderCard;

TEST(RenderNodeFactory, CodesAreTruncatedAndInvalidOnesLogAndBuildAChildlessView)
{
    RenderCard card("{}");
    const std::tuple<const char*, const char*, const std::type_info*> cases[] = {
        {"3.9", "", &typeid(Mero::FlexRenderNode)},
        {"1", "render node type error\n", &typeid(ViewRenderNode)},
        {"12", "render node type error\n", &typeid(ViewRenderNode)},
    };
    for (const auto& [code, message, type] : cases) {
        Mero::RenderNodePtr node;
        const std::string element = R"({"$": )" + std::string(code) + R"(, "children": [{"$": 0}]})";
        EXPECT_EQ(MeroTest::printedOutput([&] { node = card.node(MeroTest::json(element)); }), message) << code;
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(typeid(*node), *type) << code;
        EXPECT_EQ(YGNodeGetChildCount(node->yogaNode), *type == typeid(ViewRenderNode) ? 0U : 1U) << code;
    }
    EXPECT_EQ(card.node(MeroTest::json("5")), nullptr);
}

TEST(RenderNodeFactory, ANonObjectChildIsLoggedAndSkipped)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [{"$": 0, "nodeId": "a"}, 7,
        {"$": 0, "nodeId": "b"}]}})");
    EXPECT_EQ(MeroTest::printedOutput([&] { card.build(); }), "create render node failed\n");
    EXPECT_EQ(RenderCard::childIds(card.root()), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(RenderCard::childrenOf(card.root())[1]->parent, &card.root());
}

TEST(ContainerRenderNode, MissingEmptyOrWrongKindChildrenAndListsBuildNothing)
{
    RenderCard card("{}");
    for (const char* element :
         {R"({"$": 3})", R"({"$": 3, "children": 5})", R"({"$": 2, "list": [], "children": [{"$": 0}]})",
          R"({"$": 2, "children": [{"$": 0}]})", R"({"$": 2, "list": [1, 2]})",
          R"({"$": 2, "list": "ab", "children": [{"$": 0}]})"}) {
        Mero::RenderNodePtr node = card.node(MeroTest::json(element));
        EXPECT_TRUE(RenderCard::childrenOf(*node).empty()) << element;
        EXPECT_EQ(YGNodeGetChildCount(node->yogaNode), 0U) << element;
    }
}

TEST(FlexRenderNode, DefaultsAreARowFromTheStartAndNumbersAreYogas)
{
    RenderCard card("{}");
    Mero::RenderNodePtr plain = card.node(MeroTest::json(R"({"$": 3})"));
    EXPECT_EQ(YGNodeStyleGetFlexDirection(plain->yogaNode), YGFlexDirectionRow);
    EXPECT_EQ(YGNodeStyleGetAlignItems(plain->yogaNode), YGAlignFlexStart);
    EXPECT_EQ(YGNodeStyleGetAlignContent(plain->yogaNode), YGAlignFlexStart);

    Mero::RenderNodePtr set = card.node(MeroTest::json(R"({"$": 3, "justifyContent": 2.5, "alignItems": 4})"));
    EXPECT_EQ(YGNodeStyleGetJustifyContent(set->yogaNode), YGJustifyFlexEnd);
    EXPECT_EQ(YGNodeStyleGetAlignItems(set->yogaNode), YGAlignStretch);
}

TEST(FlexRenderNode, ABoundDirectionRelaysOutTheChildren)
{
    RenderCard card(R"({"variables": {"dir": 2}, "elements": {"$": 3, "nodeId": "root",
        "flexDirection": {"$": 3, "n": "dir"}, "children": [
        {"$": 0, "nodeId": "a", "width": {"sizeType": 1, "value": 30}, "height": {"sizeType": 1, "value": 10}},
        {"$": 0, "nodeId": "b", "width": {"sizeType": 1, "value": 40}, "height": {"sizeType": 1, "value": 10}}]}})");
    card.start();
    EXPECT_EQ(card.find("b")->layout().x, 30.0);
    card.set("dir", "0");
    EXPECT_EQ(card.flush(), Calls{"b set 2=0 3=10"});
}
