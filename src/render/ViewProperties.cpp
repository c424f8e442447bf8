// The properties every node accepts, as tables: box and flex sizes that go to
// Yoga, then the visual style that goes to the host view. One loop binds each
// table in order (the order is observable: two properties bound to the same
// variable are updated in binding order).
#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>

#include "render/NodeBinding.h"
#include "render/PropertyIds.h"
#include "render/ViewRenderNode.h"
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

enum class LayoutKind {
    Size,    // a size: the unit picks the setter; units without one are ignored
    Number,  // a plain number, default 0
    Once,    // no key: called once, unconditionally, at this point
};

struct LayoutRow {
    std::string_view key;
    LayoutKind kind;
    YGEdge edge;
    EdgeSetter point;
    EdgeSetter percent;
    EdgeAutoSetter automatic;
    NumberSetter number;
    void (*once)(YGNodeRef);
};

constexpr LayoutRow sizeRow(std::string_view key, YGEdge edge, EdgeSetter point, EdgeSetter percent,
                            EdgeAutoSetter automatic = nullptr)
{
    return {key, LayoutKind::Size, edge, point, percent, automatic, nullptr, nullptr};
}

constexpr LayoutRow numberRow(std::string_view key, NumberSetter number)
{
    return {key, LayoutKind::Number, YGEdgeAll, nullptr, nullptr, nullptr, number, nullptr};
}

constexpr LayoutRow onceRow(void (*once)(YGNodeRef))
{
    return {{}, LayoutKind::Once, YGEdgeAll, nullptr, nullptr, nullptr, nullptr, once};
}

constexpr std::array<LayoutRow, 26> layoutRows{{
    sizeRow("width", YGEdgeAll, ignoringEdge<YGNodeStyleSetWidth>, ignoringEdge<YGNodeStyleSetWidthPercent>,
            ignoringEdgeAuto<YGNodeStyleSetWidthAuto>),
    sizeRow("height", YGEdgeAll, ignoringEdge<YGNodeStyleSetHeight>, ignoringEdge<YGNodeStyleSetHeightPercent>,
            ignoringEdgeAuto<YGNodeStyleSetHeightAuto>),
    sizeRow("minWidth", YGEdgeAll, ignoringEdge<YGNodeStyleSetMinWidth>, ignoringEdge<YGNodeStyleSetMinWidthPercent>),
    sizeRow("minHeight", YGEdgeAll, ignoringEdge<YGNodeStyleSetMinHeight>,
            ignoringEdge<YGNodeStyleSetMinHeightPercent>),
    sizeRow("maxWidth", YGEdgeAll, ignoringEdge<YGNodeStyleSetMaxWidth>, ignoringEdge<YGNodeStyleSetMaxWidthPercent>),
    sizeRow("maxHeight", YGEdgeAll, ignoringEdge<YGNodeStyleSetMaxHeight>,
            ignoringEdge<YGNodeStyleSetMaxHeightPercent>),
    sizeRow("marginLeft", YGEdgeLeft, YGNodeStyleSetMargin, YGNodeStyleSetMarginPercent),
    sizeRow("marginTop", YGEdgeTop, YGNodeStyleSetMargin, YGNodeStyleSetMarginPercent),
    sizeRow("marginRight", YGEdgeRight, YGNodeStyleSetMargin, YGNodeStyleSetMarginPercent),
    sizeRow("marginBottom", YGEdgeBottom, YGNodeStyleSetMargin, YGNodeStyleSetMarginPercent),
    sizeRow("paddingLeft", YGEdgeLeft, YGNodeStyleSetPadding, YGNodeStyleSetPaddingPercent),
    sizeRow("paddingTop", YGEdgeTop, YGNodeStyleSetPadding, YGNodeStyleSetPaddingPercent),
    sizeRow("paddingRight", YGEdgeRight, YGNodeStyleSetPadding, YGNodeStyleSetPaddingPercent),
    sizeRow("paddingBottom", YGEdgeBottom, YGNodeStyleSetPadding, YGNodeStyleSetPaddingPercent),
    sizeRow("borderLeft", YGEdgeLeft, YGNodeStyleSetBorder, nullptr),
    sizeRow("borderTop", YGEdgeTop, YGNodeStyleSetBorder, nullptr),
    sizeRow("borderRight", YGEdgeRight, YGNodeStyleSetBorder, nullptr),
    sizeRow("borderBottom", YGEdgeBottom, YGNodeStyleSetBorder, nullptr),
    numberRow("position",
              [](YGNodeRef node, double number) { YGNodeStyleSetPositionType(node, templatePositionType(number)); }),
    sizeRow("left", YGEdgeLeft, YGNodeStyleSetPosition, YGNodeStyleSetPositionPercent),
    sizeRow("top", YGEdgeTop, YGNodeStyleSetPosition, YGNodeStyleSetPositionPercent),
    sizeRow("right", YGEdgeRight, YGNodeStyleSetPosition, YGNodeStyleSetPositionPercent),
    sizeRow("bottom", YGEdgeBottom, YGNodeStyleSetPosition, YGNodeStyleSetPositionPercent),
    onceRow(YGNodeStyleSetFlexBasisAuto),
    numberRow("flexGrow",
              [](YGNodeRef node, double number) { YGNodeStyleSetFlexGrow(node, static_cast<float>(number)); }),
    numberRow("flexShrink",
              [](YGNodeRef node, double number) { YGNodeStyleSetFlexShrink(node, static_cast<float>(number)); }),
}};

void applySize(const LayoutRow& row, YGNodeRef node, YGValue size)
{
    switch (size.unit) {
    case YGUnitPoint: row.point(node, row.edge, size.value); break;
    case YGUnitPercent:
        if (row.percent != nullptr) {
            row.percent(node, row.edge, size.value);
        }
        break;
    case YGUnitAuto:
        if (row.automatic != nullptr) {
            row.automatic(node, row.edge);
        }
        break;
    default: break;  // undefined: the style keeps its previous value
    }
}

enum class StyleKind {
    Corner,  // a size, as a number
    Colour,  // a Value, a colour string
    Number,
};

struct StyleRow {
    std::string_view key;
    StyleKind kind;
    uint32_t propertyId;
    double numberDefault;
    std::string_view colourDefault;
    std::string_view transitionKey;  // empty: never animated
    double StyleCache::*number;
    std::string StyleCache::*colour;
};

constexpr StyleRow cornerRow(std::string_view key, uint32_t id, double StyleCache::*field)
{
    return {key, StyleKind::Corner, id, 0.0, {}, {}, field, nullptr};
}

constexpr StyleRow colourRow(std::string_view key, uint32_t id, std::string_view fallback,
                             std::string_view transitionKey, std::string StyleCache::*field)
{
    return {key, StyleKind::Colour, id, 0.0, fallback, transitionKey, nullptr, field};
}

constexpr StyleRow numberStyleRow(std::string_view key, uint32_t id, double fallback, std::string_view transitionKey,
                                  double StyleCache::*field)
{
    return {key, StyleKind::Number, id, fallback, {}, transitionKey, field, nullptr};
}

// The nine transform rows all look up the one transition key "transform".
constexpr std::array<StyleRow, 16> styleRows{{
    cornerRow("cornerLeftTop", PropertyId::CornerLeftTop, &StyleCache::cornerLeftTop),
    cornerRow("cornerRightTop", PropertyId::CornerRightTop, &StyleCache::cornerRightTop),
    cornerRow("cornerRightBottom", PropertyId::CornerRightBottom, &StyleCache::cornerRightBottom),
    cornerRow("cornerLeftBottom", PropertyId::CornerLeftBottom, &StyleCache::cornerLeftBottom),
    colourRow("backgroundColor", PropertyId::BackgroundColor, "#00000000", "backgroundColor",
              &StyleCache::backgroundColor),
    numberStyleRow("opacity", PropertyId::Opacity, 1.0, "opacity", &StyleCache::opacity),
    colourRow("borderColor", PropertyId::BorderColor, "#000000FF", {}, &StyleCache::borderColor),
    numberStyleRow("scaleX", PropertyId::ScaleX, 1.0, "transform", &StyleCache::scaleX),
    numberStyleRow("scaleY", PropertyId::ScaleY, 1.0, "transform", &StyleCache::scaleY),
    numberStyleRow("anchorPointX", PropertyId::AnchorPointX, 0.5, "transform", &StyleCache::anchorPointX),
    numberStyleRow("anchorPointY", PropertyId::AnchorPointY, 0.5, "transform", &StyleCache::anchorPointY),
    numberStyleRow("rotationX", PropertyId::RotationX, 0.0, "transform", &StyleCache::rotationX),
    numberStyleRow("rotationY", PropertyId::RotationY, 0.0, "transform", &StyleCache::rotationY),
    numberStyleRow("rotationZ", PropertyId::RotationZ, 0.0, "transform", &StyleCache::rotationZ),
    numberStyleRow("translateX", PropertyId::TranslateX, 0.0, "transform", &StyleCache::translateX),
    numberStyleRow("translateY", PropertyId::TranslateY, 0.0, "transform", &StyleCache::translateY),
}};

Gradient readGradient(const Value& element)
{
    Gradient gradient;
    const Value* literal = NodeBinding::propertyOf(element, "backgroundGradient");
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

// An element names a handful of the forty-odd common keys. One pass over its
// members marks the rows it names (bit i: layout row i, then the style rows),
// so the rows it leaves out take their defaults without a lookup each.
constexpr std::size_t styleBitBase = layoutRows.size();
static_assert(layoutRows.size() + styleRows.size() <= 64);

uint64_t namedRows(const Value& element)
{
    static const std::unordered_map<std::string_view, uint64_t> rowBits = [] {
        std::unordered_map<std::string_view, uint64_t> bits;
        for (std::size_t i = 0; i < layoutRows.size(); ++i) {
            if (!layoutRows[i].key.empty()) {
                bits.emplace(layoutRows[i].key, uint64_t{1} << i);
            }
        }
        for (std::size_t i = 0; i < styleRows.size(); ++i) {
            bits.emplace(styleRows[i].key, uint64_t{1} << (styleBitBase + i));
        }
        return bits;
    }();
    uint64_t named = 0;
    for (const auto& [key, value] : element.object()) {
        auto found = rowBits.find(key);
        if (found != rowBits.end()) {
            named |= found->second;
        }
    }
    return named;
}

}  // namespace

void ViewRenderNode::bindCommonProperties(const Value& element)
{
    static const Value unnamed;
    const uint64_t named = namedRows(element);
    auto source = [&](std::size_t bit) -> const Value& {
        return (named & (uint64_t{1} << bit)) != 0 ? element : unnamed;
    };

    for (std::size_t i = 0; i < layoutRows.size(); ++i) {
        const LayoutRow& row = layoutRows[i];
        switch (row.kind) {
        case LayoutKind::Size:
            bindYogaSize(source(i), row.key, [this, &row](YGValue size, bool initial) {
                applySize(row, yogaNode, size);
                if (!initial) {
                    requestLayout();
                }
            });
            break;
        case LayoutKind::Number:
            bindNumber(source(i), row.key, 0.0, [this, &row](double number, bool initial) {
                row.number(yogaNode, number);
                if (!initial) {
                    requestLayout();
                }
            });
            break;
        case LayoutKind::Once: row.once(yogaNode); break;
        }
    }

    for (std::size_t i = 0; i < styleRows.size(); ++i) {
        const StyleRow& row = styleRows[i];
        const Value& properties = source(styleBitBase + i);
        // The plain-or-animated choice is made once, here.
        std::optional<Transition> transition;
        if (!row.transitionKey.empty()) {
            if (const Transition* found = transitionFor(row.transitionKey)) {
                transition = *found;
            }
        }
        auto queue = [this, &row, transition](Value value) {
            if (transition) {
                queueAnimatedUpdate(row.propertyId, std::move(value), *transition);
            } else {
                queuePropertyUpdate(row.propertyId, std::move(value));
            }
        };
        // The first value is only cached: the host view is created from it.
        switch (row.kind) {
        case StyleKind::Corner:
            bindSize(properties, row.key, [this, &row, queue](double number, bool initial) {
                style.*row.number = number;
                if (!initial) {
                    queue(number);
                }
            });
            break;
        case StyleKind::Number:
            bindNumber(properties, row.key, row.numberDefault, [this, &row, queue](double number, bool initial) {
                style.*row.number = number;
                if (!initial) {
                    queue(number);
                }
            });
            break;
        case StyleKind::Colour:
            bindValue(properties, row.key, Value(row.colourDefault), [this, &row, queue](Value colour, bool initial) {
                style.*row.colour = colour.string();
                if (!initial) {
                    queue(std::move(colour));
                }
            });
            break;
        }
    }

    style.gradient = readGradient(element);
}

}  // namespace Mero
