// The built plug-in as a host has it: loading, instances, audio through the
// exported record.
#include "bench/groups.h"
#include "bench/material.h"
#include "hosting/hosting.h"
#include "hosting/residentmemory.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <memory>
#include <vector>

namespace mirelon::bench {
namespace {

using hosting::Effect;
using hosting::Module;
using hosting::Recording;
using hosting::RecordingHost;

constexpr VstInt32 blockSize = 512;

RecordingHost& theHost() {
    static RecordingHost host(Recording::off);
    return host;
}

const Module& theModule() {
    static const Module module(MIRELON_PLUGIN_FILE);
    return module;
}

std::unique_ptr<Effect> runningInstance() {
    auto effect = std::make_unique<Effect>(theModule(), theHost());
    effect->setSampleRate(44100.0F);
    effect->setBlockSize(blockSize);
    effect->resume();
    return effect;
}

template <typename Sample>
void processBlock(Effect& effect, StereoBuffers<Sample>& audio) {
    Sample* inputs[] = {audio.leftIn.data(), audio.rightIn.data()};
    Sample* outputs[] = {audio.leftOut.data(), audio.rightOut.data()};
    effect.process(inputs, outputs, static_cast<VstInt32>(audio.leftIn.size()));
}

// One instance, its audio a frame at a time.
template <typename Sample>
void audioThroughInstance(benchmark::State& state) {
    const auto frames = static_cast<int>(state.range(0));
    StereoBuffers<Sample> audio(Material::noise, frames);
    const auto effect = runningInstance();
    for (int i = 0; i < 100; ++i)
        processBlock(*effect, audio);
    for (auto _ : state)
        processBlock(*effect, audio);
    state.SetItemsProcessed(state.iterations() * frames);
}

// Many instances in turn, as in a large project.
void instancesInTurn(benchmark::State& state) {
    StereoBuffers<float> audio(Material::noise, blockSize);
    std::vector<std::unique_ptr<Effect>> effects;
    effects.reserve(static_cast<std::size_t>(state.range(0)));
    for (int i = 0; i < state.range(0); ++i)
        effects.push_back(runningInstance());
    for (auto _ : state)
        for (const auto& effect : effects)
            processBlock(*effect, audio);
    state.SetItemsProcessed(state.iterations() * state.range(0) * blockSize);
}

void createOpenClose(benchmark::State& state) {
    theModule();
    for (auto _ : state)
        Effect(theModule(), theHost());
    state.SetItemsProcessed(state.iterations());
}

// Finding and mapping the file; later loads find it mapped already.
void loadModule(benchmark::State& state) {
    for (auto _ : state)
        Module(MIRELON_PLUGIN_FILE);
    state.SetItemsProcessed(state.iterations());
}

// What an instance that has processed audio keeps in memory.
void memoryPerInstance(benchmark::State& state) {
    StereoBuffers<float> audio(Material::noise, blockSize);
    processBlock(*runningInstance(), audio);
    double bytes = 0.0;
    for (auto _ : state) {
        malloc_trim(0);
        const auto before = static_cast<double>(hosting::residentMemory());
        std::vector<std::unique_ptr<Effect>> effects;
        for (int i = 0; i < state.range(0); ++i) {
            effects.push_back(runningInstance());
            processBlock(*effects.back(), audio);
        }
        bytes = (static_cast<double>(hosting::residentMemory()) - before) /
                static_cast<double>(state.range(0));
    }
    state.counters["bytes"] = bytes;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

void registerInstances() {
    benchmark::RegisterBenchmark("plugin/load", loadModule);
    benchmark::RegisterBenchmark("plugin/create, open, close", createOpenClose);
    benchmark::RegisterBenchmark("plugin/memory", memoryPerInstance)->Arg(256)->Iterations(1);
    for (const int frames : {64, 512}) {
        benchmark::RegisterBenchmark("plugin/float", audioThroughInstance<float>)->Arg(frames);
        benchmark::RegisterBenchmark("plugin/double", audioThroughInstance<double>)->Arg(frames);
    }
    for (const int instances : {1, 4, 16, 64, 256})
        benchmark::RegisterBenchmark("plugin/instances in turn", instancesInTurn)->Arg(instances);
}

} // namespace mirelon::bench
