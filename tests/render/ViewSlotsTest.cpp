// The slot rules of createComponent, without a JVM: where each host property
// id lands, the fixed string slots, the defaults and the gradient.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "engine/MeroInstance.h"
#include "render/RenderTree.h"
#include "render/ViewRenderNode.h"
#include "render/ViewSlots.h"
#include "runtime/RuntimeEngine.h"

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

class NodeSlots : public testing::Test {
protected:
    const ViewSlots& slotsOf(const char* elementJson)
    {
        instance.loadTemplate(std::string(R"({"elements": )") + elementJson + "}");
        instance.initContainerSize(750.0F, 1334.0F, 1, 1);
        instance.initNode();
        instance.applyLayout();
        slots = Mero::collectViewSlots(*instance.renderTree().root());
        return slots;
    }

    Mero::MeroInstance instance;
    ViewSlots slots;
};

TEST_F(NodeSlots, AViewCarriesItsIdClickFrameBoxAndDefaults)
{
    const ViewSlots& made = slotsOf(R"({"$": 0, "nodeId": "card", "onClick": "tap",
        "width": {"sizeType": 1, "value": 300}, "height": {"sizeType": 1, "value": 120},
        "borderRight": {"sizeType": 1, "value": 3}, "paddingTop": {"sizeType": 1, "value": 6},
        "loopAnimation": [1, 2]})");
    EXPECT_EQ(made.type, 0U);
    // Opacity and scale default to 1, the anchor point to the centre, the colours to clear and black.
    EXPECT_EQ(filled(made),
              "f0=300 f1=120 f5=6 f8=1 f9=1 f10=1 f11=0.5 f12=0.5 f21=3 "
              "s0=card s1=#00000000 s2=#000000FF s7=tap s22=[1,2]");
    EXPECT_EQ(made.gradient, nullptr);
}

TEST_F(NodeSlots, FiveGradientStopsFillBothArraysAndTheAngleIsTruncated)
{
    const ViewSlots& made = slotsOf(R"({"$": 0, "nodeId": "g", "backgroundGradient": {"angle": 45.8,
        "colors": ["#01", "#02", "#03", "#04", "#05"], "locations": [0, 0.1, 0.2, 0.3, 1]}})");
    ASSERT_NE(made.gradient, nullptr);
    EXPECT_EQ(made.gradient->type, 45);
    EXPECT_EQ(made.gradient->colors, (std::array<std::string, 5>{"#01", "#02", "#03", "#04", "#05"}));
    EXPECT_EQ(made.gradient->positions, (std::array<float, 5>{0.0F, 0.1F, 0.2F, 0.3F, 1.0F}));
    EXPECT_EQ(made.gradient->used, (std::array<bool, 5>{true, true, true, true, true}));
}

}  // namespace
