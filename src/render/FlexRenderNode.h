// FlexRenderNode: a flexbox container (type code 3). Its children are laid
// out by Yoga; hidden children are out of the Yoga tree altogether.
#pragma once

#include "render/ContainerRenderNode.h"

namespace Mero {

class FlexRenderNode : public ContainerRenderNode {
public:
    FlexRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                   LocalScope localScope);

    void createChildren(const NamedProperties& element) override;
    // Its own frame first, then every shown child's, in child order.
    void applyLayout(bool parentMoved = false) override;
    // Queues the child's index among shown siblings and moves its Yoga node
    // in or out of this node's Yoga children.
    void onChildVisibleChanged(ViewRenderNode* child) override;


protected:
    // The number of shown children before `child`, or -1 if it is not ours.
    int32_t shownIndexOf(const ViewRenderNode* child) const;
    // Puts the shown children's Yoga nodes under this node's, from index 0.
    void insertShownChildren();
};

}  // namespace Mero
