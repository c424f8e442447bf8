#include "render/ViewRenderNode.h"

#include <array>
#include <string>

#include "render/ContainerRenderNode.h"
#include "render/NodeBinding.h"
#include "render/PropertyIds.h"
#include "runtime/NumberConversion.h"
#include "render/RenderTree.h"
#include "runtime/RuntimeEngine.h"

namespace Mero {

void RenderNodeDeleter::operator()(ViewRenderNode* node) const noexcept
{
    delete node;
}

namespace {

// Items of a list are told apart by their numeric locals: "id#0", and
// "id#1#0" for an item of an item.
std::string scopedNodeId(const Value& element, const LocalScope& scope)
{
    std::string id = memberOf(element, "nodeId").string();
    if (scope) {
        for (const auto& [name, local] : *scope) {
            if (local.is(Kind::Number)) {
                id += '#';
                id += std::to_string(truncateToInt32(local.number()));
            }
        }
    }
    return id;
}

// Padding ids run left, top, right, bottom; border ids left, right, top,
// bottom. Both are read in the edge order left, top, right, bottom.
struct EdgeResult {
    YGEdge edge;
    double LayoutCache::*cached;
    uint32_t propertyId;
};

constexpr std::array<EdgeResult, 4> paddingResults{{
    {YGEdgeLeft, &LayoutCache::paddingLeft, PropertyId::PaddingLeft},
    {YGEdgeTop, &LayoutCache::paddingTop, PropertyId::PaddingTop},
    {YGEdgeRight, &LayoutCache::paddingRight, PropertyId::PaddingRight},
    {YGEdgeBottom, &LayoutCache::paddingBottom, PropertyId::PaddingBottom},
}};

constexpr std::array<EdgeResult, 4> borderResults{{
    {YGEdgeLeft, &LayoutCache::borderLeft, PropertyId::BorderLeft},
    {YGEdgeTop, &LayoutCache::borderTop, PropertyId::BorderTop},
    {YGEdgeRight, &LayoutCache::borderRight, PropertyId::BorderRight},
    {YGEdgeBottom, &LayoutCache::borderBottom, PropertyId::BorderBottom},
}};

}  // namespace

ViewRenderNode::ViewRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                               LocalScope localScope)
    : nodeId(scopedNodeId(element, localScope)),
      type(truncateToUint32(memberOf(element, "$").number())),
      parent(parentNode),
      engine(renderTree.engine()),
      scope(std::move(localScope)),
      yogaNode(YGNodeNew()),
      tree_(renderTree),
      lifeToken_(std::make_shared<const bool>(true))
{
    YGNodeSetContext(yogaNode, this);
    tree_.nodeMade();
    onClick = memberOf(element, "onClick").string();
    // The root always has a view of its own (the host's root view): it
    // cannot be flattened into a parent it does not have.
    isEmpty = parent != nullptr && memberOf(element, "isEmpty").boolean();
    readTransitions(element);
    if (const Value* animation = NodeBinding::propertyOf(element, "loopAnimation")) {
        loopAnimation =
            NodeBinding::isScalar(*animation) ? *animation : createRuntimeObject(*animation)->value(scope, engine);
    }
    bindBool(element, "visible", true, [this](bool shown, bool) { setVisible(shown); });
    bindCommonProperties(element);
}

ViewRenderNode::~ViewRenderNode()
{
    YGNodeFree(yogaNode);
    tree_.nodeGone();
    // A node that goes between two flushes must not stay on the pending list
    // (a whole tree may go at once, hence the stored position).
    if (queued) {
        tree_.delist(pendingEntry_);
    }
}

void ViewRenderNode::readTransitions(const Value& element)
{
    const Value& transition = memberOf(element, "transition");
    if (!transition.is(Kind::Object)) {
        return;
    }
    for (const auto& [key, entry] : transition.object()) {
        Transition record{truncateToUint32(memberOf(entry, "timing").number()), memberOf(entry, "duration").number(),
                          memberOf(entry, "delay").number()};
        if (key == "all") {
            allTransition = record;
        } else {
            transitions.try_emplace(key, record);
        }
    }
}

const Transition* ViewRenderNode::transitionFor(std::string_view key) const
{
    auto found = transitions.find(std::string(key));
    if (found != transitions.end()) {
        return &found->second;
    }
    return allTransition ? &*allTransition : nullptr;
}

bool ViewRenderNode::isShown() const
{
    if (!visible) {
        return false;
    }
    // A hidden root keeps the view the host was given for it, and so do its
    // descendants: only containers below the root hide their subtrees.
    for (const ViewRenderNode* node = parent; node != nullptr && node->parent != nullptr; node = node->parent) {
        if (!node->visible) {
            return false;
        }
    }
    return true;
}

bool ViewRenderNode::markPending()
{
    if (isEmpty || !isShown()) {
        return false;
    }
    if (engine.expired()) {
        return false;
    }
    if (!queued) {
        pendingEntry_ = tree_.enlist(this);
        queued = true;
    }
    return true;
}

void ViewRenderNode::queuePropertyUpdate(uint32_t propertyId, Value value)
{
    if (markPending()) {
        propertyUpdates.push_back({propertyId, std::move(value)});
    }
}

void ViewRenderNode::queueAnimatedUpdate(uint32_t propertyId, Value value, const Transition& transition)
{
    if (markPending()) {
        animatedUpdates.push_back({propertyId, std::move(value), transition});
    }
}

void ViewRenderNode::queueChildChange(const ChildChange& change)
{
    if (markPending()) {
        childChanges.push_back(change);
    }
}

void ViewRenderNode::setVisible(bool shown)
{
    if (shown == visible) {
        return;
    }
    visible = shown;
    if (parent != nullptr) {
        parent->onChildVisibleChanged(this);
        return;
    }
    // markPending runs after the new value is stored, so only a root that
    // has just been shown gets through.
    queueChildChange({-1, this, ChildChange::Kind::Insert});
}

void ViewRenderNode::requestLayout() const
{
    if (!engine.expired()) {
        tree_.requestLayout();
    }
}

std::optional<HostNodeList> ViewRenderNode::collectHostNodes()
{
    if (!visible || isEmpty) {
        return std::nullopt;
    }
    return HostNodeList{this};
}

void ViewRenderNode::applyLayout()
{
    applyFrameSize(YGNodeLayoutGetWidth(yogaNode), layout.width, "width", PropertyId::Width);
    applyFrameSize(YGNodeLayoutGetHeight(yogaNode), layout.height, "height", PropertyId::Height);

    double x = YGNodeLayoutGetLeft(yogaNode);
    double y = YGNodeLayoutGetTop(yogaNode);
    // A flattened container has no view of its own: its offset moves into
    // its children's frames.
    if (parent != nullptr && parent->isEmpty) {
        x += parent->layout.x;
        y += parent->layout.y;
    }
    applyOrigin(x, layout.x, "x", PropertyId::X);
    applyOrigin(y, layout.y, "y", PropertyId::Y);

    for (const EdgeResult& padding : paddingResults) {
        const double value = YGNodeLayoutGetPadding(yogaNode, padding.edge);
        if (value != layout.*padding.cached) {
            layout.*padding.cached = value;
            queuePropertyUpdate(padding.propertyId, value);
        }
    }
    for (const EdgeResult& border : borderResults) {
        const double value = YGNodeLayoutGetBorder(yogaNode, border.edge);
        if (value != layout.*border.cached) {
            layout.*border.cached = value;
            queuePropertyUpdate(border.propertyId, value);
        }
    }
}

void ViewRenderNode::queueLayoutValue(uint32_t propertyId, double value, const Transition* transition)
{
    if (transition != nullptr) {
        queueAnimatedUpdate(propertyId, value, *transition);
    } else {
        queuePropertyUpdate(propertyId, value);
    }
}

void ViewRenderNode::applyFrameSize(double value, double& cached, std::string_view key, uint32_t propertyId)
{
    if (value == cached) {
        return;
    }
    if (engine.expired()) {
        return;
    }
    cached = value;
    // The render switch is the tree's "layout applied": before the card has
    // been laid out once, sizes only fill the cache its view is made from.
    if (!tree_.layoutApplied()) {
        return;
    }
    queueLayoutValue(propertyId, value, hasView ? transitionFor(key) : nullptr);
}

void ViewRenderNode::applyOrigin(double value, double& cached, std::string_view key, uint32_t propertyId)
{
    if (value == cached) {
        return;
    }
    cached = value;
    // Only a transition under the key itself animates a move: "all" does
    // not apply to x and y, on purpose.
    const Transition* transition = nullptr;
    if (hasView) {
        auto found = transitions.find(std::string(key));
        if (found != transitions.end()) {
            transition = &found->second;
        }
    }
    queueLayoutValue(propertyId, value, transition);
}

}  // namespace Mero
