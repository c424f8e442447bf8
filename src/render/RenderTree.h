// RenderTree: one card's render nodes, and what the host has yet to be told.
//
// It owns the root node and keeps the nodes that queued changes since the
// last flush (in the order in which they first queued one), whether a
// layout pass is owed, whether the first layout has been applied (before
// it, layout results only fill the caches that views are made from), and
// how many nodes the card has. Its flush lays the card out again when that
// is owed, turns every pending node's queued records into one list of
// changes, and only then hands the list to the host's views.
#pragma once

#include <yoga/Yoga.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "render/ChangeList.h"
#include "render/RenderNodePtr.h"
#include "render/RenderRecords.h"
#include "runtime/RuntimeObject.h"
#include "value/Value.h"

namespace Mero {

class RuntimeEngine;
class ViewHost;
class ViewMaker;
using ViewHandle = void*;

class RenderTree {
public:
    explicit RenderTree(EngineRef engine);
    ~RenderTree();
    RenderTree(const RenderTree&) = delete;
    RenderTree& operator=(const RenderTree&) = delete;

    // Builds the tree from the template's elements (one entry of script:
    // binding evaluates it). An earlier tree goes once the new one is in.
    void build(const Value& elements);

    ViewRenderNode* root() const { return root_.get(); }

    // Breadth first from the root, children in stored order, entering only
    // containers; the first node whose id matches, or null.
    ViewRenderNode* find(std::string_view nodeId) const;

    // The first layout: the container's bounds, a layout pass, and the
    // results read into every node; from here on changes are collected.
    void applyLayout();
    // The container's "at most" sizes as the root's maximum sizes.
    void applyContainerBounds();

    // The host's views of the whole tree, for createComponentTree; null
    // without a root. Every node shown gets its view; what it had queued
    // is dropped, since the views are made from current values.
    std::optional<ViewTree> createViews();
    // The same views, handed to `maker` one at a time as they are
    // described; the views it refuses are taken as viewsRefused takes them.
    // Answers the top view: null without a root or when it was refused.
    ViewHandle createViews(ViewMaker& maker);
    // The views the host refused to make: the nodes under them have none.
    void viewsRefused(const std::vector<const ViewRenderNode*>& refused);

    // The owed layout pass, then every pending node's changes, to the host.
    void flush();

    // The host's views; null until the host binds them (nothing is sent).
    void setViewHost(ViewHost* host) { host_ = host; }
    ViewHost* viewHost() const { return host_; }

    const EngineRef& engine() const { return engine_; }
    // The engine while the tree builds its nodes or lays them out, else
    // null. The tree holds it for that long, so that a node need not lock it
    // for each property it binds or each text it measures: a lock is two
    // atomic read-modify-writes.
    RuntimeEngine* heldEngine() const { return heldEngine_; }
    // The Yoga configuration of this tree's nodes. Its context is the tree:
    // a node finds its tree through its Yoga node instead of holding it.
    YGConfigRef yogaConfig() const { return yogaConfig_.get(); }
    static RenderTree& of(YGNodeConstRef yogaNode)
    {
        return *static_cast<RenderTree*>(YGConfigGetContext(YGNodeGetConfig(const_cast<YGNodeRef>(yogaNode))));
    }
    bool layoutApplied() const { return layoutApplied_; }
    void requestLayout() { needsLayout_ = true; }
    bool layoutRequested() const { return needsLayout_; }
    // The nodes on the pending list, in the order they were enlisted.
    std::vector<ViewRenderNode*> pendingNodes() const;

    // How many places the pending list takes, empty ones included.
    std::size_t pendingPlaces() const { return pending_.size(); }

    // Node bookkeeping, for the nodes themselves. enlist answers the node's
    // place on the list; a node that goes before the flush leaves an empty
    // place behind (a whole tree may go at once).
    uint32_t enlist(ViewRenderNode* node);
    void delist(uint32_t place);
    // What the node at `place` has queued (null when nothing), and room for
    // it to queue more.
    const NodeQueues* queuesAt(uint32_t place) const
    {
        return place < queues_.size() ? queues_[place].get() : nullptr;
    }
    NodeQueues& mutableQueuesAt(uint32_t place);
    void nodeMade() { ++nodeCount_; }
    void nodeGone() { --nodeCount_; }
    std::size_t nodeCount() const { return nodeCount_; }
    // Whether the card may have one more node; reported when it may not.
    bool mayAddNode() const;

    // The view of `node` and its subtree, marking every node in it as shown
    // and dropping what they had queued.
    static ViewTree makeViewTree(ViewRenderNode& node);
    // The same views, as they would be made now, changing nothing: what a
    // host that mirrors the engine must hold.
    static ViewTree describeViews(const ViewRenderNode& node);

private:
    void layOut();
    void collectChanges(ViewRenderNode& node, std::unique_ptr<NodeQueues> queues, ChangeList& changes);
    // Takes what the node at `place` has queued, leaving nothing there.
    std::unique_ptr<NodeQueues> takeQueues(std::size_t place) noexcept;
    // Empties the pending list once its nodes are taken off.
    void clearPending() noexcept;
    // Closes up the empty places, keeping the order, and tells each node
    // its new place.
    void compactPending() noexcept;
    static void forgetViewsBelow(const ViewRenderNode& node);
    // `node`'s view is made from current values: what it had queued is
    // dropped.
    static void markViewMade(ViewRenderNode& node);
    static void markViewsMadeBelow(ViewRenderNode& node);
    struct ViewStream;
    static ViewHandle streamViews(ViewRenderNode& node, ViewHandle parent, ViewStream& stream);

    struct FreeYogaConfig {
        void operator()(YGConfigRef config) const noexcept { YGConfigFree(config); }
    };

    // Makes `engine` the held engine for its own lifetime.
    class EngineHold;

    EngineRef engine_;
    RuntimeEngine* heldEngine_ = nullptr;
    ViewHost* host_ = nullptr;
    // Declared before the root, so that it outlives every node.
    std::unique_ptr<YGConfig, FreeYogaConfig> yogaConfig_;
    RenderNodePtr root_;
    std::vector<ViewRenderNode*> pending_;  // not owned; null where a node went
    // What pending nodes queued, by place: only as long as the last place
    // of a node that queued, as most nodes on the list queue nothing (none
    // does before its view is made). Nodes hold no room for queues.
    std::vector<std::unique_ptr<NodeQueues>> queues_;
    // Room the pending list keeps between flushes; more goes back.
    static constexpr std::size_t kKeptPendingRoom = 64;
    // Places left empty since the list was last emptied or closed up. Both
    // counts stay far below 2^32: a card has at most kMaxRenderNodes nodes.
    uint32_t vacant_ = 0;
    uint32_t nodeCount_ = 0;
    // The flush walks the list by place: nothing may move meanwhile.
    bool flushing_ = false;
    bool needsLayout_ = false;
    bool layoutApplied_ = false;
};

}  // namespace Mero
