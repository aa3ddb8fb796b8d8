// Benchmarks of the audio path. Times are those of one frame.
#include "bench/groups.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    try {
        mirelon::bench::registerReferences();
        mirelon::bench::registerCore();
        mirelon::bench::registerInstances();
#if defined(MIRELON_CLAP_FILE)
        mirelon::bench::registerClap();
#endif
#if defined(MIRELON_LV2_BUNDLE)
        mirelon::bench::registerLv2();
#endif
#if defined(MIRELON_BENCH_LV2)
        mirelon::bench::registerLv2Peers();
#endif
#if defined(MIRELON_BENCH_LADSPA)
        mirelon::bench::registerLadspaPeers();
#endif
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv))
            return 2;
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mirelon-bench: %s\n", error.what());
        return 2;
    }
}
