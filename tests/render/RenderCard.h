// A card's render tree over a loaded template, with a recording host: every
// Component call of every node lands, in order, in one log of lines such as
//
//     "root children 1:b"             updateChildren: index:child id
//     "title set 203=Hi 8=0.5"        updateProperties: id=value
//     "title animate 8=0.5@2/300/10"  playAnimations: id=value@timing/duration/delay
//
// so a test asserts exactly what a host would see.
#pragma once

#include <gtest/gtest.h>
#include <yoga/Yoga.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "render/Component.h"
#include "render/ContainerRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "render/ViewRenderNode.h"
#include "support/CanonicalJson.h"
#include "support/TemplateHarness.h"

namespace MeroTest {

using Calls = std::vector<std::string>;

// A value as the log shows it: text bare, anything else as canonical JSON.
inline std::string describe(const Mero::Value& value)
{
    return value.is(Mero::Kind::String) ? value.string() : canonicalJson(value);
}

class RecordingComponent : public Mero::Component {
public:
    RecordingComponent(std::string id, Calls& log) : id_(std::move(id)), log_(log) {}

    void updateChildren(const std::vector<Mero::ChildChange>& changes) override
    {
        record(" children", changes, [](const auto& c) { return std::to_string(c.index) + ":" + c.node->nodeId; });
    }

    void updateProperties(const std::vector<Mero::PropertyUpdate>& properties) override
    {
        record(" set", properties,
               [](const auto& u) { return std::to_string(u.propertyId) + "=" + describe(u.value); });
    }

    void playAnimations(const std::vector<Mero::AnimatedUpdate>& animations) override
    {
        record(" animate", animations, [](const auto& u) {
            return std::to_string(u.propertyId) + "=" + describe(u.value) + "@" + std::to_string(u.transition.timing) +
                   "/" + Mero::numberToString(u.transition.duration) + "/" + Mero::numberToString(u.transition.delay);
        });
    }

    Mero::ContentSize getContentSize() override
    {
        log_.push_back(id_ + " contentSize");
        return contentSize;
    }

    void releaseComponents(Mero::ViewRenderNode* node) override { log_.push_back(id_ + " release " + node->nodeId); }

    Mero::ContentSize contentSize;

private:
    template <typename Items, typename Describe>
    void record(const char* kind, const Items& items, Describe describeItem)
    {
        std::string line = id_ + kind;
        for (const auto& item : items) {
            line += " " + describeItem(item);
        }
        log_.push_back(line);
    }

    std::string id_;
    Calls& log_;
};

class RenderCard : public TemplateHarness {
public:
    // The container is 750 by 1334, both exact, at scale 1.
    explicit RenderCard(std::string_view templateText) : TemplateHarness(templateText)
    {
        engine->widthMode = 1;
        engine->heightMode = 1;
        engine->containerWidth = 750.0F;
        engine->containerHeight = 1334.0F;
    }

    // The tree from the template's elements, without scope.
    Mero::ViewRenderNode& build()
    {
        engine->rootNode = node(engine->elements);
        return *engine->rootNode;
    }

    // One node from an element, outside the card's tree.
    Mero::RenderNodePtr node(const Mero::Value& element)
    {
        return Mero::createRenderNode(element, nullptr, engine, nullptr);
    }

    Mero::ViewRenderNode& root() { return *engine->rootNode; }

    // Lays the tree out at the container's size and reads the results.
    void layout()
    {
        YGNodeCalculateLayout(root().yogaNode, engine->containerWidth, engine->containerHeight, YGDirectionLTR);
        root().applyLayout();
    }

    // Gives every node that stands for itself a recording component, as
    // creating the host views does, and turns the render switch on.
    void attachComponents()
    {
        attach(root());
        engine->layoutApplied = true;
    }

    // The whole start of a card: build, first layout, host views. Leaves
    // nothing queued and nothing logged.
    Mero::ViewRenderNode& start()
    {
        build();
        layout();
        engine->flush();
        attachComponents();
        calls.clear();
        return root();
    }

    // Runs SetVariable name = value (value written as a JSON expression).
    void set(const std::string& name, std::string_view valueJson)
    {
        run(R"([{"$":4,"n":")" + name + R"(","value":)" + std::string(valueJson) + "}]");
    }

    // Flushes and hands back what the host saw since the last call.
    Calls flush()
    {
        engine->flush();
        return std::exchange(calls, {});
    }

    // Depth first from the root, first match.
    Mero::ViewRenderNode* find(std::string_view id, Mero::ViewRenderNode* from = nullptr)
    {
        Mero::ViewRenderNode& node = from ? *from : root();
        Mero::ViewRenderNode* found = node.nodeId == id ? &node : nullptr;
        for (auto child = childrenOf(node).begin(); !found && child != childrenOf(node).end(); ++child) {
            found = find(id, child->get());
        }
        EXPECT_TRUE(found || from) << "no node " << id;
        return found;
    }

    static const std::vector<Mero::RenderNodePtr>& childrenOf(Mero::ViewRenderNode& node)
    {
        static const std::vector<Mero::RenderNodePtr> none;
        return node.isContainer() ? static_cast<Mero::ContainerRenderNode&>(node).children : none;
    }

    static std::vector<std::string> childIds(Mero::ViewRenderNode& node)
    {
        std::vector<std::string> ids;
        for (const Mero::RenderNodePtr& child : childrenOf(node)) {
            ids.push_back(child->nodeId);
        }
        return ids;
    }

    Calls calls;

private:
    void attach(Mero::ViewRenderNode& node)
    {
        if (!node.isEmpty) {
            components_.push_back(std::make_unique<RecordingComponent>(node.nodeId, calls));
            node.component = components_.back().get();
            node.hasComponent = true;
        }
        for (const Mero::RenderNodePtr& child : childrenOf(node)) {
            attach(*child);
        }
    }

    std::vector<std::unique_ptr<RecordingComponent>> components_;
};

}  // namespace MeroTest
