#include "render/ViewSlots.h"

#include <algorithm>

#include "render/BlurRenderNode.h"
#include "render/CustomRenderNode.h"
#include "render/ImageRenderNode.h"
#include "render/ProgressRenderNode.h"
#include "render/PropertyIds.h"
#include "render/RatingRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "render/SwiperRenderNode.h"
#include "render/TextRenderNode.h"
#include "render/VideoRenderNode.h"
#include "runtime/NumberConversion.h"
#include "value/JsonWriter.h"

namespace Mero {

namespace {

// The common numbers every view starts from: its laid-out frame and box,
// then its style.
struct LayoutSlot {
    uint32_t propertyId;
    double LayoutCache::*field;
};

constexpr std::array<LayoutSlot, 12> layoutSlots{{
    {PropertyId::Width, &LayoutCache::width},
    {PropertyId::Height, &LayoutCache::height},
    {PropertyId::X, &LayoutCache::x},
    {PropertyId::Y, &LayoutCache::y},
    {PropertyId::PaddingLeft, &LayoutCache::paddingLeft},
    {PropertyId::PaddingTop, &LayoutCache::paddingTop},
    {PropertyId::PaddingRight, &LayoutCache::paddingRight},
    {PropertyId::PaddingBottom, &LayoutCache::paddingBottom},
    {PropertyId::BorderLeft, &LayoutCache::borderLeft},
    {PropertyId::BorderRight, &LayoutCache::borderRight},
    {PropertyId::BorderTop, &LayoutCache::borderTop},
    {PropertyId::BorderBottom, &LayoutCache::borderBottom},
}};

struct StyleSlot {
    uint32_t propertyId;
    double StyleCache::*field;
};

constexpr std::array<StyleSlot, 14> styleSlots{{
    {PropertyId::Opacity, &StyleCache::opacity},
    {PropertyId::ScaleX, &StyleCache::scaleX},
    {PropertyId::ScaleY, &StyleCache::scaleY},
    {PropertyId::AnchorPointX, &StyleCache::anchorPointX},
    {PropertyId::AnchorPointY, &StyleCache::anchorPointY},
    {PropertyId::RotationX, &StyleCache::rotationX},
    {PropertyId::RotationY, &StyleCache::rotationY},
    {PropertyId::RotationZ, &StyleCache::rotationZ},
    {PropertyId::CornerLeftTop, &StyleCache::cornerLeftTop},
    {PropertyId::CornerRightTop, &StyleCache::cornerRightTop},
    {PropertyId::CornerRightBottom, &StyleCache::cornerRightBottom},
    {PropertyId::CornerLeftBottom, &StyleCache::cornerLeftBottom},
    {PropertyId::TranslateX, &StyleCache::translateX},
    {PropertyId::TranslateY, &StyleCache::translateY},
}};

std::string slotText(const Value& value)
{
    switch (value.kind()) {
    case Kind::String: return value.string();
    case Kind::Number: return numberToString(value.number());
    case Kind::Boolean: return value.boolean() ? "true" : "false";
    default: return {};
    }
}

bool slotBoolean(const Value& value)
{
    return value.is(Kind::Number) ? value.number() != 0.0 : value.boolean();
}

// A node kind's own table: row i's value is kept in values[i].
template <typename Node>
void putKindProperties(ViewSlots& slots, const Node& node)
{
    for (std::size_t row = 0; row < Node::propertyTable.size(); ++row) {
        slots.put(Node::propertyTable[row].propertyId, node.values[row]);
    }
}

void putGradient(ViewSlots& slots, const Gradient& gradient)
{
    if (gradient.stops.empty()) {
        return;
    }
    GradientSlots& out = slots.gradient.emplace();
    out.type = truncateToInt32(gradient.angle);
    // The render tree keeps at most five stops; the host's arrays hold five.
    const std::size_t count = std::min(gradient.stops.size(), GradientSlots::kStops);
    for (std::size_t stop = 0; stop < count; ++stop) {
        out.colors[stop] = gradient.stops[stop].color;
        out.positions[stop] = static_cast<float>(gradient.stops[stop].location);
        out.used[stop] = true;
    }
}

void putKindProperties(ViewSlots& slots, const ViewRenderNode& node)
{
    switch (static_cast<ElementType>(node.type)) {
    case ElementType::Text: putKindProperties(slots, static_cast<const TextRenderNode&>(node)); break;
    case ElementType::Image: putKindProperties(slots, static_cast<const ImageRenderNode&>(node)); break;
    case ElementType::Rating: putKindProperties(slots, static_cast<const RatingRenderNode&>(node)); break;
    case ElementType::Custom: putKindProperties(slots, static_cast<const CustomRenderNode&>(node)); break;
    case ElementType::Video: putKindProperties(slots, static_cast<const VideoRenderNode&>(node)); break;
    case ElementType::Blur: putKindProperties(slots, static_cast<const BlurRenderNode&>(node)); break;
    case ElementType::Swiper: putKindProperties(slots, static_cast<const SwiperRenderNode&>(node)); break;
    case ElementType::Progress: {
        const auto& progress = static_cast<const ProgressRenderNode&>(node);
        putKindProperties(slots, progress);
        slots.strings[ViewSlots::kBusinessDataSlot] = toJsonString(progress.businessData);
        break;
    }
    default: break;
    }
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
    case 2: strings[slot] = slotText(value); break;
    case 3:
        if (slot < kBooleans) {
            booleans[slot] = slotBoolean(value);
        }
        break;
    default: break;
    }
}

ViewSlots collectViewSlots(const ViewRenderNode& node)
{
    ViewSlots slots;
    slots.type = node.type;
    for (const LayoutSlot& entry : layoutSlots) {
        slots.floats[entry.propertyId] = static_cast<float>(node.layout.*entry.field);
    }
    for (const StyleSlot& entry : styleSlots) {
        slots.floats[entry.propertyId] = static_cast<float>(node.style.*entry.field);
    }
    slots.put(PropertyId::BackgroundColor, Value(node.style.backgroundColor));
    slots.put(PropertyId::BorderColor, Value(node.style.borderColor));
    putKindProperties(slots, node);

    slots.strings[ViewSlots::kNodeIdSlot] = node.nodeId;
    slots.strings[ViewSlots::kOnClickSlot] = node.onClick;
    if (!node.loopAnimation.isNull()) {
        slots.strings[ViewSlots::kLoopAnimationSlot] = toJsonString(node.loopAnimation);
    }
    putGradient(slots, node.style.gradient);
    return slots;
}

}  // namespace Mero
