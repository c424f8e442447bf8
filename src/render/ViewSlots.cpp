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

// Where a node keeps the common values every view starts from: its
// laid-out frame and box, then its style.
double layoutValue(const LayoutCache& layout, Property property)
{
    switch (property) {
    case Property::Width: return layout.width;
    case Property::Height: return layout.height;
    case Property::X: return layout.x;
    case Property::Y: return layout.y;
    case Property::PaddingLeft: return layout.paddingLeft;
    case Property::PaddingTop: return layout.paddingTop;
    case Property::PaddingRight: return layout.paddingRight;
    case Property::PaddingBottom: return layout.paddingBottom;
    case Property::BorderLeft: return layout.borderLeft;
    case Property::BorderTop: return layout.borderTop;
    case Property::BorderRight: return layout.borderRight;
    case Property::BorderBottom: return layout.borderBottom;
    default: return 0.0;
    }
}

float styleNumber(const StyleCache& style, Property property)
{
    switch (property) {
    case Property::CornerLeftTop: return style.cornerLeftTop;
    case Property::CornerRightTop: return style.cornerRightTop;
    case Property::CornerRightBottom: return style.cornerRightBottom;
    case Property::CornerLeftBottom: return style.cornerLeftBottom;
    case Property::Opacity: return style.opacity;
    case Property::ScaleX: return style.scaleX;
    case Property::ScaleY: return style.scaleY;
    case Property::AnchorPointX: return style.anchorPointX;
    case Property::AnchorPointY: return style.anchorPointY;
    case Property::RotationX: return style.rotationX;
    case Property::RotationY: return style.rotationY;
    case Property::RotationZ: return style.rotationZ;
    case Property::TranslateX: return style.translateX;
    case Property::TranslateY: return style.translateY;
    default: return 0.0F;
    }
}

// Where each common value a view starts from goes: its frame and box are
// floats from the layout cache; its style colours are strings, its other
// style values floats. Read once from the property table.
struct CommonSlot {
    Property property;
    std::size_t slot;
    enum class Source { Layout, StyleNumber, StyleText } source;
};

const std::vector<CommonSlot>& commonSlots()
{
    static const std::vector<CommonSlot> slots = [] {
        std::vector<CommonSlot> list;
        for (Property property : commonProperties()) {
            const PropertyInfo& row = info(property);
            if (row.hostId < 0) {
                continue;
            }
            const auto slot = static_cast<std::size_t>(row.hostId % 100);
            if (row.input == PropertyInput::LayoutResult || isYogaInput(row.input)) {
                list.push_back({property, slot, CommonSlot::Source::Layout});
            } else if (row.input == PropertyInput::Text) {
                list.push_back({property, slot, CommonSlot::Source::StyleText});
            } else {
                list.push_back({property, slot, CommonSlot::Source::StyleNumber});
            }
        }
        return list;
    }();
    return slots;
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
    StyleCache scratch;
    const StyleCache& style = node.style(scratch);
    const LayoutCache layout = node.layout();
    for (const CommonSlot& common : commonSlots()) {
        switch (common.source) {
        case CommonSlot::Source::Layout:
            slots.floats[common.slot] = static_cast<float>(layoutValue(layout, common.property));
            break;
        case CommonSlot::Source::StyleNumber: slots.floats[common.slot] = styleNumber(style, common.property); break;
        case CommonSlot::Source::StyleText:
            slots.strings.set(common.slot,
                              common.property == Property::BackgroundColor ? style.backgroundColor : style.borderColor);
            break;
        }
    }
    const std::span<const Property> own = node.kind().properties;
    for (std::size_t i = 0; i < own.size(); ++i) {
        if (own[i] == Property::BusinessData) {
            slots.strings.set(ViewSlots::kBusinessDataSlot, jsonWithinLimit(node.kindValueAt(i)));
        } else if (info(own[i]).hostId >= 0) {
            slots.put(hostIdOf(own[i]), node.kindValueAt(i));
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
