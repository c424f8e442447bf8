// The engine instance without JNI: a card from loadTemplate to the slot
// buffers of all its host views, and one click carried to the end of its
// flush. bench/jvm/.../JniBench.java times the same work through the natives
// on a JVM and prints the share JNI adds (make jvm_bench).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "BenchCards.h"
#include "BenchData.h"
#include "engine/Host.h"
#include "engine/MeroInstance.h"
#include "render/ContainerRenderNode.h"
#include "render/RenderNodeFactory.h"
#include "render/ViewRenderNode.h"
#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"

namespace {

using namespace MeroBench;

// The two feed templates read the feed's data; the bridge card reads none.
void BM_InstanceStart_NoJni(benchmark::State& state, const char* file, const char* dataFile)
{
    Mero::debugMode = false;
    const std::string templateText = MeroBench::readDataFile(file);
    const std::string data = dataFile != nullptr ? MeroBench::readDataFile(dataFile) : "{}";
    for (auto _ : state) {
        Mero::MeroInstance instance;
        const auto start = std::chrono::steady_clock::now();
        showCard(instance, templateText, data);
        const auto end = std::chrono::steady_clock::now();
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
    }
}
BENCHMARK_CAPTURE(BM_InstanceStart_NoJni, app_install, "app_install_template.json", "feed_data.json")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_InstanceStart_NoJni, carousel, "carousel_template.json", "feed_data.json")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_InstanceStart_NoJni, bridge_card, "bridge_card.json", nullptr)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

// Clicks alternate between two targets, so each one changes the title, lays
// the card out again and sends one property update.
void BM_InstanceClick_NoJni(benchmark::State& state)
{
    Mero::debugMode = false;
    Mero::MeroInstance instance;
    showCard(instance, MeroBench::readDataFile("bridge_card.json"), "{}");
    bool tap = true;
    for (auto _ : state) {
        instance.sendClickEvent(tap ? "title" : "icon");
        tap = !tap;
    }
}
BENCHMARK(BM_InstanceClick_NoJni)->Unit(benchmark::kMicrosecond);

// An event that changes the fixed-size title of a feed card (no frame can
// move), to the end of its flush. With MERO_BENCH_CARDS set, the card is
// also written there (card-<nodes>.json) for the JNI benchmark.
void BM_InstanceTextUpdate_NoJni(benchmark::State& state)
{
    Mero::debugMode = false;
    const std::string templateText = cardTemplate(rowsFor(state.range(0)), true);
    if (const char* folder = std::getenv("MERO_BENCH_CARDS")) {
        std::ofstream(std::filesystem::path(folder) / ("card-" + std::to_string(state.range(0)) + ".json"))
            << templateText;
    }
    Mero::MeroInstance instance;
    showCard(instance, templateText, "{}");
    bool toShort = true;
    for (auto _ : state) {
        instance.sendEvent(toShort ? "short" : "long", "{}");
        toShort = !toShort;
    }
}
BENCHMARK(BM_InstanceTextUpdate_NoJni)->Arg(21)->Arg(101)->Arg(501)->Unit(benchmark::kMicrosecond);

}  // namespace
