#include "render/ViewSlots.h"

#include <algorithm>
#include <vector>

#include "render/NodeKinds.h"
#include "render/PropertyTable.h"
#include "render/ViewRenderNode.h"
#include "runtime/NumberConversion.h"
#include "runtime/ScriptRun.h"
#include "value/JsonWriter.h"

namespace Mero {

namespace {

// The float or string slot of a common property.
std::size_t slotOf(Property property)
{
    return hostIdOf(property) % 100;
}

// Where the common values every view starts from go: the frame's four
// floats, and a slot for each packed field a node may keep (style texts;
// style numbers and insets). `floats` is where every view's floats start:
// the default style's numbers, 0 for the layout. Read once from the tables,
// so that a view is filled without a lookup per property.
struct CommonSlots {
    std::array<float, ViewSlots::kFloats> floats{};
    std::array<uint8_t, PackedFields::kNumberFields> numberSlots{};
    std::array<uint8_t, PackedField::styleTexts.size()> textSlots{};
    std::array<std::string_view, PackedField::styleTexts.size()> textDefaults{};
};

const CommonSlots& commonSlots()
{
    static const CommonSlots slots = [] {
        CommonSlots made;
        const StyleCache& defaults = ViewRenderNode::defaultStyle();
        for (std::size_t field = 0; field < PackedField::styleNumbers.size(); ++field) {
            const auto& number = PackedField::styleNumbers[field];
            made.numberSlots[field] = static_cast<uint8_t>(slotOf(number.property));
            made.floats[slotOf(number.property)] = defaults.*number.member;
        }
        for (std::size_t i = 0; i < PackedField::insets.size(); ++i) {
            made.numberSlots[PackedField::firstInset + i] =
                static_cast<uint8_t>(slotOf(PackedField::insets[i].property));
        }
        for (std::size_t field = 0; field < PackedField::styleTexts.size(); ++field) {
            made.textSlots[field] = static_cast<uint8_t>(slotOf(PackedField::styleTexts[field].property));
            made.textDefaults[field] = defaults.*PackedField::styleTexts[field].member;
        }
        return made;
    }();
    return slots;
}

// A kind's own property that its views receive, by its place in the kind's
// list: many have none there (a container's flex values, a list's names).
struct OwnSlot {
    uint8_t index;
    uint32_t hostId;  // kNoHostId: "businessData", which goes as JSON
};

// The kind's own slots, read once from the kinds' lists.
std::span<const OwnSlot> ownSlots(const NodeKind& kind)
{
    static const std::vector<std::vector<OwnSlot>> byKind = [] {
        std::vector<std::vector<OwnSlot>> lists;
        for (const NodeKind& each : nodeKinds()) {
            std::vector<OwnSlot>& list = lists.emplace_back();
            for (std::size_t i = 0; i < each.properties.size(); ++i) {
                const Property property = each.properties[i];
                if (property == Property::BusinessData || info(property).hostId >= 0) {
                    list.push_back({static_cast<uint8_t>(i), hostIdOf(property)});
                }
            }
        }
        return lists;
    }();
    return byKind[static_cast<std::size_t>(&kind - nodeKinds().data())];
}

// The frame, the style and the insets: the values every view has.
void putCommonValues(const ViewRenderNode& node, ViewSlots& slots)
{
    const CommonSlots& common = commonSlots();
    slots.floats = common.floats;
    const LayoutFrame& frame = node.frame();
    slots.floats[slotOf(Property::Width)] = frame.width;
    slots.floats[slotOf(Property::Height)] = frame.height;
    slots.floats[slotOf(Property::X)] = static_cast<float>(frame.x);
    slots.floats[slotOf(Property::Y)] = static_cast<float>(frame.y);
    const PackedFields& packed = node.styleAndInsets();
    packed.forEachNumber([&](unsigned field, float number) { slots.floats[common.numberSlots[field]] = number; });
    for (std::size_t field = 0; field < PackedField::styleTexts.size(); ++field) {
        const std::string* text = packed.text(static_cast<unsigned>(field));
        slots.strings.set(common.textSlots[field], text != nullptr ? *text : common.textDefaults[field]);
    }
}

}  // namespace

std::string slotText(const Value& value)
{
    switch (value.kind()) {
    case Kind::String: return value.string();
    case Kind::Number: return numberToString(value.number());
    case Kind::Boolean: return value.boolean() ? "true" : "false";
    default: return {};
    }
}

namespace {

bool slotBoolean(const Value& value)
{
    return value.is(Kind::Number) ? value.number() != 0.0 : value.boolean();
}

void putGradient(ViewSlots& slots, const Gradient& gradient)
{
    if (gradient.stops.empty()) {
        return;
    }
    auto made = std::make_shared<GradientSlots>();
    GradientSlots& out = *made;
    out.type = truncateToInt32(gradient.angle);
    // The render tree keeps at most five stops; the host's arrays hold five.
    const std::size_t count = std::min(gradient.stops.size(), GradientSlots::kStops);
    for (std::size_t stop = 0; stop < count; ++stop) {
        out.colors[stop] = gradient.stops[stop].color;
        out.positions[stop] = static_cast<float>(gradient.stops[stop].location);
        out.used[stop] = true;
    }
    slots.gradient = std::move(made);
}

}  // namespace

void ViewSlots::put(uint32_t propertyId, const Value& value)
{
    const std::size_t slot = propertyId % 100;
    switch (propertyId / 100) {
    case 0:
        // The video's start time travels as a whole number.
        floats[slot] = propertyId == PropertyId::InitTime ? static_cast<float>(truncateToInt32(value.number()))
                                                          : static_cast<float>(value.number());
        break;
    case 1:
        if (slot < kInts) {
            ints[slot] = truncateToInt32(value.number());
        }
        break;
    case 2:
        if (slot < kStrings) {
            strings.set(slot, value.is(Kind::String) ? std::string_view(value.string()) : slotText(value));
        }
        break;
    case 3:
        if (slot < kBooleans) {
            booleans[slot] = slotBoolean(value);
        }
        break;
    default: break;
    }
}

void collectViewSlots(const ViewRenderNode& node, ViewSlots& slots)
{
    slots.type = node.type;
    putCommonValues(node, slots);
    for (const OwnSlot& own : ownSlots(node.kind())) {
        const Value& value = node.kindValueAt(own.index);
        if (own.hostId == kNoHostId) {
            slots.strings.set(ViewSlots::kBusinessDataSlot, jsonWithinLimit(value));
        } else {
            slots.put(own.hostId, value);
        }
    }
    slots.strings.set(ViewSlots::kNodeIdSlot, node.nodeId);
    slots.strings.set(ViewSlots::kOnClickSlot, node.onClick());
    if (!node.loopAnimation().isNull()) {
        slots.strings.set(ViewSlots::kLoopAnimationSlot, jsonWithinLimit(node.loopAnimation()));
    }
    putGradient(slots, node.gradient());
}

}  // namespace Mero
