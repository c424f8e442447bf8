#include "render/ContainerRenderNode.h"

namespace Mero {

ContainerRenderNode::~ContainerRenderNode()
{
    while (!children.empty()) {
        children.pop_back();
    }
}

std::optional<HostNodeList> ContainerRenderNode::collectHostNodes()
{
    if (!visible) {
        return std::nullopt;
    }
    if (!isEmpty) {
        return HostNodeList{this};
    }
    if (children.empty()) {
        return std::nullopt;
    }
    HostNodeList nodes;
    for (const RenderNodePtr& child : children) {
        if (std::optional<HostNodeList> childNodes = child->collectHostNodes()) {
            nodes.insert(nodes.end(), childNodes->begin(), childNodes->end());
        }
    }
    return nodes;
}

}  // namespace Mero
