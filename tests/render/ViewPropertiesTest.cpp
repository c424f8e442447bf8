// The common properties: what reaches Yoga, what reaches the host and under
// which id, plain or animated; and applyLayout's results.
#include <gtest/gtest.h>

#include <cmath>

#include "render/RenderCard.h"

using Mero::ViewRenderNode;
using MeroTest::Calls;
using MeroTest::RenderCard;

namespace {

std::unique_ptr<ViewRenderNode> makeNode(RenderCard& card, const std::string& members)
{
    const std::string element = R"({"$": 0, "nodeId": "n")" + (members.empty() ? "" : ", " + members) + "}";
    return std::make_unique<ViewRenderNode>(MeroTest::json(element), nullptr, card.tree, nullptr);
}

// A Yoga style value as "120pt", "50%", "auto" or "undefined".
std::string text(YGValue value)
{
    switch (value.unit) {
    case YGUnitPoint: return std::isnan(value.value) ? "undefined" : Mero::numberToString(value.value) + "pt";
    case YGUnitPercent: return Mero::numberToString(value.value) + "%";
    case YGUnitAuto: return "auto";
    default: return "undefined";
    }
}

using Reader = YGValue (*)(YGNodeConstRef, YGEdge);

template <YGValue (*Get)(YGNodeConstRef)>
YGValue whole(YGNodeConstRef node, YGEdge)
{
    return Get(node);
}

YGValue border(YGNodeConstRef node, YGEdge edge)
{
    return {YGNodeStyleGetBorder(node, edge), YGUnitPoint};
}

struct YogaCase {
    const char* members;
    Reader read;
    YGEdge edge;
    const char* expected;
};

// At screen scale 1.5.
// clang-format off
const YogaCase yogaCases[] = {
    {R"("width": {"sizeType": 1, "value": 120})", whole<YGNodeStyleGetWidth>, YGEdgeAll, "120pt"},
    {R"("width": {"sizeType": 2, "value": 50})", whole<YGNodeStyleGetWidth>, YGEdgeAll, "50%"},
    {R"("width": {"sizeType": 3, "value": 50})", whole<YGNodeStyleGetWidth>, YGEdgeAll, "auto"},
    {R"("width": {"sizeType": 4, "value": 100})", whole<YGNodeStyleGetWidth>, YGEdgeAll, "150pt"},
    {R"("width": {"sizeType": -1, "$": 3, "n": "size"})", whole<YGNodeStyleGetWidth>, YGEdgeAll, "auto"},
    {R"("height": {"sizeType": 6, "value": 10})", whole<YGNodeStyleGetHeight>, YGEdgeAll, "75pt"},
    {R"("minHeight": {"sizeType": 3})", whole<YGNodeStyleGetMinHeight>, YGEdgeAll, "undefined"},
    {R"("maxHeight": {"sizeType": 2, "value": 80})", whole<YGNodeStyleGetMaxHeight>, YGEdgeAll, "80%"},
    {R"("marginLeft": {"sizeType": 1, "value": 1})", YGNodeStyleGetMargin, YGEdgeLeft, "1pt"},
    {R"("marginTop": {"sizeType": 2, "value": 2})", YGNodeStyleGetMargin, YGEdgeTop, "2%"},
    {R"("paddingTop": {"sizeType": 2, "value": 6})", YGNodeStyleGetPadding, YGEdgeTop, "6%"},
    {R"("top": {"sizeType": 2, "value": 10})", YGNodeStyleGetPosition, YGEdgeTop, "10%"},
    {R"("bottom": {"sizeType": 3})", YGNodeStyleGetPosition, YGEdgeBottom, "undefined"},
    {R"("borderLeft": {"sizeType": 1, "value": 1})", border, YGEdgeLeft, "1pt"},
    {R"("borderTop": {"sizeType": 2, "value": 50})", border, YGEdgeTop, "undefined"},
};
// clang-format on

}  // namespace

TEST(ViewLayoutProperties, EachReachesYogaInItsUnit)
{
    RenderCard card("{}");
    card.engine->screenScale = 1.5;
    for (const YogaCase& test : yogaCases) {
        EXPECT_EQ(text(test.read(makeNode(card, test.members)->yogaNode, test.edge)), test.expected) << test.members;
    }
    // Position numbers are the template's, not Yoga's.
    const std::pair<const char*, YGPositionType> positions[] = {
        {R"("position": 1)", YGPositionTypeAbsolute},
        {R"("position": 2)", YGPositionTypeStatic},
        {R"("position": 7)", YGPositionTypeRelative},
        {R"("position": "1")", YGPositionTypeRelative},
    };
    for (const auto& [members, expected] : positions) {
        EXPECT_EQ(YGNodeStyleGetPositionType(makeNode(card, members)->yogaNode), expected) << members;
    }
}

TEST(ViewStyleProperties, ConstantsFillTheCacheOnlyAndAWrongKindKeepsTheDefault)
{
    RenderCard card("{}");
    auto node = makeNode(card, R"("backgroundColor": "#FF0000FF", "borderColor": 5, "opacity": "half",
        "cornerRightBottom": {"sizeType": 4, "value": 8}, "backgroundGradient": {"angle": 45,
        "colors": ["#1", "#2", "#3", "#4", "#5", "#6"], "locations": [0, 0.25, 0.5]})");
    EXPECT_EQ(node->style().backgroundColor, "#FF0000FF");
    EXPECT_EQ(node->style().borderColor, "#000000FF");
    EXPECT_EQ(node->style().opacity, 1.0);
    EXPECT_EQ(node->style().cornerRightBottom, 8.0);
    EXPECT_TRUE(card.tree.pendingNodes().empty());
    // The gradient keeps at most five stops; a missing location reads 0.
    const Mero::Gradient& gradient = node->gradient();
    EXPECT_EQ(gradient.angle, 45.0);
    ASSERT_EQ(gradient.stops.size(), 5U);
    EXPECT_EQ(std::pair(gradient.stops[1].color, gradient.stops[1].location), std::pair(std::string("#2"), 0.25));
    EXPECT_EQ(std::pair(gradient.stops[4].color, gradient.stops[4].location), std::pair(std::string("#5"), 0.0));
}

TEST(ViewStyleProperties, EachRowQueuesItsIdPlainOrUnderItsTransitionKey)
{
    struct Row {
        const char* key;
        int id;
        const char* transitionKey;  // the key whose entry animates it; null: never
    };
    const Row rows[] = {
        {"cornerLeftTop", 16, nullptr},
        {"opacity", 8, "opacity"},
        {"translateX", 36, "transform"},
    };
    for (const Row& row : rows) {
        const std::string key = row.key;
        const std::string animates = row.transitionKey ? row.transitionKey : "";
        const std::string value =
            key.starts_with("corner") ? R"({"sizeType": 1, "value": {"$": 3, "n": "v"}})" : R"({"$": 3, "n": "v"})";
        // Transition, and the timing it animates with when it applies.
        const std::pair<std::string, const char*> transitions[] = {
            {"{}", nullptr},
            {R"({")" + key + R"(": {"duration": 100}})", animates == key ? "@0/100/0" : nullptr},
            {R"({"transform": {"timing": 1, "duration": 200, "delay": 5}})",
             animates == "transform" ? "@1/200/5" : nullptr},
            {R"({"all": {"timing": 2.7, "duration": 50}})", row.transitionKey ? "@2/50/0" : nullptr},
            {R"([{"all": {"duration": 50}}])", nullptr},
        };
        for (const auto& [transition, timing] : transitions) {
            RenderCard card(R"({"variables": {"v": 1}, "elements": {"$": 0, "nodeId": "n", ")" + key + R"(": )" +
                            value + R"(, "transition": )" + transition + "}}");
            card.start();
            card.set("v", "3");
            const std::string update = std::to_string(row.id) + "=3";
            EXPECT_EQ(card.flush(), Calls{timing ? "n animate " + update + timing : "n set " + update})
                << key << " " << transition;
        }
    }
}

TEST(ViewStyleProperties, ColoursQueueTheirValueOnlyBackgroundAnimatesAndOneVariableUpdatesInBindingOrder)
{
    RenderCard card(R"({"variables": {"c": "#1", "v": 1}, "elements": {"$": 0, "nodeId": "n",
        "backgroundColor": {"$": 3, "n": "c"}, "borderColor": {"$": 3, "n": "c"},
        "transition": {"all": {"duration": 9}},
        "translateY": {"$": 3, "n": "v"}, "opacity": {"$": 3, "n": "v"}, "scaleX": {"$": 3, "n": "v"}}})");
    card.start();
    card.set("c", R"("#2")");
    EXPECT_EQ(card.flush(), (Calls{"n set 202=#2", "n animate 201=#2@0/9/0"}));
    card.set("v", "0.5");
    EXPECT_EQ(card.flush(), Calls{"n animate 8=0.5@0/9/0 9=0.5@0/9/0 37=0.5@0/9/0"});
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
    "transition": {"all": {"duration": 100}},
    "children": [{"$": 0, "nodeId": "child", "width": {"sizeType": 1, "value": 10},
                  "marginLeft": {"sizeType": 1, "value": {"$": 3, "n": "shift"}},
                  "transition": {"all": {"duration": 70}}}]}})";

}  // namespace

TEST(ViewApplyLayout, FirstPassSendsEveryNonZeroResultWithItsId)
{
    RenderCard card(boxCard);
    card.build();
    card.attachComponents();
    card.layout();
    EXPECT_EQ(card.flush(),
              (Calls{"root set 4=1 5=2 6=3 7=4 20=5 22=6 21=7 23=8", "root animate 0=100@0/100/0 1=50@0/100/0",
                     "child set 2=6 3=8", "child animate 0=10@0/70/0"}));
    card.layout();
    EXPECT_EQ(card.flush(), Calls{});
}

TEST(ViewApplyLayout, SizesWaitForTheRenderSwitchButAreCached)
{
    RenderCard card(boxCard);
    ViewRenderNode& root = card.build();
    card.layout();
    EXPECT_EQ(root.layout().width, 100.0);
    EXPECT_EQ(root.layout().borderRight, 7.0);
    for (const Mero::PropertyUpdate& update : root.propertyUpdates()) {
        EXPECT_GT(update.propertyId, 1U);
    }
}

TEST(ViewApplyLayout, AllAnimatesSizesButNeverPositionsWhileXDoesOnceTheViewExists)
{
    RenderCard card(boxCard);
    card.start();
    card.set("w", "120");
    card.set("shift", "4");
    EXPECT_EQ(card.flush(), (Calls{"root animate 0=120@0/100/0", "child set 2=10"}));

    RenderCard moved(R"({"variables": {"shift": 0}, "elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "nodeId": "c", "width": {"sizeType": 1, "value": 10},
         "marginLeft": {"sizeType": 1, "value": {"$": 3, "n": "shift"}},
         "transition": {"x": {"timing": 3, "duration": 40}, "y": {"duration": 1}}}]}})");
    moved.start();
    moved.set("shift", "4");
    EXPECT_EQ(moved.flush(), Calls{"c animate 2=4@3/40/0"});
    moved.tree.viewsRefused({&moved.root()});  // no view below the root: never animated, nothing sent
    moved.set("shift", "6");
    EXPECT_EQ(moved.flush(), Calls{});
}

TEST(ViewApplyLayout, InsetsThatStartAtZeroAreSentWhenTheyChange)
{
    RenderCard card(R"({"variables": {"p": 0, "b": 0}, "elements": {"$": 3, "nodeId": "root",
        "paddingLeft": {"sizeType": 1, "value": {"$": 3, "n": "p"}},
        "borderTop": {"sizeType": 1, "value": {"$": 3, "n": "b"}}}})");
    card.start();
    card.set("p", "3");
    card.set("b", "2");
    EXPECT_EQ(card.flush(), Calls{"root set 4=3 22=2"});
    card.set("p", "0");
    EXPECT_EQ(card.flush(), Calls{"root set 4=0"});
}

TEST(ViewApplyLayout, FlattenedContainersAddTheirOffsetAndZeroResultsAreNeverSent)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [{"$": 0, "nodeId": "dot"},
        {"$": 3, "nodeId": "group", "isEmpty": true, "marginLeft": {"sizeType": 1, "value": 20},
         "marginTop": {"sizeType": 1, "value": 5}, "children": [
            {"$": 0, "nodeId": "inner", "width": {"sizeType": 1, "value": 4}, "height": {"sizeType": 1, "value": 4},
             "marginLeft": {"sizeType": 1, "value": 10}}]}]}})");
    card.build();
    card.attachComponents();
    card.layout();
    EXPECT_EQ(card.find("group")->layout().x, 20.0);
    EXPECT_EQ(card.find("inner")->layout().x, 30.0);
    EXPECT_EQ(card.flush(), (Calls{"root set 0=750 1=1334", "inner set 0=4 1=4 2=30 3=5"}));
}
