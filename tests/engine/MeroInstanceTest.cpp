// The engine instance without a host: set-up order, container sizes, jobs,
// bridge answers, node search and the controllers it destroys.
#include <gtest/gtest.h>
#include <yoga/Yoga.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/MeroInstance.h"
#include "render/Component.h"
#include "render/ContainerRenderNode.h"
#include "render/ViewRenderNode.h"
#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"

namespace {

using Mero::MeroInstance;
using Mero::Value;

// Three levels: root > (box > (x, hidden), x, text) with ids chosen so that
// a depth-first search and a breadth-first one disagree.
constexpr const char* kTree = R"({
  "variables": {"got": null, "hidden": false},
  "elements": {"$": 3, "nodeId": "root",
    "width": {"sizeType": 2, "value": 100}, "height": {"sizeType": 1, "value": 100},
    "children": [
      {"$": 3, "nodeId": "box", "children": [
        {"$": 0, "nodeId": "x", "onClick": "tapDeep"},
        {"$": 0, "nodeId": "hidden", "visible": {"$": 3, "n": "hidden"}}]},
      {"$": 0, "nodeId": "x", "onClick": "tapShallow",
       "width": {"sizeType": 1, "value": 10}, "height": {"sizeType": 1, "value": 10}},
      {"$": 0, "nodeId": "plain"}]},
  "events": [
    {"n": "echo", "a": ["e"], "b": [{"$": 4, "n": "got", "value": {"$": 1, "n": "e"}}]},
    {"n": "tapShallow", "a": [], "b": [{"$": 4, "n": "got", "value": "shallow"}]},
    {"n": "tapDeep", "a": [], "b": [{"$": 4, "n": "got", "value": "deep"}]}
  ]
})";

class MeroInstanceTest : public testing::Test {
protected:
    void SetUp() override { Mero::debugMode = true; }

    // The set-up natives' work, in the host's order, for an exact container.
    void build(const char* templateText, float width = 750.0F, float height = 1334.0F)
    {
        instance.setScreenWidth(750.0F);
        instance.loadTemplate(templateText);
        instance.setData("{}", "{}");
        instance.initContainerSize(width, height, 1, 1);
        instance.initNode();
        instance.triggerInitEvent();
        instance.applyLayout();
    }

    Mero::RuntimeEngine& engine() { return instance.runtime(); }
    Mero::ViewRenderNode& root() { return *engine().rootNode; }
    Value ui(const std::string& name) { return (*engine().uiVariables)[name]; }

    MeroInstance instance;
};

TEST_F(MeroInstanceTest, ScreenWidthSetsTheDesignScale)
{
    instance.setScreenWidth(1080.0F);
    EXPECT_DOUBLE_EQ(engine().screenScale, 1.44);
}

TEST_F(MeroInstanceTest, ExtraDataAddsKeysButNeverReplaces)
{
    instance.setData(R"({"a": 1})", R"({"a": 2, "b": 3})");
    EXPECT_EQ(engine().data->size(), 2U);
    EXPECT_EQ(engine().data->at("a").number(), 1.0);
    EXPECT_EQ(engine().data->at("b").number(), 3.0);
}

TEST_F(MeroInstanceTest, ContainerSizeIsKeptOnlyInExactMode)
{
    instance.initContainerSize(300.0F, 200.0F, 2, 1);
    EXPECT_TRUE(std::isnan(engine().containerWidth));
    EXPECT_EQ(engine().containerHeight, 200.0F);
    EXPECT_EQ(engine().widthMode, 2);
    EXPECT_EQ(engine().heightMode, 1);

    instance.initContainerSize(300.0F, 200.0F, 7, -1);
    EXPECT_EQ(engine().widthMode, 0);
    EXPECT_EQ(engine().heightMode, 0);
    EXPECT_TRUE(std::isnan(engine().containerHeight));
}

TEST_F(MeroInstanceTest, AtMostModeSetsAnUndefinedMaximum)
{
    instance.loadTemplate(R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "width": {"sizeType": 1, "value": 300}, "height": {"sizeType": 1, "value": 20}}]}})");
    instance.initContainerSize(100.0F, 200.0F, 2, 1);
    instance.initNode();
    instance.applyLayout();
    EXPECT_EQ(YGNodeStyleGetMaxWidth(root().yogaNode).unit, YGUnitUndefined);
    // The width is laid out undefined, so the child is not held to 100.
    EXPECT_EQ(YGNodeLayoutGetWidth(root().yogaNode), 300.0F);
    EXPECT_EQ(YGNodeLayoutGetHeight(root().yogaNode), 200.0F);
    EXPECT_TRUE(engine().layoutApplied);
}

TEST_F(MeroInstanceTest, FirstLayoutFillsTheFramesViewsAreMadeFrom)
{
    build(kTree, 600.0F, 800.0F);
    EXPECT_EQ(root().layout.width, 600.0);
    Mero::ViewRenderNode* shallow = Mero::findRenderNode(&root(), "plain");
    ASSERT_NE(shallow, nullptr);
    EXPECT_EQ(shallow->layout.x, 10.0);
}

TEST_F(MeroInstanceTest, UpdateLayoutComparesSizesNotModes)
{
    build(kTree, 600.0F, 800.0F);
    instance.updateLayout(600.0F, 800.0F, 2, 2);
    EXPECT_EQ(engine().widthMode, 1) << "same sizes with other modes change nothing";

    instance.updateLayout(500.0F, 800.0F, 1, 1);
    EXPECT_EQ(engine().containerWidth, 500.0F);
    EXPECT_FALSE(engine().needsLayout) << "the flush consumed the layout request";
    EXPECT_EQ(YGNodeLayoutGetWidth(root().yogaNode), 500.0F) << "laid out again";
}

TEST_F(MeroInstanceTest, UpdateLayoutIgnoresUndefinedSizesThatStayUndefined)
{
    build(kTree);
    instance.initContainerSize(0.0F, 0.0F, 2, 2);
    instance.updateLayout(NAN, NAN, 1, 1);
    EXPECT_EQ(engine().widthMode, 2);

    instance.initContainerSize(0.0F, 0.0F, 0, 0);
    instance.updateLayout(300.0F, 300.0F, 5, 0);
    EXPECT_TRUE(std::isnan(engine().containerWidth)) << "all modes undefined before and after";
}

TEST_F(MeroInstanceTest, EventsGetTheirPayloadAndAnEmptyOneIsAnObject)
{
    build(kTree);
    instance.sendEvent("echo", "");
    EXPECT_TRUE(ui("got").is(Mero::Kind::Object));
    EXPECT_TRUE(ui("got").object().empty());
    instance.sendEvent("echo", R"({"n": 2})");
    EXPECT_EQ(ui("got").object().at("n").number(), 2.0);
}

TEST_F(MeroInstanceTest, NodesAreFoundBreadthFirst)
{
    build(kTree);
    Mero::ViewRenderNode* found = Mero::findRenderNode(&root(), "x");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->parent, &root()) << "the shallow x, not the first one depth first";
    EXPECT_NE(Mero::findRenderNode(&root(), "hidden"), nullptr);
    EXPECT_EQ(Mero::findRenderNode(&root(), "nobody"), nullptr);
    EXPECT_EQ(Mero::findRenderNode(nullptr, "x"), nullptr);

    instance.sendClickEvent("x");
    EXPECT_EQ(ui("got").string(), "shallow");
}

TEST_F(MeroInstanceTest, SwiperEventsNeedASwiper)
{
    build(kTree);
    instance.sendSwiperEvent("x", 1);
    EXPECT_TRUE(ui("got").isNull());
}

TEST_F(MeroInstanceTest, JobIdsComeFromRandWithoutCollisionChecks)
{
    std::srand(11);
    const int expected = std::rand() % 10000;
    std::srand(11);
    std::vector<std::string> ran;
    const int32_t first = instance.addTimeoutJob([&ran] { ran.emplace_back("first"); });
    EXPECT_EQ(first, expected);

    std::srand(11);
    const int32_t second = instance.addTimeoutJob([&ran] { ran.emplace_back("second"); });
    EXPECT_EQ(second, first) << "the host is told the taken id";

    instance.executeTimeoutJob(first);
    instance.executeTimeoutJob(first);
    instance.executeTimeoutJob(first + 1);
    EXPECT_EQ(ran, std::vector<std::string>{"first"}) << "the earlier job wins, and runs once";
    EXPECT_TRUE(instance.timeoutJobs.empty());
}

TEST_F(MeroInstanceTest, VideoJobsTakeConsecutiveIds)
{
    Mero::VideoTimerList none;
    std::srand(3);
    EXPECT_FALSE(instance.addVideoTimerJobs(none).has_value());
    const int untouched = std::rand() % 10000;
    std::srand(3);
    EXPECT_EQ(std::rand() % 10000, untouched) << "an empty list draws no id";

    std::vector<double> ran;
    Mero::VideoTimerList entries;
    entries.emplace_back(0.5, [&ran] { ran.push_back(0.5); });
    entries.emplace_back(1.5, [&ran] { ran.push_back(1.5); });
    const int32_t firstId = *instance.addVideoTimerJobs(entries);
    ASSERT_EQ(instance.videoTimerJobs.size(), 2U);
    EXPECT_EQ(instance.videoTimerJobs.begin()->first, firstId);
    EXPECT_EQ(std::next(instance.videoTimerJobs.begin())->first, firstId + 1);

    instance.executeVideoTimerJob(firstId + 1);
    instance.timeoutJobs.try_emplace(firstId, [&ran] { ran.push_back(-1.0); });
    instance.clearVideoTimerJobs();
    instance.executeVideoTimerJob(firstId);
    EXPECT_EQ(ran, std::vector<double>{1.5});
    EXPECT_EQ(instance.timeoutJobs.size(), 1U) << "clearing leaves timeouts alone";
}

TEST_F(MeroInstanceTest, BridgeAnswersReachTheirCallbackOnce)
{
    std::vector<Value> answers;
    auto record = [&answers](Value&& answer) { answers.push_back(std::move(answer)); };

    MeroInstance::handleResult(R"({"name": "Ann"})", MeroInstance::holdReply(record));
    MeroInstance::handleKeyPathResult(R"({"data": 5, "other": 1})", MeroInstance::holdReply(record));
    MeroInstance::handleKeyPathResult(R"({"other": 1})", MeroInstance::holdReply(record));

    ASSERT_EQ(answers.size(), 3U);
    EXPECT_EQ(answers[0].object().at("name").string(), "Ann");
    EXPECT_EQ(answers[1].number(), 5.0);
    EXPECT_TRUE(answers[2].isNull());
}

// A component that counts its own destruction.
class CountingComponent : public Mero::Component {
public:
    explicit CountingComponent(int& destroyed) : destroyed_(destroyed) {}
    ~CountingComponent() override { ++destroyed_; }
    CountingComponent(const CountingComponent&) = delete;
    CountingComponent& operator=(const CountingComponent&) = delete;

    void updateChildren(const std::vector<Mero::ChildChange>&) override {}
    void updateProperties(const std::vector<Mero::PropertyUpdate>&) override {}
    void playAnimations(const std::vector<Mero::AnimatedUpdate>&) override {}
    Mero::ContentSize getContentSize() override { return {}; }
    void releaseComponents(Mero::ViewRenderNode*) override {}

private:
    int& destroyed_;
};

TEST(MeroInstanceTeardown, ControllersOfEveryNodeGoWithTheTree)
{
    int destroyed = 0;
    {
        MeroInstance instance;
        instance.loadTemplate(kTree);
        instance.initNode();
        for (const char* id : {"root", "box", "hidden", "plain"}) {
            Mero::findRenderNode(instance.runtime().rootNode.get(), id)->component = new CountingComponent(destroyed);
        }
        instance.initNode();
        EXPECT_EQ(destroyed, 4) << "a replaced tree, hidden nodes included";
        instance.runtime().rootNode->component = new CountingComponent(destroyed);
    }
    EXPECT_EQ(destroyed, 5);
}

}  // namespace
