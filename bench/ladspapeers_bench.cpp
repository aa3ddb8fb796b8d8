// A stereo tool of another maker, LADSPA, if it is installed.
#include "bench/groups.h"
#include "bench/material.h"

#include <benchmark/benchmark.h>
#include <ladspa.h>

#include <dlfcn.h>

#include <string_view>
#include <vector>

namespace mirelon::bench {
namespace {

constexpr unsigned long blockSize = 512;
constexpr const char* name = "SWH Matrix Spatialiser";
constexpr const char* file = "/usr/lib/ladspa/matrix_spatialiser_1422.so";
constexpr std::string_view label = "matrixSpatialiser";

const LADSPA_Descriptor* find() {
    void* const library = dlopen(file, RTLD_NOW);
    if (library == nullptr)
        return nullptr;
    const auto describe =
        reinterpret_cast<LADSPA_Descriptor_Function>(dlsym(library, "ladspa_descriptor"));
    for (unsigned long i = 0; describe != nullptr; ++i) {
        const LADSPA_Descriptor* const descriptor = describe(i);
        if (descriptor == nullptr || descriptor->Label == label)
            return descriptor;
    }
    return nullptr;
}

void processPeer(benchmark::State& state, const LADSPA_Descriptor* peer) {
    StereoBuffers<float> audio(Material::noise, static_cast<int>(blockSize));
    std::vector<LADSPA_Data> controls(peer->PortCount);
    const LADSPA_Handle instance = peer->instantiate(peer, 44100);
    if (instance == nullptr) {
        state.SkipWithError("cannot be instantiated");
        return;
    }
    float* const inputs[] = {audio.leftIn.data(), audio.rightIn.data()};
    float* const outputs[] = {audio.leftOut.data(), audio.rightOut.data()};
    std::size_t nextInput = 0;
    std::size_t nextOutput = 0;
    for (unsigned long i = 0; i < peer->PortCount; ++i) {
        const LADSPA_PortDescriptor port = peer->PortDescriptors[i];
        if (LADSPA_IS_PORT_CONTROL(port))
            peer->connect_port(instance, i, &controls[i]);
        else if (LADSPA_IS_PORT_INPUT(port))
            peer->connect_port(instance, i, inputs[nextInput++ % 2]);
        else
            peer->connect_port(instance, i, outputs[nextOutput++ % 2]);
    }
    if (peer->activate != nullptr)
        peer->activate(instance);
    for (auto _ : state)
        peer->run(instance, blockSize);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(blockSize));
    if (peer->deactivate != nullptr)
        peer->deactivate(instance);
    peer->cleanup(instance);
}

} // namespace

void registerLadspaPeers() {
    if (const LADSPA_Descriptor* const peer = find())
        benchmark::RegisterBenchmark((std::string("peer/") + name).c_str(),
                                     [peer](benchmark::State& state) { processPeer(state, peer); });
}

} // namespace mirelon::bench
