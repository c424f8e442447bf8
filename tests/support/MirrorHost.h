// A host that keeps its own tree of views from what the engine sends, as an
// app's host does, and a check that compares it with the tree that making
// the views afresh from the engine's current state would give. After every
// flush the two must be equal: the same views in the same parents and order,
// with the same frames and property values.
//
//     MeroTest::MirrorHost* host = MeroTest::MirrorHost::bind(instance);
//     ... set-up ...
//     host->createComponentTree(instance);
//     instance.sendEvent("tap", "{}");
//     EXPECT_EQ(host->difference(instance), "");
#pragma once

#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "engine/Host.h"
#include "engine/MeroInstance.h"
#include "render/RenderTree.h"
#include "render/ViewRenderNode.h"

namespace MeroTest {

// One host view: what createComponent received, kept up to date by every
// property update and animation (an animation jumps to its end value).
struct MirrorView {
    Mero::ViewSlots slots;
    std::vector<std::shared_ptr<MirrorView>> children;

    std::string id() const { return std::string(slots.strings[Mero::ViewSlots::kNodeIdSlot]); }
};

class MirrorHost final : public Mero::Host, public Mero::ViewMaker {
public:
    // Binds a new mirror to `instance`, which owns it.
    static MirrorHost* bind(Mero::MeroInstance& instance)
    {
        auto host = std::make_unique<MirrorHost>();
        MirrorHost* mirror = host.get();
        instance.bindHost(std::move(host));
        return mirror;
    }

    // The root view, made one view at a time as the bridge makes them.
    void createComponentTree(Mero::MeroInstance& instance)
    {
        root_ = nullptr;
        instance.createComponentTree(*this);
    }

    Mero::ViewHandle makeView(const Mero::ViewSlots& slots, const Mero::ViewRenderNode& /*node*/) override
    {
        auto view = std::make_shared<MirrorView>();
        view->slots = slots;
        unfinished_.push_back(view);
        return view.get();
    }

    // Views finish innermost first, each under the view made before it.
    void finishView(Mero::ViewHandle view, Mero::ViewHandle parent, uint32_t /*type*/) override
    {
        if (unfinished_.empty() || unfinished_.back().get() != view) {
            return fault("a view finished before the views made after it");
        }
        std::shared_ptr<MirrorView> finished = std::move(unfinished_.back());
        unfinished_.pop_back();
        if (parent == nullptr) {
            root_ = std::move(finished);
        } else if (unfinished_.empty() || unfinished_.back().get() != parent) {
            fault("a view finished under a view that is not its parent");
        } else {
            unfinished_.back()->children.push_back(std::move(finished));
        }
    }

    // Empty when the host's tree equals a fresh build from the engine's
    // state; otherwise where they first differ. Faults the engine made the
    // host see (an index out of range, an update of a view that is not
    // there) are differences too.
    std::string difference(Mero::MeroInstance& instance) const
    {
        if (!faults_.empty()) {
            return faults_.front();
        }
        const Mero::ViewRenderNode* root = instance.renderTree().root();
        if (root == nullptr || root_ == nullptr) {
            return root == nullptr && root_ == nullptr ? "" : "root view present on one side only";
        }
        // Hiding the root queues nothing: the host keeps the view it was
        // given, and what the root itself shows no longer matters.
        return compare(*mirrorOf(Mero::RenderTree::describeViews(*root)), *root_, "root", !root->visible());
    }

    const std::shared_ptr<MirrorView>& root() const { return root_; }

    bool attached() const override { return true; }
    void logLine(const std::string& /*text*/) override {}

    std::vector<const Mero::ViewRenderNode*> apply(const Mero::ChangeList& changes) override
    {
        for (const Mero::Change& change : changes) {
            std::visit([this](const auto& record) { applyChange(record); }, change);
        }
        return {};
    }

    Mero::ContentSize contentSize(const std::string& /*viewId*/) override { return contentSizeAnswer; }

    // What getContentSize answers for every view (an image's natural size).
    Mero::ContentSize contentSizeAnswer{120.0F, 60.0F};

private:
    static std::shared_ptr<MirrorView> mirrorOf(const Mero::ViewTree& tree)
    {
        auto view = std::make_shared<MirrorView>();
        view->slots = tree.slots;
        for (const Mero::ViewTree& child : tree.children) {
            view->children.push_back(mirrorOf(child));
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

    void applyChange(const Mero::InsertView& insert)
    {
        if (insert.index < 0) {
            root_ = mirrorOf(insert.view);
        } else if (auto* children = childrenAt("insert", insert.parentId, insert.index, 1)) {
            children->insert(children->begin() + insert.index, mirrorOf(insert.view));
        }
    }

    void applyChange(const Mero::RemoveView& remove)
    {
        if (auto* children = childrenAt("remove", remove.parentId, remove.index, 0)) {
            children->erase(children->begin() + remove.index);
        }
    }

    // The children of `parentId`'s view, when it has one and `index` is below
    // their count plus `room`; otherwise a fault, and null.
    std::vector<std::shared_ptr<MirrorView>>* childrenAt(const char* change, const std::string& parentId, int index,
                                                         std::size_t room)
    {
        MirrorView* parent = index >= 0 ? find(parentId) : nullptr;
        const std::string where = std::string(change) + " at " + std::to_string(index) + " of " + parentId;
        if (parent == nullptr) {
            fault(where + ", which has no view");
        } else if (static_cast<std::size_t>(index) >= parent->children.size() + room) {
            fault(where + ", which has " + std::to_string(parent->children.size()) + " children");
        } else {
            return &parent->children;
        }
        return nullptr;
    }

    void applyChange(const Mero::SetProperties& set)
    {
        for (const Mero::PropertyUpdate& update : set.updates) {
            setProperty(set.viewId, update.propertyId, update.value);
        }
    }

    void applyChange(const Mero::PlayAnimations& play)
    {
        for (const Mero::AnimatedUpdate& update : play.animations) {
            setProperty(play.viewId, update.propertyId, update.value);
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

    // The first slot where the host's view differs, buffer by buffer; floats
    // are compared bit for bit.
    static std::string slotDifference(const Mero::ViewSlots& expected, const Mero::ViewSlots& actual)
    {
        if (expected.type != actual.type) {
            return "type " + std::to_string(expected.type) + " expected, host has " + std::to_string(actual.type);
        }
        std::string difference;
        auto compare = [&difference](const char* buffer, const auto& want, const auto& got) {
            for (std::size_t i = 0; difference.empty() && i < want.size(); ++i) {
                if (!same(want[i], got[i])) {
                    difference = std::string(buffer) + " " + std::to_string(i) + ": " + shown(want[i]) +
                                 " expected, host has " + shown(got[i]);
                }
            }
        };
        compare("float", expected.floats, actual.floats);
        compare("int", expected.ints, actual.ints);
        compare("string", expected.strings, actual.strings);
        compare("boolean", expected.booleans, actual.booleans);
        return difference;
    }

    static bool same(float expected, float actual) { return std::memcmp(&expected, &actual, sizeof(float)) == 0; }
    template <typename T>
    static bool same(const T& expected, const T& actual)
    {
        return expected == actual;
    }
    static std::string shown(std::string_view text) { return "\"" + std::string(text) + "\""; }
    template <typename T>
    static std::string shown(T number)
    {
        return std::to_string(number);
    }

    void fault(std::string what) { faults_.push_back(std::move(what)); }

    std::shared_ptr<MirrorView> root_;
    std::vector<std::string> faults_;
    std::vector<std::shared_ptr<MirrorView>> unfinished_;  // made, their children still coming
};

}  // namespace MeroTest
