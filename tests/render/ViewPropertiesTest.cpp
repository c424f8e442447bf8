// The common properties: what reaches Yoga, what reaches the host and under
// which id, plain or animated; and applyLayout's results.
#include <gtest/gtest.h>

#include <cmath>

#include "render/RenderCard.h"

using Mero::ViewRenderNode;
using MeroTest::Calls;
using MeroTest::RenderCard;

namespace {

std::string element(const std::string& members)
{
    return R"({"$": 0, "nodeId": "n")" + (members.empty() ? "" : ", " + members) + "}";
}

std::unique_ptr<ViewRenderNode> makeNode(RenderCard& card, const std::string& members)
{
    return std::make_unique<ViewRenderNode>(MeroTest::json(element(members)), nullptr, card.engine, nullptr);
}

bool sameYGValue(YGValue actual, YGValue expected)
{
    if (actual.unit != expected.unit) {
        return false;
    }
    return (std::isnan(actual.value) && std::isnan(expected.value)) || actual.value == expected.value;
}

constexpr float undefined = YGUndefined;

struct YogaCase {
    const char* members;
    YGValue (*read)(YGNodeConstRef);
    YGValue expected;
};

// clang-format off
const YogaCase yogaCases[] = {
    {R"("width": {"sizeType": 1, "value": 120})", YGNodeStyleGetWidth, {120, YGUnitPoint}},
    {R"("width": {"sizeType": 2, "value": 50})", YGNodeStyleGetWidth, {50, YGUnitPercent}},
    {R"("width": {"sizeType": 3, "value": 50})", YGNodeStyleGetWidth, {undefined, YGUnitAuto}},
    {R"("width": {"sizeType": 4, "value": 100})", YGNodeStyleGetWidth, {150, YGUnitPoint}},
    {R"("width": {"sizeType": 0, "value": 100})", YGNodeStyleGetWidth, {undefined, YGUnitAuto}},
    {R"("height": {"sizeType": 6, "value": 10})", YGNodeStyleGetHeight, {75, YGUnitPoint}},
    {R"("height": {"sizeType": 3})", YGNodeStyleGetHeight, {undefined, YGUnitAuto}},
    {R"("minWidth": {"sizeType": 1, "value": 10})", YGNodeStyleGetMinWidth, {10, YGUnitPoint}},
    {R"("minWidth": {"sizeType": 3})", YGNodeStyleGetMinWidth, {undefined, YGUnitUndefined}},
    {R"("minHeight": {"sizeType": 2, "value": 5})", YGNodeStyleGetMinHeight, {5, YGUnitPercent}},
    {R"("maxWidth": {"sizeType": 1, "value": 300})", YGNodeStyleGetMaxWidth, {300, YGUnitPoint}},
    {R"("maxHeight": {"sizeType": 2, "value": 80})", YGNodeStyleGetMaxHeight, {80, YGUnitPercent}},
    {R"("maxHeight": {"sizeType": 3})", YGNodeStyleGetMaxHeight, {undefined, YGUnitUndefined}},
    {R"("width": {"sizeType": -1, "$": 3, "n": "size"})", YGNodeStyleGetWidth, {undefined, YGUnitAuto}},
};

struct EdgeCase {
    const char* members;
    YGValue (*read)(YGNodeConstRef, YGEdge);
    YGEdge edge;
    YGValue expected;
};

const EdgeCase edgeCases[] = {
    {R"("marginLeft": {"sizeType": 1, "value": 1})", YGNodeStyleGetMargin, YGEdgeLeft, {1, YGUnitPoint}},
    {R"("marginTop": {"sizeType": 2, "value": 2})", YGNodeStyleGetMargin, YGEdgeTop, {2, YGUnitPercent}},
    {R"("marginRight": {"sizeType": 1, "value": 3})", YGNodeStyleGetMargin, YGEdgeRight, {3, YGUnitPoint}},
    {R"("marginBottom": {"sizeType": 1, "value": 4})", YGNodeStyleGetMargin, YGEdgeBottom, {4, YGUnitPoint}},
    {R"("marginLeft": {"sizeType": 3})", YGNodeStyleGetMargin, YGEdgeLeft, {undefined, YGUnitUndefined}},
    {R"("paddingLeft": {"sizeType": 1, "value": 5})", YGNodeStyleGetPadding, YGEdgeLeft, {5, YGUnitPoint}},
    {R"("paddingTop": {"sizeType": 1, "value": 6})", YGNodeStyleGetPadding, YGEdgeTop, {6, YGUnitPoint}},
    {R"("paddingRight": {"sizeType": 2, "value": 7})", YGNodeStyleGetPadding, YGEdgeRight, {7, YGUnitPercent}},
    {R"("paddingBottom": {"sizeType": 1, "value": 8})", YGNodeStyleGetPadding, YGEdgeBottom, {8, YGUnitPoint}},
    {R"("left": {"sizeType": 1, "value": 9})", YGNodeStyleGetPosition, YGEdgeLeft, {9, YGUnitPoint}},
    {R"("top": {"sizeType": 2, "value": 10})", YGNodeStyleGetPosition, YGEdgeTop, {10, YGUnitPercent}},
    {R"("right": {"sizeType": 1, "value": 11})", YGNodeStyleGetPosition, YGEdgeRight, {11, YGUnitPoint}},
    {R"("bottom": {"sizeType": 1, "value": 12})", YGNodeStyleGetPosition, YGEdgeBottom, {12, YGUnitPoint}},
    {R"("top": {"sizeType": 3})", YGNodeStyleGetPosition, YGEdgeTop, {undefined, YGUnitUndefined}},
};
// clang-format on

struct BorderCase {
    const char* members;
    YGEdge edge;
    float expected;
};

const BorderCase borderCases[] = {
    {R"("borderLeft": {"sizeType": 1, "value": 1})", YGEdgeLeft, 1},
    {R"("borderTop": {"sizeType": 1, "value": 2})", YGEdgeTop, 2},
    {R"("borderRight": {"sizeType": 1, "value": 3})", YGEdgeRight, 3},
    {R"("borderBottom": {"sizeType": 1, "value": 4})", YGEdgeBottom, 4},
    {R"("borderTop": {"sizeType": 2, "value": 50})", YGEdgeTop, undefined},
};

}  // namespace

TEST(ViewLayoutProperties, SizesReachYogaByUnit)
{
    RenderCard card("{}");
    card.engine->screenScale = 1.5;
    for (const YogaCase& test : yogaCases) {
        auto node = makeNode(card, test.members);
        EXPECT_TRUE(sameYGValue(test.read(node->yogaNode), test.expected)) << test.members;
    }
}

TEST(ViewLayoutProperties, EdgesReachYogaByUnit)
{
    RenderCard card("{}");
    for (const EdgeCase& test : edgeCases) {
        auto node = makeNode(card, test.members);
        EXPECT_TRUE(sameYGValue(test.read(node->yogaNode, test.edge), test.expected)) << test.members;
    }
    for (const BorderCase& test : borderCases) {
        auto node = makeNode(card, test.members);
        const float border = YGNodeStyleGetBorder(node->yogaNode, test.edge);
        EXPECT_TRUE(border == test.expected || (std::isnan(border) && std::isnan(test.expected))) << test.members;
    }
}

TEST(ViewLayoutProperties, PositionNumbersAreTheTemplatesNotYogas)
{
    RenderCard card("{}");
    const std::pair<const char*, YGPositionType> cases[] = {
        {"", YGPositionTypeRelative},
        {R"("position": 0)", YGPositionTypeRelative},
        {R"("position": 1)", YGPositionTypeAbsolute},
        {R"("position": 2)", YGPositionTypeStatic},
        {R"("position": 7)", YGPositionTypeRelative},
        {R"("position": "1")", YGPositionTypeRelative},
    };
    for (const auto& [members, expected] : cases) {
        auto node = makeNode(card, members);
        EXPECT_EQ(YGNodeStyleGetPositionType(node->yogaNode), expected) << members;
    }
}

TEST(ViewLayoutProperties, FlexBasisIsAutoAndGrowShrinkDefaultToZero)
{
    RenderCard card("{}");
    auto plain = makeNode(card, "");
    EXPECT_EQ(YGNodeStyleGetFlexBasis(plain->yogaNode).unit, YGUnitAuto);
    EXPECT_EQ(YGNodeStyleGetFlexGrow(plain->yogaNode), 0.0F);
    EXPECT_EQ(YGNodeStyleGetFlexShrink(plain->yogaNode), 0.0F);
    auto flexed = makeNode(card, R"("flexGrow": 2, "flexShrink": 0.5)");
    EXPECT_EQ(YGNodeStyleGetFlexGrow(flexed->yogaNode), 2.0F);
    EXPECT_EQ(YGNodeStyleGetFlexShrink(flexed->yogaNode), 0.5F);
}

TEST(ViewLayoutProperties, ABoundSizeChangeReachesYogaAndOwesALayout)
{
    RenderCard card(R"({"variables": {"w": 100}})");
    auto node = makeNode(card, R"("width": {"sizeType": 1, "value": {"$": 3, "n": "w"}})");
    EXPECT_FALSE(card.engine->needsLayout);
    card.set("w", "140");
    EXPECT_TRUE(sameYGValue(YGNodeStyleGetWidth(node->yogaNode), {140, YGUnitPoint}));
    EXPECT_TRUE(card.engine->needsLayout);
    card.set("w", R"("wide")");  // a string reads as 0
    EXPECT_TRUE(sameYGValue(YGNodeStyleGetWidth(node->yogaNode), {0, YGUnitPoint}));
}

TEST(ViewStyleProperties, DefaultsAndConstantsFillTheCacheOnly)
{
    RenderCard card("{}");
    auto plain = makeNode(card, "");
    const Mero::StyleCache& style = plain->style;
    EXPECT_EQ(style.backgroundColor, "#00000000");
    EXPECT_EQ(style.borderColor, "#000000FF");
    EXPECT_EQ(style.opacity, 1.0);
    EXPECT_EQ(style.scaleX, 1.0);
    EXPECT_EQ(style.scaleY, 1.0);
    EXPECT_EQ(style.anchorPointX, 0.5);
    EXPECT_EQ(style.anchorPointY, 0.5);
    EXPECT_EQ(style.rotationZ, 0.0);
    EXPECT_EQ(style.translateY, 0.0);
    EXPECT_EQ(style.cornerLeftTop, 0.0);

    auto styled = makeNode(card, R"("backgroundColor": "#FF0000FF", "borderColor": 5, "opacity": "half",
        "rotationZ": 90, "cornerRightBottom": {"sizeType": 4, "value": 8})");
    EXPECT_EQ(styled->style.backgroundColor, "#FF0000FF");
    EXPECT_EQ(styled->style.borderColor, "#000000FF");  // wrong kind: the default
    EXPECT_EQ(styled->style.opacity, 1.0);
    EXPECT_EQ(styled->style.rotationZ, 90.0);
    EXPECT_EQ(styled->style.cornerRightBottom, 8.0);
    EXPECT_TRUE(card.engine->pendingNodes.empty());
}

TEST(ViewStyleProperties, GradientIsReadFromTheLiteralWithAtMostFiveStops)
{
    RenderCard card("{}");
    auto node = makeNode(card, R"("backgroundGradient": {"angle": 45,
        "colors": ["#1", "#2", "#3", "#4", "#5", "#6"], "locations": [0, 0.25, 0.5]})");
    const Mero::Gradient& gradient = node->style.gradient;
    EXPECT_EQ(gradient.angle, 45.0);
    ASSERT_EQ(gradient.stops.size(), 5U);
    EXPECT_EQ(gradient.stops[1].color, "#2");
    EXPECT_EQ(gradient.stops[1].location, 0.25);
    EXPECT_EQ(gradient.stops[4].color, "#5");
    EXPECT_EQ(gradient.stops[4].location, 0.0);
}

namespace {

struct StyleRowCase {
    const char* key;
    uint32_t id;
    const char* transitionKey;  // the key whose entry animates it; null: never
};

const StyleRowCase styleRowCases[] = {
    {"cornerLeftTop", 16, nullptr},    {"cornerRightTop", 17, nullptr},   {"cornerRightBottom", 18, nullptr},
    {"cornerLeftBottom", 19, nullptr}, {"opacity", 8, "opacity"},         {"scaleX", 9, "transform"},
    {"scaleY", 10, "transform"},       {"anchorPointX", 11, "transform"}, {"anchorPointY", 12, "transform"},
    {"rotationX", 13, "transform"},    {"rotationY", 14, "transform"},    {"rotationZ", 15, "transform"},
    {"translateX", 36, "transform"},   {"translateY", 37, "transform"},
};

std::string boundStyleCard(const StyleRowCase& row, const std::string& transition)
{
    const bool corner = std::string(row.key).starts_with("corner");
    const std::string value = corner ? R"({"sizeType": 1, "value": {"$": 3, "n": "v"}})" : R"({"$": 3, "n": "v"})";
    return R"({"variables": {"v": 1}, "elements": {"$": 0, "nodeId": "n", ")" + std::string(row.key) + R"(": )" +
           value + (transition.empty() ? "" : R"(, "transition": )" + transition) + "}}";
}

}  // namespace

TEST(ViewStyleProperties, EachRowQueuesItsIdPlainOrUnderItsTransitionKey)
{
    for (const StyleRowCase& row : styleRowCases) {
        const std::string id = std::to_string(row.id);
        {
            RenderCard card(boundStyleCard(row, ""));
            card.start();
            card.set("v", "3");
            EXPECT_EQ(card.flush(), Calls{"n set " + id + "=3"}) << row.key;
        }
        {
            // Under its own name only the opacity row animates.
            RenderCard card(boundStyleCard(row, R"({")" + std::string(row.key) + R"(": {"duration": 100}})"));
            card.start();
            card.set("v", "3");
            const bool own = row.transitionKey != nullptr && std::string(row.transitionKey) == row.key;
            EXPECT_EQ(card.flush(), Calls{own ? "n animate " + id + "=3@0/100/0" : "n set " + id + "=3"}) << row.key;
        }
        {
            RenderCard card(boundStyleCard(row, R"({"transform": {"timing": 1, "duration": 200, "delay": 5}})"));
            card.start();
            card.set("v", "3");
            const bool transform = row.transitionKey != nullptr && std::string(row.transitionKey) == "transform";
            EXPECT_EQ(card.flush(), Calls{transform ? "n animate " + id + "=3@1/200/5" : "n set " + id + "=3"})
                << row.key;
        }
        {
            RenderCard card(boundStyleCard(row, R"({"all": {"timing": 2, "duration": 50}})"));
            card.start();
            card.set("v", "3");
            EXPECT_EQ(card.flush(),
                      Calls{row.transitionKey != nullptr ? "n animate " + id + "=3@2/50/0" : "n set " + id + "=3"})
                << row.key;
        }
    }
}

TEST(ViewStyleProperties, ColoursQueueTheirValueAndOnlyBackgroundAnimates)
{
    RenderCard card(R"({"variables": {"c": "#111111FF"}, "elements": {"$": 0, "nodeId": "n",
        "backgroundColor": {"$": 3, "n": "c"}, "borderColor": {"$": 3, "n": "c"}, "transition": {"all": {"duration": 9}}}})");
    ViewRenderNode& node = card.start();
    EXPECT_EQ(node.style.backgroundColor, "#111111FF");
    card.set("c", R"("#222222FF")");
    EXPECT_EQ(card.flush(), (Calls{"n set 202=#222222FF", "n animate 201=#222222FF@0/9/0"}));
    EXPECT_EQ(node.style.borderColor, "#222222FF");
}

TEST(ViewStyleProperties, TwoPropertiesOnOneVariableUpdateInBindingOrder)
{
    RenderCard card(R"({"variables": {"v": 1}, "elements": {"$": 0, "nodeId": "n",
        "translateY": {"$": 3, "n": "v"}, "opacity": {"$": 3, "n": "v"}, "scaleX": {"$": 3, "n": "v"}}})");
    card.start();
    card.set("v", "0.5");
    EXPECT_EQ(card.flush(), Calls{"n set 8=0.5 9=0.5 37=0.5"});
}

namespace {

// A root with padding 1, 2, 3, 4 and borders 5, 6, 7, 8 (left, top, right,
// bottom), whose only child sits at (left + border, top + border) = (6, 8).
constexpr const char* boxCard = R"({"variables": {"w": 100, "shift": 0}, "elements": {
    "$": 3, "nodeId": "root", "width": {"sizeType": 1, "value": {"$": 3, "n": "w"}},
    "height": {"sizeType": 1, "value": 50},
    "paddingLeft": {"sizeType": 1, "value": 1}, "paddingTop": {"sizeType": 1, "value": 2},
    "paddingRight": {"sizeType": 1, "value": 3}, "paddingBottom": {"sizeType": 1, "value": 4},
    "borderLeft": {"sizeType": 1, "value": 5}, "borderTop": {"sizeType": 1, "value": 6},
    "borderRight": {"sizeType": 1, "value": 7}, "borderBottom": {"sizeType": 1, "value": 8},
    "transition": {"all": {"duration": 100}, "x": {"timing": 3, "duration": 40}},
    "children": [{"$": 0, "nodeId": "child", "width": {"sizeType": 1, "value": 10},
                  "marginLeft": {"sizeType": 1, "value": {"$": 3, "n": "shift"}},
                  "transition": {"all": {"duration": 70}}}]}})";

}  // namespace

TEST(ViewApplyLayout, FirstPassSendsEveryNonZeroResultWithItsId)
{
    RenderCard card(boxCard);
    ViewRenderNode& root = card.build();
    card.attachComponents();
    card.layout();
    EXPECT_EQ(card.flush(),
              (Calls{"root set 4=1 5=2 6=3 7=4 20=5 22=6 21=7 23=8", "root animate 0=100@0/100/0 1=50@0/100/0",
                     "child set 2=6 3=8", "child animate 0=10@0/70/0"}));
    EXPECT_EQ(root.layout.borderRight, 7.0);
    EXPECT_EQ(root.layout.paddingBottom, 4.0);
    card.layout();
    EXPECT_EQ(card.flush(), Calls{});
}

TEST(ViewApplyLayout, AllAnimatesSizesButNeverPositions)
{
    RenderCard card(boxCard);
    card.start();
    card.set("w", "120");
    card.set("shift", "4");
    EXPECT_EQ(card.flush(), (Calls{"root animate 0=120@0/100/0", "child set 2=10"}));
}

TEST(ViewApplyLayout, AnXTransitionAnimatesMovesOnceTheViewExists)
{
    RenderCard card(R"({"variables": {"shift": 0}, "elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "nodeId": "c", "width": {"sizeType": 1, "value": 10},
         "marginLeft": {"sizeType": 1, "value": {"$": 3, "n": "shift"}},
         "transition": {"x": {"timing": 3, "duration": 40}, "y": {"duration": 1}}}]}})");
    card.start();
    card.set("shift", "4");
    EXPECT_EQ(card.flush(), Calls{"c animate 2=4@3/40/0"});

    card.find("c")->component = nullptr;  // no view: never animated, and nothing sent
    card.set("shift", "6");
    card.engine->flush();
    EXPECT_EQ(card.calls, Calls{});
}

TEST(ViewApplyLayout, SizesWaitForTheRenderSwitchButAreCached)
{
    RenderCard card(boxCard);
    ViewRenderNode& root = card.build();
    card.layout();
    EXPECT_EQ(root.layout.width, 100.0);
    for (const Mero::PropertyUpdate& update : root.propertyUpdates) {
        EXPECT_GT(update.propertyId, 1U);
    }
}

TEST(ViewApplyLayout, ZeroSizesAreNeverSent)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [{"$": 0, "nodeId": "dot"}]}})");
    card.build();
    card.attachComponents();
    card.layout();
    EXPECT_EQ(card.flush(), Calls{"root set 0=750 1=1334"});
}

TEST(ViewApplyLayout, FlattenedContainersAddTheirOffset)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 3, "nodeId": "group", "isEmpty": true, "marginLeft": {"sizeType": 1, "value": 20},
         "marginTop": {"sizeType": 1, "value": 5}, "children": [
            {"$": 0, "nodeId": "inner", "width": {"sizeType": 1, "value": 4}, "height": {"sizeType": 1, "value": 4},
             "marginLeft": {"sizeType": 1, "value": 10}}]}]}})");
    card.build();
    card.attachComponents();
    card.layout();
    EXPECT_EQ(card.find("group")->layout.x, 20.0);
    EXPECT_EQ(card.find("inner")->layout.x, 30.0);
    EXPECT_EQ(card.find("inner")->layout.y, 5.0);
    EXPECT_EQ(card.flush(), (Calls{"root set 0=750 1=1334", "inner set 0=4 1=4 2=30 3=5"}));
}
