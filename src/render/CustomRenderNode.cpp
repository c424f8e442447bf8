#include "render/CustomRenderNode.h"

namespace Mero {

namespace {

YGSize measureCustom(YGNodeConstRef /*yogaNode*/, float width, YGMeasureMode widthMode, float height,
                     YGMeasureMode heightMode)
{
    if (widthMode == YGMeasureModeExactly && heightMode == YGMeasureModeExactly) {
        return YGSize{width, height};
    }
    return YGSize{0.0F, 0.0F};
}

}  // namespace

CustomRenderNode::CustomRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                                   LocalScope localScope)
    : ViewRenderNode(element, parentNode, renderTree, std::move(localScope))
{
    YGNodeSetMeasureFunc(yogaNode, measureCustom);
    bindLeafProperties(element, propertyTable, values);
}

}  // namespace Mero
