// Every kernel of the core.
#include "bench/groups.h"
#include "bench/material.h"
#include "processor/core/parameters.h"
#include "processor/core/stereokernels.h"

#include <benchmark/benchmark.h>

#include <string>

namespace mirelon::bench {
namespace {

enum class Mode { processing, passThrough };

Coefficients coefficientsFor(Mode mode) {
    constexpr float values[] = {0.6F, 0.45F, 0.55F, 0.4F, 0.6F, 1.0F, 0.0F, 0.0F, 1.0F};
    Coefficients coefficients;
    for (int i = 0; i < kNumParams; ++i)
        applyParameter(coefficients, i, values[i]);
    applyParameter(coefficients, kParamProcess, mode == Mode::processing ? 1.0F : 0.0F);
    return coefficients;
}

template <typename Sample>
void processBlocks(benchmark::State& state, const kernels::Kernel& kernel, Mode mode,
                   Material material) {
    const auto frames = static_cast<int>(state.range(0));
    StereoBuffers<Sample> audio(material, frames);
    const Coefficients coefficients = coefficientsFor(mode);
    const double k = envelopeCoefficient(44100.0F);
    Envelopes followers = followersIn(material);
    for (auto _ : state) {
        if (material == Material::tail)
            followers = followersIn(material);
        kernels::processWith<Sample>(kernel, {coefficients,
                                              k,
                                              followers,
                                              {audio.leftIn.data(), audio.rightIn.data()},
                                              {audio.leftOut.data(), audio.rightOut.data()},
                                              frames});
        benchmark::DoNotOptimize(readMeters(followers));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * frames);
}

template <typename Sample>
void registerKernel(const kernels::Kernel& kernel, const std::string& precision) {
    for (const Mode mode : {Mode::processing, Mode::passThrough})
        for (const Material material : allMaterial) {
            const std::string name = std::string("core/") + kernel.name + "/" + precision + "/" +
                                     (mode == Mode::processing ? "processing" : "pass-through") +
                                     "/" + std::string(nameOf(material));
            const auto function = [&kernel, mode, material](benchmark::State& state) {
                processBlocks<Sample>(state, kernel, mode, material);
            };
            benchmark::RegisterBenchmark(name.c_str(), function)->Arg(512);
            if (material == Material::noise)
                for (const int frames : {16, 32, 64, 128, 256, 1024, 4096})
                    benchmark::RegisterBenchmark(name.c_str(), function)->Arg(frames);
        }
}

} // namespace

void registerCore() {
    for (const kernels::Kernel* kernel : kernels::builtKernels()) {
        if (!kernel->runsHere())
            continue;
        registerKernel<float>(*kernel, "float");
        registerKernel<double>(*kernel, "double");
    }
}

} // namespace mirelon::bench
