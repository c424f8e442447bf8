// SwiperRenderNode: a carousel (type code 8), a repeated list whose items are
// pages. Its Yoga tree holds one page-sized node whose measure function lays
// every page out as a Yoga root of its own at the size offered to it.
#pragma once

#include <array>

#include "render/ForRenderNode.h"

namespace Mero {

class SwiperRenderNode : public ForRenderNode {
public:
    SwiperRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                     LocalScope localScope);
    ~SwiperRenderNode() override;
    SwiperRenderNode(const SwiperRenderNode&) = delete;
    SwiperRenderNode& operator=(const SwiperRenderNode&) = delete;

    // Builds the pages; they stay out of the swiper's Yoga tree.
    void createChildren(const NamedProperties& element) override;
    // Lays the pages out again first when the page area's size is not the
    // one they were laid out at.
    void applyLayout(bool parentMoved = false) override;
    // Pages are Yoga roots of their own: a shown or hidden page is reported
    // to the host but never enters the swiper's Yoga tree.
    void onChildVisibleChanged(ViewRenderNode* child) override;

    // Lays every page out as a Yoga root of the given size.
    void layOutPages(float width, float height);

    YGNodeRef pageYogaNode = nullptr;
    Value onSwiperChange;  // the handler name, unevaluated

private:
    // The size the pages were last laid out at. Yoga keeps the page area's
    // measurement for a size it has seen, so after a resize back to an
    // earlier size the measure function that lays the pages out is not
    // called again; applyLayout catches that.
    YGSize pagesLaidOutAt_{YGUndefined, YGUndefined};
};

}  // namespace Mero
