// What the host's createComponent receives for one render node: four
// buffers indexed by host property id, and the gradient description.
//
// A property id picks its buffer by hundreds (0-99 floats, 100-199 ints,
// 200-299 strings, 300-399 booleans) and its slot by the id mod 100. Three
// string slots are fixed besides: 0 the node id, 7 the click event name,
// 22 the loop animation as JSON. Collected without JNI, so the rules are
// testable on their own.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "value/Value.h"

namespace Mero {

class ViewRenderNode;

struct GradientSlots {
    static constexpr std::size_t kStops = 5;
    int32_t type = 0;
    std::array<std::string, kStops> colors;  // unused stops stay empty
    std::array<float, kStops> positions{};
    std::array<bool, kStops> used{};  // the host sees null for an unused color
};

struct ViewSlots {
    static constexpr std::size_t kInts = 10;
    static constexpr std::size_t kFloats = 60;
    static constexpr std::size_t kStrings = 50;
    static constexpr std::size_t kBooleans = 10;
    static constexpr std::size_t kNodeIdSlot = 0;
    static constexpr std::size_t kOnClickSlot = 7;
    static constexpr std::size_t kBusinessDataSlot = 21;
    static constexpr std::size_t kLoopAnimationSlot = 22;

    uint32_t type = 0;
    std::array<int32_t, kInts> ints{};
    std::array<float, kFloats> floats{};
    std::array<std::string, kStrings> strings;
    std::array<bool, kBooleans> booleans{};
    std::optional<GradientSlots> gradient;

    // Writes `value` at the slot of host property `propertyId`; ids outside
    // the four ranges are ignored.
    void put(uint32_t propertyId, const Value& value);
};

// The text a string slot holds for a value: a string as it is, a number or
// a boolean written out, anything else empty.
std::string slotText(const Value& value);

// The buffers for `node`: its common properties, then its kind's own,
// written into `slots` (fresh ones).
void collectViewSlots(const ViewRenderNode& node, ViewSlots& slots);
inline ViewSlots collectViewSlots(const ViewRenderNode& node)
{
    ViewSlots slots;
    collectViewSlots(node, slots);
    return slots;
}

}  // namespace Mero
