// The slot rules of createComponent, without a JVM: where each host property
// id lands. A node's own slots and gradient are checked through the natives
// (EndToEndTests) and in the previewer's golden trees.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "render/RenderCard.h"
#include "render/ViewSlots.h"

namespace {

using Mero::ViewSlots;
using Mero::Value;

// Every slot that differs from its zero value, as "i0=3 f24=28.5 s4=#123456FF b1=1".
std::string filled(const ViewSlots& slots)
{
    std::ostringstream text;
    auto list = [&text](char buffer, const auto& values, auto isSet) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (isSet(values[i])) {
                text << (text.tellp() > 0 ? " " : "") << buffer << i << '=' << values[i];
            }
        }
    };
    list('i', slots.ints, [](int32_t v) { return v != 0; });
    list('f', slots.floats, [](float v) { return v != 0.0F; });
    list('s', slots.strings, [](std::string_view v) { return !v.empty(); });
    list('b', slots.booleans, [](bool v) { return v; });
    return text.str();
}

TEST(ViewSlotsPut, TheHundredsPickTheBufferAndTheRestTheSlot)
{
    // Floats as they are, but the video start time (38) as a whole number; ints truncated; strings take
    // the text of numbers and booleans, and null as empty; ids outside the buffers are ignored.
    const struct {
        uint32_t id;
        Value value;
        const char* expected;
    } rows[] = {
        {24, Value(28.5), "f24=28.5"}, {38, Value(12.9), "f38=12"},     {39, Value(12.9), "f39=12.9"},
        {100, Value(3.9), "i0=3"},     {104, Value(-2.7), "i4=-2"},     {204, Value("#123456FF"), "s4=#123456FF"},
        {203, Value(1.5), "s3=1.5"},   {206, Value(false), "s6=false"}, {209, Value(), ""},
        {301, Value(true), "b1=1"},    {110, Value(1.0), ""},           {399, Value(true), ""},
        {400, Value("x"), ""},
    };
    for (const auto& row : rows) {
        ViewSlots slots;
        slots.put(row.id, row.value);
        EXPECT_EQ(filled(slots), row.expected) << "property " << row.id;
    }
}

TEST(StringSlots, EachSlotReadsItsLastTextAndClearEmptiesThemAll)
{
    Mero::StringSlots strings;
    strings.set(3, "first");
    strings.set(7, "kept");
    strings.set(3, "");
    strings.set(9, "");
    strings.set(4, "second");
    EXPECT_EQ(strings[3], "");
    EXPECT_EQ(strings[4], "second");
    EXPECT_EQ(strings[7], "kept");
    EXPECT_EQ(strings[9], "");
    strings.clear();
    strings.set(5, "after");
    EXPECT_EQ(strings[4], "");
    EXPECT_EQ(strings[7], "");
    EXPECT_EQ(strings[5], "after");
}

TEST(CollectViewSlots, CommonValuesAreTheFrameWhatTheNodeBindsAndTheDefaultsElsewhere)
{
    // In a row: "plain" binds only its box; "styled" binds colours, numbers, corners and insets.
    MeroTest::RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "nodeId": "plain", "width": {"sizeType": 1, "value": 10}, "height": {"sizeType": 1, "value": 20},
         "marginLeft": {"sizeType": 1, "value": 5}},
        {"$": 0, "nodeId": "styled", "width": {"sizeType": 1, "value": 30}, "height": {"sizeType": 1, "value": 40},
         "marginTop": {"sizeType": 1, "value": 7}, "backgroundColor": "#FF0000FF", "opacity": 0.25,
         "cornerLeftTop": {"sizeType": 1, "value": 4}, "translateY": -3, "anchorPointX": 0,
         "paddingTop": {"sizeType": 1, "value": 2}, "borderRight": {"sizeType": 1, "value": 1}}]}})");
    card.build();
    card.layout();
    EXPECT_EQ(filled(Mero::collectViewSlots(*card.find("plain"))),
              "f0=10 f1=20 f2=5 f8=1 f9=1 f10=1 f11=0.5 f12=0.5 s0=plain s1=#00000000 s2=#000000FF");
    EXPECT_EQ(filled(Mero::collectViewSlots(*card.find("styled"))),
              "f0=30 f1=40 f2=15 f3=7 f5=2 f8=0.25 f9=1 f10=1 f12=0.5 f16=4 f21=1 f37=-3 "
              "s0=styled s1=#FF0000FF s2=#000000FF");
}

TEST(CollectViewSlots, OwnValuesGoToTheirKindsSlotsAndUnnamedOnesReadAsTheirDefaults)
{
    MeroTest::RenderCard card(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 4, "nodeId": "t", "text": "Hi", "maxLines": 2, "fontSize": {"sizeType": 1, "value": 14}},
        {"$": 6, "nodeId": "d", "businessData": {"k": [1, 2]}, "dl_text_normal": "Get", "fontWeight": 700}]}})");
    card.build();
    const std::string common = "f8=1 f9=1 f10=1 f11=0.5 f12=0.5";
    EXPECT_EQ(filled(Mero::collectViewSlots(*card.find("t"))),
              "i0=2 " + common + " f24=14 s0=t s1=#00000000 s2=#000000FF s3=Hi s4=#000000FF");
    EXPECT_EQ(filled(Mero::collectViewSlots(*card.find("d"))),
              "i1=700 " + common + " s0=d s1=#00000000 s2=#000000FF s16=Get s21={\"k\":[1,2]}");
}

}  // namespace
