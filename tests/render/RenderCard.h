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

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "render/Component.h"
#include "render/ContainerRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "render/ViewRenderNode.h"
#include "support/TemplateHarness.h"

namespace MeroTest {

using Calls = std::vector<std::string>;

inline std::string describe(const Mero::Value& value)
{
    switch (value.kind()) {
    case Mero::Kind::Number: return Mero::numberToString(value.number());
    case Mero::Kind::String: return value.string();
    case Mero::Kind::Boolean: return value.boolean() ? "true" : "false";
    case Mero::Kind::Null: return "null";
    default: return "<" + std::to_string(value.kindNumber()) + ">";
    }
}

class RecordingComponent : public Mero::Component {
public:
    RecordingComponent(std::string id, Calls& log) : id_(std::move(id)), log_(log) {}

    void updateChildren(const std::vector<Mero::ChildChange>& changes) override
    {
        std::string line = id_ + " children";
        for (const Mero::ChildChange& change : changes) {
            line += " " + std::to_string(change.index) + ":" + change.node->nodeId;
        }
        log_.push_back(line);
    }

    void updateProperties(const std::vector<Mero::PropertyUpdate>& properties) override
    {
        std::string line = id_ + " set";
        for (const Mero::PropertyUpdate& update : properties) {
            line += " " + std::to_string(update.propertyId) + "=" + describe(update.value);
        }
        log_.push_back(line);
    }

    void playAnimations(const std::vector<Mero::AnimatedUpdate>& animations) override
    {
        std::string line = id_ + " animate";
        for (const Mero::AnimatedUpdate& update : animations) {
            line += " " + std::to_string(update.propertyId) + "=" + describe(update.value) + "@" +
                    std::to_string(update.transition.timing) + "/" + Mero::numberToString(update.transition.duration) +
                    "/" + Mero::numberToString(update.transition.delay);
        }
        log_.push_back(line);
    }

    Mero::ContentSize getContentSize() override
    {
        log_.push_back(id_ + " contentSize");
        return contentSize;
    }

    void releaseComponents(Mero::ViewRenderNode* node) override { log_.push_back(id_ + " release " + node->nodeId); }

    Mero::ContentSize contentSize;

private:
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

    // Breadth first from the root, first match.
    Mero::ViewRenderNode* find(std::string_view id)
    {
        std::deque<Mero::ViewRenderNode*> queue{&root()};
        while (!queue.empty()) {
            Mero::ViewRenderNode* node = queue.front();
            queue.pop_front();
            if (node->nodeId == id) {
                return node;
            }
            for (const Mero::RenderNodePtr& child : childrenOf(*node)) {
                queue.push_back(child.get());
            }
        }
        ADD_FAILURE() << "no node " << id;
        return nullptr;
    }

    template <typename Node>
    Node& as(std::string_view id)
    {
        return dynamic_cast<Node&>(*find(id));
    }

    RecordingComponent& componentOf(std::string_view id)
    {
        return *static_cast<RecordingComponent*>(find(id)->component);
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
