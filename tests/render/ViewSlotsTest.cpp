// The slot rules of createComponent, without a JVM: where each host property
// id lands. What a node's view is made with (its frame, the defaults, its
// own slots and gradient) is checked through the natives (EndToEndTests)
// and in the previewer's golden trees, which list every view's properties.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

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

}  // namespace
