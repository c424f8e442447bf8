// Memory over a card's life, counted by what the allocator hands out
// (mallinfo2's bytes in use, less the freed blocks the engine keeps on its
// lists for reuse: those are the heap's, but no card's): a list rebuilt 10,000 times and a card driven
// by a one-second timer for a simulated hour must end where they began; and
// 1,000 live cards, with the time to create and release them all.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BenchCards.h"
#include "BenchData.h"
#include "value/ErrorReporting.h"

namespace {

using namespace MeroBench;

// A list of three texts bound to UI variables; the host builds the card's
// tree anew (initNode) each time, so every node goes with its bindings and is
// made again. Between builds the event "rebuild" changes both variables.
constexpr const char* kRebuiltList = R"({"variables": {"items": ["a", "b", "c"], "n": 0},
    "elements": {"$": 3, "nodeId": "card", "children": [
      {"$": 2, "nodeId": "list", "list": {"$": 3, "n": "items"}, "index": "i", "item": "it",
       "children": [{"$": 4, "nodeId": "cell", "text": {"$": 1, "n": "it"}, "textColor": {"$": 3, "n": "n"}}]}]},
    "events": [{"n": "rebuild", "a": [], "b": [
      {"$": 4, "n": "n", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 3, "n": "n"}, 1]]}},
      {"$": 4, "n": "items", "value": ["x", "y", {"$": 5, "n": "m", "a": [{"$": 3, "n": "n"}]}]}]}]})";

// A text that a function "tick" updates and that re-arms a one-second timer.
constexpr const char* kTicking = R"({"variables": {"seconds": 0},
    "elements": {"$": 3, "nodeId": "card", "children": [
      {"$": 4, "nodeId": "clock", "text": {"$": 5, "n": "m", "a": [{"$": 3, "n": "seconds"}]}}]},
    "functions": [{"n": "tick", "a": [], "b": [
      {"$": 4, "n": "seconds", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 3, "n": "seconds"}, 1]]}},
      {"$": 5, "n": "p", "a": [1000, {"$": 14, "a": [], "b": [{"$": 5, "n": "tick", "a": []}]}]}]}],
    "events": [{"n": "onLoad", "a": [], "b": [{"$": 5, "n": "tick", "a": []}]}]})";

void reportBytes(benchmark::State& state, std::size_t before, std::size_t after)
{
    state.counters["bytes_before"] = static_cast<double>(before);
    state.counters["bytes_after"] = static_cast<double>(after);
    state.counters["bytes_grown"] = static_cast<double>(after) - static_cast<double>(before);
}

void BM_MemoryListRebuilt10000Times(benchmark::State& state)
{
    Mero::debugMode = false;
    for (auto _ : state) {
        Mero::MeroInstance instance;
        showCard(instance, kRebuiltList, "{}");
        // The first rebuilds warm the allocator and the engine's lists up.
        auto rebuild = [&instance] {
            instance.initNode();
            instance.applyLayout();
            benchmark::DoNotOptimize(instance.createComponentTree());
            instance.sendEvent("rebuild", "{}");
        };
        for (int i = 0; i < 100; ++i) {
            rebuild();
        }
        const std::size_t before = heapInUse();
        for (int i = 0; i < 10'000; ++i) {
            rebuild();
        }
        reportBytes(state, before, heapInUse());
        state.counters["rebuilds"] = instance.runtime().uiVariables->at("n").number();
    }
}
BENCHMARK(BM_MemoryListRebuilt10000Times)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_MemoryTimerForAnHour(benchmark::State& state)
{
    Mero::debugMode = false;
    for (auto _ : state) {
        Mero::MeroInstance instance;
        std::optional<int32_t> armed;
        instance.runtime().services.setTimeout = [&instance, &armed](double, Mero::PendingJob job) {
            armed = instance.addTimeoutJob(std::move(job));
        };
        showCard(instance, kTicking, "{}");
        auto fire = [&] {
            if (armed) {
                const int32_t job = *armed;
                armed.reset();
                instance.executeTimeoutJob(job);
            }
        };
        for (int second = 0; second < 60; ++second) {
            fire();
        }
        const std::size_t before = heapInUse();
        for (int second = 0; second < 3600; ++second) {
            fire();
        }
        reportBytes(state, before, heapInUse());
        state.counters["ticks"] = instance.runtime().uiVariables->at("seconds").number();
    }
}
BENCHMARK(BM_MemoryTimerForAnHour)->Iterations(1)->Unit(benchmark::kMillisecond);

// What a live card holds: twenty cards of the feed at once, shown and their
// views' description gone, everything the instance keeps counted (template,
// script, render tree, Yoga nodes). One card made and dropped first leaves
// the allocator's recycled blocks as a live process has them.
double liveCardBytes(int rows)
{
    const std::string templateText = cardTemplate(rows);
    constexpr int kCards = 20;
    {
        Mero::MeroInstance warmUp;
        showCard(warmUp, templateText, "{}");
    }
    const std::size_t before = heapInUse();
    std::vector<std::unique_ptr<Mero::MeroInstance>> cards;
    for (int i = 0; i < kCards; ++i) {
        cards.push_back(std::make_unique<Mero::MeroInstance>());
        showCard(*cards.back(), templateText, "{}");
    }
    return static_cast<double>(heapInUse() - before) / kCards;
}

void BM_MemoryLiveCardPerNode(benchmark::State& state)
{
    Mero::debugMode = false;
    const int rows = rowsFor(state.range(0));
    for (auto _ : state) {
        const double perCard = liveCardBytes(rows);
        state.counters["KB_per_card"] = perCard / 1024.0;
        state.counters["bytes_per_node"] = perCard / (1 + nodesPerRow * rows);
    }
}
BENCHMARK(BM_MemoryLiveCardPerNode)->Arg(21)->Arg(101)->Arg(501)->Iterations(1)->Unit(benchmark::kMillisecond);

// What one more render node costs a live card, apart from what every card
// costs whatever its size: the difference between cards of 101 and of 501
// nodes, and what a card would cost with no node at all.
void BM_MemoryPerAddedNode(benchmark::State& state)
{
    Mero::debugMode = false;
    for (auto _ : state) {
        const double small = liveCardBytes(rowsFor(101));
        const double large = liveCardBytes(rowsFor(501));
        const double perNode = (large - small) / (nodesPerRow * (rowsFor(501) - rowsFor(101)));
        state.counters["bytes_per_added_node"] = perNode;
        state.counters["bytes_per_card_besides"] = small - perNode * (1 + nodesPerRow * rowsFor(101));
    }
}
BENCHMARK(BM_MemoryPerAddedNode)->Iterations(1)->Unit(benchmark::kMillisecond);

// 1,000 app-install cards with the feed's data, all alive at once.
void BM_MemoryThousandCards(benchmark::State& state)
{
    Mero::debugMode = false;
    const std::string templateText = readDataFile("app_install_template.json");
    const std::string data = readDataFile("feed_data.json");
    for (auto _ : state) {
        const std::size_t before = heapInUse();
        const auto start = std::chrono::steady_clock::now();
        std::vector<std::unique_ptr<Mero::MeroInstance>> cards;
        cards.reserve(1000);
        for (int i = 0; i < 1000; ++i) {
            cards.push_back(std::make_unique<Mero::MeroInstance>());
            showCard(*cards.back(), templateText, data);
        }
        const auto created = std::chrono::steady_clock::now();
        const std::size_t live = heapInUse();
        cards.clear();
        const auto released = std::chrono::steady_clock::now();
        state.counters["MB_live"] = static_cast<double>(live - before) / (1024.0 * 1024.0);
        state.counters["KB_per_card"] = static_cast<double>(live - before) / 1024.0 / 1000.0;
        state.counters["create_ms"] = std::chrono::duration<double, std::milli>(created - start).count();
        state.counters["release_ms"] = std::chrono::duration<double, std::milli>(released - created).count();
        state.counters["bytes_left"] = static_cast<double>(heapInUse()) - static_cast<double>(before);
        state.counters["KB_kept_for_reuse"] = static_cast<double>(Mero::keptBlockBytes) / 1024.0;
    }
}
BENCHMARK(BM_MemoryThousandCards)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
