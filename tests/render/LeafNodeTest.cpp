// Leaf kinds: their own properties and ids, and the text, image and custom
// measure functions.
#include <gtest/gtest.h>

#include "render/CustomRenderNode.h"
#include "render/ImageRenderNode.h"
#include "render/ProgressRenderNode.h"
#include "render/RatingRenderNode.h"
#include "render/RenderCard.h"
#include "render/TextRenderNode.h"
#include "render/VideoRenderNode.h"

using MeroTest::Calls;
using MeroTest::RenderCard;

namespace {

constexpr const char* textCard = R"({"variables": {"label": "Hi", "weight": 400, "size": 24}, "elements": {
    "$": 3, "nodeId": "root", "children": [
    {"$": 4, "nodeId": "t", "text": {"$": 3, "n": "label"}, "fontWeight": {"$": 3, "n": "weight"},
     "fontSize": {"sizeType": 1, "value": {"$": 3, "n": "size"}}, "maxLines": 2.7,
     "lineHeight": {"sizeType": 4, "value": 10}}]}})";

}  // namespace

TEST(TextRenderNode, DefaultsAndConstants)
{
    RenderCard card(R"({"elements": {"$": 4, "nodeId": "t"}})");
    auto& text = static_cast<Mero::TextRenderNode&>(card.build());
    EXPECT_EQ(text.text(), "");
    EXPECT_EQ(text.values[Mero::TextRenderNode::Text].kind(), Mero::Kind::String);
    EXPECT_EQ(text.textColor(), "#000000FF");
    EXPECT_EQ(text.maxLines(), 0.0);
    EXPECT_EQ(text.fontSize(), 0.0);
}

TEST(TextRenderNode, MeasuresThroughTheHostWithItsStyle)
{
    RenderCard card(textCard);
    card.engine->screenScale = 2.0;
    card.measureAnswer = {120.0, 30.0};
    card.build();
    card.layout();
    ASSERT_EQ(card.measured.size(), 1U);
    const Mero::TextContent& asked = card.measured[0];
    EXPECT_EQ(*asked.text, "Hi");
    EXPECT_EQ(asked.fontSize, 24.0);
    EXPECT_EQ(asked.lineHeight, 20.0);
    EXPECT_EQ(asked.maxLines, 2);
    EXPECT_EQ(asked.fontWeight, 400);
    EXPECT_EQ(asked.width, 750.0);
    EXPECT_EQ(asked.widthMode, YGMeasureModeAtMost);
    EXPECT_EQ(card.find("t")->layout.width, 120.0);
    EXPECT_EQ(card.find("t")->layout.height, 30.0);
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

    card.set("size", "30");
    card.flush();
    EXPECT_EQ(card.measured.size(), before + 2);
    EXPECT_EQ(card.measured.back().fontSize, 30.0);
}

TEST(TextRenderNode, WithoutAHostMeasureTheTextHasNoSize)
{
    RenderCard card(textCard);
    card.engine->hooks.measureText = nullptr;
    card.build();
    card.layout();
    EXPECT_EQ(card.find("t")->layout.width, 0.0);
    EXPECT_EQ(card.find("t")->layout.height, 0.0);
}

namespace {

struct ImageCase {
    const char* name;
    float width;
    YGMeasureMode widthMode;
    float height;
    YGMeasureMode heightMode;
    float expectedWidth;
    float expectedHeight;
    bool asksHost;
};

// Content 200 by 50 throughout.
const ImageCase imageCases[] = {
    {"both exact", 10, YGMeasureModeExactly, 20, YGMeasureModeExactly, 10, 20, false},
    {"width exact", 100, YGMeasureModeExactly, 0, YGMeasureModeUndefined, 100, 25, true},
    {"width exact, height at most", 100, YGMeasureModeExactly, 10, YGMeasureModeAtMost, 100, 10, true},
    {"height exact", 500, YGMeasureModeAtMost, 100, YGMeasureModeExactly, 400, 100, true},
    {"height exact, offered width 2", 2, YGMeasureModeUndefined, 100, YGMeasureModeExactly, 2, 100, true},
    {"neither", 0, YGMeasureModeUndefined, 0, YGMeasureModeUndefined, 200, 50, true},
    {"width at most", 100, YGMeasureModeAtMost, 0, YGMeasureModeUndefined, 100, 25, true},
    {"both at most", 100, YGMeasureModeAtMost, 10, YGMeasureModeAtMost, 40, 10, true},
};

}  // namespace

TEST(ImageRenderNode, MeasureKeepsTheAspectRatio)
{
    for (const ImageCase& test : imageCases) {
        RenderCard card(R"({"elements": {"$": 5, "nodeId": "img", "src": "a.png", "scaleMode": 2}})");
        auto& image = static_cast<Mero::ImageRenderNode&>(card.build());
        card.attachComponents();
        card.componentOf("img").contentSize = {200.0F, 50.0F};
        const YGSize size = image.measure(test.width, test.widthMode, test.height, test.heightMode);
        EXPECT_EQ(size.width, test.expectedWidth) << test.name;
        EXPECT_EQ(size.height, test.expectedHeight) << test.name;
        EXPECT_EQ(card.calls, test.asksHost ? Calls{"img contentSize"} : Calls{}) << test.name;
    }
}

TEST(ImageRenderNode, BeforeItsViewExistsAnImageMeasuresNothing)
{
    RenderCard card(R"({"elements": {"$": 5, "nodeId": "img", "src": "a.png"}})");
    auto& image = static_cast<Mero::ImageRenderNode&>(card.build());
    EXPECT_EQ(image.src(), "a.png");
    const YGSize size = image.measure(100, YGMeasureModeExactly, 0, YGMeasureModeUndefined);
    EXPECT_EQ(size.width, 0.0F);
    EXPECT_EQ(size.height, 0.0F);
}

TEST(ImageRenderNode, AFixedWidthImageTakesItsHeightFromTheContent)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "flexDirection": 0, "children": [
        {"$": 5, "nodeId": "img", "width": {"sizeType": 1, "value": 100}}]}})");
    card.start();
    card.componentOf("img").contentSize = {200.0F, 50.0F};
    card.engine->needsLayout = true;
    YGNodeMarkDirty(card.find("img")->yogaNode);
    EXPECT_EQ(card.flush(), (Calls{"img contentSize", "img set 1=25"}));
}

TEST(CustomRenderNode, OnlyAFixedSizeGivesItASize)
{
    RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "flexDirection": 0, "alignItems": 1, "children": [
        {"$": 9, "nodeId": "free", "customType": "map", "extra": "{}"},
        {"$": 9, "nodeId": "fixed", "width": {"sizeType": 1, "value": 60}, "height": {"sizeType": 1, "value": 40}}]}})");
    card.build();
    card.layout();
    EXPECT_EQ(card.find("free")->layout.width, 0.0);
    EXPECT_EQ(card.find("free")->layout.height, 0.0);
    EXPECT_EQ(card.find("fixed")->layout.width, 60.0);
    EXPECT_EQ(card.find("fixed")->layout.height, 40.0);
    EXPECT_EQ(card.as<Mero::CustomRenderNode>("free").customType(), "map");
    EXPECT_EQ(card.as<Mero::CustomRenderNode>("free").extra(), "{}");
}

TEST(ProgressRenderNode, OnlyTheNamedColourAnimates)
{
    RenderCard card(R"({"variables": {"c": "#1"}, "elements": {"$": 6, "nodeId": "dl",
        "businessData": {"$": 3, "n": "c"}, "transition": {"dl_color_text": {"timing": 1, "duration": 200}},
        "dl_color_text": {"$": 3, "n": "c"}, "dl_color_normal": {"$": 3, "n": "c"},
        "dl_text_normal": {"$": 3, "n": "c"}}})");
    auto& progress = static_cast<Mero::ProgressRenderNode&>(card.start());
    EXPECT_EQ(progress.businessData.object().at("n").string(), "c");  // kept unevaluated
    card.set("c", R"("#2")");
    EXPECT_EQ(card.flush(), (Calls{"dl set 211=#2 216=#2", "dl animate 212=#2@1/200/0"}));
}

TEST(ProgressRenderNode, AllAnimatesEveryColourButNoText)
{
    RenderCard card(R"({"variables": {"c": "#1"}, "elements": {"$": 6, "nodeId": "dl",
        "transition": {"all": {"duration": 5}}, "dl_color_progressBg": {"$": 3, "n": "c"},
        "dl_text_installed": {"$": 3, "n": "c"}, "fontWeight": 3}})");
    card.start();
    card.set("c", R"("#2")");
    EXPECT_EQ(card.flush(), (Calls{"dl set 220=#2", "dl animate 215=#2@0/5/0"}));
}

TEST(LeafRenderNodes, BoundRowsSendTheirIds)
{
    struct Row {
        const char* type;
        std::string_view key;
        uint32_t id;
        const char* value;
        const char* sent;
    };
    // One row of each kind per node class; the tables themselves are data.
    const Row rows[] = {
        {"4", "textColor", 204, R"("#F")", "#F"},
        {"4", "maxLines", 100, "3", "3"},
        {"5", "scaleMode", 103, "2", "2"},
        {"7", "rating_star_color", 210, R"("#A")", "#A"},
        {"7", "rating_empty_opacity", 30, "0.3", "0.3"},
        {"11", "blurAlpha", 40, "0.5", "0.5"},
        {"9", "extra", 209, R"("e")", "e"},
        {"10", "autoPrepare", 307, "true", "true"},
        {"10", "initTime", 38, "2.5", "2.5"},
        {"6", "fontSize", 24, "14", "14"},
    };
    for (const Row& row : rows) {
        const std::string value =
            row.key == "fontSize" ? R"({"sizeType": 1, "value": {"$": 3, "n": "v"}})" : R"({"$": 3, "n": "v"})";
        RenderCard card(R"({"variables": {"v": null}, "elements": {"$": )" + std::string(row.type) +
                        R"(, "nodeId": "n", ")" + std::string(row.key) + R"(": )" + value + "}}");
        card.start();
        card.set("v", row.value);
        EXPECT_EQ(card.flush(), Calls{"n set " + std::to_string(row.id) + "=" + row.sent}) << row.key;
    }
}

TEST(LeafRenderNodes, VideoBindsItsTableInOrder)
{
    RenderCard card(R"({"variables": {"v": 1}, "elements": {"$": 10, "nodeId": "n",
        "cacheSize": {"$": 3, "n": "v"}, "initTime": {"$": 3, "n": "v"}, "displayMode": {"$": 3, "n": "v"},
        "muted": {"$": 3, "n": "v"}, "videoId": {"$": 3, "n": "v"}}})");
    auto& video = static_cast<Mero::VideoRenderNode&>(card.start());
    EXPECT_EQ(video.values[Mero::VideoRenderNode::Muted].boolean(), false);  // 1 is not a boolean
    card.set("v", "2");
    EXPECT_EQ(card.flush(), Calls{"n set 225=2 303=false 107=2 38=2 108=2"});
}
