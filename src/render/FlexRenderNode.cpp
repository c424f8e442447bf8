#include "render/FlexRenderNode.h"

#include <algorithm>
#include <iostream>
#include <string_view>

#include "render/NodeBinding.h"
#include "render/RenderNodeFactory.h"
#include "runtime/NumberConversion.h"

namespace Mero {

namespace {

// Each number is truncated and passed on as Yoga's own enumeration value.
void setFlexValue(YGNodeRef node, Property property, int32_t value)
{
    switch (property) {
    case Property::FlexDirection: YGNodeStyleSetFlexDirection(node, static_cast<YGFlexDirection>(value)); break;
    case Property::JustifyContent: YGNodeStyleSetJustifyContent(node, static_cast<YGJustify>(value)); break;
    case Property::AlignItems: YGNodeStyleSetAlignItems(node, static_cast<YGAlign>(value)); break;
    case Property::AlignContent: YGNodeStyleSetAlignContent(node, static_cast<YGAlign>(value)); break;
    case Property::FlexWrap: YGNodeStyleSetFlexWrap(node, static_cast<YGWrap>(value)); break;
    default: break;
    }
}

}  // namespace

FlexRenderNode::FlexRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                               LocalScope localScope)
    : ContainerRenderNode(element, parentNode, renderTree, std::move(localScope))
{
    // Every flex value is set, its default too: the direction defaults to
    // row, not to Yoga's column.
    for (Property property : kind().properties) {
        const PropertyInfo& row = info(property);
        if (row.input != PropertyInput::YogaEnum) {
            continue;
        }
        bindNumber(element.ownMember(property), row.numberDefault, [this, property](double number, bool initial) {
            setFlexValue(yogaNode, property, truncateToInt32(number));
            if (!initial) {
                requestLayout();
            }
        });
    }
}

void FlexRenderNode::createChildren(const NamedProperties& element)
{
    const Value* list = element.ownMember(Property::Children);
    if (list != nullptr && list->is(Kind::Array) && !list->array().empty()) {
        const ValueArray& elements = list->array();
        children.reserve(elements.size());
        for (const Value& childElement : elements) {
            RenderNodePtr child = createRenderNode(childElement, this, tree(), scope());
            if (!child) {
                std::cout << "create render node failed" << std::endl;
                continue;
            }
            children.push_back(std::move(child));
        }
        insertShownChildren();
    }
}

void FlexRenderNode::insertShownChildren()
{
    std::size_t index = 0;
    for (const RenderNodePtr& child : children) {
        if (child->visible() && YGNodeGetOwner(child->yogaNode) == nullptr) {
            YGNodeInsertChild(yogaNode, child->yogaNode, index++);
        }
    }
}

void FlexRenderNode::applyLayout(bool parentMoved)
{
    const bool laidOutAnew = YGNodeGetHasNewLayout(yogaNode);
    const double oldX = frame().x;
    const double oldY = frame().y;
    ViewRenderNode::applyLayout(parentMoved);
    // A flattened container's offset is in its children's frames.
    const bool moved = flattened() && (frame().x != oldX || frame().y != oldY);
    if (!laidOutAnew && !moved) {
        return;  // Yoga did not visit the children: nothing of theirs changed
    }
    for (const RenderNodePtr& child : children) {
        if (child->visible()) {
            child->applyLayout(moved);
        }
    }
}

int32_t FlexRenderNode::shownIndexOf(const ViewRenderNode* child) const
{
    int32_t index = 0;
    for (const RenderNodePtr& sibling : children) {
        if (sibling.get() == child) {
            return index;
        }
        if (sibling->visible()) {
            ++index;
        }
    }
    return -1;
}

void FlexRenderNode::onChildVisibleChanged(ViewRenderNode* child)
{
    if (!queueVisibilityChange(child)) {
        return;  // still being built: not one of our children yet
    }
    const int32_t index = shownIndexOf(child);
    // Yoga aborts on a second insertion of one node, so the Yoga side is
    // checked rather than assumed (a script run while the children are
    // still being built can show one before they are all inserted).
    YGNodeRef childYoga = child->yogaNode;
    if (child->visible()) {
        if (YGNodeGetOwner(childYoga) == nullptr) {
            const std::size_t count = YGNodeGetChildCount(yogaNode);
            YGNodeInsertChild(yogaNode, childYoga, std::min(static_cast<std::size_t>(index), count));
        }
    } else if (YGNodeGetOwner(childYoga) == yogaNode) {
        YGNodeRemoveChild(yogaNode, childYoga);
    }
    requestLayout();
}

}  // namespace Mero
