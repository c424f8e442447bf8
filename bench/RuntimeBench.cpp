// The script runtime: loading templates, one event that sets a watched
// variable, and a tight script loop.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "BenchData.h"
#include "runtime/RuntimeEngine.h"
#include "value/ErrorReporting.h"
#include "value/JsonParser.h"

namespace {

// Benchmarks measure the release path: no trace lines, no throwing.
struct QuietRuntime {
    QuietRuntime() { Mero::debugMode = false; }
};

std::shared_ptr<Mero::RuntimeEngine> loadedEngine(std::string_view text)
{
    static QuietRuntime quiet;
    auto engine = std::make_shared<Mero::RuntimeEngine>();
    engine->loadTemplate(text);
    return engine;
}

void BM_TemplateLoad(benchmark::State& state, const std::filesystem::path& path)
{
    const std::string text = MeroBench::readFile(path);
    for (auto _ : state) {
        benchmark::DoNotOptimize(loadedEngine(text));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

// One load benchmark per template of bench/data (files named *template*.json).
const bool templateLoadsRegistered = [] {
    for (const auto& entry : std::filesystem::directory_iterator(MERO_BENCH_DATA)) {
        const std::string file = entry.path().filename().string();
        if (entry.path().extension() == ".json" && file.find("template") != std::string::npos) {
            const std::string name = "BM_TemplateLoad/" + entry.path().stem().string();
            benchmark::RegisterBenchmark(name.c_str(), BM_TemplateLoad, entry.path())->Unit(benchmark::kMicrosecond);
        }
    }
    return true;
}();

// "set" stores its payload in v; two bound properties watch v.
void BM_EventSetVariable(benchmark::State& state)
{
    auto engine = loadedEngine(R"({"variables": {"v": 0}, "events": [{"n": "set", "a": ["p"], "b": [
        {"$": 4, "n": "v", "value": {"$": 1, "n": "p"}}]}]})");
    double seen = 0;
    auto setter = std::make_shared<Mero::DoubleSetter>([&seen](double value) { seen += value; });
    std::vector<Mero::ObserverPtr> bindings;
    for (int i = 0; i < 2; ++i) {
        Mero::Value read = Mero::JsonParser::read(R"({"e": {"$": 3, "n": "v"}})").object()["e"];
        bindings.push_back(Mero::RuntimeEngine::getTypeData(nullptr, Mero::createRuntimeObject(read), engine, setter, 0.0));
    }
    const std::string name = "set";
    Mero::Value payload(1.0);
    for (auto _ : state) {
        engine->dispatchEvent(name, payload);
    }
    benchmark::DoNotOptimize(seen);
}
BENCHMARK(BM_EventSetVariable);

// loop(): ForRange over [0, 10000) adding the index with the number
// operation; per_round is the time of one round.
void BM_ScriptLoop(benchmark::State& state)
{
    constexpr int rounds = 10000;
    auto engine = loadedEngine(R"({"functions": [{"n": "loop", "a": [], "b": [
        {"$": 2, "n": "sum", "value": 0},
        {"$": 7, "startIndex": 0, "endIndex": 10000, "index": "i", "b": [
            {"$": 2, "n": "sum", "value": {"$": 5, "n": "1", "a": [[0], [{"$": 1, "n": "sum"}, {"$": 1, "n": "i"}]]}}]},
        {"$": 11, "returnValue": {"$": 1, "n": "sum"}}]}]})");
    const std::string name = "loop";
    for (auto _ : state) {
        Mero::Value sum = engine->invokeFunction(name, {});
        if (sum.number() != 49995000.0) {
            state.SkipWithError("wrong sum");
            break;
        }
    }
    state.counters["per_round"] =
        benchmark::Counter(rounds, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ScriptLoop)->Unit(benchmark::kMicrosecond);

}  // namespace
