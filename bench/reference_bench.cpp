// What the core is measured against: kernels that do less than it must.
#include "bench/groups.h"
#include "bench/material.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace mirelon::bench {
namespace {

constexpr int sizes[] = {64, 512};

void copyChannels(benchmark::State& state) {
    const auto frames = static_cast<int>(state.range(0));
    StereoBuffers<float> audio(Material::noise, frames);
    const std::size_t bytes = audio.leftIn.size() * sizeof(float);
    for (auto _ : state) {
        std::memcpy(audio.leftOut.data(), audio.leftIn.data(), bytes);
        std::memcpy(audio.rightOut.data(), audio.rightIn.data(), bytes);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * frames);
}

#if defined(__x86_64__)
// The followers alone, four lanes, their inputs ready in memory: the chain as it
// is defined, and without the two operations of the flush.
template <bool flush>
__attribute__((target("avx2,fma"))) void followerChain(benchmark::State& state) {
    const auto frames = static_cast<int>(state.range(0));
    const StereoBuffers<double> levels(Material::noise, 4 * frames);
    const double* const level = levels.leftIn.data();
    const __m256d k = _mm256_set1_pd(envelopeCoefficient(44100.0F));
    const __m256d offset = _mm256_set1_pd(1e-16);
    __m256d e = _mm256_set1_pd(0.5);
    for (auto _ : state) {
        for (int i = 0; i < frames; ++i) {
            const __m256d distance = _mm256_sub_pd(_mm256_loadu_pd(level + 4 * i), e);
            e = _mm256_fmadd_pd(distance, k, e);
            if constexpr (flush) {
                e = _mm256_add_pd(e, offset);
                e = _mm256_sub_pd(e, offset);
            }
        }
        // As at the end of a block: stored, and loaded for the next one.
        alignas(32) double stored[4];
        _mm256_store_pd(stored, e);
        benchmark::DoNotOptimize(stored);
        benchmark::ClobberMemory();
        e = _mm256_load_pd(stored);
    }
    state.SetItemsProcessed(state.iterations() * frames);
}
#endif

void registerSizes(const std::string& name, void (*function)(benchmark::State&)) {
    for (const int frames : sizes)
        benchmark::RegisterBenchmark(("reference/" + name).c_str(), function)->Arg(frames);
}

} // namespace

void registerReferences() {
    registerSizes("copy", copyChannels);
#if defined(__x86_64__)
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("fma"))
        return;
    registerSizes("plain chain", followerChain<true>);
    registerSizes("two-step chain", followerChain<false>);
#endif
}

} // namespace mirelon::bench
