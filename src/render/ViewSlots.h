// What the host's createComponent receives for one render node: four
// buffers indexed by host property id, and the gradient description.
//
// A property id picks its buffer by hundreds (0-99 floats, 100-199 ints,
// 200-299 strings, 300-399 booleans) and its slot by the id mod 100. Three
// string slots are fixed besides: 0 the node id, 7 the click event name,
// 22 the loop animation as JSON. Collected without JNI, so the rules are
// testable on their own.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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

// The string buffer of one view. Most of its slots are empty on any one
// view, so the texts share one buffer instead of taking a string each: a
// card's views are made all at once, and fifty strings a view were most of
// the memory that took.
class StringSlots {
public:
    static constexpr std::size_t kSlots = 50;

    std::size_t size() const { return kSlots; }
    std::string_view operator[](std::size_t slot) const
    {
        return std::string_view(text_).substr(spans_[slot].offset, spans_[slot].length);
    }
    // Replaces the slot's text (the replaced one's bytes stay in the buffer
    // unused: a slot is written about once).
    void set(std::size_t slot, std::string_view text)
    {
        if (text.empty()) {
            spans_[slot] = {};  // most of a view's texts are empty: no append
            return;
        }
        if (text_.size() + text.size() > text_.capacity()) {
            // Room for a view's usual texts at once, rather than growing by
            // doubling from the few bytes a string holds inline.
            text_.reserve(std::max(kFirstRoom, 2 * (text_.size() + text.size())));
        }
        spans_[slot] = {static_cast<uint32_t>(text_.size()), static_cast<uint32_t>(text.size())};
        text_.append(text);
    }
    // Every slot empty again; the buffer keeps its room.
    void clear() noexcept
    {
        text_.clear();
        spans_ = {};  // a block store, where fill() stores a span at a time
    }

private:
    static constexpr std::size_t kFirstRoom = 120;
    struct Span {
        uint32_t offset = 0;
        uint32_t length = 0;
    };
    std::string text_;
    std::array<Span, kSlots> spans_{};
};

struct ViewSlots {
    static constexpr std::size_t kInts = 10;
    static constexpr std::size_t kFloats = 60;
    static constexpr std::size_t kStrings = StringSlots::kSlots;
    static constexpr std::size_t kBooleans = 10;
    static constexpr std::size_t kNodeIdSlot = 0;
    static constexpr std::size_t kOnClickSlot = 7;
    static constexpr std::size_t kBusinessDataSlot = 21;
    static constexpr std::size_t kLoopAnimationSlot = 22;

    uint32_t type = 0;
    std::array<int32_t, kInts> ints{};
    std::array<float, kFloats> floats{};
    StringSlots strings;
    std::array<bool, kBooleans> booleans{};
    // Few views have a gradient; the description, once made, is not changed.
    std::shared_ptr<const GradientSlots> gradient;

    // Writes `value` at the slot of host property `propertyId`; ids outside
    // the four ranges are ignored.
    void put(uint32_t propertyId, const Value& value);
    // Fresh slots again, for the next view, keeping the string buffer's room.
    void clear() noexcept
    {
        type = 0;
        ints.fill(0);
        floats.fill(0.0F);
        strings.clear();
        booleans.fill(false);
        gradient.reset();
    }
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
