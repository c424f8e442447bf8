// The factory and the flex container.
#include <gtest/gtest.h>

#include <typeinfo>

#include "render/BlurRenderNode.h"
#include "render/CustomRenderNode.h"
#include "render/FlexRenderNode.h"
#include "render/ForRenderNode.h"
#include "render/ImageRenderNode.h"
#include "render/ProgressRenderNode.h"
#include "render/RatingRenderNode.h"
#include "render/RenderCard.h"
#include "render/SwiperRenderNode.h"
#include "render/TextRenderNode.h"
#include "render/VideoRenderNode.h"
#include "support/ReportedErrors.h"

using Mero::ViewRenderNode;
using MeroTest::Calls;
using MeroTest::RenderCard;

TEST(RenderNodeFactory, TypeCodesPickTheNodeClass)
{
    const std::pair<const char*, const std::type_info*> cases[] = {
        {"0", &typeid(ViewRenderNode)},           {"2", &typeid(Mero::ForRenderNode)},
        {"3", &typeid(Mero::FlexRenderNode)},     {"3.9", &typeid(Mero::FlexRenderNode)},
        {"4", &typeid(Mero::TextRenderNode)},     {"5", &typeid(Mero::ImageRenderNode)},
        {"6", &typeid(Mero::ProgressRenderNode)}, {"7", &typeid(Mero::RatingRenderNode)},
        {"8", &typeid(Mero::SwiperRenderNode)},   {"9", &typeid(Mero::CustomRenderNode)},
        {"10", &typeid(Mero::VideoRenderNode)},   {"11", &typeid(Mero::BlurRenderNode)},
    };
    RenderCard card("{}");
    for (const auto& [code, type] : cases) {
        Mero::RenderNodePtr node = Mero::createRenderNode(MeroTest::json(R"({"$": )" + std::string(code) + "}"),
                                                          nullptr, card.engine, nullptr);
        ASSERT_NE(node, nullptr) << code;
        EXPECT_EQ(typeid(*node), *type) << code;
    }
}

TEST(RenderNodeFactory, InvalidCodesLogAndBuildAPlainViewWithoutChildren)
{
    RenderCard card("{}");
    for (const char* code : {"1", "12"}) {
        Mero::RenderNodePtr node;
        const std::string printed = MeroTest::printedOutput([&] {
            node =
                Mero::createRenderNode(MeroTest::json(R"({"$": )" + std::string(code) + R"(, "children": [{"$": 0}]})"),
                                       nullptr, card.engine, nullptr);
        });
        EXPECT_EQ(printed, "render node type error\n") << code;
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(typeid(*node), typeid(ViewRenderNode));
        EXPECT_EQ(YGNodeGetChildCount(node->yogaNode), 0U);
    }
}

TEST(RenderNodeFactory, ANonObjectChildIsLoggedAndSkipped)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [{"$": 0, "nodeId": "a"}, 7,
        {"$": 0, "nodeId": "b"}]}})");
    const std::string printed = MeroTest::printedOutput([&] { card.build(); });
    EXPECT_EQ(printed, "create render node failed\n");
    auto& root = static_cast<Mero::FlexRenderNode&>(card.root());
    ASSERT_EQ(root.children.size(), 2U);
    EXPECT_EQ(root.children[1]->nodeId, "b");
    EXPECT_EQ(root.children[1]->parent, &root);
    EXPECT_TRUE(root.childElements.isNull());
}

TEST(FlexRenderNode, MissingOrEmptyChildrenBuildNothing)
{
    RenderCard card("{}");
    for (const char* element : {R"({"$": 3})", R"({"$": 3, "children": []})", R"({"$": 3, "children": 5})"}) {
        Mero::RenderNodePtr node = Mero::createRenderNode(MeroTest::json(element), nullptr, card.engine, nullptr);
        EXPECT_TRUE(static_cast<Mero::FlexRenderNode&>(*node).children.empty()) << element;
        EXPECT_EQ(YGNodeGetChildCount(node->yogaNode), 0U) << element;
    }
}

TEST(FlexRenderNode, OnlyShownChildrenEnterYogaInOrder)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "nodeId": "a"}, {"$": 0, "nodeId": "b", "visible": false}, {"$": 0, "nodeId": "c"}]}})");
    ViewRenderNode& root = card.build();
    ASSERT_EQ(YGNodeGetChildCount(root.yogaNode), 2U);
    EXPECT_EQ(YGNodeGetChild(root.yogaNode, 0), card.find("a")->yogaNode);
    EXPECT_EQ(YGNodeGetChild(root.yogaNode, 1), card.find("c")->yogaNode);
}

TEST(FlexRenderNode, ChildrenAreLaidOutInARowByDefault)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "nodeId": "a", "width": {"sizeType": 1, "value": 30}, "height": {"sizeType": 1, "value": 10}},
        {"$": 0, "nodeId": "b", "width": {"sizeType": 1, "value": 40}, "height": {"sizeType": 1, "value": 10}}]}})");
    card.build();
    card.layout();
    EXPECT_EQ(card.find("b")->layout.x, 30.0);
    EXPECT_EQ(card.find("b")->layout.y, 0.0);
    EXPECT_EQ(YGNodeStyleGetFlexDirection(card.root().yogaNode), YGFlexDirectionRow);
}

TEST(FlexRenderNode, FlexPropertiesPassYogasNumbersAndDefaultToStart)
{
    RenderCard card("{}");
    Mero::RenderNodePtr plain = Mero::createRenderNode(MeroTest::json(R"({"$": 3})"), nullptr, card.engine, nullptr);
    EXPECT_EQ(YGNodeStyleGetJustifyContent(plain->yogaNode), YGJustifyFlexStart);
    EXPECT_EQ(YGNodeStyleGetAlignItems(plain->yogaNode), YGAlignFlexStart);
    EXPECT_EQ(YGNodeStyleGetAlignContent(plain->yogaNode), YGAlignFlexStart);
    EXPECT_EQ(YGNodeStyleGetFlexWrap(plain->yogaNode), YGWrapNoWrap);

    Mero::RenderNodePtr set = Mero::createRenderNode(
        MeroTest::json(R"({"$": 3, "flexDirection": 0, "justifyContent": 2.5, "alignItems": 4, "alignContent": 2,
                           "flexWrap": 1})"),
        nullptr, card.engine, nullptr);
    EXPECT_EQ(YGNodeStyleGetFlexDirection(set->yogaNode), YGFlexDirectionColumn);
    EXPECT_EQ(YGNodeStyleGetJustifyContent(set->yogaNode), YGJustifyFlexEnd);
    EXPECT_EQ(YGNodeStyleGetAlignItems(set->yogaNode), YGAlignStretch);
    EXPECT_EQ(YGNodeStyleGetAlignContent(set->yogaNode), YGAlignCenter);
    EXPECT_EQ(YGNodeStyleGetFlexWrap(set->yogaNode), YGWrapWrap);
}

TEST(FlexRenderNode, ABoundDirectionRelaysOutTheChildren)
{
    RenderCard card(R"({"variables": {"dir": 2}, "elements": {"$": 3, "nodeId": "root",
        "flexDirection": {"$": 3, "n": "dir"}, "children": [
        {"$": 0, "nodeId": "a", "width": {"sizeType": 1, "value": 30}, "height": {"sizeType": 1, "value": 10}},
        {"$": 0, "nodeId": "b", "width": {"sizeType": 1, "value": 40}, "height": {"sizeType": 1, "value": 10}}]}})");
    card.start();
    card.set("dir", "0");
    EXPECT_EQ(card.flush(), Calls{"b set 2=0 3=10"});
}
