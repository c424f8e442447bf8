#include "render/RenderTree.h"

#include <yoga/Yoga.h>

#include <algorithm>
#include <deque>
#include <iterator>
#include <utility>

#include "render/ContainerRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "render/ViewHost.h"
#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptRun.h"

namespace Mero {

class RenderTree::EngineHold {
public:
    EngineHold(RenderTree& tree, RuntimeEngine* engine)
        : tree_(tree), previous_(std::exchange(tree.heldEngine_, engine))
    {}
    EngineHold(const EngineHold&) = delete;
    EngineHold& operator=(const EngineHold&) = delete;
    ~EngineHold() { tree_.heldEngine_ = previous_; }

private:
    RenderTree& tree_;
    RuntimeEngine* previous_;
};

RenderTree::RenderTree(EngineRef engine) : engine_(std::move(engine)), yogaConfig_(YGConfigNew())
{
    // A configuration as Yoga's default one, but the tree's own.
    YGConfigSetContext(yogaConfig_.get(), this);
}

RenderTree::~RenderTree()
{
    // The nodes take themselves off the pending list as they go: before it.
    root_.reset();
}

void RenderTree::build(const Value& elements)
{
    // Binding a property evaluates script: building the tree is an entry.
    ScriptRun entry;
    const std::shared_ptr<RuntimeEngine> runtime = engine_.lock();
    const EngineHold hold(*this, runtime.get());
    RenderNodePtr previous = std::exchange(root_, createRenderNode(elements, nullptr, *this, nullptr));
    previous.reset();
}

ViewRenderNode* RenderTree::find(std::string_view nodeId) const
{
    std::deque<ViewRenderNode*> waiting;
    if (root_) {
        waiting.push_back(root_.get());
    }
    while (!waiting.empty()) {
        ViewRenderNode* node = waiting.front();
        waiting.pop_front();
        if (node->nodeId == nodeId) {
            return node;
        }
        if (node->isContainer()) {
            for (const RenderNodePtr& child : static_cast<ContainerRenderNode*>(node)->children) {
                waiting.push_back(child.get());
            }
        }
    }
    return nullptr;
}

void RenderTree::applyContainerBounds()
{
    std::shared_ptr<RuntimeEngine> runtime = engine_.lock();
    if (!root_ || !runtime) {
        return;
    }
    if (runtime->widthMode == 2) {
        YGNodeStyleSetMaxWidth(root_->yogaNode, runtime->containerWidth);
    }
    if (runtime->heightMode == 2) {
        YGNodeStyleSetMaxHeight(root_->yogaNode, runtime->containerHeight);
    }
}

void RenderTree::applyLayout()
{
    std::shared_ptr<RuntimeEngine> runtime = engine_.lock();
    if (root_ && runtime) {
        const EngineHold hold(*this, runtime.get());
        applyContainerBounds();
        YGNodeCalculateLayout(root_->yogaNode, runtime->containerWidth, runtime->containerHeight, YGDirectionLTR);
        // Also before the host's views exist: reading the results fills the
        // layout caches each view is made from. What the nodes queue on the
        // way is dropped when their views are made. Most nodes enlist on the
        // way (all that the layout moves): room for all of them at once.
        pending_.reserve(pending_.size() + nodeCount_);
        root_->applyLayout();
    }
    layoutApplied_ = true;
}

void RenderTree::layOut()
{
    std::shared_ptr<RuntimeEngine> runtime = engine_.lock();
    if (!root_ || !runtime) {
        return;
    }
    const EngineHold hold(*this, runtime.get());
    YGNodeCalculateLayout(root_->yogaNode, runtime->containerWidth, runtime->containerHeight, YGDirectionLTR);
    if (root_->hasView_) {
        root_->applyLayout();
    }
}

std::optional<ViewTree> RenderTree::createViews()
{
    if (!root_) {
        return std::nullopt;
    }
    // Once the host has its views, changes are collected for it (the first
    // layout, which comes before, has already turned this on).
    layoutApplied_ = true;
    return makeViewTree(*root_);
}

namespace {

// Appends to `shown` the nodes whose views are the host children of
// `node`'s view.
void appendHostChildren(const ViewRenderNode& node, HostNodeList& shown)
{
    if (!node.isContainer()) {
        return;
    }
    for (const RenderNodePtr& child : static_cast<const ContainerRenderNode&>(node).children) {
        // Most children stand for themselves; only a flattened one hands up
        // a list of its own.
        if (child->visible() && !child->flattened()) {
            shown.push_back(child.get());
            continue;
        }
        for (ViewRenderNode* view : child->collectHostNodes().value_or(HostNodeList())) {
            shown.push_back(view);
        }
    }
}

HostNodeList hostChildrenOf(const ViewRenderNode& node)
{
    HostNodeList shown;
    if (node.isContainer()) {
        shown.reserve(static_cast<const ContainerRenderNode&>(node).children.size());
    }
    appendHostChildren(node, shown);
    return shown;
}

// Fills `view` in place, children included: a view's slots are large, and
// moving them into place was a good part of making the tree.
template <typename Node, typename Visit>
void fillViewTree(ViewTree& view, Node& node, const Visit& visit)
{
    collectViewSlots(node, view.slots);
    view.node = &node;
    visit(node);
    const HostNodeList shown = hostChildrenOf(node);
    view.children.resize(shown.size());
    for (std::size_t i = 0; i < shown.size(); ++i) {
        fillViewTree(view.children[i], *shown[i], visit);
    }
}

}  // namespace

void RenderTree::markViewMade(ViewRenderNode& node)
{
    node.hasView_ = true;
    if (node.queued_) {
        of(node.yogaNode).takeQueues(node.pendingPlace_);
    }
}

ViewTree RenderTree::makeViewTree(ViewRenderNode& node)
{
    ViewTree view;
    fillViewTree(view, node, markViewMade);
    return view;
}

struct RenderTree::ViewStream {
    ViewMaker& maker;
    ViewSlots slots;
    std::vector<const ViewRenderNode*> refused;
    // The host children of the views being made, each view's after its
    // parent's: one list for the whole card, not one per view.
    HostNodeList children;
};

ViewHandle RenderTree::createViews(ViewMaker& maker)
{
    if (!root_) {
        return nullptr;
    }
    layoutApplied_ = true;
    ViewStream stream{maker, {}, {}, {}};
    ViewHandle top = streamViews(*root_, nullptr, stream);
    viewsRefused(stream.refused);
    return top;
}

// As fillViewTree, with each view made as soon as it is described.
ViewHandle RenderTree::streamViews(ViewRenderNode& node, ViewHandle parent, ViewStream& stream)
{
    markViewMade(node);
    stream.slots.clear();
    collectViewSlots(node, stream.slots);
    const uint32_t type = stream.slots.type;
    ViewHandle view = stream.maker.makeView(stream.slots, node);
    if (view == nullptr) {
        // As when a described tree is refused: the views under it count as
        // made until viewsRefused takes them back.
        stream.refused.push_back(&node);
        markViewsMadeBelow(node);
        return nullptr;
    }
    // By place: the children's own children go after them, and are gone
    // again when they are done.
    const std::size_t first = stream.children.size();
    appendHostChildren(node, stream.children);
    const std::size_t end = stream.children.size();
    for (std::size_t place = first; place < end; ++place) {
        streamViews(*stream.children[place], view, stream);
    }
    stream.children.resize(first);
    stream.maker.finishView(view, parent, type);
    return view;
}

void RenderTree::markViewsMadeBelow(ViewRenderNode& node)
{
    for (ViewRenderNode* child : hostChildrenOf(node)) {
        markViewMade(*child);
        markViewsMadeBelow(*child);
    }
}

ViewTree RenderTree::describeViews(const ViewRenderNode& node)
{
    ViewTree view;
    fillViewTree(view, node, [](const ViewRenderNode&) {});
    return view;
}

void RenderTree::forgetViewsBelow(const ViewRenderNode& node)
{
    if (!node.isContainer()) {
        return;
    }
    for (const RenderNodePtr& child : static_cast<const ContainerRenderNode&>(node).children) {
        child->hasView_ = false;
        forgetViewsBelow(*child);
    }
}

void RenderTree::viewsRefused(const std::vector<const ViewRenderNode*>& refused)
{
    for (const ViewRenderNode* node : refused) {
        forgetViewsBelow(*node);
    }
}

void RenderTree::delist(uint32_t place)
{
    pending_[place] = nullptr;
    takeQueues(place);
    ++vacant_;
}

NodeQueues& RenderTree::mutableQueuesAt(uint32_t place)
{
    if (place >= queues_.size()) {
        queues_.resize(place + 1);
    }
    if (!queues_[place]) {
        queues_[place] = std::make_unique<NodeQueues>();
    }
    return *queues_[place];
}

std::unique_ptr<NodeQueues> RenderTree::takeQueues(std::size_t place) noexcept
{
    return place < queues_.size() ? std::move(queues_[place]) : nullptr;
}

uint32_t RenderTree::enlist(ViewRenderNode* node)
{
    // A host may build a card anew many times between flushes: the places
    // its old nodes left are taken back once they are most of the list.
    if (!flushing_ && vacant_ > kKeptPendingRoom && vacant_ > pending_.size() / 2) {
        compactPending();
    }
    pending_.push_back(node);
    return static_cast<uint32_t>(pending_.size() - 1);
}

std::vector<ViewRenderNode*> RenderTree::pendingNodes() const
{
    std::vector<ViewRenderNode*> listed;
    std::copy_if(pending_.begin(), pending_.end(), std::back_inserter(listed),
                 [](const ViewRenderNode* node) { return node != nullptr; });
    return listed;
}

void RenderTree::compactPending() noexcept
{
    std::size_t kept = 0;
    for (std::size_t place = 0; place < pending_.size(); ++place) {
        ViewRenderNode* node = pending_[place];
        if (node == nullptr) {
            continue;
        }
        node->pendingPlace_ = static_cast<uint32_t>(kept);
        pending_[kept] = node;
        if (kept < queues_.size() && kept != place) {
            queues_[kept] = takeQueues(place);
        }
        ++kept;
    }
    pending_.resize(kept);
    queues_.resize(std::min(queues_.size(), kept));
    vacant_ = 0;
}

void RenderTree::clearPending() noexcept
{
    pending_.clear();
    queues_.clear();
    vacant_ = 0;
    // A first layout lists every node; a live card should not keep that room.
    if (pending_.capacity() > kKeptPendingRoom) {
        pending_.shrink_to_fit();
    }
    if (queues_.capacity() > kKeptPendingRoom) {
        queues_.shrink_to_fit();
    }
}

bool RenderTree::mayAddNode() const
{
    if (nodeCount_ < Limits::kMaxRenderNodes) {
        return true;
    }
    reportLimit(Limit::RenderNodes);
    return false;
}

void RenderTree::flush()
{
    if (needsLayout_) {
        layOut();
        needsLayout_ = false;
    }
    ChangeList changes;
    // By place, not by iterator: collecting changes may enlist more nodes.
    // (A report in debug mode may throw out of it.)
    struct Walking {
        bool& flushing;
        explicit Walking(bool& flag) : flushing(flag) { flushing = true; }
        ~Walking() { flushing = false; }
    } walking(flushing_);
    for (std::size_t place = 0; place < pending_.size(); ++place) {
        ViewRenderNode* node = pending_[place];
        if (node != nullptr) {
            node->queued_ = false;
            pending_[place] = nullptr;
            collectChanges(*node, takeQueues(place), changes);
        }
    }
    clearPending();
    if (host_ != nullptr && !changes.empty()) {
        viewsRefused(host_->apply(changes));
    }
}

void RenderTree::collectChanges(ViewRenderNode& node, std::unique_ptr<NodeQueues> queues, ChangeList& changes)
{
    // Nodes queue from the first layout on, before any view exists, and a
    // host may send an event before its views are made: a node without a
    // view sends nothing and keeps nothing, since its view will be made from
    // its current values. So does a node hidden since it queued (itself or
    // a container above it): its views are made anew when it shows again.
    if (!queues || !node.hasView_ || !node.isShown()) {
        return;
    }
    bool madeAnew = false;
    for (const ChildChange& change : queues->childChanges) {
        if (change.kind == ChildChange::Kind::Remove) {
            changes.emplace_back(RemoveView{node.nodeId, change.index});
            continue;
        }
        changes.emplace_back(InsertView{node.nodeId, change.index, makeViewTree(*change.node)});
        madeAnew = madeAnew || change.node == &node;
    }
    // The root shown again: its view is made anew from current values, so
    // what it queued for the old one is dropped.
    if (madeAnew) {
        return;
    }
    if (!queues->propertyUpdates.empty()) {
        changes.emplace_back(SetProperties{node.nodeId, std::move(queues->propertyUpdates)});
    }
    if (!queues->animatedUpdates.empty()) {
        changes.emplace_back(PlayAnimations{node.nodeId, std::move(queues->animatedUpdates)});
    }
}

}  // namespace Mero
