// JSON reader throughput over the bench corpus, beside two widely used C++
// readers parsing the same texts into their own DOMs.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

#include "BenchData.h"
#include "value/JsonParser.h"

#ifdef MERO_BENCH_RAPIDJSON
#include <rapidjson/document.h>
#endif
#ifdef MERO_BENCH_SIMDJSON
#include <simdjson.h>
#endif

namespace {

// Every JSON text of bench/data, read once.
const std::vector<std::string>& corpus()
{
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> loaded;
        for (const auto& entry : std::filesystem::directory_iterator(MERO_BENCH_DATA)) {
            if (entry.path().extension() == ".json") {
                loaded.push_back(MeroBench::readFile(entry.path()));
            }
        }
        return loaded;
    }();
    return texts;
}

int64_t corpusBytes()
{
    int64_t bytes = 0;
    for (const std::string& text : corpus()) {
        bytes += static_cast<int64_t>(text.size());
    }
    return bytes;
}

void BM_JsonRead_Mero(benchmark::State& state)
{
    for (auto _ : state) {
        for (const std::string& text : corpus()) {
            Mero::JsonParser parser;
            parser.parse(text);
            benchmark::DoNotOptimize(parser.root());
        }
    }
    state.SetBytesProcessed(state.iterations() * corpusBytes());
}
BENCHMARK(BM_JsonRead_Mero);

#ifdef MERO_BENCH_RAPIDJSON
void BM_JsonRead_RapidJson(benchmark::State& state)
{
    for (auto _ : state) {
        for (const std::string& text : corpus()) {
            rapidjson::Document document;
            document.Parse(text.data(), text.size());
            benchmark::DoNotOptimize(document);
        }
    }
    state.SetBytesProcessed(state.iterations() * corpusBytes());
}
BENCHMARK(BM_JsonRead_RapidJson);
#endif

#ifdef MERO_BENCH_SIMDJSON
void BM_JsonRead_Simdjson(benchmark::State& state)
{
    simdjson::dom::parser parser;
    std::vector<simdjson::padded_string> padded;
    for (const std::string& text : corpus()) {
        padded.emplace_back(text);
    }
    for (auto _ : state) {
        for (const simdjson::padded_string& text : padded) {
            simdjson::dom::element root;
            auto error = parser.parse(text).get(root);
            benchmark::DoNotOptimize(error);
            benchmark::DoNotOptimize(root);
        }
    }
    state.SetBytesProcessed(state.iterations() * corpusBytes());
}
BENCHMARK(BM_JsonRead_Simdjson);
#endif

}  // namespace
