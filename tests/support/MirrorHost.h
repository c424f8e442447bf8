// A host that keeps its own tree of views from what the engine sends, as an
// app's host does, and a check that compares it with the tree that creating
// the views afresh from the engine's current state would give. After every
// flush the two must be equal: the same views in the same parents and order,
// with the same frames and property values.
//
//     MirrorHost host;                      // before the instance: it outlives it
//     Mero::MeroInstance instance;
//     ... set-up ...
//     host.createComponentTree(instance);
//     instance.sendEvent("tap", "{}");
//     EXPECT_EQ(host.difference(instance), "");
#pragma once

#include <cstring>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "bridge/ComponentSlots.h"
#include "engine/MeroInstance.h"
#include "render/Component.h"
#include "render/ContainerRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "runtime/RuntimeEngine.h"

namespace MeroTest {

// One host view: what createComponent received, kept up to date by every
// property update and animation (an animation jumps to its end value).
struct MirrorView {
    Mero::ComponentSlots slots;
    std::vector<std::shared_ptr<MirrorView>> children;

    const std::string& id() const { return slots.strings[Mero::ComponentSlots::kNodeIdSlot]; }
};

class MirrorHost {
public:
    // The root view, as createComponentTree hands it to the host.
    void createComponentTree(Mero::MeroInstance& instance)
    {
        Mero::ViewRenderNode* root = instance.runtime().rootNode.get();
        root_ = root != nullptr ? makeView(*root, true) : nullptr;
    }

    // Empty when the host's tree equals a fresh build from the engine's
    // state; otherwise where they first differ. Faults the engine made the
    // host see (an index out of range, an update of a view that is not
    // there) are differences too.
    std::string difference(Mero::MeroInstance& instance)
    {
        if (!faults_.empty()) {
            return faults_.front();
        }
        Mero::ViewRenderNode* root = instance.runtime().rootNode.get();
        if (root == nullptr || root_ == nullptr) {
            return root == nullptr && root_ == nullptr ? "" : "root view present on one side only";
        }
        // Hiding the root queues nothing: the host keeps the view it was
        // given, and what the root itself shows no longer matters.
        return compare(*makeView(*root, false), *root_, "root", !root->visible);
    }

    const std::shared_ptr<MirrorView>& root() const { return root_; }

    // What getContentSize answers for every view (an image's natural size).
    Mero::ContentSize contentSize{120.0F, 60.0F};

private:
    class Controller;

    std::shared_ptr<MirrorView> makeView(Mero::ViewRenderNode& node, bool attach)
    {
        auto view = std::make_shared<MirrorView>();
        view->slots = Mero::collectComponentSlots(node);
        if (attach) {
            // Owned by the node's instance, as the real controllers are.
            delete node.component;
            node.component = new Controller(*this, node.nodeId);
            node.hasComponent = true;
            node.childChanges.clear();
            node.propertyUpdates.clear();
            node.animatedUpdates.clear();
        }
        if (node.isContainer()) {
            for (const Mero::RenderNodePtr& child : static_cast<Mero::ContainerRenderNode&>(node).children) {
                for (Mero::ViewRenderNode* shown : child->collectHostNodes().value_or(Mero::HostNodeList())) {
                    view->children.push_back(makeView(*shown, attach));
                }
            }
        }
        return view;
    }

    // First match, breadth first, as a host finds a component by id.
    MirrorView* find(const std::string& id) const
    {
        std::deque<MirrorView*> waiting;
        if (root_) {
            waiting.push_back(root_.get());
        }
        while (!waiting.empty()) {
            MirrorView* view = waiting.front();
            waiting.pop_front();
            if (view->id() == id) {
                return view;
            }
            for (const auto& child : view->children) {
                waiting.push_back(child.get());
            }
        }
        return nullptr;
    }

    static std::string compare(const MirrorView& expected, const MirrorView& actual, const std::string& path,
                               bool skipOwnSlots = false)
    {
        const std::string where = path + " (" + expected.id() + ")";
        if (!skipOwnSlots) {
            if (std::string slot = slotDifference(expected.slots, actual.slots); !slot.empty()) {
                return where + ": " + slot;
            }
        }
        if (expected.children.size() != actual.children.size()) {
            return where + ": " + std::to_string(expected.children.size()) + " children expected, host has " +
                   std::to_string(actual.children.size());
        }
        for (std::size_t i = 0; i < expected.children.size(); ++i) {
            std::string child = compare(*expected.children[i], *actual.children[i], path + "/" + std::to_string(i));
            if (!child.empty()) {
                return child;
            }
        }
        return "";
    }

    static std::string slotDifference(const Mero::ComponentSlots& expected, const Mero::ComponentSlots& actual)
    {
        if (expected.type != actual.type) {
            return "type " + std::to_string(expected.type) + " expected, host has " + std::to_string(actual.type);
        }
        for (std::size_t i = 0; i < expected.floats.size(); ++i) {
            if (std::memcmp(&expected.floats[i], &actual.floats[i], sizeof(float)) != 0) {
                return "float " + std::to_string(i) + ": " + std::to_string(expected.floats[i]) + " expected, host has " +
                       std::to_string(actual.floats[i]);
            }
        }
        for (std::size_t i = 0; i < expected.ints.size(); ++i) {
            if (expected.ints[i] != actual.ints[i]) {
                return "int " + std::to_string(i) + ": " + std::to_string(expected.ints[i]) + " expected, host has " +
                       std::to_string(actual.ints[i]);
            }
        }
        for (std::size_t i = 0; i < expected.strings.size(); ++i) {
            if (expected.strings[i] != actual.strings[i]) {
                return "string " + std::to_string(i) + ": \"" + expected.strings[i] + "\" expected, host has \"" +
                       actual.strings[i] + "\"";
            }
        }
        for (std::size_t i = 0; i < expected.booleans.size(); ++i) {
            if (expected.booleans[i] != actual.booleans[i]) {
                return "boolean " + std::to_string(i) + " differs";
            }
        }
        return "";
    }

    class Controller final : public Mero::Component {
    public:
        Controller(MirrorHost& host, std::string id) : host_(host), id_(std::move(id)) {}

        void updateChildren(const std::vector<Mero::ChildChange>& changes) override
        {
            // Inserting the root anew replaces this controller: work from copies.
            MirrorHost& host = host_;
            const std::string id = id_;
            const std::vector<Mero::ChildChange> pending = changes;
            for (const Mero::ChildChange& change : pending) {
                host.applyChildChange(id, change);
            }
        }

        void updateProperties(const std::vector<Mero::PropertyUpdate>& properties) override
        {
            for (const Mero::PropertyUpdate& update : properties) {
                host_.setProperty(id_, update.propertyId, update.value);
            }
        }

        void playAnimations(const std::vector<Mero::AnimatedUpdate>& animations) override
        {
            for (const Mero::AnimatedUpdate& update : animations) {
                host_.setProperty(id_, update.propertyId, update.value);
            }
        }

        Mero::ContentSize getContentSize() override { return host_.contentSize; }

        void releaseComponents(Mero::ViewRenderNode* /*node*/) override {}

    private:
        MirrorHost& host_;
        std::string id_;
    };

    void applyChildChange(const std::string& parentId, const Mero::ChildChange& change)
    {
        const bool inserting = change.kind == Mero::ChildChange::Kind::Insert;
        MirrorView* parent = change.index >= 0 ? find(parentId) : nullptr;
        if (parent == nullptr) {
            if (change.index >= 0) {
                fault("child change for " + parentId + ", which has no view");
            }
            root_ = inserting ? makeView(*change.node, true) : nullptr;
            return;
        }
        auto& children = parent->children;
        const auto index = static_cast<std::size_t>(change.index);
        if (inserting ? index > children.size() : index >= children.size()) {
            fault((inserting ? "insert at " : "remove at ") + std::to_string(index) + " of " + parentId + ", which has " +
                  std::to_string(children.size()) + " children");
            return;
        }
        if (inserting) {
            children.insert(children.begin() + static_cast<std::ptrdiff_t>(index), makeView(*change.node, true));
        } else {
            children.erase(children.begin() + static_cast<std::ptrdiff_t>(index));
        }
    }

    void setProperty(const std::string& id, uint32_t propertyId, const Mero::Value& value)
    {
        if (MirrorView* view = find(id)) {
            view->slots.put(propertyId, value);
        } else {
            fault("property " + std::to_string(propertyId) + " sent to " + id + ", which has no view");
        }
    }

    void fault(std::string what) { faults_.push_back(std::move(what)); }

    std::shared_ptr<MirrorView> root_;
    std::vector<std::string> faults_;
};

}  // namespace MeroTest
