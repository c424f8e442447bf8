#include "render/ProgressRenderNode.h"

#include "render/NodeBinding.h"

namespace Mero {

ProgressRenderNode::ProgressRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                                       LocalScope localScope)
    : ViewRenderNode(element, parentNode, renderTree, std::move(localScope))
{
    if (const Value* data = NodeBinding::propertyOf(element, "businessData")) {
        businessData = *data;
    }
    bindLeafProperties(element, propertyTable, values);
}

}  // namespace Mero
