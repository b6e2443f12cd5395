#include "Work.h"

#include <benchmark/benchmark.h>

#include <exception>

// Times all works with Google Benchmark; its arguments apply. Ends with status 1 if an answer is
// wrong.
int main(int argc, char** argv)
{
    bool failed = false;
    for (const ketra_bench::Work& work : ketra_bench::allWorks()) {
        // Google Benchmark calls this several times to find the number of repetitions.
        const auto time = [work, body = ketra_bench::Body(),
                           &failed](benchmark::State& state) mutable {
            try {
                if (!body) body = work.prepare();
                for (auto repetition : state) {
                    static_cast<void>(repetition);
                    body();
                }
            } catch (const std::exception& e) {
                failed = true;
                state.SkipWithError(e.what());
            }
        };
        benchmark::RegisterBenchmark(work.name.c_str(), time)->Unit(benchmark::kMicrosecond);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return failed ? 1 : 0;
}
