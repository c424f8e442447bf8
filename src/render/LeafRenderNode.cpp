#include "render/LeafRenderNode.h"

#include <algorithm>
#include <array>
#include <vector>

#include "render/NodeKinds.h"
#include "render/RenderTree.h"
#include "render/ViewHost.h"
#include "runtime/NumberConversion.h"
#include "runtime/RuntimeEngine.h"

namespace Mero {

namespace {

YGSize measureLeaf(YGNodeConstRef yogaNode, float width, YGMeasureMode widthMode, float height,
                   YGMeasureMode heightMode)
{
    // The context holds the node as the base class pointer it was stored as.
    const auto* node = static_cast<const LeafRenderNode*>(static_cast<const ViewRenderNode*>(YGNodeGetContext(yogaNode)));
    return node->measure(width, widthMode, height, heightMode);
}

}  // namespace

LeafRenderNode::LeafRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                               LocalScope localScope)
    : ViewRenderNode(element, parentNode, renderTree, std::move(localScope))
{
    if (kind().measure != Measure::None) {
        YGNodeSetMeasureFunc(yogaNode, measureLeaf);
    }
    bindKindProperties(element);
}

YGSize LeafRenderNode::measure(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const
{
    switch (kind().measure) {
    case Measure::Text: return measureText(width, widthMode, height, heightMode);
    case Measure::Image: return measureImage(width, widthMode, height, heightMode);
    case Measure::Custom:
        // A custom view takes only a fixed width and height.
        if (widthMode == YGMeasureModeExactly && heightMode == YGMeasureModeExactly) {
            return YGSize{width, height};
        }
        return YGSize{0.0F, 0.0F};
    case Measure::None: break;
    }
    return YGSize{0.0F, 0.0F};
}

namespace {

// What a text measurement reads.
enum Measured {
    MeasuredText,
    MeasuredFontSize,
    MeasuredLineHeight,
    MeasuredInterval,
    MeasuredMaxLines,
    MeasuredFontWeight,
    MeasuredCount
};
constexpr std::array<Property, MeasuredCount> kMeasured{Property::Text,       Property::FontSize,
                                                        Property::LineHeight, Property::TextInterval,
                                                        Property::MaxLines,   Property::FontWeight};

// Where a kind keeps each (-1 where it has none) and what each reads when the
// element does not name it, found once for every kind: each layout pass
// measures every text it lays out anew, and a search by property per value
// was most of a measurement's own cost.
struct MeasuredPlaces {
    std::array<int, MeasuredCount> slots{};
    std::array<const Value*, MeasuredCount> defaults{};
};

const MeasuredPlaces& measuredPlaces(const NodeKind& kind)
{
    static const Value none;
    static const std::vector<MeasuredPlaces> byKind = [] {
        std::vector<MeasuredPlaces> places(nodeKinds().size());
        for (std::size_t k = 0; k < places.size(); ++k) {
            for (std::size_t i = 0; i < kMeasured.size(); ++i) {
                const int slot = kindSlotOf(nodeKinds()[k], kMeasured[i]);
                places[k].slots[i] = slot;
                places[k].defaults[i] = slot >= 0 ? &defaultKindValue(kMeasured[i]) : &none;
            }
        }
        return places;
    }();
    return byKind[static_cast<std::size_t>(&kind - nodeKinds().data())];
}

}  // namespace

TextContent LeafRenderNode::measureRequest(float width, YGMeasureMode widthMode, float height,
                                           YGMeasureMode heightMode) const
{
    const MeasuredPlaces& places = measuredPlaces(kind());
    auto read = [&](Measured value) -> const Value& {
        const int slot = places.slots[value];
        const Value* named = slot >= 0 ? namedKindValueAt(static_cast<std::size_t>(slot)) : nullptr;
        return named != nullptr ? *named : *places.defaults[value];
    };
    TextContent content;
    content.width = width;
    content.height = height;
    content.widthMode = static_cast<int32_t>(widthMode);
    content.heightMode = static_cast<int32_t>(heightMode);
    content.text = &read(MeasuredText).string();
    content.fontSize = read(MeasuredFontSize).number();
    content.lineHeight = read(MeasuredLineHeight).number();
    content.textInterval = read(MeasuredInterval).number();
    content.maxLines = truncateToInt32(read(MeasuredMaxLines).number());
    content.fontWeight = truncateToInt32(read(MeasuredFontWeight).number());
    // The host measures with the font it will draw, and the record's own
    // fontWeight never reaches it, so the weight rides in the style integer.
    content.textStyle = content.fontWeight;
    return content;
}

// Asks the host; without an engine or a host measure hook the text has no size.
YGSize LeafRenderNode::measureText(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const
{
    const EngineInUse runtime = engineInUse();
    if (!runtime || !runtime->services.measureText) {
        return YGSize{0.0F, 0.0F};
    }
    const auto [measuredWidth, measuredHeight] =
        runtime->services.measureText(measureRequest(width, widthMode, height, heightMode));
    // A negative or NaN answer (a host handed a negative font size, say)
    // measures 0, as Yoga would take it, without Yoga's warning on every pass.
    auto valid = [](double size) { return size >= 0.0 ? static_cast<float>(size) : 0.0F; };
    return YGSize{valid(measuredWidth), valid(measuredHeight)};
}

// The content keeps its aspect ratio; before the host has a view there is no
// content, so an image without a fixed size measures 0 by 0 until a layout
// after its view is made.
YGSize LeafRenderNode::measureImage(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const
{
    if (widthMode == YGMeasureModeExactly && heightMode == YGMeasureModeExactly) {
        return YGSize{width, height};
    }
    ViewHost* host = tree().viewHost();
    if (!hasView() || host == nullptr) {
        return YGSize{0.0F, 0.0F};
    }
    const ContentSize content = host->contentSize(nodeId);
    const float contentWidth = content.width;
    const float contentHeight = content.height;
    if (widthMode == YGMeasureModeExactly) {
        float fitted = contentHeight / contentWidth * width;
        if (heightMode == YGMeasureModeAtMost) {
            fitted = std::min(fitted, height);
        }
        return YGSize{width, fitted};
    }
    if (heightMode == YGMeasureModeExactly) {
        float fitted = contentWidth / contentHeight * height;
        // The limit applies only when the offered width is exactly 2, a test
        // of the value and not of the width mode. Kept as it is on purpose.
        if (width == 2.0F) {
            fitted = std::min(fitted, width);
        }
        return YGSize{fitted, height};
    }
    float fittedWidth = contentWidth;
    float fittedHeight = contentHeight;
    if (widthMode == YGMeasureModeAtMost) {
        fittedWidth = std::min(contentWidth, width);
        fittedHeight = contentHeight / contentWidth * fittedWidth;
    }
    if (heightMode == YGMeasureModeAtMost) {
        fittedHeight = std::min(fittedHeight, height);
        fittedWidth = contentWidth / contentHeight * fittedHeight;
    }
    return YGSize{fittedWidth, fittedHeight};
}

}  // namespace Mero
