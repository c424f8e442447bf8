#include "render/TextRenderNode.h"

#include "runtime/NumberConversion.h"
#include "runtime/RuntimeEngine.h"

namespace Mero {

namespace {

// Asks the host; without an engine or a host measure hook the text has no size.
YGSize measureText(YGNodeConstRef yogaNode, float width, YGMeasureMode widthMode, float height,
                   YGMeasureMode heightMode)
{
    // The context holds the node as the base class pointer it was stored as.
    const auto* node =
        static_cast<const TextRenderNode*>(static_cast<const ViewRenderNode*>(YGNodeGetContext(yogaNode)));
    std::shared_ptr<RuntimeEngine> runtime = node->engine.lock();
    if (!runtime || !runtime->services.measureText) {
        return YGSize{0.0F, 0.0F};
    }
    const auto [measuredWidth, measuredHeight] =
        runtime->services.measureText(node->measureRequest(width, widthMode, height, heightMode));
    return YGSize{static_cast<float>(measuredWidth), static_cast<float>(measuredHeight)};
}

}  // namespace

TextRenderNode::TextRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                               LocalScope localScope)
    : ViewRenderNode(element, parentNode, renderTree, std::move(localScope))
{
    YGNodeSetMeasureFunc(yogaNode, measureText);
    bindLeafProperties(element, propertyTable, values);
}

TextContent TextRenderNode::measureRequest(float width, YGMeasureMode widthMode, float height,
                                           YGMeasureMode heightMode) const
{
    TextContent content;
    content.width = width;
    content.height = height;
    content.widthMode = static_cast<int32_t>(widthMode);
    content.heightMode = static_cast<int32_t>(heightMode);
    content.text = &text();
    content.fontSize = fontSize();
    content.lineHeight = lineHeight();
    content.textInterval = textInterval();
    content.maxLines = truncateToInt32(maxLines());
    content.fontWeight = truncateToInt32(fontWeight());
    // The host measures with the font it will draw, and the record's own
    // fontWeight never reaches it, so the weight rides in the style integer.
    content.textStyle = content.fontWeight;
    return content;
}

}  // namespace Mero
