// ViewRenderNode: one element of the card, and the base of every node kind.
//
// A node owns one Yoga node, binds each of its template properties to a
// script expression, keeps the style and layout values its host view needs,
// and queues the changes that must reach that view. The engine's flush sends
// the queues through the node's Component. Fields are public: the host bridge
// marshals them when it creates the node's view.
#pragma once

#include <yoga/Yoga.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "render/NodeKinds.h"
#include "render/PackedFields.h"
#include "render/RenderNodePtr.h"
#include "render/RenderRecords.h"
#include "runtime/LocalScope.h"
#include "runtime/RuntimeObject.h"
#include "value/RecyclingAllocator.h"
#include "value/Value.h"

namespace Mero {

class ContainerRenderNode;
class RenderTree;
class RuntimeEngine;

// The nodes that stand for one node among its parent's host children.
using HostNodeList = std::vector<ViewRenderNode*>;

// The layout values last sent to the host (all 0 until the first layout).
// Yoga's results are floats and are kept as such; only the origin, which
// adds a flattened parent's offset, is a sum kept in double.
struct LayoutFrame {
    double x = 0.0;
    double y = 0.0;
    float width = 0.0F;
    float height = 0.0F;
};
struct LayoutInsets {
    float paddingLeft = 0.0F;
    float paddingRight = 0.0F;
    float paddingTop = 0.0F;
    float paddingBottom = 0.0F;
    float borderLeft = 0.0F;
    float borderRight = 0.0F;
    float borderTop = 0.0F;
    float borderBottom = 0.0F;
};
struct LayoutCache : LayoutFrame, LayoutInsets {};

struct GradientStop {
    std::string color;
    double location = 0.0;
};

// "backgroundGradient", read once from the element's literal. The host's
// gradient description has room for five stops, so no more are kept.
struct Gradient {
    static constexpr std::size_t maxStops = 5;
    double angle = 0.0;
    std::vector<GradientStop> stops;
};

// The style values last set by bindings; what a new host view starts from.
// The host takes these numbers as floats, so floats are what is kept.
struct StyleCache {
    std::string backgroundColor;
    std::string borderColor;
    float opacity = 0.0F;
    float scaleX = 0.0F;
    float scaleY = 0.0F;
    float anchorPointX = 0.0F;
    float anchorPointY = 0.0F;
    float rotationX = 0.0F;
    float rotationY = 0.0F;
    float rotationZ = 0.0F;
    float translateX = 0.0F;
    float translateY = 0.0F;
    float cornerLeftTop = 0.0F;
    float cornerRightTop = 0.0F;
    float cornerRightBottom = 0.0F;
    float cornerLeftBottom = 0.0F;
};

// Where a node keeps each style value and inset among its packed fields:
// texts and numbers are numbered apart, each in its list's order, the insets
// after the style numbers.
namespace PackedField {
template <typename Member>
struct StyleField {
    Property property;
    Member StyleCache::*member;
};
inline constexpr std::array<StyleField<std::string>, 2> styleTexts{{
    {Property::BackgroundColor, &StyleCache::backgroundColor},
    {Property::BorderColor, &StyleCache::borderColor},
}};
inline constexpr std::array<StyleField<float>, 14> styleNumbers{{
    {Property::Opacity, &StyleCache::opacity},
    {Property::ScaleX, &StyleCache::scaleX},
    {Property::ScaleY, &StyleCache::scaleY},
    {Property::AnchorPointX, &StyleCache::anchorPointX},
    {Property::AnchorPointY, &StyleCache::anchorPointY},
    {Property::RotationX, &StyleCache::rotationX},
    {Property::RotationY, &StyleCache::rotationY},
    {Property::RotationZ, &StyleCache::rotationZ},
    {Property::TranslateX, &StyleCache::translateX},
    {Property::TranslateY, &StyleCache::translateY},
    {Property::CornerLeftTop, &StyleCache::cornerLeftTop},
    {Property::CornerRightTop, &StyleCache::cornerRightTop},
    {Property::CornerRightBottom, &StyleCache::cornerRightBottom},
    {Property::CornerLeftBottom, &StyleCache::cornerLeftBottom},
}};
inline constexpr unsigned firstInset = styleNumbers.size();
struct InsetField {
    Property property;
    float LayoutInsets::*member;
};
inline constexpr std::array<InsetField, 8> insets{{
    {Property::PaddingLeft, &LayoutInsets::paddingLeft},
    {Property::PaddingTop, &LayoutInsets::paddingTop},
    {Property::PaddingRight, &LayoutInsets::paddingRight},
    {Property::PaddingBottom, &LayoutInsets::paddingBottom},
    {Property::BorderLeft, &LayoutInsets::borderLeft},
    {Property::BorderTop, &LayoutInsets::borderTop},
    {Property::BorderRight, &LayoutInsets::borderRight},
    {Property::BorderBottom, &LayoutInsets::borderBottom},
}};
static_assert(firstInset + insets.size() <= PackedFields::kNumberFields);

// The field of a style property in `fields`; -1 when it has none there.
template <typename Fields>
constexpr int of(const Fields& fields, Property property)
{
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].property == property) {
            return static_cast<int>(i);
        }
    }
    return -1;
}
}  // namespace PackedField

// A render node's Yoga node, freed with the member: a node whose
// construction throws halfway (a limit reported in debug mode) frees it too.
struct OwnedYogaNode {
    explicit OwnedYogaNode(YGNodeRef made) : node(made) {}
    OwnedYogaNode(const OwnedYogaNode&) = delete;
    OwnedYogaNode& operator=(const OwnedYogaNode&) = delete;
    ~OwnedYogaNode() { YGNodeFree(node); }
    operator YGNodeRef() const { return node; }
    const YGNodeRef node;
};

// The values of the kind properties an element names, in slot order. The
// node's bits tell how many there are, so the array does not keep its length
// (`new Value[n]` would, in front of the values: most nodes have one to five
// values, and those eight bytes cost them a larger block).
class KindValues {
public:
    KindValues() = default;
    KindValues(const KindValues&) = delete;
    KindValues& operator=(const KindValues&) = delete;
    // The owner releases them, as only it knows how many there are.
    ~KindValues() = default;

    // Makes `count` null values; none were made before.
    void make(std::size_t count);
    // Destroys the `count` values made and frees them.
    void release(std::size_t count) noexcept;
    Value& operator[](std::size_t index) const { return values_[index]; }
    explicit operator bool() const { return values_ != nullptr; }

private:
    Value* values_ = nullptr;
};

class ViewRenderNode {
public:
    // `element` is the template element (an object), `parent` null for the
    // root, `scope` the locals the node's expressions see (may be empty).
    ViewRenderNode(const Value& element, ContainerRenderNode* parentNode, RenderTree& renderTree, LocalScope localScope);
    // The same from what the factory found in the element (its members stay
    // where they are while the node is made).
    ViewRenderNode(const NamedProperties& element, ContainerRenderNode* parentNode, RenderTree& renderTree,
                   LocalScope localScope);
    virtual ~ViewRenderNode();
    ViewRenderNode(const ViewRenderNode&) = delete;
    ViewRenderNode& operator=(const ViewRenderNode&) = delete;
    // A card's nodes are made and freed all together, the pattern the heap
    // is slow at: their blocks are recycled (see SizedBlocks).
    static void* operator new(std::size_t size) { return SizedBlocks::allocate(size); }
    static void operator delete(void* block, std::size_t size) noexcept { SizedBlocks::deallocate(block, size); }

    // Builds the child nodes from the element's "children" (`element` is
    // what the node was made from); leaves build none.
    virtual void createChildren(const NamedProperties& /*element*/) {}
    // Reads Yoga's results and queues what changed for the host: only from
    // the nodes Yoga laid out anew in its last pass (it visits a node's
    // children only when it lays the node out, and the frames of the nodes it
    // does not visit stay on the pixel grid as they were). `parentMoved`: a
    // flattened parent moved, which moves this node's frame too.
    virtual void applyLayout(bool parentMoved = false);
    virtual bool isContainer() const { return false; }
    // Absent when the node is hidden; the node itself when it has a view of
    // its own; a flattened container hands up its children's lists instead.
    virtual std::optional<HostNodeList> collectHostNodes();

    // Enlists the node once in the tree's pending list when it is shown, not
    // flattened and its engine alive; whether it may queue: only with a view.
    bool markPending();
    void queuePropertyUpdate(uint32_t propertyId, Value value);
    void queueAnimatedUpdate(uint32_t propertyId, Value value, const Transition& transition);
    // A bound property's new value, animated when the element gives the
    // property a transition (an element's transitions never change once read).
    void queueBoundUpdate(const PropertyInfo& row, Value value);
    void queueChildChange(const ChildChange& change);

    // Shown, with every container above it shown (the root aside): the
    // node's view is in the host's tree, or is about to be. A node inside a
    // hidden subtree queues nothing; the subtree's views are made anew from
    // current values when it shows again.
    bool isShown() const;

    // The "visible" setter: a child tells its parent, the root queues -1.
    void setVisible(bool shown);

    // The transition of an animatable property: the entry under `key`, else
    // the "all" entry; null when neither exists.
    const Transition* transitionFor(std::string_view key) const;

    // The node's kind (its type code's; a plain view's for a code without one).
    const NodeKind& kind() const { return nodeKinds()[kindIndex_]; }
    // The value of one of the kind's own properties (a leaf's or a swiper's).
    const Value& kindValue(Property property) const;
    // The card's script runtime, held weakly by the tree.
    const EngineRef& engine() const;
    // The locals the node's expressions see: an item's of a list, null for
    // most nodes (kept with the additions, so that those hold no room for it).
    const LocalScope& scope() const
    {
        static const LocalScope none;
        return additions_ ? additions_->scope : none;
    }

    // What a node is, fixed when it is made.
    const std::string nodeId;
    ContainerRenderNode* const parent;  // null for the root
    const OwnedYogaNode yogaNode;
    const uint32_t type;
    // The "onClick" event name (what a click dispatches), read once; empty
    // for most nodes. These three are in line: every new view reads them.
    const std::string& onClick() const
    {
        static const std::string none;
        return extras() != nullptr ? extras()->onClick : none;
    }
    // The "loopAnimation", evaluated once; null for most nodes.
    const Value& loopAnimation() const
    {
        static const Value none;
        return extras() != nullptr ? extras()->loopAnimation : none;
    }
    // "backgroundGradient", read once; few nodes have one.
    const Gradient& gradient() const
    {
        static const Gradient none;
        return extras() != nullptr ? extras()->gradient : none;
    }

    bool visible() const { return visible_; }
    // A flattened ("isEmpty") container has no view of its own: its shown
    // children stand in its place among its parent's host children. The root
    // is never flattened.
    bool flattened() const { return flattened_; }
    // The host has a view for this node: set when its view is made
    // (createComponentTree, or a flush that shows it).
    bool hasView() const { return hasView_; }
    // The layout values last sent to the host, and the style values last
    // bound: what a new view is made from.
    LayoutCache layout() const;
    const LayoutFrame& frame() const { return frame_; }
    StyleCache style() const;
    // The style a node has until a binding sets a value other than the
    // default: most nodes keep it, so only the others hold their values.
    static const StyleCache& defaultStyle();
    // The style values bound to other than their defaults and the insets
    // laid out other than 0, numbered as in PackedField: with the frame and
    // the default style, all a new view's common values come from.
    const PackedFields& styleAndInsets() const { return styleAndInsets_; }
    // The value of the kind's own property at `slot` of its list: what was
    // bound, or the property's default when the element does not name it.
    // In line: a new view reads each of its kind's values.
    const Value& kindValueAt(std::size_t slot) const
    {
        const Value* named = namedKindValueAt(slot);
        return named != nullptr ? *named : defaultKindValue(kind().properties[slot]);
    }
    // The same when the element names it, else null.
    const Value* namedKindValueAt(std::size_t slot) const
    {
        const uint32_t bit = uint32_t{1} << slot;
        // The values are made after the bits are found (a swiper's list is
        // evaluated in between): until then every value reads as its default.
        if ((kindNamed_ & bit) != 0 && kindValues_) {
            return &kindValues_[countBits(kindNamed_ & (bit - 1))];
        }
        return nullptr;
    }

    // What the node has queued for its view since the last flush, and
    // whether it is on the tree's pending list.
    const std::vector<ChildChange>& childChanges() const { return queues().childChanges; }
    const std::vector<PropertyUpdate>& propertyUpdates() const { return queues().propertyUpdates; }
    const std::vector<AnimatedUpdate>& animatedUpdates() const { return queues().animatedUpdates; }
    bool queued() const { return queued_; }

protected:
    // Binders. Each takes the element's member for a property (null when
    // the element has none, as namedProperties found it) and calls
    // apply(converted, initial): once now with initial = true, then with
    // initial = false after every change of a UI variable the expression
    // reads, for as long as this node lives (the node keeps the binding's
    // callback: it goes with the node). A missing or null member, or a gone
    // engine, gives `fallback` once. Constant expressions are evaluated in
    // place and bind nothing. Defined in render/NodeBinding.h.
    template <typename Apply>
    void bindBool(const Value* member, bool fallback, Apply apply);
    template <typename Apply>
    void bindNumber(const Value* member, double fallback, Apply apply);
    // A constant of another kind than `fallback` gives `fallback`; a dynamic
    // expression's results pass unchanged.
    template <typename Apply>
    void bindValue(const Value* member, const Value& fallback, Apply apply);
    // A size as a number (corner radii, font sizes), base and fallback 0.
    template <typename Apply>
    void bindSize(const Value* member, Apply apply);
    // A size as a Yoga value; a missing member calls nothing.
    template <typename Apply>
    void bindYogaSize(const Value* member, Apply apply);

    // The engine for the length of a call: the one the tree holds, else
    // locked here; null when it is gone.
    struct EngineInUse {
        std::shared_ptr<RuntimeEngine> locked;
        RuntimeEngine* engine = nullptr;
        RuntimeEngine* operator->() const { return engine; }
        explicit operator bool() const { return engine != nullptr; }
    };
    EngineInUse engineInUse() const;

    // A bound change that affects layout: the next flush lays out again.
    void requestLayout() const;

    // Whether the node's size follows its content (it has a measure
    // function and no fixed size): only then does a content change owe a
    // layout.
    bool contentSizesNode() const;

    // Found through the Yoga node's configuration (see RenderTree::of).
    RenderTree& tree() const;

    // The properties every node has, in their binding order.
    void bindCommonProperties(const NamedProperties& element);
    // The kind's own host properties the element names, kept in
    // kindValues_: constants are stored once (the host view is made from
    // them); a bound value stores each change and sends it under the
    // property's host id, animated where the property may animate and
    // "transition" names it. The others read as their defaults.
    void bindKindProperties(const NamedProperties& element);

private:
    // A setter that tells `apply` whether this is the first value.
    template <typename Arg, typename Apply>
    static std::shared_ptr<std::function<void(Arg)>> firstTimeSetter(Apply apply);
    // Keeps the callback of a binding for as long as the node lives: the
    // engine holds it only weakly, so it goes with the node.
    void keepBinding(ObserverPtr observer);

    // What few nodes have: a click event, a loop animation, "transition"
    // entries, a gradient.
    struct Extras {
        std::string onClick;
        Value loopAnimation;
        std::unordered_map<std::string, Transition> transitionsByKey;
        std::optional<Transition> allTransition;
        Gradient gradient;
    };
    // What some nodes have beyond what every node has; most nodes keep no
    // room for it. Bindings and a list item's locals are far more common than
    // the extras, so these are a block of their own: a node that only binds
    // holds 48 bytes here.
    struct Additions {
        // The bindings of the properties bound to expressions that read UI
        // variables: the node owns their callbacks, the engine holds them
        // weakly.
        std::vector<ObserverPtr> bindings;
        std::unique_ptr<Extras> extras;
        LocalScope scope;  // set once, when the node is made
    };
    Additions& mutableAdditions();
    Extras& mutableExtras();
    // Null when the node has none.
    const Extras* extras() const { return additions_ ? additions_->extras.get() : nullptr; }
    // What the node has queued for its view: kept by the tree, under the
    // node's place on the pending list, and only while it has queued
    // something, most nodes being idle.
    const NodeQueues& queues() const;
    NodeQueues& mutableQueues();
    // `field` numbers a text or a number among PackedField's style fields.
    void storeStyleText(unsigned field, std::string value);
    void storeStyleNumber(unsigned field, float value);

    void leaveTree() noexcept;
    void readTransitions(const Value& transition);
    void readLayout();
    // The padding (or the border) Yoga laid out, sent where it changed.
    void readInsets(bool borders, const LayoutInsets& cached);
    void bindStyleProperty(const Value* member, const PropertyInfo& row);
    void queueLayoutValue(uint32_t propertyId, double value, const Transition* transition);
    void applyFrameSize(float value, float& cached, Property property);
    void applyOrigin(double value, double& cached, Property property);

    // The tree drains the queues and records which nodes have views.
    friend class RenderTree;

    // Where this node sits in the tree's pending list while `queued` is set
    // (declared here to fill the room after `type`).
    uint32_t pendingPlace_ = 0;
    LayoutFrame frame_;
    // The style values bound to other than their defaults, and the insets
    // Yoga laid out other than 0: most nodes have neither, and hold no room.
    PackedFields styleAndInsets_;
    // Flags as bits, so that they and the kind share one word with kindNamed_.
    bool visible_ : 1 = true;
    bool hasView_ : 1 = false;
    bool flattened_ : 1 = false;
    // The element names a padding or a border: only then can Yoga lay out
    // an inset for the node.
    bool namesInsets_ : 1 = false;
    // Only markPending sets it and only the tree's flush clears it (when it
    // takes the node off the list).
    bool queued_ : 1 = false;
    // Where the node's kind stands among nodeKinds().
    uint8_t kindIndex_ = 0;
    // Bit i: the kind's i-th own property is named, and kept in kindValues_
    // (in slot order). Most elements name a few of their kind's properties.
    uint32_t kindNamed_ = 0;
    std::unique_ptr<Additions> additions_;
    // As many as kindNamed_ has bits.
    KindValues kindValues_;
};

}  // namespace Mero
