#include "render/ContainerRenderNode.h"

#include <algorithm>

namespace Mero {

namespace {

std::size_t shownViewCount(ViewRenderNode& node)
{
    return node.visible() ? hostViewCount(node) : 0;
}

// The host views of `container`'s children before `child`.
std::size_t viewsBefore(ContainerRenderNode& container, const ViewRenderNode* child)
{
    std::size_t count = 0;
    for (const RenderNodePtr& sibling : container.children) {
        if (sibling.get() == child) {
            break;
        }
        count += shownViewCount(*sibling);
    }
    return count;
}

struct HostPlace {
    ViewRenderNode* parent;  // the node whose view holds the child's views
    std::size_t index;
};

// Where `child`'s views stand among the host children of the nearest
// container above it that has a view; nothing when a flattened container on
// the way is hidden (then nothing of it is shown).
std::optional<HostPlace> hostPlaceOf(ViewRenderNode& child)
{
    std::size_t index = 0;
    ViewRenderNode* node = &child;
    for (ContainerRenderNode* container = child.parent; container != nullptr; container = container->parent) {
        index += viewsBefore(*container, node);
        if (!container->flattened()) {
            return HostPlace{container, index};
        }
        if (!container->visible()) {
            return std::nullopt;
        }
        node = container;
    }
    return std::nullopt;
}

}  // namespace

std::size_t hostViewCount(ViewRenderNode& node)
{
    if (!node.flattened()) {
        return 1;
    }
    std::size_t count = 0;
    if (node.isContainer()) {
        for (const RenderNodePtr& child : static_cast<ContainerRenderNode&>(node).children) {
            count += shownViewCount(*child);
        }
    }
    return count;
}

bool ContainerRenderNode::queueVisibilityChange(ViewRenderNode* child)
{
    const bool ours = std::any_of(children.begin(), children.end(),
                                  [child](const RenderNodePtr& candidate) { return candidate.get() == child; });
    if (!ours) {
        return false;  // still being built
    }
    std::optional<HostPlace> place = hostPlaceOf(*child);
    if (!place) {
        return true;
    }
    auto index = static_cast<int32_t>(place->index);
    if (child->visible()) {
        // The views that come, as they are now; each is made from the
        // node's values when the change is sent.
        for (ViewRenderNode* view : child->collectHostNodes().value_or(HostNodeList())) {
            place->parent->queueChildChange({index++, view, ChildChange::Kind::Insert});
        }
    } else {
        for (std::size_t gone = hostViewCount(*child); gone > 0; --gone) {
            place->parent->queueChildChange({index, child, ChildChange::Kind::Remove});
        }
    }
    return true;
}

ContainerRenderNode::~ContainerRenderNode()
{
    while (!children.empty()) {
        children.pop_back();
    }
}

std::optional<HostNodeList> ContainerRenderNode::collectHostNodes()
{
    if (!visible()) {
        return std::nullopt;
    }
    if (!flattened()) {
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
