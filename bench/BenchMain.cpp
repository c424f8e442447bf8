// mero_bench's main: runs the benchmarks as usual, then prints, for every
// group of benchmarks named BM_<Group>_<Variant>, each variant's time per
// iteration as a ratio of the group's "Mero" variant, so that comparisons
// (other readers, a bare Yoga tree) read off directly.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

namespace {

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) {
                continue;
            }
            std::string name = run.benchmark_name();
            // A manually timed run's name ends in "/manual_time".
            if (const size_t manual = name.rfind("/manual_time"); manual != std::string::npos) {
                name.resize(manual);
            }
            const size_t variantStart = name.rfind('_');
            const size_t slash = name.find('/');
            if (variantStart == std::string::npos || (slash != std::string::npos && slash < variantStart)) {
                continue;
            }
            const std::string group = name.substr(0, variantStart);
            std::string variant = name.substr(variantStart + 1);
            std::string arguments;
            if (const size_t argStart = variant.find('/'); argStart != std::string::npos) {
                arguments = variant.substr(argStart);
                variant.resize(argStart);
            }
            times_[group + arguments][variant] = run.GetAdjustedRealTime();
        }
    }

    void printRatios() const
    {
        bool header = false;
        for (const auto& [group, variants] : times_) {
            const auto mero = variants.find("Mero");
            if (mero == variants.end() || variants.size() < 2) {
                continue;
            }
            if (!header) {
                std::printf("\nRatios (time per iteration, relative to the Mero variant):\n");
                header = true;
            }
            for (const auto& [variant, time] : variants) {
                if (variant != "Mero") {
                    std::printf("  %-40s %s / Mero = %.2f  (Mero / %s = %.2f)\n", group.c_str(), variant.c_str(),
                                time / mero->second, variant.c_str(), mero->second / time);
                }
            }
            // Other variants of the engine against the floor, when there is one.
            const auto floor = variants.find("Floor");
            for (const auto& [variant, time] : variants) {
                if (floor != variants.end() && variant != "Mero" && variant.starts_with("Mero")) {
                    std::printf("  %-40s %s / Floor = %.2f\n", group.c_str(), variant.c_str(), time / floor->second);
                }
            }
        }
    }

private:
    std::map<std::string, std::map<std::string, double>> times_;
};

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
