// The render tree: building and laying out cards of about 20, 100 and 500
// nodes, beside building and laying out the same Yoga tree by hand; the heap
// a render node holds; and one bound text change carried to the end of flush.
#include <benchmark/benchmark.h>
#include <yoga/Yoga.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "render/RenderTree.h"
#include "render/ViewHost.h"
#include "render/ContainerRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "render/ViewRenderNode.h"
#include "runtime/RuntimeEngine.h"
#include "runtime/ScriptFactory.h"
#include "value/ErrorReporting.h"
#include "value/JsonParser.h"

#include "BenchCards.h"

namespace {

using namespace MeroBench;

std::shared_ptr<Mero::RuntimeEngine> cardEngine(int rows, bool fixedTitle = false)
{
    Mero::debugMode = false;
    auto engine = std::make_shared<Mero::RuntimeEngine>();
    engine->loadTemplate(cardTemplate(rows, fixedTitle));
    engine->services.measureText = fakeMeasure;
    engine->screenScale = 1080.0 / 750.0;
    engine->widthMode = 1;
    engine->containerWidth = 1080.0F;
    return engine;
}

void BM_RenderInit_Mero(benchmark::State& state)
{
    auto engine = cardEngine(rowsFor(state.range(0)));
    for (auto _ : state) {
        Mero::RenderTree tree(engine);
        tree.build(engine->elementsForBuild());
        tree.applyLayout();
        benchmark::DoNotOptimize(tree.root()->layout().height);
    }
    state.counters["nodes"] = static_cast<double>(1 + nodesPerRow * rowsFor(state.range(0)));
}

// The same tree straight on Yoga: the same styles, measure functions and
// layout, reading back the results a render node reads.
YGSize measureFixedText(YGNodeConstRef /*node*/, float width, YGMeasureMode /*widthMode*/, float /*height*/,
                        YGMeasureMode /*heightMode*/)
{
    return YGSize{std::min(width, 14.0F * 28.0F), 40.0F};
}

YGSize measureNothing(YGNodeConstRef /*node*/, float /*width*/, YGMeasureMode /*widthMode*/, float /*height*/,
                      YGMeasureMode /*heightMode*/)
{
    return YGSize{0.0F, 0.0F};
}

YGNodeRef yogaRow(float scale)
{
    YGNodeRef row = YGNodeNew();
    YGNodeStyleSetFlexDirection(row, YGFlexDirectionRow);
    YGNodeStyleSetAlignItems(row, YGAlignCenter);
    YGNodeStyleSetPadding(row, YGEdgeLeft, 24 * scale);
    YGNodeStyleSetPadding(row, YGEdgeTop, 12 * scale);
    YGNodeStyleSetPadding(row, YGEdgeRight, 24 * scale);
    YGNodeStyleSetPadding(row, YGEdgeBottom, 12 * scale);
    YGNodeRef icon = YGNodeNew();
    YGNodeSetMeasureFunc(icon, measureNothing);
    YGNodeStyleSetWidth(icon, 96 * scale);
    YGNodeStyleSetHeight(icon, 96 * scale);
    YGNodeRef titles = YGNodeNew();
    YGNodeStyleSetFlexDirection(titles, YGFlexDirectionColumn);
    YGNodeStyleSetAlignItems(titles, YGAlignFlexStart);
    YGNodeStyleSetFlexGrow(titles, 1);
    YGNodeStyleSetFlexShrink(titles, 1);
    YGNodeStyleSetMargin(titles, YGEdgeLeft, 16 * scale);
    YGNodeRef title = YGNodeNew();
    YGNodeSetMeasureFunc(title, measureFixedText);
    YGNodeRef subtitle = YGNodeNew();
    YGNodeSetMeasureFunc(subtitle, measureFixedText);
    YGNodeStyleSetMargin(subtitle, YGEdgeTop, 8 * scale);
    YGNodeInsertChild(titles, title, 0);
    YGNodeInsertChild(titles, subtitle, 1);
    YGNodeInsertChild(row, icon, 0);
    YGNodeInsertChild(row, titles, 1);
    return row;
}

void BM_RenderInit_Yoga(benchmark::State& state)
{
    const int rows = rowsFor(state.range(0));
    const float scale = 1080.0F / 750.0F;
    for (auto _ : state) {
        YGNodeRef card = YGNodeNew();
        YGNodeStyleSetFlexDirection(card, YGFlexDirectionColumn);
        YGNodeStyleSetAlignItems(card, YGAlignFlexStart);
        YGNodeStyleSetWidth(card, 1080.0F);
        for (int i = 0; i < rows; ++i) {
            YGNodeInsertChild(card, yogaRow(scale), static_cast<std::size_t>(i));
        }
        YGNodeCalculateLayout(card, 1080.0F, YGUndefined, YGDirectionLTR);
        benchmark::DoNotOptimize(readFrames(card));
        YGNodeFreeRecursive(card);
    }
    state.counters["nodes"] = static_cast<double>(1 + nodesPerRow * rows);
}

BENCHMARK(BM_RenderInit_Mero)->Arg(21)->Arg(101)->Arg(501);
BENCHMARK(BM_RenderInit_Yoga)->Arg(21)->Arg(101)->Arg(501);

// What a built and laid-out tree holds on the heap, per node (its Yoga node,
// bindings and queues included).
void BM_RenderNodeBytes(benchmark::State& state)
{
    const int rows = rowsFor(state.range(0));
    auto engine = cardEngine(rows);
    double bytesPerNode = 0.0;
    for (auto _ : state) {
        const std::size_t before = heapInUse();
        auto tree = std::make_unique<Mero::RenderTree>(engine);
        tree->build(engine->elementsForBuild());
        tree->applyLayout();
        const std::size_t after = heapInUse();
        bytesPerNode = static_cast<double>(after - before) / (1 + nodesPerRow * rows);
    }
    state.counters["bytes_per_node"] = bytesPerNode;
}

BENCHMARK(BM_RenderNodeBytes)->Arg(101)->Iterations(20);

// A host that does nothing with what it is sent.
class SilentViews : public Mero::ViewHost {
public:
    std::vector<const Mero::ViewRenderNode*> apply(const Mero::ChangeList& changes) override
    {
        benchmark::DoNotOptimize(changes.data());
        return {};
    }
    Mero::ContentSize contentSize(const std::string& /*viewId*/) override { return {}; }
};

// SetVariable on the variable one title is bound to, to the end of flush:
// the title alternates between a short and a long text. With a fixed size
// (TextUpdate) no frame can move; sized by its content (TextResize) the title
// is measured again, the card laid out again and the new width sent.
void runTitleChanges(benchmark::State& state, bool fixedTitle)
{
    auto engine = cardEngine(rowsFor(state.range(0)), fixedTitle);
    SilentViews views;
    Mero::RenderTree tree(engine);
    tree.setViewHost(&views);
    engine->setFlushHook([&tree] { tree.flush(); });
    tree.build(engine->elementsForBuild());
    tree.applyLayout();
    tree.createViews();

    const Mero::Value statements = Mero::JsonParser::read(R"({"short": [{"$": 4, "n": "title", "value": "Short"}],
        "long": [{"$": 4, "n": "title", "value": "A much longer title"}]})");
    const Mero::StatementList toShort = Mero::buildStatementList(statements, "short");
    const Mero::StatementList toLong = Mero::buildStatementList(statements, "long");
    const Mero::LocalScope scope = Mero::makeLocalScope();
    const Mero::EngineRef weak = engine;
    bool flip = false;
    for (auto _ : state) {
        Mero::runStatements(flip ? toShort : toLong, scope, weak);
        engine->flush();
        flip = !flip;
    }
}

void BM_RenderTextUpdate(benchmark::State& state)
{
    runTitleChanges(state, true);
}

void BM_RenderTextResize(benchmark::State& state)
{
    runTitleChanges(state, false);
}

BENCHMARK(BM_RenderTextUpdate)->Arg(21)->Arg(101)->Arg(501);
BENCHMARK(BM_RenderTextResize)->Arg(21)->Arg(101)->Arg(501);

}  // namespace
