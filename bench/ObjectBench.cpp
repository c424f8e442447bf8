// The object container: building an object and looking every member up, for
// the sizes that dominate (two to five members) and past the point where an
// index is built, beside the hash map objects used to be.
#include <benchmark/benchmark.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "value/Value.h"

namespace {

// Keys as templates and data have them: short names.
std::vector<std::string> keys(int64_t count)
{
    static const char* const names[] = {"$", "id", "n", "a", "value", "sizeType", "title", "image", "price", "tags"};
    std::vector<std::string> result;
    for (int64_t i = 0; i < count; ++i) {
        result.push_back(std::string(names[i % 10]) + (i < 10 ? "" : std::to_string(i)));
    }
    return result;
}

template <typename Map>
void buildAndFind(benchmark::State& state)
{
    const std::vector<std::string> names = keys(state.range(0));
    for (auto _ : state) {
        Map object;
        for (const std::string& name : names) {
            object.try_emplace(name, 1.0);
        }
        double sum = 0;
        for (const std::string& name : names) {
            sum += object.find(name)->second.number();
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_ObjectBuildAndFind_Mero(benchmark::State& state)
{
    buildAndFind<Mero::ValueObject>(state);
}
void BM_ObjectBuildAndFind_UnorderedMap(benchmark::State& state)
{
    buildAndFind<std::unordered_map<std::string, Mero::Value>>(state);
}
BENCHMARK(BM_ObjectBuildAndFind_Mero)->Arg(2)->Arg(5)->Arg(16)->Arg(17)->Arg(64);
BENCHMARK(BM_ObjectBuildAndFind_UnorderedMap)->Arg(2)->Arg(5)->Arg(16)->Arg(17)->Arg(64);

}  // namespace
