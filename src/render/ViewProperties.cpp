// Binding the properties every node has, in the order of their list in
// NodeKinds.cpp (the order is observable: two properties bound to the same
// variable are updated in binding order): box and flex sizes go to Yoga, the
// visual style to the host view. What each property is comes from the
// property table; here is only where its value goes.
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>
#include <unordered_map>

#include "render/NodeBinding.h"
#include "render/NodeKinds.h"
#include "render/PropertyTable.h"
#include "render/ViewRenderNode.h"
#include "render/ViewSlots.h"
#include "runtime/NumberConversion.h"

namespace Mero {

namespace {

using EdgeSetter = void (*)(YGNodeRef, YGEdge, float);
using EdgeAutoSetter = void (*)(YGNodeRef, YGEdge);
using NumberSetter = void (*)(YGNodeRef, double);

template <void (*Set)(YGNodeRef, float)>
void ignoringEdge(YGNodeRef node, YGEdge /*edge*/, float value)
{
    Set(node, value);
}

template <void (*Set)(YGNodeRef)>
void ignoringEdgeAuto(YGNodeRef node, YGEdge /*edge*/)
{
    Set(node);
}

// Templates number "position" 0 relative, 1 absolute, 2 static; Yoga numbers
// them static 0, relative 1, absolute 2. Any other number is relative.
YGPositionType templatePositionType(double number)
{
    switch (truncateToInt32(number)) {
    case 1: return YGPositionTypeAbsolute;
    case 2: return YGPositionTypeStatic;
    default: return YGPositionTypeRelative;
    }
}

// Where each Yoga-bound property goes: the setters of its units. Sizes whose
// unit has no setter (a percent border, an auto minimum) are ignored.
struct YogaEffect {
    YGEdge edge = YGEdgeAll;
    EdgeSetter point = nullptr;
    EdgeSetter percent = nullptr;
    EdgeAutoSetter automatic = nullptr;
    NumberSetter number = nullptr;
};

YogaEffect yogaEffect(Property property)
{
    switch (property) {
    case Property::Width:
        return {YGEdgeAll, ignoringEdge<YGNodeStyleSetWidth>, ignoringEdge<YGNodeStyleSetWidthPercent>,
                ignoringEdgeAuto<YGNodeStyleSetWidthAuto>};
    case Property::Height:
        return {YGEdgeAll, ignoringEdge<YGNodeStyleSetHeight>, ignoringEdge<YGNodeStyleSetHeightPercent>,
                ignoringEdgeAuto<YGNodeStyleSetHeightAuto>};
    case Property::MinWidth:
        return {YGEdgeAll, ignoringEdge<YGNodeStyleSetMinWidth>, ignoringEdge<YGNodeStyleSetMinWidthPercent>};
    case Property::MinHeight:
        return {YGEdgeAll, ignoringEdge<YGNodeStyleSetMinHeight>, ignoringEdge<YGNodeStyleSetMinHeightPercent>};
    case Property::MaxWidth:
        return {YGEdgeAll, ignoringEdge<YGNodeStyleSetMaxWidth>, ignoringEdge<YGNodeStyleSetMaxWidthPercent>};
    case Property::MaxHeight:
        return {YGEdgeAll, ignoringEdge<YGNodeStyleSetMaxHeight>, ignoringEdge<YGNodeStyleSetMaxHeightPercent>};
    case Property::MarginLeft: return {YGEdgeLeft, YGNodeStyleSetMargin, YGNodeStyleSetMarginPercent};
    case Property::MarginTop: return {YGEdgeTop, YGNodeStyleSetMargin, YGNodeStyleSetMarginPercent};
    case Property::MarginRight: return {YGEdgeRight, YGNodeStyleSetMargin, YGNodeStyleSetMarginPercent};
    case Property::MarginBottom: return {YGEdgeBottom, YGNodeStyleSetMargin, YGNodeStyleSetMarginPercent};
    case Property::PaddingLeft: return {YGEdgeLeft, YGNodeStyleSetPadding, YGNodeStyleSetPaddingPercent};
    case Property::PaddingTop: return {YGEdgeTop, YGNodeStyleSetPadding, YGNodeStyleSetPaddingPercent};
    case Property::PaddingRight: return {YGEdgeRight, YGNodeStyleSetPadding, YGNodeStyleSetPaddingPercent};
    case Property::PaddingBottom: return {YGEdgeBottom, YGNodeStyleSetPadding, YGNodeStyleSetPaddingPercent};
    case Property::BorderLeft: return {YGEdgeLeft, YGNodeStyleSetBorder};
    case Property::BorderTop: return {YGEdgeTop, YGNodeStyleSetBorder};
    case Property::BorderRight: return {YGEdgeRight, YGNodeStyleSetBorder};
    case Property::BorderBottom: return {YGEdgeBottom, YGNodeStyleSetBorder};
    case Property::Left: return {YGEdgeLeft, YGNodeStyleSetPosition, YGNodeStyleSetPositionPercent};
    case Property::Top: return {YGEdgeTop, YGNodeStyleSetPosition, YGNodeStyleSetPositionPercent};
    case Property::Right: return {YGEdgeRight, YGNodeStyleSetPosition, YGNodeStyleSetPositionPercent};
    case Property::Bottom: return {YGEdgeBottom, YGNodeStyleSetPosition, YGNodeStyleSetPositionPercent};
    case Property::Position:
        return {.number = [](YGNodeRef node, double number) {
                    YGNodeStyleSetPositionType(node, templatePositionType(number));
                }};
    case Property::FlexGrow:
        return {.number = [](YGNodeRef node, double number) {
                    YGNodeStyleSetFlexGrow(node, static_cast<float>(number));
                }};
    case Property::FlexShrink:
        return {.number = [](YGNodeRef node, double number) {
                    YGNodeStyleSetFlexShrink(node, static_cast<float>(number));
                }};
    default: return {};
    }
}

void applySize(const YogaEffect& effect, YGNodeRef node, YGValue size)
{
    switch (size.unit) {
    case YGUnitPoint: effect.point(node, effect.edge, size.value); break;
    case YGUnitPercent:
        if (effect.percent != nullptr) {
            effect.percent(node, effect.edge, size.value);
        }
        break;
    case YGUnitAuto:
        if (effect.automatic != nullptr) {
            effect.automatic(node, effect.edge);
        }
        break;
    default: break;  // undefined: the style keeps its previous value
    }
}

Gradient readGradient(const NamedProperties& element)
{
    Gradient gradient;
    const Value* literal = NodeBinding::present(&element.commonMember(Property::BackgroundGradient));
    if (literal == nullptr) {
        return gradient;
    }
    const ValueObject& members = literal->object();
    auto member = [&](const char* key) -> const Value* {
        auto found = members.find(key);
        return found == members.end() ? nullptr : &found->second;
    };
    if (const Value* angle = member("angle")) {
        gradient.angle = angle->number();
    }
    static const Value none;
    const Value* colours = member("colors");
    const Value* locations = member("locations");
    const ValueArray& colourList = (colours != nullptr ? *colours : none).array();
    const ValueArray& locationList = (locations != nullptr ? *locations : none).array();
    const std::size_t count = std::min(colourList.size(), Gradient::maxStops);
    for (std::size_t i = 0; i < count; ++i) {
        const double location = i < locationList.size() ? locationList[i].number() : 0.0;
        gradient.stops.push_back({colourList[i].string(), location});
    }
    return gradient;
}

}  // namespace

void ViewRenderNode::bindCommonProperties(const NamedProperties& element)
{
    const uint64_t named = element.common;
    const std::span<const Property> common = commonProperties();
    // Only what the element names is bound, in the list's order, which is
    // observable. An unnamed property would set what a new node already has:
    // shown; Yoga's relative position; a flex grow and shrink of 0, which
    // Yoga reads the same as its unset ones (without web defaults).
    for (uint64_t bound = named; bound != 0; bound &= bound - 1) {
        const auto i = static_cast<std::size_t>(std::countr_zero(bound));
        const PropertyInfo& row = info(common[i]);
        const Value* member = element.commonMembers[i];
        switch (row.input) {
        case PropertyInput::Visibility:
            bindBool(member, true, [this](bool shown, bool) { setVisible(shown); });
            break;
        case PropertyInput::YogaSize:
        case PropertyInput::YogaLength:
        case PropertyInput::YogaPoints:
            bindYogaSize(member, [this, effect = yogaEffect(row.property)](YGValue size, bool initial) {
                applySize(effect, yogaNode, size);
                if (!initial) {
                    requestLayout();
                }
            });
            break;
        case PropertyInput::YogaNumber:
            bindNumber(member, 0.0, [this, set = yogaEffect(row.property).number](double number, bool initial) {
                set(yogaNode, number);
                if (!initial) {
                    requestLayout();
                }
            });
            break;
        case PropertyInput::Size:
        case PropertyInput::Number:
        case PropertyInput::Text:
            bindStyleProperty(member, row);
            break;
        default: break;  // read once by the constructor, or laid out
        }
    }
    if ((named & commonBit(Property::BackgroundGradient)) != 0) {
        Gradient gradient = readGradient(element);
        if (!gradient.stops.empty() || gradient.angle != 0.0) {
            mutableExtras().gradient = std::move(gradient);
        }
    }
}

const StyleCache& ViewRenderNode::defaultStyle()
{
    // What a node whose element sets no style property binds.
    static const StyleCache style = [] {
        StyleCache defaults;
        for (const auto& field : PackedField::styleTexts) {
            defaults.*field.member = slotText(Value(info(field.property).textDefault));
        }
        for (const auto& field : PackedField::styleNumbers) {
            defaults.*field.member = static_cast<float>(info(field.property).numberDefault);
        }
        return defaults;
    }();
    return style;
}

StyleCache ViewRenderNode::style() const
{
    StyleCache style = defaultStyle();
    styleAndInsets_.forEachText([&style](unsigned field, const std::string& text) {
        style.*PackedField::styleTexts[field].member = text;
    });
    styleAndInsets_.forEachNumber([&style](unsigned field, float number) {
        if (field < PackedField::firstInset) {
            style.*PackedField::styleNumbers[field].member = number;
        }
    });
    return style;
}

void ViewRenderNode::storeStyleText(unsigned field, std::string value)
{
    const std::string* current = styleAndInsets_.text(field);
    if (value != (current != nullptr ? *current : defaultStyle().*PackedField::styleTexts[field].member)) {
        styleAndInsets_.setText(field, std::move(value));
    }
}

// Bit for bit, so that a -0 is kept as it was bound.
void ViewRenderNode::storeStyleNumber(unsigned field, float value)
{
    const float* current = styleAndInsets_.number(field);
    const float was = current != nullptr ? *current : defaultStyle().*PackedField::styleNumbers[field].member;
    if (std::bit_cast<uint32_t>(was) != std::bit_cast<uint32_t>(value)) {
        styleAndInsets_.setNumber(field, value);
    }
}

void ViewRenderNode::bindStyleProperty(const Value* member, const PropertyInfo& row)
{
    auto queue = [this, &row](Value value) { queueBoundUpdate(row, std::move(value)); };
    // The first value is only cached: the host view is made from it.
    if (row.input == PropertyInput::Text) {
        const int field = PackedField::of(PackedField::styleTexts, row.property);
        bindValue(member, defaultKindValue(row.property), [this, field, queue](Value colour, bool initial) {
            // Kept as the text a new view would be given, so that a colour
            // bound to a number shows alike either way.
            if (field >= 0) {
                storeStyleText(field, slotText(colour));
            }
            if (!initial) {
                queue(std::move(colour));
            }
        });
        return;
    }
    const int field = PackedField::of(PackedField::styleNumbers, row.property);
    auto store = [this, field, queue](double number, bool initial) {
        if (field >= 0) {
            storeStyleNumber(field, static_cast<float>(number));
        }
        if (!initial) {
            queue(number);
        }
    };
    if (row.input == PropertyInput::Size) {
        bindSize(member, store);
    } else {
        bindNumber(member, row.numberDefault, store);
    }
}

}  // namespace Mero
