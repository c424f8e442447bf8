// The slot rules of createComponent, without a JVM: where each host property
// id lands, the fixed string slots and the gradient.
#include <gtest/gtest.h>

#include <cmath>

#include "bridge/ComponentSlots.h"
#include "engine/MeroInstance.h"
#include "render/ViewRenderNode.h"
#include "runtime/RuntimeEngine.h"

namespace {

using Mero::ComponentSlots;
using Mero::Value;

TEST(ComponentSlotsPut, TheHundredsPickTheBufferAndTheRestTheSlot)
{
    ComponentSlots slots;
    slots.put(24, Value(28.5));
    slots.put(100, Value(3.9));
    slots.put(204, Value("#123456FF"));
    slots.put(301, Value(true));
    slots.put(104, Value(-2.7));
    EXPECT_EQ(slots.floats[24], 28.5F);
    EXPECT_EQ(slots.ints[0], 3) << "ints are truncated";
    EXPECT_EQ(slots.ints[4], -2);
    EXPECT_EQ(slots.strings[4], "#123456FF");
    EXPECT_TRUE(slots.booleans[1]);
}

TEST(ComponentSlotsPut, TheVideoStartTimeIsAWholeNumber)
{
    ComponentSlots slots;
    slots.put(38, Value(12.9));
    slots.put(39, Value(12.9));
    EXPECT_EQ(slots.floats[38], 12.0F);
    EXPECT_EQ(slots.floats[39], 12.9F);
}

TEST(ComponentSlotsPut, IdsOutsideTheBuffersAreIgnored)
{
    ComponentSlots slots;
    slots.put(110, Value(1.0));
    slots.put(399, Value(true));
    slots.put(400, Value("x"));
    EXPECT_EQ(slots.ints, (std::array<int32_t, 10>{}));
    EXPECT_EQ(slots.booleans, (std::array<bool, 10>{}));
}

TEST(ComponentSlotsPut, StringSlotsTakeTheTextOfNumbersAndBooleans)
{
    ComponentSlots slots;
    slots.put(203, Value(1.5));
    slots.put(206, Value(false));
    slots.put(209, Value());
    EXPECT_EQ(slots.strings[3], "1.5");
    EXPECT_EQ(slots.strings[6], "false");
    EXPECT_EQ(slots.strings[9], "");
}

class NodeSlots : public testing::Test {
protected:
    const ComponentSlots& slotsOf(const char* elementJson)
    {
        instance.loadTemplate(std::string(R"({"elements": )") + elementJson + "}");
        instance.initContainerSize(750.0F, 1334.0F, 1, 1);
        instance.initNode();
        instance.applyLayout();
        slots = Mero::collectComponentSlots(*instance.runtime().rootNode);
        return slots;
    }

    Mero::MeroInstance instance;
    ComponentSlots slots;
};

TEST_F(NodeSlots, FixedStringsAndTheFrame)
{
    const ComponentSlots& made = slotsOf(R"({"$": 0, "nodeId": "card", "onClick": "tap",
        "width": {"sizeType": 1, "value": 300}, "height": {"sizeType": 1, "value": 120},
        "borderRight": {"sizeType": 1, "value": 3}, "paddingTop": {"sizeType": 1, "value": 6},
        "loopAnimation": [1, 2]})");
    EXPECT_EQ(made.type, 0U);
    EXPECT_EQ(made.strings[0], "card");
    EXPECT_EQ(made.strings[7], "tap");
    EXPECT_EQ(made.strings[22], "[1,2]");
    EXPECT_EQ(made.floats[0], 300.0F);
    EXPECT_EQ(made.floats[1], 120.0F);
    EXPECT_EQ(made.floats[5], 6.0F) << "padding top";
    EXPECT_EQ(made.floats[21], 3.0F) << "border right";
    EXPECT_EQ(made.floats[8], 1.0F) << "opacity's default";
    EXPECT_EQ(made.strings[1], "#00000000") << "background colour's default";
    EXPECT_EQ(made.strings[2], "#000000FF") << "border colour's default";
    EXPECT_FALSE(made.gradient.has_value());
}

TEST_F(NodeSlots, ATextWithoutLoopAnimationLeavesSlot22Empty)
{
    const ComponentSlots& made = slotsOf(R"({"$": 4, "nodeId": "t", "text": "Hi", "maxLines": 2})");
    EXPECT_EQ(made.type, 4U);
    EXPECT_EQ(made.strings[3], "Hi");
    EXPECT_EQ(made.strings[4], "#000000FF");
    EXPECT_EQ(made.ints[0], 2);
    EXPECT_EQ(made.strings[22], "");
}

TEST_F(NodeSlots, FiveGradientStopsFillBothArrays)
{
    const ComponentSlots& made = slotsOf(R"({"$": 0, "nodeId": "g", "backgroundGradient": {"angle": 45.8,
        "colors": ["#01", "#02", "#03", "#04", "#05"], "locations": [0, 0.1, 0.2, 0.3, 1]}})");
    ASSERT_TRUE(made.gradient.has_value());
    EXPECT_EQ(made.gradient->type, 45);
    EXPECT_EQ(made.gradient->colors, (std::array<std::string, 5>{"#01", "#02", "#03", "#04", "#05"}));
    EXPECT_EQ(made.gradient->positions, (std::array<float, 5>{0.0F, 0.1F, 0.2F, 0.3F, 1.0F}));
    EXPECT_EQ(made.gradient->used, (std::array<bool, 5>{true, true, true, true, true}));
}

TEST_F(NodeSlots, AProgressButtonCarriesItsBusinessDataAsJson)
{
    const ComponentSlots& made = slotsOf(R"({"$": 6, "nodeId": "p", "businessData": {"appId": 12},
        "dl_text_normal": "Get"})");
    EXPECT_EQ(made.strings[21], R"({"appId":12})");
    EXPECT_EQ(made.strings[16], "Get");
}

}  // namespace
