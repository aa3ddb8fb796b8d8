// The built CLAP plug-in as a host has it: audio, and what events in it cost.
#include "bench/groups.h"
#include "bench/material.h"
#include "hosting/clapinstance.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace mirelon::bench {
namespace {

using hosting::ClapHost;
using hosting::ClapInstance;
using hosting::ClapLibrary;

constexpr std::uint32_t blockSize = 512;

// A running instance with its host.
struct Running {
    static const ClapLibrary& library() {
        static const ClapLibrary library(MIRELON_CLAP_FILE);
        return library;
    }

    Running() { instance.activate(44100.0, blockSize); }

    ClapHost host;
    ClapInstance instance{library(), host, "example.dravik.mirelon"};
};

// Blocks with so many changes of the gain in each, evenly spread.
template <typename Sample>
void audioWithEvents(benchmark::State& state, std::uint32_t frames, std::uint32_t events) {
    StereoBuffers<Sample> audio(Material::noise, static_cast<int>(frames));
    Sample* inputs[] = {audio.leftIn.data(), audio.rightIn.data()};
    Sample* outputs[] = {audio.leftOut.data(), audio.rightOut.data()};
    constexpr clap_id gain = 1;
    hosting::ClapInputEvents in;
    hosting::ClapOutputEvents out;
    for (std::uint32_t i = 0; i < events; ++i) // never the value of the one before
        in.add(hosting::clapValueEvent(i * frames / events, gain, i % 2 == 0 ? 0.5 : 0.6));
    Running running;
    for (int i = 0; i < 100; ++i)
        running.instance.process(inputs, outputs, frames, in.list(), out.list());
    for (auto _ : state)
        running.instance.process(inputs, outputs, frames, in.list(), out.list());
    state.SetItemsProcessed(state.iterations() * frames);
}

template <typename Sample>
void audio(benchmark::State& state) {
    audioWithEvents<Sample>(state, static_cast<std::uint32_t>(state.range(0)), 0);
}

void events(benchmark::State& state) {
    audioWithEvents<float>(state, blockSize, static_cast<std::uint32_t>(state.range(0)));
}

void createAndDestroy(benchmark::State& state) {
    Running::library();
    for (auto _ : state)
        Running();
    state.SetItemsProcessed(state.iterations());
}

} // namespace

void registerClap() {
    benchmark::RegisterBenchmark("clap/create, activate, destroy", createAndDestroy);
    for (const int frames : {64, 512}) {
        benchmark::RegisterBenchmark("clap/float", audio<float>)->Arg(frames);
        benchmark::RegisterBenchmark("clap/double", audio<double>)->Arg(frames);
    }
    for (const int count : {1, 16, 64, 512})
        benchmark::RegisterBenchmark("clap/events in 512 frames", events)->Arg(count);
}

} // namespace mirelon::bench
