#include "render/SwiperRenderNode.h"

#include <cmath>
#include <vector>

#include "render/RenderTree.h"
#include "render/NodeBinding.h"

namespace Mero {

namespace {

// Lays every page out at the offered size, as a side effect of measuring the
// page area, and takes that size as it is.
YGSize measurePageArea(YGNodeConstRef pageNode, float width, YGMeasureMode /*widthMode*/, float height,
                       YGMeasureMode /*heightMode*/)
{
    static_cast<SwiperRenderNode*>(YGNodeGetContext(pageNode))->layOutPages(width, height);
    // An undefined size (a swiper with no height in a column of undefined
    // height) measures 0: what Yoga would make of it anyway, but without its
    // warning on every pass.
    return YGSize{std::isnan(width) ? 0.0F : width, std::isnan(height) ? 0.0F : height};
}

bool sameLength(float a, float b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

// A page is a Yoga root, so a change inside it stops there; marking the page
// area dirty carries it up to the card's root, whose next layout then lays
// the pages out again.
void pageDirtied(YGNodeConstRef page)
{
    auto* node = static_cast<ViewRenderNode*>(YGNodeGetContext(page));
    YGNodeMarkDirty(static_cast<SwiperRenderNode*>(node->parent)->pageYogaNode);
}

}  // namespace

SwiperRenderNode::SwiperRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode,
                                   RenderTree& renderTree, LocalScope localScope)
    : ForRenderNode(element, parentNode, renderTree, std::move(localScope)),
      pageYogaNode(YGNodeNewWithConfig(renderTree.yogaConfig()))
{
    YGNodeSetContext(pageYogaNode, this);
    YGNodeSetMeasureFunc(pageYogaNode, measurePageArea);
    YGNodeInsertChild(yogaNode, pageYogaNode, 0);
    if (const Value* handler = element.ownMember(Property::OnSwiperChange)) {
        onSwiperChange = *handler;
    }
    bindKindProperties(element);
}

SwiperRenderNode::~SwiperRenderNode()
{
    for (const RenderNodePtr& page : children) {
        YGNodeSetDirtiedFunc(page->yogaNode, nullptr);
    }
    YGNodeFree(pageYogaNode);
}

void SwiperRenderNode::createChildren(const NamedProperties& /*element*/)
{
    buildItems();
    for (const RenderNodePtr& page : children) {
        YGNodeSetDirtiedFunc(page->yogaNode, pageDirtied);
    }
}

void SwiperRenderNode::layOutPages(float width, float height)
{
    std::vector<YGNodeRef> pages;
    pages.reserve(children.size());
    for (const RenderNodePtr& page : children) {
        pages.push_back(page->yogaNode);
    }
    for (YGNodeRef page : pages) {
        YGNodeCalculateLayout(page, width, height, YGDirectionLTR);
    }
    pagesLaidOutAt_ = YGSize{width, height};
}

void SwiperRenderNode::applyLayout(bool parentMoved)
{
    const float width = YGNodeLayoutGetWidth(pageYogaNode);
    const float height = YGNodeLayoutGetHeight(pageYogaNode);
    if (!sameLength(width, pagesLaidOutAt_.width) || !sameLength(height, pagesLaidOutAt_.height)) {
        layOutPages(width, height);
    }
    // Each page is a Yoga root of its own, laid out when the page area is
    // measured: every page says for itself whether it was.
    const double oldX = frame().x;
    const double oldY = frame().y;
    ViewRenderNode::applyLayout(parentMoved);
    const bool moved = flattened() && (frame().x != oldX || frame().y != oldY);
    for (const RenderNodePtr& page : children) {
        if (page->visible()) {
            page->applyLayout(moved);
        }
    }
}

void SwiperRenderNode::onChildVisibleChanged(ViewRenderNode* child)
{
    if (queueVisibilityChange(child)) {
        requestLayout();
    }
}

}  // namespace Mero
