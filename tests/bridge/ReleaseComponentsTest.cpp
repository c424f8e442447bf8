// Controllers' lifetimes: released by the bridge children first, hidden
// children skipped, a flattened container's children in its place; destroyed
// with the tree that owns them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bridge/RenderViewController.h"
#include "engine/MeroInstance.h"
#include "render/ViewRenderNode.h"
#include "runtime/RuntimeEngine.h"

namespace {

// Writes its node's id into a shared log when destroyed.
class LoggingComponent : public Mero::Component {
public:
    LoggingComponent(std::string id, std::vector<std::string>& log) : id_(std::move(id)), log_(log) {}
    ~LoggingComponent() override { log_.push_back(id_); }
    LoggingComponent(const LoggingComponent&) = delete;
    LoggingComponent& operator=(const LoggingComponent&) = delete;

    void updateChildren(const std::vector<Mero::ChildChange>&) override {}
    void updateProperties(const std::vector<Mero::PropertyUpdate>&) override {}
    void playAnimations(const std::vector<Mero::AnimatedUpdate>&) override {}
    Mero::ContentSize getContentSize() override { return {}; }
    void releaseComponents(Mero::ViewRenderNode*) override {}

private:
    std::string id_;
    std::vector<std::string>& log_;
};

TEST(ReleaseHostComponents, ChildrenGoBeforeTheirParentAndHiddenOnesStay)
{
    std::vector<std::string> released;  // outlives the instance, which destroys the rest
    Mero::MeroInstance instance;
    instance.loadTemplate(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 3, "nodeId": "row", "children": [{"$": 0, "nodeId": "a"}, {"$": 0, "nodeId": "b"}]},
        {"$": 0, "nodeId": "hidden", "visible": false},
        {"$": 3, "nodeId": "flat", "isEmpty": true, "children": [{"$": 0, "nodeId": "c"}]}]}})");
    instance.initNode();
    for (const char* id : {"root", "row", "a", "b", "hidden", "flat", "c"}) {
        Mero::findRenderNode(instance.runtime().rootNode.get(), id)->component = new LoggingComponent(id, released);
    }

    Mero::releaseHostComponents(instance.runtime().rootNode.get());
    EXPECT_EQ(released, (std::vector<std::string>{"a", "b", "row", "c", "root"}));
    EXPECT_EQ(instance.runtime().rootNode->component, nullptr);
    EXPECT_NE(Mero::findRenderNode(instance.runtime().rootNode.get(), "hidden")->component, nullptr)
        << "a hidden child is not among the host children";
    EXPECT_NE(Mero::findRenderNode(instance.runtime().rootNode.get(), "flat")->component, nullptr)
        << "a flattened container has no view of its own to release";
}

TEST(ReleaseHostComponents, ControllersOfEveryNodeGoWithTheTree)
{
    std::vector<std::string> destroyed;
    {
        Mero::MeroInstance instance;
        instance.loadTemplate(R"({"elements": {"$": 3, "nodeId": "root", "children": [
            {"$": 3, "nodeId": "row", "children": [{"$": 0, "nodeId": "hidden", "visible": false}]}]}})");
        instance.initNode();
        for (const char* id : {"root", "row", "hidden"}) {
            Mero::findRenderNode(instance.runtime().rootNode.get(), id)->component =
                new LoggingComponent(id, destroyed);
        }
        instance.initNode();
        EXPECT_EQ(destroyed.size(), 3U) << "a replaced tree, hidden nodes included";
        instance.runtime().rootNode->component = new LoggingComponent("new root", destroyed);
    }
    EXPECT_EQ(destroyed.back(), "new root");
    EXPECT_EQ(destroyed.size(), 4U);
}

}  // namespace
