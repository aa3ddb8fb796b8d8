// The built LV2 plug-in: what its run() takes, ports and messages looked at.
#include "bench/groups.h"
#include "bench/material.h"
#include "hosting/lv2instance.h"

#include <benchmark/benchmark.h>

#include <array>

namespace mirelon::bench {
namespace {

void audioThroughLv2(benchmark::State& state) {
    const auto frames = static_cast<std::uint32_t>(state.range(0));
    StereoBuffers<float> audio(Material::noise, static_cast<int>(frames));
    static const auto bundle = hosting::Lv2Bundle::inFolder(MIRELON_LV2_BUNDLE);
    hosting::Lv2Instance instance(*bundle, 44100.0);
    const std::array<float*, 2> inputs{audio.leftIn.data(), audio.rightIn.data()};
    const std::array<float*, 2> outputs{audio.leftOut.data(), audio.rightOut.data()};
    for (int i = 0; i < 100; ++i)
        instance.run(inputs.data(), outputs.data(), frames);
    for (auto _ : state)
        instance.runOnly(frames);
    state.SetItemsProcessed(state.iterations() * frames);
}

} // namespace

void registerLv2() {
    for (const int frames : {64, 512})
        benchmark::RegisterBenchmark("lv2/float", audioThroughLv2)->Arg(frames);
}

} // namespace mirelon::bench
