// The host's tree must equal a fresh build from the engine's state after
// every flush: child changes replayed in order, flattened containers,
// hidden subtrees, and swiper pages after resizes.
#include <gtest/gtest.h>

#include <string>

#include "engine/MeroInstance.h"
#include "runtime/RuntimeEngine.h"
#include "support/MirrorHost.h"
#include "value/JsonParser.h"

namespace {

using MeroTest::MirrorHost;

class MirroredCard : public testing::Test {
protected:
    void start(const std::string& templateText, float width = 750.0F)
    {
        instance.loadTemplate(templateText);
        instance.setData("{}", "{}");
        instance.initContainerSize(width, 1334.0F, 1, 1);
        instance.initNode();
        instance.triggerInitEvent();
        instance.applyLayout();
        host->createComponentTree(instance);
    }

    // Runs a statement list as the event "do" would, then flushes.
    void run(const std::string& statements)
    {
        const Mero::Value handler = Mero::JsonParser::read(R"({"b":)" + statements + "}");
        instance.runtime().removeEvent("do");
        instance.runtime().registerEvent("do", std::make_shared<Mero::EventHandler>(
                                                   "do", "", Mero::buildStatementList(handler, "b")));
        instance.sendEvent("do", "{}");
    }

    std::string set(const std::string& name, const std::string& value)
    {
        return R"({"$":4,"n":")" + name + R"(","value":)" + value + "}";
    }

    Mero::MeroInstance instance;
    MirrorHost* host = MirrorHost::bind(instance);
};

// a, a group flattened into the root holding g1..g3, and c; every one's
// visibility follows a variable of its own name.
const std::string kFlattened = R"({"variables":{"a":true,"g":true,"g1":true,"g2":true,"g3":true,"c":true},
  "elements":{"$":3,"nodeId":"root","children":[
    {"$":0,"nodeId":"a","visible":{"$":3,"n":"a"},"width":{"sizeType":1,"value":10}},
    {"$":3,"nodeId":"g","isEmpty":true,"visible":{"$":3,"n":"g"},"children":[
      {"$":0,"nodeId":"g1","visible":{"$":3,"n":"g1"}},{"$":0,"nodeId":"g2","visible":{"$":3,"n":"g2"}},
      {"$":0,"nodeId":"g3","visible":{"$":3,"n":"g3"}}]},
    {"$":0,"nodeId":"c","visible":{"$":3,"n":"c"},"height":{"sizeType":1,"value":5}}]}})";

TEST_F(MirroredCard, AChildHiddenAndShownInOneFlushEndsShownOnce)
{
    start(kFlattened);
    run("[" + set("c", "false") + "," + set("c", "true") + "]");
    EXPECT_EQ(host->difference(instance), "");
    ASSERT_EQ(host->root()->children.size(), 5U);
    run("[" + set("a", "true") + "," + set("a", "false") + "," + set("a", "true") + "," + set("a", "false") + "]");
    EXPECT_EQ(host->difference(instance), "");
    EXPECT_EQ(host->root()->children.size(), 4U);
}

TEST_F(MirroredCard, AFlattenedContainerShowsAndHidesAllItsViewsAtTheirPlace)
{
    start(kFlattened);
    const char* steps[] = {
        R"([{"$":4,"n":"g","value":false}])",                                    // three views go
        R"([{"$":4,"n":"g2","value":false},{"$":4,"n":"g","value":true}])",      // two come back
        R"([{"$":4,"n":"a","value":false},{"$":4,"n":"g1","value":false}])",     // places shift left
        R"([{"$":4,"n":"g","value":false},{"$":4,"n":"g3","value":false},{"$":4,"n":"g","value":true}])",
        R"([{"$":4,"n":"g2","value":true},{"$":4,"n":"a","value":true}])",
    };
    for (const char* step : steps) {
        run(step);
        EXPECT_EQ(host->difference(instance), "") << step;
    }
}

TEST_F(MirroredCard, ANodeInsideAHiddenContainerSendsNothingAndIsMadeAnewWhenShown)
{
    start(R"({"variables":{"open":true,"label":"one"},"elements":{"$":3,"nodeId":"root","children":[
      {"$":3,"nodeId":"box","visible":{"$":3,"n":"open"},"children":[
        {"$":4,"nodeId":"label","text":{"$":3,"n":"label"}}]}]}})");
    run("[" + set("open", "false") + "," + set("label", R"("two")") + "]");
    EXPECT_EQ(host->difference(instance), "");
    run("[" + set("label", R"("three")") + "," + set("open", "true") + "]");
    EXPECT_EQ(host->difference(instance), "");
    EXPECT_EQ(host->root()->children.at(0)->children.at(0)->slots.strings[3], "three");
}

TEST_F(MirroredCard, AColourBoundToANumberIsTheSameTextInANewViewAndInAnUpdate)
{
    start(R"({"variables":{"tint":"#FFFFFFFF"},"elements":{"$":3,"nodeId":"root",
      "backgroundColor":{"$":3,"n":"tint"}}})");
    run("[" + set("tint", "3") + "]");
    EXPECT_EQ(host->difference(instance), "");
    EXPECT_EQ(host->root()->slots.strings[1], "3");
}

TEST_F(MirroredCard, SwiperPagesTakeTheSwiperSizeAfterEveryResize)
{
    start(R"({"elements":{"$":3,"nodeId":"root","children":[
      {"$":8,"nodeId":"gallery","list":[1,2],"index":"p","width":{"sizeType":2,"value":100},
       "height":{"sizeType":1,"value":80},"children":[{"$":0,"nodeId":"page"}]}]}})",
          300.0F);
    for (float width : {400.0F, 300.0F, 400.0F}) {
        instance.updateLayout(width, 1334.0F, 1, 1);
        EXPECT_EQ(host->difference(instance), "") << width;
        for (const auto& page : host->root()->children.at(0)->children) {
            EXPECT_EQ(page->slots.floats[0], width) << page->id();
        }
    }
}

}  // namespace
