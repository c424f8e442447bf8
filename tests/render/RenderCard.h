// A card's render tree over a loaded template, with a recording host: every
// change a flush sends lands, in order, in one log of lines such as
//
//     "root children 1:b 0:x"         child changes: index:view made, index:x removed
//     "title set 203=Hi 8=0.5"        properties: id=value
//     "title animate 8=0.5@2/300/10"  animations: id=value@timing/duration/delay
//     "img contentSize"               a content-size query
//
// so a test asserts exactly what a host would see.
#pragma once

#include <gtest/gtest.h>
#include <yoga/Yoga.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "render/ContainerRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "render/RenderTree.h"
#include "render/ViewHost.h"
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

class RecordingViews : public Mero::ViewHost {
public:
    explicit RecordingViews(Calls& log) : log_(log) {}

    std::vector<const Mero::ViewRenderNode*> apply(const Mero::ChangeList& changes) override
    {
        std::string children;  // consecutive child changes of one view share a line
        std::string parent;
        auto endChildren = [&] {
            if (!children.empty()) {
                log_.push_back(parent + " children" + children);
                children.clear();
            }
        };
        for (const Mero::Change& change : changes) {
            if (const auto* insert = std::get_if<Mero::InsertView>(&change)) {
                if (insert->parentId != parent) {
                    endChildren();
                }
                parent = insert->parentId;
                children += " " + std::to_string(insert->index) + ":" + std::string(insert->view.slots.strings[0]);
            } else if (const auto* remove = std::get_if<Mero::RemoveView>(&change)) {
                if (remove->parentId != parent) {
                    endChildren();
                }
                parent = remove->parentId;
                children += " " + std::to_string(remove->index) + ":x";
            } else if (const auto* set = std::get_if<Mero::SetProperties>(&change)) {
                endChildren();
                std::string line = set->viewId + " set";
                for (const Mero::PropertyUpdate& update : set->updates) {
                    line += " " + std::to_string(update.propertyId) + "=" + describe(update.value);
                }
                log_.push_back(line);
            } else if (const auto* play = std::get_if<Mero::PlayAnimations>(&change)) {
                endChildren();
                std::string line = play->viewId + " animate";
                for (const Mero::AnimatedUpdate& update : play->animations) {
                    line += " " + std::to_string(update.propertyId) + "=" + describe(update.value) + "@" +
                            std::to_string(update.transition.timing) + "/" +
                            Mero::numberToString(update.transition.duration) + "/" +
                            Mero::numberToString(update.transition.delay);
                }
                log_.push_back(line);
            }
        }
        endChildren();
        return {};
    }

    Mero::ContentSize contentSize(const std::string& viewId) override
    {
        log_.push_back(viewId + " contentSize");
        return contentSizes[viewId];
    }

    std::map<std::string, Mero::ContentSize> contentSizes;

private:
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
        tree.setViewHost(&views);
        engine->setFlushHook([this] { tree.flush(); });
    }

    // The tree from the template's elements, without scope.
    Mero::ViewRenderNode& build()
    {
        tree.build(engine->elementsForBuild());
        return *tree.root();
    }

    // One node from an element, outside the card's tree.
    Mero::RenderNodePtr node(const Mero::Value& element)
    {
        return Mero::createRenderNode(element, nullptr, tree, nullptr);
    }

    Mero::ViewRenderNode& root() { return *tree.root(); }

    // The first layout: from here on layout changes are collected.
    void layout() { tree.applyLayout(); }

    // Makes the host's views of the whole tree, as createComponentTree does.
    void attachComponents() { tree.createViews(); }

    // The whole start of a card: build, first layout, host views. Leaves
    // nothing queued and nothing logged.
    Mero::ViewRenderNode& start()
    {
        build();
        layout();
        attachComponents();
        tree.flush();
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
        tree.flush();
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

    static const Mero::ContainerRenderNode::Children& childrenOf(Mero::ViewRenderNode& node)
    {
        static const Mero::ContainerRenderNode::Children none;
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
    RecordingViews views{calls};
    Mero::RenderTree tree{engine};
};

}  // namespace MeroTest
