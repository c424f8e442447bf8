// The engine instance without a host: container sizes and modes, layout
// updates, node search, jobs and bridge answers.
#include <gtest/gtest.h>
#include <yoga/Yoga.h>

#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "engine/MeroInstance.h"
#include "render/ContainerRenderNode.h"
#include "render/ViewRenderNode.h"
#include "render/RenderTree.h"
#include "runtime/RuntimeEngine.h"
#include "support/ReportedErrors.h"
#include "value/ErrorReporting.h"

namespace {

using Mero::MeroInstance;
using Mero::Value;

// Ids chosen so that a depth-first search for "x" and a breadth-first one disagree.
constexpr const char* kTree = R"({"variables": {"got": null},
  "elements": {"$": 3, "nodeId": "root", "children": [
    {"$": 3, "nodeId": "box", "children": [
      {"$": 0, "nodeId": "x", "onClick": "tapDeep"}, {"$": 0, "nodeId": "hidden", "visible": false}]},
    {"$": 0, "nodeId": "x", "onClick": "tapShallow"}, {"$": 0, "nodeId": "plain"}]},
  "events": [{"n": "tapShallow", "a": [], "b": [{"$": 4, "n": "got", "value": "shallow"}]},
             {"n": "tapDeep", "a": [], "b": [{"$": 4, "n": "got", "value": "deep"}]}]})";

class MeroInstanceTest : public testing::Test {
protected:
    void SetUp() override { Mero::debugMode = true; }

    // The set-up natives' work, in the host's order, for an exact 750 by 1334 container.
    void build(const char* templateText)
    {
        instance.loadTemplate(templateText);
        instance.setData("{}", "{}");
        instance.initContainerSize(750.0F, 1334.0F, 1, 1);
        instance.initNode();
        instance.triggerInitEvent();
        instance.applyLayout();
    }

    Mero::RuntimeEngine& engine() { return instance.runtime(); }
    Mero::ViewRenderNode& root() { return *instance.renderTree().root(); }

    MeroInstance instance;
};

TEST_F(MeroInstanceTest, ContainerSizeIsKeptOnlyInExactModeAndUnknownModesAreUndefined)
{
    const struct {
        int widthMode, heightMode;
        const char* kept;  // width, height, width mode, height mode
    } rows[] = {{1, 1, "300 200 1 1"}, {2, 1, "nan 200 2 1"}, {0, 2, "nan nan 0 2"}, {7, -1, "nan nan 0 0"}};
    for (const auto& row : rows) {
        instance.initContainerSize(300.0F, 200.0F, row.widthMode, row.heightMode);
        std::ostringstream kept;
        kept << engine().containerWidth << ' ' << engine().containerHeight << ' ' << engine().widthMode << ' '
             << engine().heightMode;
        EXPECT_EQ(kept.str(), row.kept) << "modes " << row.widthMode << ", " << row.heightMode;
    }
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
    EXPECT_TRUE(instance.renderTree().layoutApplied());
}

TEST_F(MeroInstanceTest, UpdateLayoutActsOnANewSizeAndIgnoresUndefinedSizesThatStayUndefined)
{
    build(kTree);
    instance.updateLayout(750.0F, 1334.0F, 2, 2);
    EXPECT_EQ(engine().widthMode, 1) << "same sizes with other modes change nothing";
    instance.updateLayout(500.0F, 1334.0F, 1, 1);
    EXPECT_FALSE(instance.renderTree().layoutRequested()) << "the flush consumed the layout request";
    EXPECT_EQ(YGNodeLayoutGetWidth(root().yogaNode), 500.0F) << "laid out again";

    instance.initContainerSize(0.0F, 0.0F, 2, 2);
    instance.updateLayout(NAN, NAN, 1, 1);
    EXPECT_EQ(engine().widthMode, 2);

    instance.initContainerSize(0.0F, 0.0F, 0, 0);
    instance.updateLayout(300.0F, 300.0F, 5, 0);
    EXPECT_TRUE(std::isnan(engine().containerWidth)) << "all modes undefined before and after";
}

TEST_F(MeroInstanceTest, NodesAreFoundBreadthFirst)
{
    build(kTree);
    EXPECT_EQ(instance.renderTree().find("x")->parent, &root()) << "the shallow x";
    EXPECT_NE(instance.renderTree().find("hidden"), nullptr);
    EXPECT_EQ(instance.renderTree().find("nobody"), nullptr);
    EXPECT_EQ(MeroInstance().renderTree().find("x"), nullptr);

    instance.sendClickEvent("x");
    EXPECT_EQ((*engine().uiVariables)["got"].string(), "shallow");
}

// Once the card is built its element tree is dropped and the template's text
// kept: a second build reads the same tree again and reports nothing twice.
TEST_F(MeroInstanceTest, ASecondBuildReadsTheElementTreeAgainQuietly)
{
    Mero::debugMode = false;
    constexpr const char* escapeError = R"({"elements": {"$": 3, "nodeId": "root", "children": [
        {"$": 0, "nodeId": "a\qb"}, {"$": 0, "nodeId": "c"}]}})";
    EXPECT_EQ(MeroTest::printedOutput([&] { build(escapeError); }), "string escape error\n");
    for (int build = 2; build <= 3; ++build) {
        EXPECT_EQ(MeroTest::printedOutput([&] { instance.initNode(); }), "") << build;
        EXPECT_NE(instance.renderTree().find("ab"), nullptr) << build;
        EXPECT_NE(instance.renderTree().find("c"), nullptr) << build;
    }
}

// Large data for a card not yet built keeps only the members that the
// template's data reads name, wherever they are; a template that reads
// "$root", small data, a built card or a second template keep every member.
TEST_F(MeroInstanceTest, LargeDataKeepsOnlyTheMembersTheTemplateReads)
{
    const std::string large = R"({"shown": true, "other": ")" + std::string(5000, 'x') + R"(", "called": 2})";
    const std::string small = R"({"shown": true, "other": "x", "called": 2})";
    const std::string card = R"({"elements": {"$": 0, "nodeId": "n", "visible": {"$": 19, "n": "shown"}},
        "functions": [{"n": "f", "a": [], "b": [{"$": 11, "returnValue": {"$": 19, "n": "called"}}]}]})";
    auto keys = [](MeroInstance& shown) {
        std::string names;
        for (const auto& [key, value] : *shown.runtime().data) {
            names += key + " ";
        }
        return names;
    };
    instance.loadTemplate(card);
    instance.setData(large, R"({"extra": 1, "shown": false})");
    EXPECT_EQ(keys(instance), "shown called ");
    EXPECT_TRUE((*engine().data)["shown"].boolean());
    instance.loadTemplate(R"({"elements": {"$": 0, "nodeId": "m"}})");
    EXPECT_EQ(keys(instance), "shown other called extra ");

    const std::string rootCard = R"({"elements": {"$": 0, "nodeId": "n", "visible": {"$": 19, "n": "$root"}}})";
    const struct {
        std::string templateText, data;
        bool builtFirst;
    } wholes[] = {{rootCard, large, false}, {card, small, false}, {card, large, true}};
    for (const auto& whole : wholes) {
        MeroInstance other;
        other.loadTemplate(whole.templateText);
        if (whole.builtFirst) {
            other.initNode();
        }
        other.setData(whole.data, "{}");
        EXPECT_EQ(keys(other), "shown other called ") << whole.templateText;
    }
}

// Cards handed the same large data keep what they left out once between
// them; each still makes its own data whole. A text that differs from another
// only where the quick hash does not look is told apart.
TEST_F(MeroInstanceTest, CardsLeavingOutTheSameDataEachMakeTheirOwnWhole)
{
    const std::string card = R"({"elements": {"$": 0, "nodeId": "n", "visible": {"$": 19, "n": "shown"}}})";
    const std::string large = R"({"shown": true, "other": ")" + std::string(5000, 'x') + R"("})";
    std::string nearly = large;
    nearly[large.find('x') + 109] = 'y';
    MeroInstance cards[3];
    for (int i = 0; i < 3; ++i) {
        cards[i].loadTemplate(card);
        cards[i].setData(i == 2 ? nearly : large, "{}");
        EXPECT_EQ(cards[i].runtime().data->size(), 1U) << i;
    }
    for (int i : {2, 0, 1}) {
        cards[i].loadTemplate(R"({"elements": {"$": 0, "nodeId": "m"}})");
        const std::string& other = (*cards[i].runtime().data)["other"].string();
        EXPECT_EQ(other.size(), 5000U) << i;
        EXPECT_EQ(other.find('y'), i == 2 ? 109 : std::string::npos) << i;
    }
}

TEST_F(MeroInstanceTest, JobIdsComeFromRandWithoutCollisionChecks)
{
    std::srand(11);
    const int expected = std::rand() % 10000;
    std::srand(11);
    std::vector<std::string> ran;
    const int32_t first = *instance.addTimeoutJob([&ran] { ran.emplace_back("first"); });
    EXPECT_EQ(first, expected);

    std::srand(11);
    const int32_t second = *instance.addTimeoutJob([&ran] { ran.emplace_back("second"); });
    EXPECT_EQ(second, first) << "the host is told the taken id";

    instance.executeTimeoutJob(first);
    instance.executeTimeoutJob(first);
    instance.executeTimeoutJob(first + 1);
    EXPECT_EQ(ran, std::vector<std::string>{"first"}) << "the earlier job wins, and runs once";
    EXPECT_EQ(instance.pendingJobCount(), 0U);
}

TEST_F(MeroInstanceTest, VideoJobsTakeConsecutiveIdsAndClearingLeavesTimeouts)
{
    Mero::VideoTimerList none;
    std::srand(3);
    EXPECT_FALSE(instance.addVideoTimerJobs(none).has_value());
    const int untouched = std::rand() % 10000;
    std::srand(3);
    EXPECT_EQ(std::rand() % 10000, untouched) << "an empty list draws no id";

    Mero::VideoTimerList entries;
    entries.emplace_back(0.5, [] {});
    entries.emplace_back(1.5, [] {});
    const int32_t firstId = *instance.addVideoTimerJobs(entries);
    EXPECT_EQ(instance.pendingJobCount(), 2U);
    std::vector<std::string> ran;
    instance.addTimeoutJob([&ran] { ran.emplace_back("timeout"); });
    instance.clearVideoTimerJobs();
    EXPECT_EQ(instance.pendingJobCount(), 1U) << "only the timeout is left";
    instance.executeVideoTimerJob(firstId + 1);
    EXPECT_TRUE(ran.empty());
}

TEST(MeroInstanceBridge, AnswersReachTheirCallbackAndAKeyPathAnswerWithoutDataIsNull)
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

}  // namespace
