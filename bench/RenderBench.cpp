// The render tree: building and laying out cards of about 20, 100 and 500
// nodes, beside building and laying out the same Yoga tree by hand; the heap
// a render node holds; and one bound text change carried to the end of flush.
#include <benchmark/benchmark.h>
#include <yoga/Yoga.h>

#include <algorithm>
#include <cstddef>
#include <malloc.h>
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

namespace {

// One app row of a feed card: a row with padding holding a fixed-size icon
// and a column of two texts, five nodes. A card is a column of rows.
constexpr const char* rowTemplate = R"({"$": 3, "nodeId": "row", "flexDirection": 2, "alignItems": 2,
    "paddingLeft": {"sizeType": 4, "value": 24}, "paddingTop": {"sizeType": 4, "value": 12},
    "paddingRight": {"sizeType": 4, "value": 24}, "paddingBottom": {"sizeType": 4, "value": 12},
    "backgroundColor": "#FFFFFFFF", "children": [
    {"$": 5, "nodeId": "icon", "src": "https://example.invalid/icon.png",
     "width": {"sizeType": 4, "value": 96}, "height": {"sizeType": 4, "value": 96},
     "cornerLeftTop": {"sizeType": 4, "value": 16}, "cornerRightTop": {"sizeType": 4, "value": 16},
     "cornerRightBottom": {"sizeType": 4, "value": 16}, "cornerLeftBottom": {"sizeType": 4, "value": 16}},
    {"$": 3, "nodeId": "titles", "flexDirection": 0, "flexGrow": 1, "flexShrink": 1,
     "marginLeft": {"sizeType": 4, "value": 16}, "children": [
        {"$": 4, "nodeId": "title", "text": TITLE, "fontSize": {"sizeType": 4, "value": 32}, "maxLines": 1,
         "fontWeight": 700, "textColor": "#111111FF"},
        {"$": 4, "nodeId": "subtitle", "text": "A short description of the app", "fontSize": {"sizeType": 4, "value": 24},
         "maxLines": 2, "textColor": "#666666FF", "marginTop": {"sizeType": 4, "value": 8}}]}]})";

constexpr int nodesPerRow = 5;

// A card of 1 + 5 × rows nodes; the first row's title is bound to the UI
// variable "title", the others are constants. A fixed title is 240 by 32:
// changing it can move no frame.
std::string cardTemplate(int rows, bool fixedTitle = false)
{
    std::string children;
    for (int i = 0; i < rows; ++i) {
        std::string row = rowTemplate;
        std::string title = i == 0 ? R"({"$": 3, "n": "title"})" : R"("App )" + std::to_string(i) + "\"";
        if (i == 0 && fixedTitle) {
            title += R"(, "width": {"sizeType": 1, "value": 240}, "height": {"sizeType": 1, "value": 32})";
        }
        row.replace(row.find("TITLE"), 5, title);
        children += (i == 0 ? "" : ",") + row;
    }
    return R"({"variables": {"title": "First"}, "elements": {"$": 3, "nodeId": "card", "flexDirection": 0,
        "width": {"sizeType": 6, "value": 100}, "children": [)" +
           children + "]}}";
}

int rowsFor(int64_t nodes)
{
    return static_cast<int>((nodes - 1) / nodesPerRow);
}

// The host's text measurement stands in as a fixed-cost answer.
std::pair<double, double> fakeMeasure(const Mero::TextContent& content)
{
    return {std::min(content.width, 14.0 * static_cast<double>(content.text->size())), 40.0};
}

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
        tree.build(engine->elements);
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

double readLayout(YGNodeRef node)
{
    double sum =
        YGNodeLayoutGetLeft(node) + YGNodeLayoutGetTop(node) + YGNodeLayoutGetWidth(node) + YGNodeLayoutGetHeight(node);
    for (YGEdge edge : {YGEdgeLeft, YGEdgeTop, YGEdgeRight, YGEdgeBottom}) {
        sum += YGNodeLayoutGetPadding(node, edge) + YGNodeLayoutGetBorder(node, edge);
    }
    const std::size_t count = YGNodeGetChildCount(node);
    for (std::size_t i = 0; i < count; ++i) {
        sum += readLayout(YGNodeGetChild(node, i));
    }
    return sum;
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
        benchmark::DoNotOptimize(readLayout(card));
        YGNodeFreeRecursive(card);
    }
    state.counters["nodes"] = static_cast<double>(1 + nodesPerRow * rows);
}

BENCHMARK(BM_RenderInit_Mero)->Arg(21)->Arg(101)->Arg(501);
BENCHMARK(BM_RenderInit_Yoga)->Arg(21)->Arg(101)->Arg(501);

std::size_t heapInUse()
{
    return mallinfo2().uordblks;
}

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
        tree->build(engine->elements);
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
    tree.build(engine->elements);
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
