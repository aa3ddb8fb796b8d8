// What must not happen on an audio thread: allocation, lock, file, system call.
#include "validator/audioblock.h"
#include "validator/checkededitor.h"
#include "validator/instance.h"
#include "validator/realtimeguard.h"

#include <array>
#include <atomic>
#include <chrono>
#include <thread>

namespace mirelon::validator {

namespace {

template <typename Sample>
void processWatched(const RealTimeGuard& guard, hosting::Effect& effect, std::uint64_t seed) {
    Noise noise(seed);
    for (const int block : {1, 64, 441, 1024}) {
        doing("processing in blocks of ", block, " and setting parameters in between");
        start(effect, 48000, block);
        Buffers<Sample> buffers(effect, block);
        for (int i = 0; i < 50; ++i) {
            buffers.in.fill(noise);
            Sample** const in = buffers.in.data();
            Sample** const out = buffers.out.data();
            guard.watch([&] { effect.process(in, out, block); });
            effect.setParameter(static_cast<VstInt32>(noise.below(static_cast<std::uint32_t>(
                                    std::max(1, effect.record().numParams)))),
                                noise.fraction());
        }
    }
}

std::string process(const Subject& subject) {
    const RealTimeGuard guard;
    Instance instance(subject);
    processWatched<float>(guard, instance.effect, subject.seed);
    guard.requireNone("process");
    if (instance.effect.hasFlag(effFlagsCanDoubleReplacing)) {
        processWatched<double>(guard, instance.effect, subject.seed);
        guard.requireNone("process with doubles");
    }
    return {};
}

std::string setParameter(const Subject& subject) {
    const RealTimeGuard guard;
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    if (effect.record().numParams == 0)
        throw Skipped("has no parameters");
    start(effect, 48000, 64);
    Noise noise(subject.seed);
    for (int turn = 0; turn < 20; ++turn) {
        for (VstInt32 i = 0; i < visitedParameters(effect); ++i) {
            const float value = noise.fraction();
            doing("setting parameter ", i, " to ", value);
            guard.watch([&] { effect.setParameter(i, value); });
            guard.watch([&] { static_cast<void>(effect.parameter(i)); });
        }
    }
    guard.requireNone("setParameter");
    return {};
}

// A host automates from its audio thread whether or not the window is open.
std::string besideEditor(const Subject& subject) {
    const RealTimeGuard guard;
    Instance instance(subject);
    hosting::Effect& effect = instance.effect;
    CheckedEditor editor(effect);
    start(effect, 48000, 64);
    editor.open();
    std::atomic<bool> stop{false};
    std::thread audio([&] {
        Buffers<float> buffers(effect, 64);
        Noise noise(subject.seed);
        float** const in = buffers.in.data();
        float** const out = buffers.out.data();
        const VstInt32 count = visitedParameters(effect);
        while (!stop.load()) {
            buffers.in.fill(noise);
            guard.watch([&] {
                effect.process(in, out, 64);
                for (VstInt32 i = 0; i < count; ++i)
                    effect.setParameter(i, noise.fraction());
            });
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    editor.idle(std::chrono::milliseconds(400));
    stop = true;
    audio.join();
    guard.requireNone("the audio thread, with the editor open,");
    return {};
}

constexpr std::array realtimeTable{
    Check{"realtime-process", 10, Formats::all, process, 60, Guard::realTime},
    Check{"realtime-set-parameter", 10, Formats::vst2, setParameter, 60, Guard::realTime},
    Check{"realtime-with-editor", 10, Formats::all, besideEditor, 60, Guard::realTime},
};

} // namespace

std::span<const Check> realTimeChecks() {
    return realtimeTable;
}

} // namespace mirelon::validator
