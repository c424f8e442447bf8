#include "render/ProgressRenderNode.h"

#include "render/NodeBinding.h"

namespace Mero {

ProgressRenderNode::ProgressRenderNode(const Value& element, ContainerRenderNode* parentNode, EngineRef engineRef,
                                       LocalScope localScope)
    : ViewRenderNode(element, parentNode, std::move(engineRef), std::move(localScope))
{
    if (const Value* data = NodeBinding::propertyOf(element, "businessData")) {
        businessData = *data;
    }
    bindLeafProperties(element, propertyTable, values);
}

}  // namespace Mero
