// ContainerRenderNode: a node with child nodes (flex containers, lists and
// swipers). It owns its children and hears when one is shown or hidden.
#pragma once

#include <optional>
#include <vector>

#include "render/ViewRenderNode.h"

namespace Mero {

class ContainerRenderNode : public ViewRenderNode {
public:
    using ViewRenderNode::ViewRenderNode;
    // Deletes the children, last to first, before the node itself goes.
    ~ContainerRenderNode() override;
    ContainerRenderNode(const ContainerRenderNode&) = delete;
    ContainerRenderNode& operator=(const ContainerRenderNode&) = delete;

    bool isContainer() const override { return true; }
    // A flattened ("isEmpty") container has no view: its shown children
    // stand in its place, in child order.
    std::optional<HostNodeList> collectHostNodes() override;

    // `child`'s "visible" has just changed.
    virtual void onChildVisibleChanged(ViewRenderNode* child) = 0;

    // Made and freed with the node: its block is recycled as the node's is.
    using Children = std::vector<RenderNodePtr, SizedAllocator<RenderNodePtr>>;
    Children children;

protected:
    // Tells the host that `child` was shown or hidden: the node with the
    // view (this one, or the nearest unflattened container above) queues
    // one change per view that comes or goes, at the place those views take
    // among its host children. False when `child` is not (yet) ours.
    bool queueVisibilityChange(ViewRenderNode* child);
};

// How many host views stand for `node` when it is shown: 1, or for a
// flattened container those of its shown children.
std::size_t hostViewCount(ViewRenderNode& node);

}  // namespace Mero
