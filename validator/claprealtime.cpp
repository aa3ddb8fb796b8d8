// What a CLAP plug-in must not do on the audio thread, where events come and go.
#include "validator/clapchecks.h"
#include "validator/clapsubject.h"
#include "validator/realtimeguard.h"

#include <array>

namespace mirelon::validator {

namespace {

std::string events(const Subject& subject) {
    const RealTimeGuard guard;
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    plugIn.needParameters();
    Noise noise(subject.seed);
    hosting::ClapOutputEvents told;
    for (const int block : {1, 64, 441, 1024}) {
        plugIn.activate(48000.0, block);
        Buffers<float> buffers(static_cast<int>(plugIn.plugIn().inputChannels()),
                               static_cast<int>(plugIn.plugIn().outputChannels()), block);
        float** const in = buffers.in.data();
        float** const out = buffers.out.data();
        doing("processing blocks of ", block, " frames with events for all parameters");
        for (int i = 0; i < 50; ++i) {
            buffers.in.fill(noise);
            plugIn.nextEvents().clear();
            plugIn.addForAll(block, noise);
            told.clear();
            guard.watch([&] {
                plugIn.plugIn().process(in, out, static_cast<std::uint32_t>(block),
                                        plugIn.nextEvents().list(), told.list());
            });
        }
        guard.requireNone("process() with events");
    }
    return {};
}

// While it is active flush() is the audio thread's, as are starting, stopping and
// resetting.
std::string flushAndReset(const Subject& subject) {
    const RealTimeGuard guard;
    const hosting::ClapLibrary library(subject.plugin);
    ClapSubject plugIn(library);
    hosting::ClapInstance& instance = plugIn.plugIn();
    Noise noise(subject.seed);
    hosting::ClapOutputEvents told;
    plugIn.activate(48000.0, 64);
    instance.stopProcessing();
    doing("calling flush() with events for all parameters while it is active");
    for (int i = 0; i < 100; ++i) {
        plugIn.nextEvents().clear();
        plugIn.addForAll(1, noise);
        told.clear();
        guard.watch([&] { instance.flush(plugIn.nextEvents().list(), told.list()); });
    }
    plugIn.nextEvents().clear();
    guard.requireNone("flush()");
    doing("starting, resetting and stopping it");
    for (int i = 0; i < 100; ++i) {
        guard.watch([&] {
            instance.startProcessing();
            instance.reset();
            instance.stopProcessing();
        });
    }
    guard.requireNone("starting, resetting or stopping");
    return {};
}

constexpr std::array claprealtimeTable{
    Check{"realtime-events", 10, Formats::clap, events, 60, Guard::realTime},
    Check{"realtime-flush-and-reset", 10, Formats::clap, flushAndReset, 60, Guard::realTime},
};

} // namespace

std::span<const Check> clapRealTimeChecks() {
    return claprealtimeTable;
}

} // namespace mirelon::validator
