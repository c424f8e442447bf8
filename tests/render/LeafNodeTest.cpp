// Leaf kinds: their own properties and ids, and the text, image and custom
// measure functions.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "render/LeafRenderNode.h"
#include "render/RenderCard.h"
#include "support/ReportedErrors.h"

using Mero::ViewRenderNode;
using MeroTest::Calls;
using MeroTest::RenderCard;

namespace {

constexpr const char* textCard = R"({"variables": {"label": "Hi", "weight": 400, "size": 24}, "elements": {
    "$": 3, "nodeId": "root", "children": [
    {"$": 4, "nodeId": "t", "text": {"$": 3, "n": "label"}, "fontWeight": {"$": 3, "n": "weight"},
     "fontSize": {"sizeType": 1, "value": {"$": 3, "n": "size"}}, "maxLines": 2.7,
     "lineHeight": {"sizeType": 4, "value": 10}}]}})";

}  // namespace

TEST(TextRenderNode, MeasuresThroughTheHostWithItsStyle)
{
    RenderCard card(textCard);
    card.engine->screenScale = 2.0;
    card.measureAnswer = {120.0, 30.0};
    card.build();
    card.layout();
    ASSERT_EQ(card.measured.size(), 1U);
    const Mero::TextContent& asked = card.measured[0];
    EXPECT_EQ(std::tuple(*asked.text, asked.fontSize, asked.lineHeight, asked.maxLines, asked.fontWeight,
                         asked.textStyle),
              std::tuple(std::string("Hi"), 24.0, 20.0, 2, 400, 400));
    EXPECT_EQ(asked.width, 750.0);
    EXPECT_EQ(asked.widthMode, YGMeasureModeAtMost);
    EXPECT_EQ(card.find("t")->layout().width, 120.0);
    EXPECT_EQ(card.find("t")->layout().height, 30.0);

    RenderCard unmeasured(textCard);  // without a host measure the text has no size
    unmeasured.engine->services.measureText = nullptr;
    unmeasured.build();
    unmeasured.layout();
    EXPECT_EQ(unmeasured.find("t")->layout().width, 0.0);

    // A negative or NaN answer measures 0, quietly.
    RenderCard invalid(textCard);
    invalid.measureAnswer = {-5.0, std::nan("")};
    invalid.build();
    EXPECT_EQ(MeroTest::printedOutput([&] { invalid.layout(); }), "");
    EXPECT_EQ(invalid.find("t")->layout().width, 0.0);
    EXPECT_EQ(invalid.find("t")->layout().height, 0.0);
}

TEST(TextRenderNode, TextChangesRemeasureButWeightChangesDoNot)
{
    RenderCard card(textCard);
    card.measureAnswer = {50.0, 20.0};
    card.start();
    const std::size_t before = card.measured.size();
    card.set("weight", "700");
    EXPECT_EQ(card.flush(), Calls{"t set 101=700"});
    EXPECT_EQ(card.measured.size(), before);

    card.measureAnswer = {90.0, 20.0};
    card.set("label", R"("Hello")");
    EXPECT_EQ(card.flush(), (Calls{"t set 203=Hello 0=90"}));
    ASSERT_EQ(card.measured.size(), before + 1);
    EXPECT_EQ(*card.measured.back().text, "Hello");
}

TEST(ImageRenderNode, MeasureKeepsTheAspectRatioOfTheContent)
{
    struct Case {
        float width;
        YGMeasureMode widthMode;
        float height;
        YGMeasureMode heightMode;
        float expectedWidth;
        float expectedHeight;
    };
    constexpr YGMeasureMode exactly = YGMeasureModeExactly, atMost = YGMeasureModeAtMost, free = YGMeasureModeUndefined;
    // Content 200 by 50 throughout; only "both exact" does not ask the host.
    const Case cases[] = {
        {10, exactly, 20, exactly, 10, 20},    {100, exactly, 0, free, 100, 25},  {100, exactly, 10, atMost, 100, 10},
        {500, atMost, 100, exactly, 400, 100}, {2, free, 100, exactly, 2, 100},   {0, free, 0, free, 200, 50},
        {100, atMost, 0, free, 100, 25},       {100, atMost, 10, atMost, 40, 10},
    };
    RenderCard card(R"({"elements": {"$": 5, "nodeId": "img"}})");
    auto& image = static_cast<Mero::LeafRenderNode&>(card.build());
    const YGSize unseen = image.measure(100, exactly, 0, free);  // no view yet: no size
    EXPECT_EQ(std::pair(unseen.width, unseen.height), std::pair(0.0F, 0.0F));
    card.attachComponents();
    card.views.contentSizes["img"] = {200.0F, 50.0F};
    for (const Case& test : cases) {
        const YGSize size = image.measure(test.width, test.widthMode, test.height, test.heightMode);
        const std::string name = std::to_string(test.width) + " " + std::to_string(test.height);
        EXPECT_EQ(std::pair(size.width, size.height), std::pair(test.expectedWidth, test.expectedHeight)) << name;
        const bool bothExact = test.widthMode == exactly && test.heightMode == exactly;
        EXPECT_EQ(card.flush(), bothExact ? Calls{} : Calls{"img contentSize"}) << name;
    }
}

TEST(LeafMeasure, AnImageTakesItsHeightFromTheContentAndACustomViewOnlyAFixedSize)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "flexDirection": 0, "alignItems": 1, "children": [
        {"$": 5, "nodeId": "img", "width": {"sizeType": 1, "value": 100}}, {"$": 9, "nodeId": "free"},
        {"$": 9, "nodeId": "fixed", "width": {"sizeType": 1, "value": 60},
         "height": {"sizeType": 1, "value": 40}}]}})");
    card.start();
    EXPECT_EQ(std::pair(card.find("free")->layout().width, card.find("free")->layout().height), std::pair(0.0F, 0.0F));
    EXPECT_EQ(std::pair(card.find("fixed")->layout().width, card.find("fixed")->layout().height), std::pair(60.0F, 40.0F));
    card.views.contentSizes["img"] = {200.0F, 50.0F};
    card.tree.requestLayout();
    YGNodeMarkDirty(card.find("img")->yogaNode);
    // The custom views move down; the free one still sends no size.
    EXPECT_EQ(card.flush(), (Calls{"img contentSize", "img set 1=25", "free set 3=25", "fixed set 3=25"}));
}

TEST(ProgressRenderNode, ItsOwnTransitionAnimatesOneColourAndAllEveryColourButNoText)
{
    const std::pair<const char*, Calls> cases[] = {
        {R"({"dl_color_text": {"timing": 1, "duration": 200}})",
         {"dl set 211=#2 215=#2 216=#2 220=#2", "dl animate 212=#2@1/200/0"}},
        {R"({"all": {"duration": 5}})", {"dl set 216=#2 220=#2", "dl animate 211=#2@0/5/0 212=#2@0/5/0 215=#2@0/5/0"}},
    };
    for (const auto& [transition, expected] : cases) {
        RenderCard card(R"({"variables": {"c": "#1"}, "elements": {"$": 6, "nodeId": "dl", "fontWeight": 3,
            "businessData": {"$": 3, "n": "c"}, "dl_color_text": {"$": 3, "n": "c"},
            "dl_color_normal": {"$": 3, "n": "c"},
            "dl_text_normal": {"$": 3, "n": "c"}, "dl_color_progressBg": {"$": 3, "n": "c"},
            "dl_text_installed": {"$": 3, "n": "c"}, "transition": )" +
                        std::string(transition) + "}}");
        const ViewRenderNode& progress = card.start();
        EXPECT_EQ(progress.kindValue(Mero::Property::BusinessData).object().at("n").string(), "c");  // unevaluated
        card.set("c", R"("#2")");
        EXPECT_EQ(card.flush(), expected) << transition;
    }
}

TEST(LeafRenderNodes, BoundRowsSendTheirIds)
{
    // One row of each kind per node class; the tables themselves are data.
    const std::tuple<const char*, std::string_view, const char*, const char*> rows[] = {
        {"4", "textColor", R"("#F")", "204=#F"},
        {"5", "scaleMode", "2", "103=2"},
        {"7", "rating_star_color", R"("#A")", "210=#A"},
        {"11", "blurAlpha", "0.5", "40=0.5"},
        {"9", "extra", R"("e")", "209=e"},
        {"10", "muted", "1", "303=false"},  // 1 is not a boolean
        {"6", "fontSize", "14", "24=14"},
    };
    for (const auto& [type, key, value, sent] : rows) {
        const std::string bound =
            key == "fontSize" ? R"({"sizeType": 1, "value": {"$": 3, "n": "v"}})" : R"({"$": 3, "n": "v"})";
        RenderCard card(R"({"variables": {"v": null}, "elements": {"$": )" + std::string(type) +
                        R"(, "nodeId": "n", ")" + std::string(key) + R"(": )" + bound + "}}");
        card.start();
        card.set("v", value);
        EXPECT_EQ(card.flush(), Calls{"n set " + std::string(sent)}) << key;
    }
}
