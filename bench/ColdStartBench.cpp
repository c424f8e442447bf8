// Cold start: a card from its template text to the tree of host views
// (loadTemplate to the end of createComponentTree, with a host that makes
// nothing), beside the floor no engine can go under: reading the template and
// data once (simdjson) and building and laying out the same Yoga tree
// directly, its styles already known. The ratio printed at the end is the
// engine's overhead over that floor, for the first card of a template and for
// a card of a template already read. Both clocks stop before anything is
// freed: releasing a card is measured apart (BM_ColdRelease here, and
// BM_MemoryThousandCards).
#include <benchmark/benchmark.h>
#include <yoga/Yoga.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "BenchCards.h"
#include "BenchData.h"
#include "render/RenderTree.h"
#include "render/ViewRenderNode.h"
#include "runtime/ParsedTemplate.h"
#include "value/ErrorReporting.h"

#ifdef MERO_BENCH_SIMDJSON
#include <simdjson.h>
#endif

namespace {

using namespace MeroBench;

struct BenchCard {
    std::string templateText;
    std::string data;
};

BenchCard benchCard(const std::string& name)
{
    if (name == "appinstall") {
        return {readDataFile("app_install_template.json"), readDataFile("feed_data.json")};
    }
    if (name == "carousel") {
        return {readDataFile("carousel_template.json"), readDataFile("feed_data.json")};
    }
    if (name == "bridgecard") {
        return {readDataFile("bridge_card.json"), "{}"};
    }
    return {cardTemplate(rowsFor(std::stoi(name))), "{}"};
}

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Times showing new cards of `name`: the first card of its template (nothing
// has read the template before), or another card of a template already
// loaded, as the next card of a feed is (its reading is shared).
void timeColdStarts(benchmark::State& state, const std::string& name, bool firstOfTemplate)
{
    Mero::debugMode = false;
    const BenchCard card = benchCard(name);
    Mero::MeroInstance earlier;
    if (!firstOfTemplate) {
        showCard(earlier, card.templateText, card.data);
    }
    for (auto _ : state) {
        if (firstOfTemplate) {
            Mero::ParsedTemplate::forgetRecent();
        }
        auto instance = std::make_unique<Mero::MeroInstance>();
        const Clock::time_point start = Clock::now();
        showCard(*instance, card.templateText, card.data);
        state.SetIterationTime(secondsSince(start));
    }
}

void BM_ColdStart_Mero(benchmark::State& state, const std::string& name)
{
    timeColdStarts(state, name, true);
}

void BM_ColdStart_MeroShared(benchmark::State& state, const std::string& name)
{
    timeColdStarts(state, name, false);
}

// Releasing a card made as above.
void BM_ColdRelease_Mero(benchmark::State& state, const std::string& name)
{
    Mero::debugMode = false;
    const BenchCard card = benchCard(name);
    for (auto _ : state) {
        auto instance = std::make_unique<Mero::MeroInstance>();
        showCard(*instance, card.templateText, card.data);
        const Clock::time_point start = Clock::now();
        instance.reset();
        state.SetIterationTime(secondsSince(start));
    }
}

#ifdef MERO_BENCH_SIMDJSON
// What a text node measures in showCard: 120 by 30 at most.
YGSize measureLikeTheHost(YGNodeConstRef /*node*/, float width, YGMeasureMode widthMode, float /*height*/,
                          YGMeasureMode /*heightMode*/)
{
    return YGSize{widthMode == YGMeasureModeUndefined ? 120.0F : std::min(width, 120.0F), 30.0F};
}

// A copy of a laid-out Yoga tree's styles and shape: what a direct build
// would know from the template.
YGNodeRef buildLike(YGNodeConstRef model)
{
    YGNodeRef node = YGNodeNew();
    YGNodeCopyStyle(node, model);
    if (YGNodeHasMeasureFunc(model)) {
        YGNodeSetMeasureFunc(node, measureLikeTheHost);
    }
    const std::size_t count = YGNodeGetChildCount(model);
    for (std::size_t i = 0; i < count; ++i) {
        YGNodeInsertChild(node, buildLike(YGNodeGetChild(const_cast<YGNodeRef>(model), i)), i);
    }
    return node;
}

void BM_ColdStart_Floor(benchmark::State& state, const std::string& name)
{
    Mero::debugMode = false;
    const BenchCard card = benchCard(name);
    // The model: the tree the engine builds for this card, laid out once.
    Mero::MeroInstance model;
    showCard(model, card.templateText, card.data);
    const YGNodeConstRef modelRoot = model.renderTree().root()->yogaNode;
    const float width = YGNodeLayoutGetWidth(modelRoot);

    simdjson::dom::parser parser;
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        // Parsing from the std::string copies it into padding, as a reader
        // handed a host string would.
        simdjson::dom::element templateRoot;
        simdjson::dom::element dataRoot;
        benchmark::DoNotOptimize(parser.parse(card.templateText).get(templateRoot));
        benchmark::DoNotOptimize(templateRoot);
        simdjson::dom::parser dataParser;
        benchmark::DoNotOptimize(dataParser.parse(card.data).get(dataRoot));
        benchmark::DoNotOptimize(dataRoot);

        YGNodeRef root = buildLike(modelRoot);
        YGNodeCalculateLayout(root, width, YGUndefined, YGDirectionLTR);
        benchmark::DoNotOptimize(readFrames(root));
        state.SetIterationTime(secondsSince(start));
        YGNodeFreeRecursive(root);
    }
    state.counters["yoga_nodes"] = static_cast<double>(model.renderTree().nodeCount());
}
#endif

void registerColdStart()
{
    for (const char* name : {"21", "101", "501", "appinstall", "carousel", "bridgecard"}) {
        benchmark::RegisterBenchmark((std::string("BM_ColdStart_Mero/") + name).c_str(), BM_ColdStart_Mero,
                                     std::string(name))
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark((std::string("BM_ColdStart_MeroShared/") + name).c_str(),
                                     BM_ColdStart_MeroShared, std::string(name))
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
#ifdef MERO_BENCH_SIMDJSON
        benchmark::RegisterBenchmark((std::string("BM_ColdStart_Floor/") + name).c_str(), BM_ColdStart_Floor,
                                     std::string(name))
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
#endif
        benchmark::RegisterBenchmark((std::string("BM_ColdRelease_Mero/") + name).c_str(), BM_ColdRelease_Mero,
                                     std::string(name))
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
    }
}

const bool registered = (registerColdStart(), true);

}  // namespace
