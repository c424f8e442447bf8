#include "render/ViewRenderNode.h"

#include <array>
#include <string>

#include "render/ContainerRenderNode.h"
#include "render/NodeBinding.h"
#include "render/PropertyTable.h"
#include "runtime/NumberConversion.h"
#include "render/RenderTree.h"
#include "runtime/RuntimeEngine.h"
#include "value/BitCount.h"

namespace Mero {

void RenderNodeDeleter::operator()(ViewRenderNode* node) const noexcept
{
    delete node;
}

namespace {

// Items of a list are told apart by their numeric locals: "id#0", and
// "id#1#0" for an item of an item.
std::string scopedNodeId(const NamedProperties& element, const LocalScope& scope)
{
    std::string id = element.commonMember(Property::NodeId).string();
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

// "loopAnimation", evaluated once at construction; absent when the element
// has none.
Value evaluatedOnce(const NamedProperties& element, Property property, const LocalScope& scope, const EngineRef& engine)
{
    const Value* value = NodeBinding::present(&element.commonMember(property));
    if (value == nullptr) {
        return Value();
    }
    return NodeBinding::isScalar(*value) ? *value : createRuntimeObject(*value)->value(scope, engine);
}

// Padding ids run left, top, right, bottom; border ids left, right, top,
// bottom. Both are read in the edge order left, top, right, bottom.
struct EdgeResult {
    YGEdge edge;
    unsigned field;  // among the node's packed numbers
    Property property;
};

constexpr EdgeResult edgeResult(YGEdge edge, Property property)
{
    return {edge, PackedField::firstInset + static_cast<unsigned>(PackedField::of(PackedField::insets, property)),
            property};
}

constexpr std::array<EdgeResult, 4> paddingResults{
    edgeResult(YGEdgeLeft, Property::PaddingLeft),
    edgeResult(YGEdgeTop, Property::PaddingTop),
    edgeResult(YGEdgeRight, Property::PaddingRight),
    edgeResult(YGEdgeBottom, Property::PaddingBottom),
};

constexpr std::array<EdgeResult, 4> borderResults{
    edgeResult(YGEdgeLeft, Property::BorderLeft),
    edgeResult(YGEdgeTop, Property::BorderTop),
    edgeResult(YGEdgeRight, Property::BorderRight),
    edgeResult(YGEdgeBottom, Property::BorderBottom),
};

// Whether an element names a padding or a border (`named` has a bit per
// common property).
bool namesInset(uint64_t named)
{
    static const uint64_t insetBits = [] {
        uint64_t bits = 0;
        for (const auto& results : {paddingResults, borderResults}) {
            for (const EdgeResult& result : results) {
                bits |= commonBit(result.property);
            }
        }
        return bits;
    }();
    return (named & insetBits) != 0;
}

}  // namespace

ViewRenderNode::ViewRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                               LocalScope localScope)
    : ViewRenderNode(namedProperties(element), parentNode, renderTree, std::move(localScope))
{}

ViewRenderNode::ViewRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                               LocalScope localScope)
    : nodeId(scopedNodeId(element, localScope)),
      parent(parentNode),
      yogaNode(YGNodeNewWithConfig(renderTree.yogaConfig())),
      type(element.type),
      kindIndex_(static_cast<uint8_t>(element.kind != nullptr ? element.kind - nodeKinds().data() : 0))
{
    YGNodeSetContext(yogaNode, this);
    tree().nodeMade();
    try {
        if (localScope) {
            mutableAdditions().scope = std::move(localScope);
        }
        const uint64_t named = element.common;
        // Only the classes that keep their kind's values (leaf and swiper,
        // through bindKindProperties) record which the element names.
        if (kind().nodeClass == NodeClass::Leaf || kind().nodeClass == NodeClass::Swiper) {
            kindNamed_ = element.own;
        }
        auto names = [named](Property property) { return (named & commonBit(property)) != 0; };
        if (names(Property::OnClick)) {
            if (const std::string& click = element.commonMember(Property::OnClick).string(); !click.empty()) {
                mutableExtras().onClick = click;
            }
        }
        if (names(Property::LoopAnimation)) {
            if (Value animation = evaluatedOnce(element, Property::LoopAnimation, scope(), engine()); !animation.isNull()) {
                mutableExtras().loopAnimation = std::move(animation);
            }
        }
        // The root always has a view of its own (the host's root view): it
        // cannot be flattened into a parent it does not have.
        flattened_ = parent != nullptr && element.commonMember(Property::IsEmpty).boolean();
        namesInsets_ = namesInset(named);
        if (names(Property::Transition)) {
            readTransitions(element.commonMember(Property::Transition));
        }
        bindCommonProperties(element);
    } catch (...) {
        // No destructor runs for a node whose constructor throws.
        leaveTree();
        throw;
    }
}

const EngineRef& ViewRenderNode::engine() const
{
    return tree().engine();
}

RenderTree& ViewRenderNode::tree() const
{
    return RenderTree::of(yogaNode);
}

ViewRenderNode::EngineInUse ViewRenderNode::engineInUse() const
{
    const RenderTree& owner = tree();
    if (RuntimeEngine* held = owner.heldEngine()) {
        return {nullptr, held};
    }
    std::shared_ptr<RuntimeEngine> locked = owner.engine().lock();
    RuntimeEngine* engine = locked.get();
    return {std::move(locked), engine};
}

ViewRenderNode::~ViewRenderNode()
{
    leaveTree();
    kindValues_.release(countBits(kindNamed_));
}

void ViewRenderNode::leaveTree() noexcept
{
    tree().nodeGone();
    // A node that goes between two flushes must not stay on the pending list
    // (a whole tree may go at once, hence the stored position).
    if (queued_) {
        tree().delist(pendingPlace_);
    }
}

void ViewRenderNode::readTransitions(const Value& transition)
{
    if (!transition.is(Kind::Object)) {
        return;
    }
    for (const auto& [key, entry] : transition.object()) {
        Transition record{truncateToUint32(memberOf(entry, "timing").number()), memberOf(entry, "duration").number(),
                          memberOf(entry, "delay").number()};
        if (key == "all") {
            mutableExtras().allTransition = record;
        } else {
            mutableExtras().transitionsByKey.try_emplace(key, record);
        }
    }
}

ViewRenderNode::Additions& ViewRenderNode::mutableAdditions()
{
    if (!additions_) {
        additions_ = std::make_unique<Additions>();
    }
    return *additions_;
}

ViewRenderNode::Extras& ViewRenderNode::mutableExtras()
{
    std::unique_ptr<Extras>& extras = mutableAdditions().extras;
    if (!extras) {
        extras = std::make_unique<Extras>();
    }
    return *extras;
}

const Transition* ViewRenderNode::transitionFor(std::string_view key) const
{
    const Extras* held = extras();
    if (held == nullptr) {
        return nullptr;
    }
    auto found = held->transitionsByKey.find(std::string(key));
    if (found != held->transitionsByKey.end()) {
        return &found->second;
    }
    return held->allTransition ? &*held->allTransition : nullptr;
}

void ViewRenderNode::queueBoundUpdate(const PropertyInfo& row, Value value)
{
    const Transition* transition = row.has(Animatable) ? transitionFor(row.transitionKey) : nullptr;
    if (transition != nullptr) {
        queueAnimatedUpdate(hostIdOf(row.property), std::move(value), *transition);
    } else {
        queuePropertyUpdate(hostIdOf(row.property), std::move(value));
    }
}

const NodeQueues& ViewRenderNode::queues() const
{
    static const NodeQueues none;
    const NodeQueues* queued = queued_ ? tree().queuesAt(pendingPlace_) : nullptr;
    return queued != nullptr ? *queued : none;
}

// Only for a node on the pending list.
NodeQueues& ViewRenderNode::mutableQueues()
{
    return tree().mutableQueuesAt(pendingPlace_);
}

bool ViewRenderNode::isShown() const
{
    if (!visible_) {
        return false;
    }
    // A hidden root keeps the view the host was given for it, and so do its
    // descendants: only containers below the root hide their subtrees.
    for (const ViewRenderNode* node = parent; node != nullptr && node->parent != nullptr; node = node->parent) {
        if (!node->visible()) {
            return false;
        }
    }
    return true;
}

bool ViewRenderNode::markPending()
{
    // Listed already and nothing to keep: what the checks below would find.
    // Most frame values of the first layout come here.
    if (queued_ && !hasView_) {
        return false;
    }
    if (flattened_ || !isShown()) {
        return false;
    }
    if (engine().expired()) {
        return false;
    }
    if (!queued_) {
        pendingPlace_ = tree().enlist(this);
        queued_ = true;
    }
    // A node without a view keeps nothing, since its view is made from its
    // current values (the first layout runs before any view exists); it is
    // enlisted all the same, the list's order being the order of the flush.
    return hasView_;
}

void ViewRenderNode::queuePropertyUpdate(uint32_t propertyId, Value value)
{
    if (markPending()) {
        mutableQueues().propertyUpdates.push_back({propertyId, std::move(value)});
    }
}

void ViewRenderNode::queueAnimatedUpdate(uint32_t propertyId, Value value, const Transition& transition)
{
    if (markPending()) {
        mutableQueues().animatedUpdates.push_back({propertyId, std::move(value), transition});
    }
}

void ViewRenderNode::queueChildChange(const ChildChange& change)
{
    if (markPending()) {
        mutableQueues().childChanges.push_back(change);
    }
}

void ViewRenderNode::setVisible(bool shown)
{
    if (shown == visible_) {
        return;
    }
    visible_ = shown;
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
    if (!engine().expired()) {
        tree().requestLayout();
    }
}

std::optional<HostNodeList> ViewRenderNode::collectHostNodes()
{
    if (!visible_ || flattened_) {
        return std::nullopt;
    }
    return HostNodeList{this};
}

void ViewRenderNode::applyLayout(bool parentMoved)
{
    if (YGNodeGetHasNewLayout(yogaNode) || parentMoved) {
        readLayout();
    }
    YGNodeSetHasNewLayout(yogaNode, false);
}

void ViewRenderNode::readLayout()
{
    applyFrameSize(YGNodeLayoutGetWidth(yogaNode), frame_.width, Property::Width);
    applyFrameSize(YGNodeLayoutGetHeight(yogaNode), frame_.height, Property::Height);

    double x = YGNodeLayoutGetLeft(yogaNode);
    double y = YGNodeLayoutGetTop(yogaNode);
    // A flattened container has no view of its own: its offset moves into
    // its children's frames.
    if (parent != nullptr && parent->flattened()) {
        x += parent->frame().x;
        y += parent->frame().y;
    }
    applyOrigin(x, frame_.x, Property::X);
    applyOrigin(y, frame_.y, Property::Y);

    // Yoga lays out no inset (all 0, as cached) for a node whose element
    // names none: most nodes, whose eight reads are skipped.
    if (!namesInsets_) {
        return;
    }
    // Read once: most nodes have no inset, and hold no room for one.
    const LayoutCache cached = layout();
    readInsets(false, cached);
    readInsets(true, cached);
}

LayoutCache ViewRenderNode::layout() const
{
    LayoutCache layout{frame_, {}};
    if (styleAndInsets_.empty()) {
        return layout;
    }
    styleAndInsets_.forEachNumber([&layout](unsigned field, float number) {
        if (field >= PackedField::firstInset) {
            layout.*PackedField::insets[field - PackedField::firstInset].member = number;
        }
    });
    return layout;
}

void ViewRenderNode::readInsets(bool borders, const LayoutInsets& cached)
{
    const std::array<EdgeResult, 4>& results = borders ? borderResults : paddingResults;
    std::array<float, 4> values{};
    uint32_t changed = 0;
    for (std::size_t i = 0; i < results.size(); ++i) {
        values[i] = borders ? YGNodeLayoutGetBorder(yogaNode, results[i].edge)
                            : YGNodeLayoutGetPadding(yogaNode, results[i].edge);
        if (values[i] != cached.*PackedField::insets[results[i].field - PackedField::firstInset].member) {
            changed |= 1U << results[i].field;
        }
    }
    if (changed == 0) {
        return;
    }
    // Edges set together (most paddings are) take room together.
    styleAndInsets_.addNumbers(changed);
    for (std::size_t i = 0; i < results.size(); ++i) {
        if ((changed & (1U << results[i].field)) != 0) {
            styleAndInsets_.setNumber(results[i].field, values[i]);
            queuePropertyUpdate(hostIdOf(results[i].property), values[i]);
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

void ViewRenderNode::applyFrameSize(float value, float& cached, Property property)
{
    if (value == cached) {
        return;
    }
    // Found once: every node's two sizes come here in the first layout.
    const RenderTree& owner = tree();
    if (owner.engine().expired()) {
        return;
    }
    cached = value;
    // The render switch is the tree's "layout applied": before the card has
    // been laid out once, sizes only fill the cache its view is made from.
    if (!owner.layoutApplied()) {
        return;
    }
    queueLayoutValue(hostIdOf(property), value, hasView_ ? transitionFor(info(property).transitionKey) : nullptr);
}

void ViewRenderNode::applyOrigin(double value, double& cached, Property property)
{
    if (value == cached) {
        return;
    }
    cached = value;
    // Only a transition under the key itself animates a move: "all" does
    // not apply to x and y, on purpose.
    const Transition* transition = nullptr;
    if (hasView_ && extras() != nullptr) {
        auto found = extras()->transitionsByKey.find(std::string(info(property).transitionKey));
        if (found != extras()->transitionsByKey.end()) {
            transition = &found->second;
        }
    }
    queueLayoutValue(hostIdOf(property), value, transition);
}

}  // namespace Mero
